// The end-of-hour fitting as the tick calls it, on the virtual clock: the engine starts at 12:54:50
// and the fit is due from minute 55 on, with the tick at 12:55:00.
#include <gtest/gtest.h>

#include "station/OnAirColumns.h"
#include "station/TextForms.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

class FittingOnAir : public testing::Test {
 protected:
  FittingOnAir() : on("2026-11-21 12:54:50") {}
  void SetUp() override {
    on.Load();
    on.Set("OptimiseToph", "-1");
    on.Set("HOptimise", "55");
    on.station.GPubJour.SetCell(1, 0, "12:58");
    on.station.GPubJour.SetCell(1, 1, "00:30");
    on.station.GPubJour.SetCell(1, 2, "Pubs");
    AppendTitles();
  }
  void AppendTitles() {
    for (int i = 0; i < 12; ++i) on.AppendCard(on.AddCard({.lengthMs = 60000 + 1000 * i}));
  }
  void Air(int64_t forMs) {
    on.Start();
    on.RunUntil(forMs);
  }
  std::string RoutineOfTheFit() {
    Air(11000);
    const auto fits = on.Events("fit");
    return fits.size() == 1 ? fits[0]["routine"] : std::to_string(fits.size()) + " fits";
  }
  TestStation on;
};

TEST_F(FittingOnAir, ThePlainFormRunsWhenNeitherOtherIsSet) {
  EXPECT_EQ(RoutineOfTheFit(), "AjusteFinHeure") << on.Describe();
  EXPECT_EQ(on.Events("fit")[0].atMs, 10000);
}

TEST_F(FittingOnAir, TheInstrumentalFormRunsWhenSet) {
  on.Set("Instrumental", "1");
  EXPECT_EQ(RoutineOfTheFit(), "AjusteFinHeureInstru");
}

TEST_F(FittingOnAir, SpotsByThePipComeBeforeTheInstrumental) {
  on.Set("Instrumental", "1");
  on.Set("PubAvecTopH", "1");
  EXPECT_EQ(RoutineOfTheFit(), "AjusteFinHeurePubColleTopH");
}

TEST_F(FittingOnAir, WaitsForACompositionAsTheBreaksDo) {
  on.Set("PubAvecTopH", "1");
  on.station.engine.composing = true;
  on.At(14050, [&] { on.station.engine.composing = false; });
  Air(20000);
  const auto breaks = on.Events("break");
  ASSERT_EQ(breaks.size(), 1U) << on.Describe();
  EXPECT_EQ(breaks[0]["routine"], "AjoutPubRubFinHeure");
  EXPECT_EQ(breaks[0].atMs, 14100);
  EXPECT_EQ(on.Events("fit").size(), 1U);
}

TEST_F(FittingOnAir, OneRunAnHour) {
  on.At(3000000, [&] { AppendTitles(); });  // for the next hour
  Air(610000);                              // to 13:05:00
  EXPECT_EQ(on.Events("fit").size(), 1U) << on.Describe();
  EXPECT_FALSE(on.station.engine.FittingActive);
  on.RunUntil(3620000);  // to 13:55:10
  const auto fits = on.Events("fit");
  ASSERT_EQ(fits.size(), 2U) << on.Describe();
  EXPECT_EQ(fits[1].atMs, 3610000);
}

TEST_F(FittingOnAir, ATitleGoesOutAtTheExitPointThatTheFitRaised) {
  on.Set("PubAvecTopH", "1");
  Air(11000);
  ASSERT_FALSE(on.station.PL.Empty());
  const OnAirRow next = on.station.PL.Row(1);
  ASSERT_GT(next.exitMs.value_or(0), 0);
  on.RunUntil(80000);
  // The title on air at the fit ends at 12:55:50, and the next one begins shortly before.
  const Seen* onAir = on.First("onair", "code", ColumnText(next, Col::kCode));
  ASSERT_NE(onAir, nullptr) << on.Describe();
  EXPECT_EQ(onAir->Int("mix_ms"), static_cast<int64_t>(next.exitMs.value_or(0)));
}

TEST_F(FittingOnAir, ThePlacedBreakIsNotFiredAgainInItsMinute) {
  on.Set("PubAvecTopH", "1");
  Air(300000);
  EXPECT_EQ(on.Events("break").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("break")[0]["routine"], "AjoutPubRubFinHeure");
}

TEST_F(FittingOnAir, JinglesStayOutForTheRestOfTheHour) {
  on.Set("Jingles", "1");
  on.Sql(
      "INSERT INTO DiscothequeJingle (LIBELLE, FILENAME, DUREE, SURIMPRESSION, TRANCHE06) VALUES "
      "('JINGLE', '" +
      on.MakeSound("jingle.wav", 5000) + "', 5000, 0, '" + std::string(24, '1') + "')");
  Air(309000);  // to 12:59:59
  EXPECT_GE(on.Starts().size(), 4U);
  EXPECT_TRUE(on.Events("jingle").empty()) << on.Describe();
}

}  // namespace
}  // namespace zemo::test
