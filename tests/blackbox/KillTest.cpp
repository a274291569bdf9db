// A power loss on air: the process is killed at random instants, and each time the base is sound,
// holds every row that the program had told, and the next start goes on air by itself.
#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <random>
#include <set>

#include "app/tests/BlackBox.h"
#include "support/NoiseSound.h"
#include "support/UnattendedAir.h"

namespace zemo {
namespace {

using std::chrono::milliseconds;
using test::UnattendedAir;

constexpr milliseconds kOnAirWithin{8000};  // it takes under one second; the machine may be busy

class PowerLoss : public BlackBox {
 protected:
  // Many short titles that the rotation lets play again at once, so that a kill often meets a
  // transition with its writes. Each is heard from its first sample on.
  void MakeRestlessStation() const {
    std::string orders =
        "+0 set DecalDiff 0\n"
        "+0 set Jingles 0\n";
    test::MakeNoiseSound(Path("station/t.wav"), 2000);
    for (int i = 1; i <= 40; ++i)
      orders +=
          "+0 sql INSERT INTO Discotheque(FILENAME, DUREE, AUTEUR, TITRE, GENRE, VARIETE, "
          "NBPASSJOUR, ECARTMINUTES, ECARTJOURS, ECARTARTISTE) VALUES('" +
          Path("station/t.wav") + "', 2000, 'ARTIST " + std::to_string(i) + "', 'T', 'GOLD', '" +
          (i % 2 ? "NATIONAL" : "INTERNATIONAL") + "', 900, 0, 0, 0)\n";
    Put("make", orders + EveryHour());
    const Result made =
        Run("simulate --station station --in-place --no-start --for 0 --script make --trace trace");
    ASSERT_EQ(made.status, 0) << made.err;
    ASSERT_EQ(ReadText(Path("trace")).find("\"error\""), std::string::npos);
  }

  test::AirPlaces Places() const {
    return {Program(), Path("station"), Path("machine"), Path("air.wav"), Path("err")};
  }

  // What the program has told outside programs of its report: its rows without their ends of line.
  std::set<std::string> RowsTold() const {
    std::set<std::string> told;
    for (std::string line : LinesOf(ReadText(Path("station/rapportzemo.txt")))) {
      while (!line.empty() && (line.back() == '\r' || line.back() == '\t')) line.pop_back();
      told.insert(line.substr(0, line.find("\tGOLD")));
    }
    return told;
  }

  // The rows in the base in the same form, and how often each is there.
  std::map<std::string, int> RowsInBase() const {
    std::map<std::string, int> rows;
    const Result read = Shell(
        "sqlite3 -separator '\t' station/Triskin.MDB "
        "'SELECT LADATE, HEURE, AUTEUR, TITRE FROM Rapport'");
    for (const std::string& line : LinesOf(read.out)) ++rows[line];
    return rows;
  }
};

TEST_F(PowerLoss, AtFiftyRandomInstantsLeavesASoundBaseAndTheNextStartResumesByItsFlag) {
  MakeRestlessStation();
  test::PutRunningFlag(Path("machine"), true);
  std::mt19937 random(20261121);
  std::set<std::string> told;
  for (int round = 0; round < 50; ++round) {
    UnattendedAir air(Places());
    ASSERT_TRUE(air.HeardWithin(kOnAirWithin)) << "nothing on air in round " << round << "\n"
                                               << ReadText(Path("err"));
    ASSERT_FALSE(air.EndsWithin(milliseconds(std::uniform_int_distribution<>(0, 400)(random))))
        << ReadText(Path("err"));
    air.Kill();

    EXPECT_EQ(Shell("sqlite3 station/Triskin.MDB 'PRAGMA integrity_check'").out, "ok\n")
        << "round " << round;
    told.merge(RowsTold());
    const std::map<std::string, int> rows = RowsInBase();
    for (const std::string& row : told) EXPECT_TRUE(rows.contains(row)) << row << " is lost";
    for (const auto& [row, times] : rows) EXPECT_EQ(times, 1) << row;
    EXPECT_EQ(ReadText(Path("station/ZemoOnOff.Dat")), "1");
    EXPECT_NE(ReadText(Path("machine/ZemoPlay.Ini")).find("#TRUE#"), std::string::npos);
  }
  EXPECT_GE(told.size(), 10U);
}

TEST_F(PowerLoss, OfAMachineThatWasIdleLeavesItIdle) {
  MakeRestlessStation();
  std::filesystem::copy(Path("station"), Path("idle"));
  std::filesystem::create_directory(Path("idle-machine"));
  test::PutRunningFlag(Path("machine"), true);
  test::PutRunningFlag(Path("idle-machine"), false);
  UnattendedAir idle(
      {Program(), Path("idle"), Path("idle-machine"), Path("idle.wav"), Path("idle-err")});
  UnattendedAir onAir(Places());
  ASSERT_TRUE(onAir.HeardWithin(kOnAirWithin)) << ReadText(Path("err"));
  // The other one began earlier, and goes through the same start.
  EXPECT_FALSE(idle.EndsWithin(milliseconds(0))) << ReadText(Path("idle-err"));
  EXPECT_FALSE(idle.Heard());
  EXPECT_NE(ReadText(Path("idle/ZemoOnOff.Dat")), "1");
}

}  // namespace
}  // namespace zemo
