// What a service manager is told of the tick: a turn each, and none while it does not turn.
#include <gtest/gtest.h>

#include "platform/sim/SimServiceManager.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

class ServiceWatch : public testing::Test {
 protected:
  void SetUp() override {
    on.station.platform.service = &manager;
    on.Load();
    on.AppendCard(on.AddCard({.lengthMs = 60000}));
    on.Start();
  }
  // The station has them at hand until it is gone.
  SimServiceManager manager;
  TestStation on;
};

TEST_F(ServiceWatch, EveryTurnOfTheTickIsTold) {
  on.RunUntil(1050);
  const int before = manager.turns;
  on.RunUntil(11050);
  EXPECT_EQ(manager.turns - before, 100);
}

TEST_F(ServiceWatch, ATickThatIsHeldIsNotTold) {
  on.RunUntil(1050);
  int held = 0;
  {
    const MainTimerHold hold(on.station);
    const int before = manager.turns;
    on.RunUntil(31050);
    held = manager.turns - before;
  }
  EXPECT_EQ(held, 0);
  const int before = manager.turns;
  on.RunUntil(32050);
  EXPECT_EQ(manager.turns - before, 10);
}

// One that waits within itself: whatever comes due meanwhile is no turn.
TEST_F(ServiceWatch, ATickThatDoesNotEndIsNotTold) {
  on.RunUntil(1050);
  on.station.engine.tickRunning = true;
  const int before = manager.turns;
  on.RunUntil(5050);
  EXPECT_EQ(manager.turns - before, 0);
  on.station.engine.tickRunning = false;
}

}  // namespace
}  // namespace zemo::test
