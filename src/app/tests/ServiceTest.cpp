// The program as a service: what a manager of the test's own hears of it, and what its journal
// gets.
#include <sys/ptrace.h>
#include <sys/wait.h>

#include <memory>
#include <string>
#include <vector>

#include "BlackBox.h"
#include "support/Child.h"
#include "support/ManagerSocket.h"

namespace zemo {
namespace {

using namespace std::chrono_literals;
using test::Child;
using test::kBound;
using test::ManagerSocket;

constexpr char kWatchdogUsec[] = "2000000";
constexpr auto kWatchdog = 2s;

class Service : public BlackBox {
 protected:
  void SetUp() override {
    BlackBox::SetUp();
    MakeStation({60}, true);
    manager_ = std::make_unique<ManagerSocket>(Path("notify"));
    setenv("NOTIFY_SOCKET", Path("notify").c_str(), 1);
    setenv("WATCHDOG_USEC", kWatchdogUsec, 1);
  }
  void TearDown() override {
    unsetenv("NOTIFY_SOCKET");
    unsetenv("WATCHDOG_USEC");
    BlackBox::TearDown();
  }
  std::unique_ptr<Child> Begin() const {
    return std::make_unique<Child>(
        std::vector<std::string>{Program(), "run", "--station", Path("station"), "--machine",
                                 Path("machine"), "--output", "file:" + Path("air.wav")});
  }
  bool Hears(const std::string& datagram) const { return manager_->Comes(datagram, kBound); }
  uintmax_t AirBytes() const { return std::filesystem::file_size(Path("air.wav")); }

  std::unique_ptr<ManagerSocket> manager_;
};

TEST_F(Service, TellsOfItsBeginItsTickAndItsEnd) {
  const auto program = Begin();
  ASSERT_TRUE(Hears("READY=1\n"));
  EXPECT_EQ(ReadText(Path("station/ZemoOnOff.Dat")).substr(0, 1), "1");  // on air by then
  ASSERT_TRUE(Hears("WATCHDOG=1\n"));
  kill(program->Pid(), SIGTERM);
  EXPECT_TRUE(Hears("STOPPING=1\n"));
}

// The thread of the logic alone stands still, as in a call that does not come back; the sound goes
// on. A manager that hears nothing ends the program, and begins it anew.
TEST_F(Service, WhoseLogicHangsIsHeardNoMoreUntilTheManagerBeginsItAnew) {
  auto program = Begin();
  ASSERT_TRUE(Hears("READY=1\n"));
  ASSERT_TRUE(test::WaitFor([&] { return AirBytes() > 44100; }, [&] { manager_->Next(10ms); }));
  if (ptrace(PTRACE_SEIZE, program->Pid(), nullptr, nullptr) != 0)
    GTEST_SKIP() << "this system lets no process hold a thread of another one";
  ASSERT_EQ(ptrace(PTRACE_INTERRUPT, program->Pid(), nullptr, nullptr), 0);
  int status = 0;
  ASSERT_EQ(waitpid(program->Pid(), &status, __WALL), program->Pid());
  while (!manager_->Next(0ms).empty()) {
  }
  const uintmax_t before = AirBytes();
  EXPECT_EQ(manager_->Next(kWatchdog), "");
  EXPECT_TRUE(test::WaitFor([&] { return AirBytes() > before; }, [&] { manager_->Next(10ms); }));
  kill(program->Pid(), SIGABRT);
  ptrace(PTRACE_DETACH, program->Pid(), nullptr, nullptr);
  EXPECT_EQ(program->Status(), 128 + SIGABRT);

  program = Begin();
  EXPECT_TRUE(Hears("READY=1\n"));
  EXPECT_TRUE(Hears("WATCHDOG=1\n"));
}

// A title whose file is gone is an error of the log and one line there, with the gravity in front.
TEST_F(Service, PutsTheLinesOfItsLogIntoTheJournalWithTheirGravity) {
  std::filesystem::remove(Path("station/title1.wav"));
  const std::string run =
      "$zemoradio run --station station --machine machine --output null --for 3";
  const std::string journal = "JOURNAL_STREAM=$(stat -L -c %d:%i /proc/self/fd/2) ";
  const Result plain = Shell(run);
  ASSERT_NE(plain.err, "");
  const Result service = Shell(journal + run);
  ASSERT_NE(service.err, "");
  for (const std::string& line : LinesOf(plain.err))
    EXPECT_EQ(line.rfind("zemoradio: ", 0), 0U) << line;
  for (const std::string& line : LinesOf(service.err))
    EXPECT_EQ(line.rfind("<4>zemoradio: ", 0), 0U) << line;
  const Result refused = Shell(journal + "$zemoradio run --station nowhere");
  EXPECT_EQ(refused.err.rfind("<3>zemoradio: ", 0), 0U) << refused.err;
}

}  // namespace
}  // namespace zemo
