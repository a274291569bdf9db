// The power fails while the base is exchanged or made anew: a process of its own does the work and
// ends in the middle, and the next start comes up with a whole base each time.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <memory>

#include "engine/BaseMaintenance.h"
#include "engine/StartStop.h"
#include "engine/Startup.h"
#include "station/BaseCompaction.h"
#include "store/DatabaseFiles.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

constexpr int kPowerLost = 42;
constexpr int kTitles = 40;

[[noreturn]] void LosePower() {
  _exit(kPowerLost);
}

// Steps of SQLite's machine after which the power fails, counted over all connections of a process.
struct Steps {
  static constexpr int kEach = 50;  // SQLite asks only so often
  int left = 0;
};

int CountSteps(void* steps) {
  if (--static_cast<Steps*>(steps)->left <= 0) LosePower();
  return 0;
}

Steps& StepsOfThisProcess() {
  static Steps steps;
  return steps;
}

int WatchConnection(sqlite3* database, char**, const sqlite3_api_routines*) {
  sqlite3_progress_handler(database, Steps::kEach, CountSteps, &StepsOfThisProcess());
  return SQLITE_OK;
}

class PowerLossInUpkeep : public testing::Test {
 protected:
  PowerLossInUpkeep() {
    on.Load();
    for (int i = 0; i < kTitles; ++i) on.AddCard({.file = "x", .comment = std::string(300, 'c')});
    on.Sql("DELETE FROM Discotheque WHERE CODE % 4 = 0");
    on.localValues.Set("LastCompactage", "03/11/2026 08:00:00");
    EndInOrder(on.station);
    on.stationFolder.Remove("Triskin.BAK");
  }

  // True when the power failed before the work was done. In the child the station is loaded first.
  bool Lost(const std::function<void(Station&)>& work, const std::function<void()>& arm) {
    const pid_t child = fork();
    if (child == 0) {
      Station air(on.station.platform);
      if (!OnAir::Form_Load(air)) _exit(1);
      arm();
      work(air);
      _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status)) << status;
    EXPECT_TRUE(WEXITSTATUS(status) == 0 || WEXITSTATUS(status) == kPowerLost) << status;
    return WEXITSTATUS(status) == kPowerLost;
  }
  bool LostAtFileStep(int n, const std::function<void(Station&)>& work) {
    return Lost(work, [this, n] { on.stationFolder.fault = {n, 0, LosePower}; });
  }
  bool LostAtBaseStep(int n, const std::function<void(Station&)>& work) {
    return Lost(work, [n] {
      StepsOfThisProcess().left = n;
      sqlite3_auto_extension(reinterpret_cast<void (*)()>(WatchConnection));
    });
  }

  // A start on what was left, and what its base holds.
  void StartAndCheck(const std::string& when, const std::string& titles) {
    Station next(on.station.platform);
    ASSERT_TRUE(OnAir::Form_Load(next)) << when;
    ASSERT_TRUE(next.base.IsOpen()) << when;
    EXPECT_EQ(on.SqlText("PRAGMA integrity_check"), "ok") << when;
    EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Discotheque WHERE AUTEUR = 'ARTIST'"), titles)
        << when;
    EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Toph"), "24") << when;
    EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM sqlite_master WHERE name LIKE '%TBTEMP%'"), "0")
        << when;
    EndInOrder(next);
  }

  static void Compact(Station& air) { CompactStationBase(air); }

  TestStation on;
};

TEST_F(PowerLossInUpkeep, BetweenAnyTwoFilesOfACompaction) {
  ON_FILES_ALONE("the steps between two files");
  int n = 1;
  for (; LostAtFileStep(n, Compact); ++n) StartAndCheck("file step " + std::to_string(n), "30");
  EXPECT_GT(n, 6);
}

TEST_F(PowerLossInUpkeep, WithinTheRepairAndTheCopyOfACompaction) {
  ON_FILES_ALONE("the steps between two files");
  int kills = 0;
  for (int n = 1; LostAtBaseStep(n, Compact); n += 6, ++kills)
    StartAndCheck("base step " + std::to_string(n), "30");
  EXPECT_GT(kills, 5);
}

TEST_F(PowerLossInUpkeep, BetweenAnyTwoFilesOfAHandOver) {
  ON_FILES_ALONE("the steps between two files");
  const std::string bytes = *on.stationFolder.Read("Triskin.MDB");
  int n = 1;
  bool lost = true;
  for (; lost; ++n) {
    on.MakeFile("New.mdb", bytes);
    DBEngine::ExecuteNative(on.stationDir.Path() + "/New.mdb",
                            "UPDATE Cnf SET FadeOut = " + std::to_string(2000 + n));
    lost = LostAtFileStep(n, TakeDroppedBase);
    StartAndCheck("file step " + std::to_string(n), "30");
    // Where it had not begun, the next element does it.
    Station next(on.station.platform);
    ASSERT_TRUE(OnAir::Form_Load(next));
    TakeDroppedBase(next);
    EXPECT_EQ(next.base.CnfInt(Cnf::kFadeOut), 2000 + n);
    EXPECT_FALSE(on.stationFolder.Exists("New.mdb"));
    EndInOrder(next);
  }
  EXPECT_GT(n, 6);
}

TEST_F(PowerLossInUpkeep, WithinTheUpgradeOfATable) {
  ON_FILES_ALONE("the steps between two files");
  const std::string whole = *on.stationFolder.Read("Triskin.MDB");
  int kills = 0;
  for (int n = 1;; n += 2) {
    on.MakeFile("Triskin.MDB", whole);
    on.stationFolder.Remove("Triskin.MDB-journal");
    const bool lost = LostAtBaseStep(n, [](Station& air) {
      DBEngine::ExecuteNative(air.base.Path(), "ALTER TABLE Discotheque DROP COLUMN MMJJFin");
      CheckStructures(air);
    });
    StartAndCheck("base step " + std::to_string(n), "30");
    EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM pragma_table_info('Discotheque')"), "37") << n;
    if (!lost) break;
    ++kills;
  }
  EXPECT_GT(kills, 20);
}

}  // namespace
}  // namespace zemo::test
