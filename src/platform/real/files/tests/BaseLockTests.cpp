// The lock of a station's base between real processes.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "platform/real/files/BaseLock.h"
#include "platform/real/files/tests/TemporaryFolder.h"

namespace zemo {
namespace {

// A process that has done `prepare` once the constructor is back, and lives until it is ended.
class OtherProcess {
 public:
  explicit OtherProcess(const std::function<void()>& prepare) {
    int ready[2];
    if (pipe2(ready, O_CLOEXEC) != 0) throw std::runtime_error("pipe");
    child_ = fork();
    if (child_ == 0) {
      prepare();
      if (write(ready[1], "x", 1) != 1) _exit(1);
      for (;;) pause();
    }
    close(ready[1]);
    char byte;
    EXPECT_EQ(read(ready[0], &byte, 1), 1);
    close(ready[0]);
  }
  ~OtherProcess() { Kill(); }
  OtherProcess(const OtherProcess&) = delete;
  void Kill() {
    if (child_ <= 0) return;
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
    child_ = 0;
  }
  std::string Number() const { return std::to_string(child_); }

 private:
  pid_t child_ = 0;
};

class BaseLocks : public testing::Test {
 protected:
  BaseLocks() : base(folder.Put("Triskin.MDB", "a base")) {}
  // Kept until the process ends.
  void Share() { (new BaseLock(folder.Path()))->Share(); }

  TemporaryFolder folder;
  std::string base;
};

TEST_F(BaseLocks, AProgramByItselfHasTheBaseAlone) {
  BaseLock lock(folder.Path());
  EXPECT_EQ(lock.TakeAlone(base), "");
  EXPECT_EQ(folder.Get("Triskin.LDB"), "");
}

TEST_F(BaseLocks, WhoSharesTheBaseKeepsEveryoneFromHavingItAloneUntilHeEnds) {
  BaseLock lock(folder.Path());
  OtherProcess other([this] { Share(); });
  EXPECT_EQ(lock.TakeAlone(base), base + " is open in another program of the station");
  EXPECT_EQ(lock.TakeAlone(base), base + " is open in another program of the station");
  other.Kill();
  EXPECT_EQ(lock.TakeAlone(base), "");
}

TEST_F(BaseLocks, ARefusalLeavesTheOwnShareInPlace) {
  BaseLock lock(folder.Path());
  {
    OtherProcess other([this] { Share(); });
    EXPECT_NE(lock.TakeAlone(base), "");
  }
  const pid_t child = fork();
  if (child == 0) _exit(BaseLock(folder.Path()).TakeAlone(base).empty() ? 0 : 7);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 7);
}

TEST_F(BaseLocks, AToolThatOnlyHasTheFileOpenIsNamed) {
  BaseLock lock(folder.Path());
  OtherProcess other([this] { ASSERT_GE(open(base.c_str(), O_RDONLY), 0); });
  const std::string why = lock.TakeAlone(base);
  EXPECT_EQ(why.find(base + " is open in another program ("), 0U) << why;
  EXPECT_NE(why.find(", process " + other.Number() + ")"), std::string::npos) << why;
  EXPECT_EQ(lock.OtherUser(base), why);
  other.Kill();
  EXPECT_EQ(lock.TakeAlone(base), "");
}

TEST_F(BaseLocks, WhoComesWhileAnotherHasItAloneWaitsUntilHeIsDone) {
  OtherProcess other([this] {
    auto* lock = new BaseLock(folder.Path());
    if (!lock->TakeAlone(base).empty()) _exit(1);
    usleep(1000);
  });
  const auto begin = std::chrono::steady_clock::now();
  std::optional<BaseLock> late;
  late.emplace(folder.Path(), BaseLock::Kind::kProgram, 300);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(300));
  EXPECT_NE(late->TakeAlone(base), "");
  other.Kill();
  late.emplace(folder.Path(), BaseLock::Kind::kProgram, 10000);
  EXPECT_EQ(late->TakeAlone(base), "");
}

TEST_F(BaseLocks, SharedAgainAfterwardsOthersMayHaveIt) {
  BaseLock lock(folder.Path());
  ASSERT_EQ(lock.TakeAlone(base), "");
  lock.Share();
  BaseLock second(folder.Path(), BaseLock::Kind::kProgram, 0);  // of another open file
  EXPECT_NE(second.TakeAlone(base), "");                        // the first one's share
  EXPECT_NE(lock.TakeAlone(base), "");
}

TEST_F(BaseLocks, AGuestLeavesNoFileAndRespectsTheOneThatIsThere) {
  {
    BaseLock guest(folder.Path(), BaseLock::Kind::kGuest);
    EXPECT_EQ(guest.TakeAlone(base), "");
  }
  EXPECT_EQ(folder.Get("Triskin.LDB"), "(no file)");
  OtherProcess other([this] { Share(); });
  BaseLock guest(folder.Path(), BaseLock::Kind::kGuest);
  EXPECT_NE(guest.TakeAlone(base), "");
}

}  // namespace
}  // namespace zemo
