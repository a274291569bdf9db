// What the service manager is told, on a socket of the test's own.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/real/service/NotifySocket.h"
#include "support/ManagerSocket.h"

namespace zemo {
namespace {

using namespace std::chrono_literals;
using test::ManagerSocket;

constexpr auto kNothing = 0ms;  // what was sent is there

class ServiceNotices : public testing::Test {
 protected:
  void SetUp() override { Forget(); }
  void TearDown() override { Forget(); }
  static void Forget() {
    for (const char* name : {"NOTIFY_SOCKET", "WATCHDOG_USEC", "WATCHDOG_PID"}) unsetenv(name);
  }
  static void Let(const char* name, const std::string& value) { setenv(name, value.c_str(), 1); }
  static std::string NameOfOurs() { return "@zemo-manager-" + std::to_string(getpid()); }
  // The environment that a manager of this watchdog gives.
  static void LetWatch(const std::string& microseconds) {
    Let("NOTIFY_SOCKET", NameOfOurs());
    Let("WATCHDOG_USEC", microseconds);
    Let("WATCHDOG_PID", std::to_string(getpid()));
  }
};

TEST_F(ServiceNotices, TellTheBeginAndTheEnd) {
  const ManagerSocket manager(NameOfOurs());
  LetWatch("20000000");
  NotifySocket notices;
  notices.Ready();
  EXPECT_EQ(manager.Next(kNothing), "READY=1\n");
  notices.Stopping();
  EXPECT_EQ(manager.Next(kNothing), "STOPPING=1\n");
  EXPECT_EQ(manager.Next(kNothing), "");
}

TEST_F(ServiceNotices, GoToASocketThatAFileNames) {
  std::string folder = (std::filesystem::temp_directory_path() / "zemo-notify-XXXXXX").string();
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  const std::string path = folder + "/notify";
  {
    const ManagerSocket manager(path);
    Let("NOTIFY_SOCKET", path);
    NotifySocket().Ready();
    EXPECT_EQ(manager.Next(kNothing), "READY=1\n");
  }
  unlink(path.c_str());
  rmdir(folder.c_str());
}

// A quarter of 40 s has not gone by between two turns, one of 4 microseconds has.
TEST_F(ServiceNotices, TellOfTheTickFourTimesWithinWhatTheManagerAllows) {
  const ManagerSocket manager(NameOfOurs());
  LetWatch("40000000");
  NotifySocket seldom;
  for (int turn = 0; turn < 10; ++turn) seldom.Alive();
  EXPECT_EQ(manager.Next(kNothing), "WATCHDOG=1\n");
  EXPECT_EQ(manager.Next(kNothing), "");

  LetWatch("16");
  NotifySocket often;
  for (int turn = 0; turn < 3; ++turn) {
    often.Alive();
    EXPECT_EQ(manager.Next(kNothing), "WATCHDOG=1\n");
    const auto until = std::chrono::steady_clock::now() + 4us;
    while (std::chrono::steady_clock::now() < until) {
    }
  }
}

TEST_F(ServiceNotices, TellNothingOfTheTickWhereNobodyOrAnotherProcessIsWatched) {
  const ManagerSocket manager(NameOfOurs());
  Let("NOTIFY_SOCKET", NameOfOurs());
  NotifySocket().Alive();
  Let("WATCHDOG_USEC", "16");
  Let("WATCHDOG_PID", std::to_string(getppid()));
  NotifySocket().Alive();
  Let("WATCHDOG_PID", "nobody");
  NotifySocket().Alive();
  EXPECT_EQ(manager.Next(kNothing), "");
}

TEST_F(ServiceNotices, AreNothingWithoutAManagerOrWithANameThatIsNone) {
  for (const std::string& name :
       {std::string(), std::string("@"), std::string("/"), std::string("not-absolute"),
        std::string("/") + std::string(200, 'n'), std::string("/nowhere/at/all")}) {
    Let("NOTIFY_SOCKET", name);
    Let("WATCHDOG_USEC", "16");
    NotifySocket notices;
    notices.Ready();
    notices.Alive();
    notices.Stopping();
  }
}

// A manager that does not read: its queue takes some hundred datagrams at most.
TEST_F(ServiceNotices, NeverWaitAndTellWhatFoundNoRoomAtALaterTurn) {
  const ManagerSocket manager(NameOfOurs());
  LetWatch("4");
  constexpr int kTurns = 1'000'000;
  NotifySocket notices;
  for (int turn = 0; turn < kTurns; ++turn) notices.Alive();
  notices.Ready();
  int turns = 0;
  while (manager.Next(kNothing) == "WATCHDOG=1\n") ++turns;
  EXPECT_GT(turns, 0);
  EXPECT_LT(turns, kTurns);
  notices.Alive();
  EXPECT_EQ(manager.Next(kNothing), "READY=1\n");
}

}  // namespace
}  // namespace zemo
