// The loop of real time against its promises. Times are real here: a test waits for a condition
// with a bound, and states only what cannot depend on how busy the machine is.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>
#include <stdexcept>
#include <thread>
#include <vector>

#include "platform/real/desktop/RealClock.h"
#include "platform/real/desktop/RealEventLoop.h"

namespace zemo {
namespace {

class RealEventLoopTest : public testing::Test {
 protected:
  // Waits with yields until the condition holds; false after ten seconds.
  bool WaitFor(const std::function<bool()>& condition) {
    const int64_t latest = clock_.MonotonicMs() + 10'000;
    while (!condition() && clock_.MonotonicMs() < latest) loop_.WaitYield();
    return condition();
  }

  int argc_ = 1;
  char name_[8] = "test";
  char* argv_[2] = {name_, nullptr};
  QCoreApplication application_{argc_, argv_};
  RealClock clock_;
  RealEventLoop loop_;
};

TEST_F(RealEventLoopTest, ATimerFiresAgainAndAgainAndNotBeforeItsInterval) {
  std::vector<int64_t> fired;
  const int64_t enabled = clock_.MonotonicMs();
  auto timer = loop_.MakeTimer(20, [&] { fired.push_back(clock_.MonotonicMs()); });
  EXPECT_FALSE(timer->Enabled());
  timer->SetEnabled(true);
  ASSERT_TRUE(WaitFor([&] { return fired.size() >= 3; }));
  EXPECT_GE(fired[0] - enabled, 19);
  EXPECT_GE(fired[2] - enabled, 57);
}

TEST_F(RealEventLoopTest, ADisabledTimerDoesNotFire) {
  int other = 0;
  int fired = 0;
  auto timer = loop_.MakeTimer(5, [&] { ++fired; });
  auto later = loop_.MakeTimer(50, [&] { ++other; });
  timer->SetEnabled(true);
  later->SetEnabled(true);
  timer->SetEnabled(false);
  ASSERT_TRUE(WaitFor([&] { return other > 0; }));
  EXPECT_EQ(fired, 0);
}

TEST_F(RealEventLoopTest, ATimerIsNotServedInsideItsOwnHandlerAndMissesAreDeliveredOnce) {
  int depth = 0;
  int deepest = 0;
  int fired = 0;
  std::unique_ptr<LoopTimer> timer = loop_.MakeTimer(5, [&] {
    deepest = std::max(deepest, ++depth);
    if (++fired == 1) {
      const int64_t until = clock_.MonotonicMs() + 60;  // a dozen intervals
      while (clock_.MonotonicMs() < until) loop_.WaitYield();
      EXPECT_EQ(fired, 1);
    }
    if (fired == 2) timer->SetEnabled(false);
    --depth;
  });
  timer->SetEnabled(true);
  ASSERT_TRUE(WaitFor([&] { return fired == 2; }));
  loop_.Yield();
  EXPECT_EQ(fired, 2);
  EXPECT_EQ(deepest, 1);
}

TEST_F(RealEventLoopTest, AnotherTimerIsServedInsideAYieldOfAHandler) {
  int inner = 0;
  bool servedInside = false;
  auto fast = loop_.MakeTimer(5, [&] { ++inner; });
  std::unique_ptr<LoopTimer> slow = loop_.MakeTimer(10, [&] {
    slow->SetEnabled(false);
    inner = 0;
    servedInside = WaitFor([&] { return inner > 0; });
  });
  fast->SetEnabled(true);
  slow->SetEnabled(true);
  EXPECT_TRUE(WaitFor([&] { return servedInside; }));
}

TEST_F(RealEventLoopTest, AHandlerMayDestroyItsOwnTimer) {
  bool fired = false;
  std::unique_ptr<LoopTimer> timer;
  timer = loop_.MakeTimer(1, [&] {
    timer.reset();
    fired = true;
  });
  timer->SetEnabled(true);
  EXPECT_TRUE(WaitFor([&] { return fired; }));
}

TEST_F(RealEventLoopTest, AWaitComesBackAlthoughNothingHappens) {
  const int64_t begin = clock_.MonotonicMs();
  loop_.WaitYield();
  loop_.WaitYield();
  EXPECT_LT(clock_.MonotonicMs() - begin, 5'000);
  EXPECT_EQ(loop_.EventsServed(), 0u);
}

TEST_F(RealEventLoopTest, AnOrderPostedByAnotherThreadIsServedOnTheLoopsThread) {
  std::thread::id servedBy;
  std::thread poster([&] { loop_.Post([&] { servedBy = std::this_thread::get_id(); }); });
  EXPECT_TRUE(WaitFor([&] { return servedBy != std::thread::id(); }));
  poster.join();
  EXPECT_EQ(servedBy, std::this_thread::get_id());
}

TEST_F(RealEventLoopTest, PostedOrdersAreServedInTheirOrderAndCounted) {
  std::string served;
  loop_.Post([&] { served += 'a'; });
  loop_.Post([&] { served += 'b'; });
  EXPECT_EQ(served, "");
  loop_.Yield();
  EXPECT_EQ(served, "ab");
  EXPECT_EQ(loop_.EventsServed(), 2u);
}

TEST_F(RealEventLoopTest, AHandlerThatThrowsDoesNotEndTheLoop) {
  bool after = false;
  loop_.Post([] { throw std::runtime_error("a fault of a handler"); });
  loop_.Post([&] { after = true; });
  loop_.Yield();
  EXPECT_TRUE(after);
}

TEST_F(RealEventLoopTest, TheIdleHookRunsWithoutBeingAnEventUntilItIsTakenAway) {
  int runs = 0;
  loop_.SetIdle(
      [&] {
        ++runs;
        return true;
      },
      5, 60'000);
  EXPECT_TRUE(WaitFor([&] { return runs >= 3; }));
  EXPECT_EQ(loop_.EventsServed(), 0u);
  loop_.SetIdle(nullptr, 5, 5);
  runs = 0;
  int ticks = 0;
  auto timer = loop_.MakeTimer(30, [&] { ++ticks; });
  timer->SetEnabled(true);
  ASSERT_TRUE(WaitFor([&] { return ticks > 0; }));
  EXPECT_EQ(runs, 0);
}

TEST_F(RealEventLoopTest, TheIdleHookRunsAheadOfWhatTheLoopServesAndWakesItNotByItself) {
  std::string ran;
  loop_.SetIdle(
      [&] {
        ran += 'i';
        return false;
      },
      5, 60'000);
  QTimer::singleShot(100, &application_, [&] { loop_.Quit(); });
  loop_.Run();
  EXPECT_EQ(ran, "i");
  loop_.Post([&] { ran += 'a'; });
  loop_.Post([&] { ran += 'b'; });
  loop_.Yield();
  EXPECT_EQ(ran.substr(0, 3), "iia");
}

TEST_F(RealEventLoopTest, TheIdleHookComesBackByItselfWhereItAsksToAndAfterItsRestElsewhere) {
  const auto runsToThree = [this](bool again, int everyMs, int restMs) {
    int runs = 0;
    loop_.SetIdle(
        [&, again] {
          if (++runs == 3) loop_.Quit();
          return again;
        },
        everyMs, restMs);
    QTimer bound;
    bound.setSingleShot(true);
    QObject::connect(&bound, &QTimer::timeout, [this] { loop_.Quit(); });
    bound.start(10'000);
    loop_.Run();
    loop_.SetIdle(nullptr, 1, 1);
    return runs == 3;
  };
  EXPECT_TRUE(runsToThree(true, 5, 60'000));
  EXPECT_TRUE(runsToThree(false, 1, 5));
}

TEST_F(RealEventLoopTest, QuitFromAnotherThreadEndsTheRun) {
  std::thread quitter([&] { loop_.Quit(); });
  loop_.Run();
  quitter.join();
}

}  // namespace
}  // namespace zemo
