#include <gtest/gtest.h>

#include "scheduling/ModelScreen.h"
#include "scheduling/PlannedDay.h"
#include "scheduling/tests/RequestFixture.h"

namespace zemo {
namespace {

using test::RequestStation;
using test::TitleCard;

// Saturday, 21 November 2026; the library has POP 1 and 2, ROCK 3.
class PlannedDayTest : public testing::Test {
 protected:
  void SetUp() override {
    TitleCard card;
    pop_ = s.Add(card);
    pop2_ = s.Add(card);
    card.genre = "ROCK";
    rock_ = s.Add(card);
  }
  ModelEditor& Editor() { return s.station.modelEditor; }
  RequestStation s;
  int32_t pop_ = 0, pop2_ = 0, rock_ = 0;
};

TEST_F(PlannedDayTest, ThePlanPutsTheUnsavedGridIntoTheNextSuchDay) {
  s.Model(6, "POP", 40);
  Models::MnuModel_Click(s.station);
  Editor().Models.SetCell(1, 0, "L'ETE");
  Editor().Models.SetCell(1, 24, "15");
  const PlannedDay plan = PlanOf(Editor(), s.station.Now());
  EXPECT_EQ(plan.from.day, 28);
  EXPECT_EQ(plan.from.month, 11);
  EXPECT_EQ(plan.from.hour, 0);
  std::string hours, values;
  for (int hour = 0; hour < 24; ++hour) {
    hours += ", TRANCHE" + TwoDigits(hour);
    values += hour == 23 ? ", 15" : ", 40";
  }
  EXPECT_EQ(plan.script,
            "+0 set Squelette 0\n+0 sql DELETE FROM Models WHERE JOUR IN (6)\n"
            "+0 sql INSERT INTO Models(JOUR, GENRE" +
                hours + ") VALUES (6, 'L''ETE'" + values + ")\n+0 start\n");
  Models::JourSemaine_Click(s.station, 7);
  EXPECT_EQ(s.Events("message").size(), 1U);
  s.messages.AnswerNext(Answer::kNo);
  Models::JourSemaine_Click(s.station, 7);
  EXPECT_EQ(PlanOf(Editor(), s.station.Now()).from.day, 22);
}

TEST_F(PlannedDayTest, ASkeletonsPlanHasItsPositions) {
  s.SetCnf("Squelette", -1);
  s.Position(6, 0, "POP");
  Models::MnuModel_Click(s.station);
  const std::string script = PlanOf(Editor(), s.station.Now()).script;
  EXPECT_NE(
      script.find("+0 set Squelette -1\n+0 sql DELETE FROM ModelSquelette WHERE JOUR IN (6)\n"),
      std::string::npos);
  EXPECT_NE(script.find("VALUES (6, 'POP', '', ''"), std::string::npos) << script;
}

// 10 h: POP 60, ROCK 20; 11 h: POP 50 alone. So POP is to have (75 + 100) / 2, ROCK 25 / 2.
TEST_F(PlannedDayTest, SharesAreThoseOfTheTimeAndAnHourWithoutAPlannedGenreIsDry) {
  s.Model(6, "POP", 60, 10);
  s.Model(6, "ROCK", 20, 10);
  s.Execute("UPDATE Models SET TRANCHE11 = 50 WHERE GENRE = 'POP'");
  Models::MnuModel_Click(s.station);
  const AiredTitle aired[] = {{10, pop_, "A  One", 180000},
                              {10, pop2_, "B  Two", 120000},
                              {11, rock_, "C  Three", 100000},
                              {11, pop_, "A  One", 100000}};
  const DayOutlook outlook = OutlookOf(Editor(), aired);
  EXPECT_EQ(outlook.titles, 4);
  ASSERT_EQ(outlook.genres.size(), 2U);
  EXPECT_EQ(outlook.genres[0].genre, "POP");
  EXPECT_DOUBLE_EQ(outlook.genres[0].planned, 87.5);
  EXPECT_DOUBLE_EQ(outlook.genres[0].reached, 80);
  EXPECT_TRUE(outlook.genres[0].dryHours.empty());
  EXPECT_DOUBLE_EQ(outlook.genres[1].planned, 12.5);
  EXPECT_DOUBLE_EQ(outlook.genres[1].reached, 20);
  EXPECT_EQ(outlook.genres[1].dryHours, std::vector<int>{10});
  ASSERT_EQ(outlook.repeats.size(), 1U);
  EXPECT_EQ(outlook.repeats[0].text, "A  One");
  EXPECT_EQ(outlook.repeats[0].times, 2);
}

TEST_F(PlannedDayTest, SharesOfASkeletonAreThoseOfItsPositionsAndAnUnplannedGenreIsTold) {
  s.SetCnf("Squelette", -1);
  s.Position(6, 0, "POP");
  s.Position(6, 0, "POP");
  s.Position(6, 0, "JAZZ");
  s.Position(6, 0, "POP");
  Models::MnuModel_Click(s.station);
  const AiredTitle aired[] = {{0, pop_, "A  One", 1000}, {0, rock_, "C  Three", 9000}};
  const DayOutlook outlook = OutlookOf(Editor(), aired);
  ASSERT_EQ(outlook.genres.size(), 3U);
  EXPECT_DOUBLE_EQ(outlook.genres[0].planned, 75);
  EXPECT_DOUBLE_EQ(outlook.genres[0].reached, 50);
  EXPECT_EQ(outlook.genres[1].genre, "JAZZ");
  EXPECT_EQ(outlook.genres[1].dryHours, std::vector<int>{0});
  EXPECT_EQ(outlook.genres[2].genre, "ROCK");
  EXPECT_DOUBLE_EQ(outlook.genres[2].planned, 0);
  EXPECT_TRUE(outlook.repeats.empty());
}

TEST_F(PlannedDayTest, WhatIsRepeatedMostStandsFirst) {
  s.Model(6, "POP", 60, 10);
  Models::MnuModel_Click(s.station);
  const AiredTitle aired[] = {{10, pop_, "A  One", 1000},  {10, pop_, "A  One", 1000},
                              {11, pop2_, "B  Two", 1000}, {11, pop2_, "B  Two", 1000},
                              {12, pop2_, "B  Two", 1000}, {12, rock_, "C  Three", 1000}};
  const DayOutlook outlook = OutlookOf(Editor(), aired);
  ASSERT_EQ(outlook.repeats.size(), 2U);
  EXPECT_EQ(outlook.repeats[0].text, "B  Two");
  EXPECT_EQ(outlook.repeats[1].text, "A  One");
}

}  // namespace
}  // namespace zemo
