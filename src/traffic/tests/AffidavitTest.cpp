// What became of each cross, by a report made by hand. The station's clock shows 22 November 2026,
// 12:00; 21 November is day 46347 of the serials, a Saturday.
#include <gtest/gtest.h>

#include <filesystem>

#include "station/TextForms.h"
#include "support/Campaigns.h"
#include "support/TestStation.h"
#include "traffic/Affidavit.h"

namespace zemo::test {
namespace {

class AffidavitOfBaker : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  // Aired on 21 November; `rows` of music around it keep the engine on air.
  void Report(const std::string& genre, const std::string& author, const std::string& time) {
    on.Sql(kInsert + Row(genre, author, time));
  }
  void MusicAllDay() {
    std::string rows;
    for (int hour = 0; hour < 24; ++hour)
      for (const char* minute : {":00:10", ":20:10", ":40:10"})
        rows += (rows.empty() ? "" : ", ") + Row("POP", "ARTIST", TwoDigits(hour) + minute);
    on.Sql(kInsert + rows);
  }
  const std::string kInsert = "INSERT INTO Rapport (LADATE, HEURE, AUTEUR, GENRE, DATENUM) VALUES ";
  static std::string Row(const std::string& genre, const std::string& author,
                         const std::string& time) {
    return "('21/11/2026', '" + time + "', '" + SqlQuoted(author) + "', '" + genre +
           "', 46347 + (julianday('2000-01-01 " + time + "') - julianday('2000-01-01')))";
  }
  int32_t Baker(std::vector<std::string> crosses, Campaign campaign = {}) {
    campaign.advertiser = "Baker's";
    campaign.marks = {"00", "30"};
    campaign.crosses = std::move(crosses);
    return AddCampaign(on, campaign);
  }
  Affidavit Make(const std::string& from = "2026-11-21", const std::string& to = "2026-11-21") {
    return MakeAffidavit(on.station, "BAKER'S ", ParseMoment(from + " 00:00:00"),
                         ParseMoment(to + " 00:00:00"));
  }
  static std::string Time(const LocalDateTime& moment) {
    return std::to_string(moment.hour) + ":" + std::to_string(moment.minute) + ":" +
           std::to_string(moment.second);
  }
  TestStation on{"2026-11-22 12:00:00"};
};

TEST_F(AffidavitOfBaker, EachCrossIsProvedByTheRowBehindIt) {
  MusicAllDay();
  const int32_t code = Baker({"10:00", "10:30"});
  Report("PUB", "BAKER'S", "10:02:05");
  Report("Rubrique", "Baker's", "10:30:00");  // its break went as news
  const Affidavit affidavit = Make();
  ASSERT_EQ(affidavit.lines.size(), 2U);
  EXPECT_EQ(affidavit.lines[0].campaign, code);
  EXPECT_EQ(affidavit.lines[0].moment, "10:00");
  ASSERT_TRUE(affidavit.lines[0].aired);
  EXPECT_EQ(Time(*affidavit.lines[0].aired), "10:2:5");
  EXPECT_EQ(affidavit.lines[0].lateSec, 125);
  ASSERT_TRUE(affidavit.lines[1].aired);
  EXPECT_EQ(affidavit.lines[1].lateSec, 0);
  EXPECT_TRUE(affidavit.extras.empty());
}

TEST_F(AffidavitOfBaker, ALateRowProvesTheLatestCrossAndTheNextTheOneBefore) {
  MusicAllDay();
  Baker({"10:00", "10:30"});
  Report("PUB", "Baker's", "10:32:00");
  Report("PUB", "Baker's", "10:33:00");
  const Affidavit affidavit = Make();
  EXPECT_EQ(affidavit.lines[0].lateSec, 33 * 60);
  EXPECT_EQ(affidavit.lines[1].lateSec, 2 * 60);
}

TEST_F(AffidavitOfBaker, OneRowProvesOneCross) {
  MusicAllDay();
  Baker({"10:00", "10:30"});
  Report("PUB", "Baker's", "10:31:00");
  const Affidavit affidavit = Make();
  EXPECT_FALSE(affidavit.lines[0].aired);
  EXPECT_EQ(affidavit.lines[0].missed, "minute lost: the station was on air");
  EXPECT_TRUE(affidavit.lines[1].aired);
}

TEST_F(AffidavitOfBaker, ABreakThatAFittingBroughtForwardIsAheadOfItsMinute) {
  MusicAllDay();
  Baker({"10:30"});
  Report("PUB", "Baker's", "10:28:30");
  const Affidavit affidavit = Make();
  ASSERT_TRUE(affidavit.lines[0].aired);
  EXPECT_EQ(affidavit.lines[0].lateSec, -90);
}

TEST_F(AffidavitOfBaker, ARowWithoutACrossIsTold) {
  MusicAllDay();
  Baker({"10:30"});
  Report("PUB", "Baker's", "09:59:59");  // another hour
  Report("PUB", "Baker's", "13:30:01");  // above three hours behind
  Report("PUB", "Butcher", "10:30:00");
  const Affidavit affidavit = Make();
  EXPECT_FALSE(affidavit.lines[0].aired);
  ASSERT_EQ(affidavit.extras.size(), 2U);
  EXPECT_EQ(Time(affidavit.extras[0]), "9:59:59");
  EXPECT_EQ(Time(affidavit.extras[1]), "13:30:1");
}

TEST_F(AffidavitOfBaker, ThreeHoursBehindIsStillTheCross) {
  MusicAllDay();
  Baker({"10:30"});
  Report("PUB", "Baker's", "13:30:00");
  EXPECT_EQ(Make().lines[0].lateSec, 3 * 3600);
}

TEST_F(AffidavitOfBaker, AFileThatIsGoneIsTheReason) {
  MusicAllDay();
  Campaign campaign;
  campaign.file = on.MakeSound("baker.wav", 5000);
  Baker({"10:30"}, campaign);
  std::filesystem::remove(campaign.file);
  EXPECT_EQ(Make().lines[0].missed, "file missing: " + campaign.file);
}

TEST_F(AffidavitOfBaker, AStoppedEngineIsTheReason) {
  Report("POP", "ARTIST", "09:59:59");
  Report("POP", "ARTIST", "11:00:01");
  Baker({"10:30"});
  EXPECT_EQ(Make().lines[0].missed,
            "engine stopped: the report has nothing from 21/11/2026 09:59 up to 21/11/2026 11:00");
}

TEST_F(AffidavitOfBaker, ARowWithinHalfAnHourShowsTheEngineOnAir) {
  Report("POP", "ARTIST", "10:00:00");
  Report("POP", "ARTIST", "11:00:01");
  Baker({"10:30"});
  EXPECT_EQ(Make().lines[0].missed, "minute lost: the station was on air");
}

TEST_F(AffidavitOfBaker, AnEmptyReportIsAStoppedEngine) {
  Baker({"10:30"});
  EXPECT_EQ(Make().lines[0].missed, "engine stopped: the report has nothing");
}

TEST_F(AffidavitOfBaker, TheBreakOfMidnightNeverFires) {
  MusicAllDay();
  Baker({"00:00"});
  EXPECT_EQ(Make().lines[0].missed, "a break at 00:00 never fires");
}

TEST_F(AffidavitOfBaker, TheFortyEighthOfABreakHasNoPlace) {
  MusicAllDay();
  for (int i = 0; i < 46; ++i)
    AddCampaign(on, {.advertiser = "OTHER", .priority = 10, .crosses = {"10:00"}});
  Campaign late;
  late.priority = 20;
  Baker({"10:00"}, late);  // the 47th
  late.priority = 30;
  Baker({"10:00"}, late);  // the 48th
  const Affidavit affidavit = Make();
  ASSERT_EQ(affidavit.lines.size(), 2U);
  EXPECT_EQ(affidavit.lines[0].missed, "minute lost: the station was on air");
  EXPECT_EQ(affidavit.lines[1].missed, "the break is full");
}

TEST_F(AffidavitOfBaker, CrossesStillToComeAreNotMissed) {
  Baker({"10:00", "13:00"});
  const Affidavit affidavit = Make("2026-11-22", "2026-11-22");  // it is 12:00
  ASSERT_EQ(affidavit.lines.size(), 2U);
  EXPECT_TRUE(affidavit.lines[0].isDue);
  EXPECT_FALSE(affidavit.lines[0].missed.empty());
  EXPECT_FALSE(affidavit.lines[1].isDue);
  EXPECT_TRUE(affidavit.lines[1].missed.empty());
}

TEST_F(AffidavitOfBaker, ACampaignCountsOnItsDaysAlone) {
  Campaign two;
  two.from = "20/11/2026";
  two.to = "21/11/2026";
  Baker({"10:00"}, two);
  EXPECT_EQ(Make("2026-11-18", "2026-11-24").lines.size(), 2U);
  Campaign weekly;
  weekly.from = weekly.to = "JOURNALIER";
  weekly.column = 6;  // Saturday
  Baker({"10:00"}, weekly);
  EXPECT_EQ(Make("2026-11-16", "2026-11-29").lines.size(), 4U);  // Saturdays 21 and 28
}

TEST_F(AffidavitOfBaker, ANumberThatNoClockShowsIsNamed) {
  Campaign campaign;
  campaign.firstHour = campaign.lastHour = 25;
  Baker({"25:00"}, campaign);
  const Affidavit affidavit = Make();
  ASSERT_EQ(affidavit.lines.size(), 1U);
  EXPECT_EQ(affidavit.lines[0].missed, "no clock shows 25:00");
}

}  // namespace
}  // namespace zemo::test
