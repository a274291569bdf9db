// The emergency folder in real time, while another process holds the whole base: measured on what
// left the output. Silence is seen for two seconds before the folder takes the air.
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <memory>

#include "app/tests/BlackBox.h"
#include "sound/Hearing.h"

namespace zemo {
namespace {

using namespace hearing;

// Another process that holds the base against readers and writers; it ends with the object, and by
// itself after a minute.
class BaseHolder {
 public:
  explicit BaseHolder(const std::string& base) {
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("pipe");
    child_ = fork();
    if (child_ == 0) {
      alarm(60);
      sqlite3* held = nullptr;
      sqlite3_open(base.c_str(), &held);
      sqlite3_busy_timeout(held, 10000);
      const bool locked =
          sqlite3_exec(held, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr) == SQLITE_OK;
      [[maybe_unused]] const ssize_t told = write(ends[1], locked ? "1" : "0", 1);
      pause();
      _exit(0);
    }
    close(ends[1]);
    char answer = '0';
    holds_ = read(ends[0], &answer, 1) == 1 && answer == '1';
    close(ends[0]);
  }
  ~BaseHolder() {
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }
  BaseHolder(const BaseHolder&) = delete;
  bool Holds() const { return holds_; }

 private:
  pid_t child_ = 0;
  bool holds_ = false;
};

class EmergencyInRealTime : public BlackBox {
 protected:
  // One title of 6 s that may play once a day, and two tones of 8 s in the folder.
  void MakeStationOfOneTitle() {
    MakeStation({6}, true);
    WriteTone(Path("station/title1.wav"), 500, 0.25, 6);
    Put("once", "+0 sql UPDATE Discotheque SET NBPASSJOUR = 1\n");
    ASSERT_EQ(Run("simulate --station station --in-place --no-start --for 0 --script once --trace "
                  "/dev/null")
                  .status,
              0);
    std::filesystem::create_directories(Path("machine/Secours"));
    WriteTone(Path("machine/Secours/a.wav"), 1000, 0.25, 8);
    WriteTone(Path("machine/Secours/b.wav"), 2000, 0.25, 8);
  }
  static constexpr const char* kRun =
      "run --station station --machine machine --output file:heard.wav --for ";
  // The program in a process of its own, for so many seconds.
  pid_t RunAside(int seconds) const {
    const pid_t run = fork();
    if (run == 0) _exit(Run(kRun + std::to_string(seconds)).status);
    return run;
  }
  static int StatusOf(pid_t run) {
    int status = 0;
    waitpid(run, &status, 0);
    return WEXITSTATUS(status);
  }
  std::string Base() const { return Path("station/Triskin.MDB"); }
  std::string Reported() const {
    sqlite3* base = nullptr;
    std::string count;
    sqlite3_open(Base().c_str(), &base);
    sqlite3_exec(
        base, "SELECT COUNT(*) FROM Rapport WHERE AUTEUR = 'Secours'",
        [](void* to, int, char** values, char**) {
          *static_cast<std::string*>(to) = values[0];
          return 0;
        },
        &count, nullptr);
    sqlite3_close(base);
    return count;
  }
};

TEST_F(EmergencyInRealTime, BaseHeldByAnotherProcessLeavesNoSilenceAboveFiveSeconds) {
  MakeStationOfOneTitle();
  const pid_t run = RunAside(22);
  sleep(3);  // the title plays
  auto holder = std::make_unique<BaseHolder>(Base());
  EXPECT_TRUE(holder->Holds());
  sleep(17);
  holder.reset();
  EXPECT_EQ(StatusOf(run), 0) << ReadText(root_ / "err");
  const Recording heard = ReadWav(Path("heard.wav"));
  EXPECT_LE(LongestSilenceMs(heard, 0.5, 20), 5000) << ReadText(root_ / "out");
  EXPECT_GE(LongestSilenceMs(heard, 0.5, 20), 1500);
  size_t played = 0;
  for (const std::string& line : LinesOf(ReadText(root_ / "out")))
    played += line.find("Secours") != std::string::npos;
  EXPECT_GE(played, 2U) << ReadText(root_ / "out");
  EXPECT_EQ(Reported(), std::to_string(played)) << ReadText(root_ / "err");
}

TEST_F(EmergencyInRealTime, BaseHeldFromBeforeTheStartDoesNotKeepTheMachineOffTheAir) {
  MakeStationOfOneTitle();
  auto holder = std::make_unique<BaseHolder>(Base());
  ASSERT_TRUE(holder->Holds());
  const pid_t run = RunAside(30);
  sleep(12);
  holder.reset();
  EXPECT_EQ(StatusOf(run), 0) << ReadText(root_ / "err");
  const std::string said = ReadText(root_ / "out");
  EXPECT_NE(said.find("Secours  "), std::string::npos) << said << ReadText(root_ / "err");
  EXPECT_NE(said.find("Artist 1  Title 1"), std::string::npos) << said;  // the base is there again
  const Recording heard = ReadWav(Path("heard.wav"));
  EXPECT_LE(LongestSilenceMs(heard, 0, 15), 5000);
}

TEST_F(EmergencyInRealTime, WithoutTheFolderAHeldBaseRefusesTheStartAsBefore) {
  MakeStation({6}, true);
  const BaseHolder holder(Base());
  ASSERT_TRUE(holder.Holds());
  const Result result = Run(std::string(kRun) + "5");
  EXPECT_EQ(result.status, 1);
  ExpectOneError(result.err);
}

}  // namespace
}  // namespace zemo
