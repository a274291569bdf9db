// How late elements begin, as it is counted for monitoring, on the virtual clock.
// Every station here starts at 12:00:00: the first element begins with the first tick at 100 ms.
// Standard settings: 2 s of buffers, PmixDef 1600.
#include <gtest/gtest.h>

#include <numeric>

#include "support/TestStation.h"

namespace zemo::test {
namespace {

class LateStart : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  void AppendTitle(int64_t lengthMs) { on.AppendCard(on.AddCard({.lengthMs = lengthMs})); }
  uint64_t Counted() const {
    const auto& counts = Late().counts;
    return std::accumulate(counts.begin(), counts.end(), uint64_t{0});
  }
  const LateStarts& Late() const { return on.station.engine.lateStarts; }
  TestStation on;
};

// The exit point, 58430 ms, is reached between the ticks at 58400 and 58500 of position.
TEST_F(LateStart, IsTheTimeFromTheExitPointToTheTickThatSeesIt) {
  AppendTitle(60030);
  AppendTitle(30000);
  on.Start();
  on.RunUntil(58000);
  EXPECT_EQ(Counted(), 0u) << "nothing is before the first one";
  on.RunUntil(65000);
  ASSERT_EQ(on.Starts().size(), 2u) << on.Describe();
  EXPECT_EQ(Counted(), 1u);
  EXPECT_DOUBLE_EQ(Late().sumSec, 0.07);
  EXPECT_EQ(Late().counts[1], 1u) << "above 0.05 and up to 0.1 s";
}

// 3 s of silence behind the exit point at 58500: the list was empty until 61500.
TEST_F(LateStart, CountsTheWaitForAnElementThatCameTooLate) {
  on.Set("Squelette", "0");
  AppendTitle(60000);
  on.Start();
  on.RunUntil(1000);
  const int32_t code = on.AddCard({.lengthMs = 30000});
  on.At(61450, [&] { on.AppendCard(code); });
  on.RunUntil(70000);
  ASSERT_GE(on.Starts().size(), 2u) << on.Describe();
  const double waitedSec = static_cast<double>(on.Starts()[1].atMs - 58500) / 1000;
  EXPECT_EQ(Counted(), 1u);
  EXPECT_DOUBLE_EQ(Late().sumSec, waitedSec);
  EXPECT_GE(waitedSec, 2.9);
}

TEST_F(LateStart, IsNotThatOfAnElementThatTheOperatorCalled) {
  AppendTitle(60000);
  AppendTitle(60000);
  on.Start();
  on.At(10000, [&] { on.station.engine.NextRequested = true; });
  on.RunUntil(20000);
  ASSERT_EQ(on.Starts().size(), 2u) << on.Describe();
  EXPECT_EQ(Counted(), 0u);
}

TEST_F(LateStart, IsNotTheTimeThatTheStationStoodStill) {
  AppendTitle(5000);
  AppendTitle(5000);
  on.Start();
  on.At(1000, [&] { on.station.engine.IsRunning = false; });
  on.RunUntil(20000);
  on.Start();
  on.RunUntil(22000);
  ASSERT_EQ(on.Starts().size(), 2u) << on.Describe();
  EXPECT_EQ(Counted(), 0u);
}

}  // namespace
}  // namespace zemo::test
