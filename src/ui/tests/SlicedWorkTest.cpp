// Work in slices between the ticks, over a base that may be locked.
#include <gtest/gtest.h>

#include <QTest>
#include <stdexcept>

#include "station/Station.h"
#include "store/StoreError.h"
#include "support/TestStation.h"
#include "ui/SlicedWork.h"

namespace zemo::test {
namespace {

class Slices : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  SlicedWork Work(std::function<bool()> slice) {
    return SlicedWork(on.station, "TestRoutine", std::move(slice), [this] { ++done; });
  }
  bool Ended(const SlicedWork& work) {
    return QTest::qWaitFor([&] { return !work.AtWork(); }, 5000);
  }
  TestStation on;
  int slices = 0, done = 0;
};

TEST_F(Slices, GoOnUntilNothingIsLeftWhichIsToldOnce) {
  SlicedWork work = Work([this] { return ++slices == 3; });
  EXPECT_FALSE(work.AtWork());
  work.Begin();
  EXPECT_EQ(slices, 1);  // the first at once
  EXPECT_TRUE(work.AtWork());
  ASSERT_TRUE(Ended(work));
  EXPECT_EQ(slices, 3);
  EXPECT_EQ(done, 1);
}

TEST_F(Slices, WaitWhileATickStandsBelow) {
  SlicedWork work = Work([this] { return ++slices == 1; });
  {
    const MainTimerHold tick(on.station);
    work.Begin();
    QTest::qWait(50);
    EXPECT_EQ(slices, 0);
  }
  ASSERT_TRUE(Ended(work));
  EXPECT_EQ(slices, 1);
}

TEST_F(Slices, AreTriedAgainWhereAnotherProcessHasTheBase) {
  SlicedWork work = Work([this]() -> bool {
    if (++slices < 3) throw StoreError(kErrLocked, "locked");
    return true;
  });
  work.Begin();
  EXPECT_EQ(done, 0);
  ASSERT_TRUE(Ended(work));
  EXPECT_EQ(slices, 3);
  EXPECT_TRUE(on.Events("error").empty());
}

TEST_F(Slices, EndWithAFaultThatIsLoggedUnderTheirRoutine) {
  SlicedWork work = Work([]() -> bool { throw std::runtime_error("of the slice"); });
  work.Begin();
  EXPECT_FALSE(work.AtWork());
  EXPECT_EQ(done, 1);
  EXPECT_EQ(on.Events("error").back()["where"], "TestRoutine");
}

TEST_F(Slices, AreDoneToTheEndForWhoeverNeedsAllOfThem) {
  SlicedWork work = Work([this] { return ++slices == 100; });
  work.Begin();
  work.ToTheEnd();
  EXPECT_EQ(slices, 100);
  EXPECT_EQ(done, 1);
}

}  // namespace
}  // namespace zemo::test
