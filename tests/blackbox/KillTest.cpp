// A power loss on air: the process is killed at random instants, and each time the base is sound
// and the next start resumes by itself.
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <random>

#include "app/tests/BlackBox.h"

namespace zemo {
namespace {

using Clock = std::chrono::steady_clock;

// `zemoradio run` on the null output; killed by the destructor.
class OnAir {
 public:
  OnAir(const std::string& station, const std::string& machine) {
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("pipe");
    child_ = fork();
    if (child_ == 0) {
      dup2(ends[1], STDOUT_FILENO);
      close(ends[0]);
      execl(ZEMORADIO_PROGRAM, "zemoradio", "run", "--station", station.c_str(), "--machine",
            machine.c_str(), "--output", "null", nullptr);
      _exit(127);
    }
    close(ends[1]);
    out_ = ends[0];
  }
  ~OnAir() {
    Kill();
    close(out_);
  }
  OnAir(const OnAir&) = delete;

  // True when something was said within that time: the line of the element that starts.
  bool Starts(int withinMs) const {
    pollfd ready{out_, POLLIN, 0};
    return poll(&ready, 1, withinMs) == 1 && (ready.revents & POLLIN) != 0;
  }
  void Kill() {
    if (child_ <= 0) return;
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
    child_ = 0;
  }
  // Reads what it says for that long, so that the instant of the kill is spread over its work.
  void ListenFor(std::chrono::milliseconds time) const {
    const auto end = Clock::now() + time;
    char buffer[4096];
    while (Clock::now() < end) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
      pollfd ready{out_, POLLIN, 0};
      if (poll(&ready, 1, static_cast<int>(left.count()) + 1) == 1 &&
          read(out_, buffer, sizeof buffer) <= 0)
        return;
    }
  }

 private:
  pid_t child_ = 0;
  int out_ = -1;
};

class PowerLoss : public BlackBox {
 protected:
  // Many short titles that the rotation lets play again at once, so that a kill often meets a
  // transition with its writes.
  void MakeRestlessStation() {
    PutWav("station/t.wav", 2);
    std::string make =
        "+0 set DecalDiff 0\n"
        "+0 set EcartArtiste 0\n"
        "+0 sql INSERT INTO Models(JOUR, GENRE) "
        "VALUES(1,'GOLD'),(2,'GOLD'),(3,'GOLD'),(4,'GOLD'),(5,'GOLD'),"
        "(6,'GOLD'),(7,'GOLD')\n";
    for (int hour = 0; hour < 24; ++hour)
      make +=
          "+0 sql UPDATE Models SET TRANCHE" + std::to_string(100 + hour).substr(1) + " = 100\n";
    for (int i = 1; i <= 40; ++i)
      make +=
          "+0 sql INSERT INTO Discotheque(FILENAME, DUREE, AUTEUR, TITRE, GENRE, VARIETE, "
          "NBPASSJOUR, "
          "ECARTMINUTES, ECARTJOURS, ECARTARTISTE) VALUES('" +
          Path("station/t.wav") + "', 2000, 'ARTIST " + std::to_string(i) + "', 'T', 'GOLD', '" +
          (i % 2 ? "NATIONAL" : "INTERNATIONAL") + "', 9, 0, 0, 0)\n";
    for (int day = 1; day <= 7; ++day)
      make += "+0 sql UPDATE Discotheque SET TRANCHE0" + std::to_string(day) + " = '" +
              std::string(24, '1') + "'\n";
    Put("make", make);
    const Result made =
        Run("simulate --station station --in-place --no-start --for 0 --script make --trace trace");
    ASSERT_EQ(made.status, 0) << made.err;
    ASSERT_EQ(ReadText(Path("trace")).find("\"error\""), std::string::npos);
  }
};

TEST_F(PowerLoss, AtFiftyRandomInstantsLeavesASoundBaseAndTheNextStartResumes) {
  MakeRestlessStation();
  std::mt19937 random(20261121);
  int64_t reports = 0;
  for (int round = 0; round < 50; ++round) {
    {
      OnAir air(Path("station"), Path("machine"));
      ASSERT_TRUE(air.Starts(10000)) << "nothing on air in round " << round;
      air.ListenFor(std::chrono::milliseconds(std::uniform_int_distribution<>(0, 400)(random)));
    }
    const Result check =
        Shell("sqlite3 station/Triskin.MDB 'PRAGMA integrity_check; SELECT COUNT(*) FROM Rapport'");
    const auto lines = LinesOf(check.out);
    ASSERT_EQ(lines.size(), 2U) << check.out << check.err;
    EXPECT_EQ(lines[0], "ok") << "round " << round;
    const int64_t now = std::stoll(lines[1]);
    EXPECT_GE(now, reports) << "a report row was lost in round " << round;
    reports = now;
    EXPECT_EQ(ReadText(Path("station/ZemoOnOff.Dat")), "1");
    EXPECT_NE(ReadText(Path("machine/ZemoPlay.Ini")).find("#TRUE#"), std::string::npos);
  }
  EXPECT_GT(reports, 0);
}

}  // namespace
}  // namespace zemo
