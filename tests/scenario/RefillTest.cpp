// When the list is filled again: behind the first tenth of an element, and never so late in it that
// the next one would have to wait for the request.
#include <gtest/gtest.h>

#include "engine/OperatorControls.h"
#include "station/TextForms.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

// A skeleton of one position, and titles of a second for it: a request of three minutes makes 181
// passes, until more than three minutes are listed. Each takes 1 ms of virtual time.
class Refill : public testing::Test {
 protected:
  static constexpr int64_t kRequestMs = 181;

  void SetUp() override {
    on.Load();
    std::string fields, values;
    for (int day = 1; day <= 7; ++day) {
      fields += ", TRANCHE" + TwoDigits(day);
      values += ", '111111111111111111111111'";
    }
    on.Sql(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 400) INSERT INTO "
        "Discotheque (FILENAME, DUREE, AUTEUR, TITRE, GENRE, VARIETE, NBPASSJOUR" +
        fields + ") SELECT '/lost', 1000, 'ARTIST ' || i, 'SHORT ' || i, 'SHORT', 'NATIONAL', 1" +
        values + " FROM n");
    on.Sql("INSERT INTO ModelSquelette (JOUR, TRANCHE12) VALUES (6, 'SHORT')");  // a Saturday
    on.Set("Squelette", "-1");
    on.Set("TempRequette", "3");
    on.Set("CheckNational", "0");
    first = on.AddCard({.lengthMs = 60000});
    second = on.AddCard({.lengthMs = 30000});
    on.AppendCard(first);
    on.Start();
  }

  TestStation on;
  int32_t first = 0, second = 0;
};

TEST_F(Refill, ComesBehindTheFirstTenthOfTheElement) {
  on.RunUntil(6600);
  EXPECT_TRUE(on.Events("request").empty()) << on.Describe();
  on.RunUntil(7000);
  // On air since 100 ms: 6600 of 60000 ms are the first 11 per cent, at the tick of 6700 ms.
  const auto requests = on.Events("request");
  ASSERT_EQ(requests.size(), 1U) << on.Describe();
  EXPECT_EQ(requests[0].atMs, 6700 + kRequestMs);
  EXPECT_EQ(requests[0].Int("rows"), 181);
}

// The first request moved the ticks to ..81 ms. The exit point, 60000 - 1600 ms, is reached at
// 58500. The list is found short at 58381: a walk of 181 ms through the library would hold the tick
// up to 58562, and the next title would begin at 58662.
TEST_F(Refill, WaitsForTheNextElementWhereTheWalkWouldMakeItLate) {
  on.At(58300, [&] {
    on.station.PL.Clear();
    on.AppendCard(second);
    on.station.requests.lastWalkMs = 181;
  });
  on.RunUntil(65000);
  const auto starts = on.Starts();
  ASSERT_EQ(starts.size(), 2U) << on.Describe();
  EXPECT_EQ(starts[1].atMs, 58581);
  const auto requests = on.Events("request");
  ASSERT_EQ(requests.size(), 2U) << on.Describe();
  EXPECT_GT(requests[1].atMs, starts[1].atMs);
}

// The same, but the last request's walk took no time: its passes say nothing of the next one.
TEST_F(Refill, DoesNotWaitForThePassesOfARequest) {
  on.At(58300, [&] {
    on.station.PL.Clear();
    on.AppendCard(second);
  });
  on.RunUntil(58800);
  const auto requests = on.Events("request");
  ASSERT_EQ(requests.size(), 2U) << on.Describe();
  EXPECT_EQ(requests[1].atMs, 58381 + kRequestMs);
  const auto starts = on.Starts();
  ASSERT_EQ(starts.size(), 2U) << on.Describe();
  EXPECT_EQ(starts[1].atMs, 58662);
}

TEST_F(Refill, DoesNotWaitWhereNothingIsThereToFollow) {
  on.At(58300, [&] {
    on.station.PL.Clear();
    on.station.requests.lastWalkMs = 181;
  });
  on.RunUntil(59000);
  const auto requests = on.Events("request");
  ASSERT_EQ(requests.size(), 2U) << on.Describe();
  EXPECT_EQ(requests[1].atMs, 58381 + kRequestMs);
}

std::vector<int64_t> RequestMoments(const TestStation& on) {
  std::vector<int64_t> moments;
  for (const Seen& request : on.Events("request")) moments.push_back(request.atMs);
  return moments;
}

// A station without a model: the request finds nothing, on air since 100 ms from 6700 ms on.
class FruitlessRequest : public testing::Test {
 protected:
  void Air(TestStation& on, int64_t untilMs) {
    on.Load();
    on.AppendCard(on.AddCard({.lengthMs = 60000}));
    on.Start();
    on.RunUntil(untilMs);
  }
};

TEST_F(FruitlessRequest, RestsTenSecondsButForTheOperator) {
  TestStation on;
  on.At(20000, [&] { OnAir::CmdRequette_Click(on.station); });
  Air(on, 59000);
  EXPECT_EQ(RequestMoments(on), (std::vector<int64_t>{6700, 16700, 20000, 30000, 40000, 50000}));
}

TEST_F(FruitlessRequest, IsMadeAtOnceInANewHour) {
  TestStation on("2026-11-21 12:59:50");
  Air(on, 19000);
  EXPECT_EQ(RequestMoments(on), (std::vector<int64_t>{6700, 10000}));
}

}  // namespace
}  // namespace zemo::test
