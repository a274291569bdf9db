// Real-time priority as this machine's system grants and refuses it.
#include <gtest/gtest.h>
#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/real/sound/AirSink.h"
#include "platform/real/sound/RealSoundChain.h"
#include "platform/real/sound/RealTimePriority.h"
#include "platform/sound/tests/TestSources.h"

namespace zemo {
namespace {

constexpr int kTried = 3;  // a priority that nothing else of this process has

// How many threads of this process run in turns at that priority.
int ThreadsAt(int priority) {
  int count = 0;
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    const int thread = std::stoi(task.path().filename().string());
    sched_param its{};
    if (sched_getscheduler(thread) == SCHED_RR && sched_getparam(thread, &its) == 0 &&
        its.sched_priority == priority)
      ++count;
  }
  return count;
}

// What a process answers by its status that has no right of root's and may have `limit` at most;
// -1 where the process could not become such a one.
template <typename Work>
int AsAnyUser(rlim_t limit, Work work) {
  constexpr int kNoSuchUser = 255;
  const pid_t child = fork();
  if (child == 0) {
    const rlimit allowed{.rlim_cur = limit, .rlim_max = limit};
    if (setrlimit(RLIMIT_RTPRIO, &allowed) != 0 || (geteuid() == 0 && setuid(65534) != 0))
      _exit(kNoSuchUser);
    _exit(work());
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) != kNoSuchUser ? WEXITSTATUS(status) : -1;
}

TEST(RealTimePriority, OfAUserWithoutALimitForItIsNone) {
  EXPECT_EQ(AsAnyUser(0, [] { return AllowedRealTimePriority(kMixerPriority); }), 0);
}

TEST(RealTimePriority, IsRefusedToAUserWithoutALimitForIt) {
  EXPECT_EQ(AsAnyUser(0,
                      [] {
                        const bool given = GiveRealTimePriority(pthread_self(), kTried);
                        return (given ? 1 : 0) + ThreadsAt(kTried);
                      }),
            0);
}

// 4 where 10 are asked for, and 10 of 20.
TEST(RealTimePriority, IsWhatTheLimitAllowsAndNotMoreThanIsAskedFor) {
  const int few = AsAnyUser(4, [] { return AllowedRealTimePriority(10); });
  if (few < 0) GTEST_SKIP() << "this user may not raise the limit of real-time priorities";
  EXPECT_EQ(few, 4);
  EXPECT_EQ(AsAnyUser(20, [] { return AllowedRealTimePriority(10); }), 10);
}

class ChainPriority : public ::testing::Test {
 protected:
  testing::WaveOpener opener_;
  std::vector<std::string> told_;
  std::unique_ptr<RealSoundChain> chain_ =
      std::make_unique<RealSoundChain>(opener_, WishedDevice{}, nullptr, "test",
                                       [this](const std::string& line) { told_.push_back(line); });
};

TEST_F(ChainPriority, IsThatOfTheMixerAlone) {
  // Of root, or of a user with a limit for it.
  if (!chain_->TakePriority(kTried)) GTEST_SKIP() << "this user may not have real-time priority";
  EXPECT_EQ(ThreadsAt(kTried), 1);
  EXPECT_EQ(told_, std::vector<std::string>{});
  chain_.reset();
  EXPECT_EQ(ThreadsAt(kTried), 0);
}

// 100 is above all that there are.
TEST_F(ChainPriority, ThatTheSystemRefusesIsTold) {
  EXPECT_FALSE(chain_->TakePriority(100));
  EXPECT_EQ(told_, std::vector<std::string>{
                       "the system refuses real-time priority 100, which the limit of this user "
                       "allows: a busy machine may be heard"});
}

}  // namespace
}  // namespace zemo
