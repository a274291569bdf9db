// A whole day with sixty breaks, one every 24 minutes, of 1 to 47 elements of 2 s; music, pips at
// the hour, jingles around the spots, and titles of a minute tied to the fifth element. Every cross
// of the grid is aired in its place, but for those that are lost as they are meant to be.
//
// The engine starts at 23:50 of the day before, and the run ends behind the next midnight.
#include <gtest/gtest.h>

#include <filesystem>

#include "station/TextForms.h"
#include "support/Campaigns.h"
#include "traffic/DayGridComposition.h"

namespace zemo::test {
namespace {

constexpr int kBreaks = 60;
constexpr int kMinutesApart = 24;
constexpr int kMostElements = 47;
constexpr int64_t kDayMs = 24 * 3600 * 1000;
constexpr int64_t kMidnightMs = 600000;  // since the begin

std::string MomentOf(int number) {
  const int minute = number * kMinutesApart;
  return TwoDigits(minute / 60) + ":" + TwoDigits(minute % 60);
}

// 7 and 47 have no common factor: the first 47 breaks have each number of elements once.
int ElementsOf(int number) {
  return number * 7 % kMostElements + 1;
}

bool IsNews(int number) {
  return number % 3 == 2;
}

struct Fit {
  const char* name;
  bool on, instrumental, byPip, priority;
};

class BreakDay : public testing::TestWithParam<Fit> {
 protected:
  BreakDay() : on("2026-11-20 23:50:00") {}
  void SetUp() override {
    on.Load();
    on.station.base.Db().Execute("PRAGMA synchronous = OFF");  // a day of writes, no power loss
    // The tick looks for names in the station's folder: the sounds stand in one of their own.
    std::filesystem::create_directory(on.stationDir.Path() + "/Sounds");
    for (const char* field : {"Jingles", "JinglesIntro", "EcartArtiste"}) on.Set(field, "0");
    on.Set("PmixPubs", "100");
    on.Set("HOptimise", "45");
    on.Set("OptimiseToph", GetParam().on ? "-1" : "0");
    on.Set("Instrumental", GetParam().instrumental ? "1" : "0");
    on.Set("PubAvecTopH", GetParam().byPip ? "1" : "0");
    on.Set("PrioritePubs", GetParam().priority ? "1" : "0");
    on.Set("PrioriteRubriques", GetParam().priority ? "1" : "0");
    on.Set("JingleAvantPubs", "'" + on.MakeSound("before.wav", 3000) + "'");
    on.Set("JingleApresPubs", "'" + on.MakeSound("after.wav", 3000) + "'");
    on.Sql("UPDATE Toph SET FICHIER = '" + on.MakeSound("pip.wav", 4000) + "'");
    AddMusic();
    AddBreaks();
    ComposeTodaysGrid(on.station);
    on.seen.clear();
  }
  std::string Sound(const std::string& name, int64_t lengthMs) {
    return on.MakeSound("Sounds/" + name + ".wav", lengthMs);
  }
  void AddMusic() {
    for (int i = 0; i < 60; ++i)
      on.AddCard({.file = Sound("title" + std::to_string(i), 170000 + 1000 * i),
                  .lengthMs = 170000 + 1000 * i,
                  .artist = "ARTIST" + std::to_string(i)});
    on.AddCard(
        {.file = Sound("tied", 60000), .lengthMs = 60000, .artist = "TIED", .genre = "TIED"});
    on.Sql("UPDATE Discotheque SET NBPASSJOUR = 100, ECARTMINUTES = 0");
    on.ModelOfOneGenre("POP");
  }
  // A campaign an element: the n-th stands in every break with n elements or more. The first one is
  // a spot or news, which makes the break.
  void AddBreaks() {
    for (int element = 1; element <= kMostElements; ++element)
      for (const bool news : {false, true}) {
        Campaign campaign{.advertiser = "E" + std::to_string(element),
                          .priority = element,
                          .spot = !news,
                          .from = "JOURNALIER",
                          .to = "JOURNALIER",
                          .marks = {"00", "12", "24", "36", "48"},
                          .lengthMs = 2000,
                          .file = Sound((news ? "n" : "s") + std::to_string(element), 2000),
                          .genre = element == 5 ? "TIED" : ""};
        for (int number = 0; number < kBreaks; ++number)
          if (ElementsOf(number) >= element && IsNews(number) == news)
            campaign.crosses.push_back(MomentOf(number));
        AddCampaign(on, campaign);
      }
  }
  TestStation on;
};

TEST_P(BreakDay, EveryCrossIsAiredInItsPlaceButThatOfMidnight) {
  ASSERT_EQ(on.station.GPubJour.RowCount(), kBreaks + 1);
  // In mid-air another machine changes a campaign, and campaigns are taken in.
  on.At(kDayMs / 2, [&] { on.MakeFile("MajGrillePub.txt", "21/11/2026\r\n"); });
  on.At(kDayMs / 3, [&] { on.MakeFile("ExportPubs.Txt", ""); });
  on.Start();
  on.RunUntil(kMidnightMs + kDayMs + 120000);

  std::vector<std::string> expected, aired;
  for (int number = 1; number < kBreaks; ++number)  // that of 00:00 never fires
    for (int element = 1; element <= ElementsOf(number); ++element)
      expected.push_back((IsNews(number) ? "-4 E" : "-2 E") + std::to_string(element));
  int tied = 0;
  for (const Seen& start : on.Starts()) {
    if (start["code"] == "-2" || start["code"] == "-4")
      aired.push_back(start["code"] + " " + start["title"].substr(0, start["title"].find(' ')));
    tied += start["title"].starts_with("TIED") ? 1 : 0;
  }
  ASSERT_EQ(aired.size(), expected.size());
  EXPECT_EQ(aired, expected);
  EXPECT_GT(tied, kBreaks / 2);
  EXPECT_GE(on.Events("grid").size(), 3U);  // the new day, the import, the signal
  EXPECT_TRUE(on.Events("error").empty()) << on.Events("error")[0]["text"];
}

// Fitted hours place the break of minute 48 at minute 45. Without priority a break waits for the
// title on air, and a plain fit would take it out of the list while it waits: hence priority there.
INSTANTIATE_TEST_SUITE_P(Fittings, BreakDay,
                         testing::Values(Fit{"NoneWithoutPriority", false, false, false, false},
                                         Fit{"NoneWithPriority", false, false, false, true},
                                         Fit{"Plain", true, false, false, true},
                                         Fit{"Instrumental", true, true, false, true},
                                         Fit{"SpotsByThePip", true, false, true, true}),
                         [](const auto& fit) { return std::string(fit.param.name); });

}  // namespace
}  // namespace zemo::test
