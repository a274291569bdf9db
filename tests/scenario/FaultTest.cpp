// Faults by the sweep: the n-th operation on files or sounds fails, for every n, and the air goes
// on. And a disk that is full for a while.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>

#include "engine/OperatorControls.h"
#include "engine/StartStop.h"
#include "engine/Startup.h"
#include "library/HotKeys.h"
#include "support/BaseLock.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

constexpr int64_t kRunMs = 30000;

// Three titles of 8 s on a station that loads, starts and has an introduction, a comment and a pip.
void PutOnAir(TestStation& on) {
  for (int i = 0; i < 3; ++i)
    on.AppendCard(on.AddCard({.lengthMs = 8000, .comment = "COMMENT", .introSec = 3}));
  on.Start();
  on.RunUntil(kRunMs);
}

int Plays(const TestStation& on) {
  return static_cast<int>(on.Starts().size());
}

// Every title still plays, the timer still ticks, and the fault is at most one line.
void ExpectAirGoesOn(const TestStation& on, int fewestPlays, int n) {
  EXPECT_GE(Plays(on), fewestPlays) << "fault " << n << "\n" << on.Describe();
  EXPECT_TRUE(on.station.engine.MainTimer->Enabled()) << "fault " << n;
  EXPECT_EQ(on.station.engine.mainTimerHolds, 0) << "fault " << n;
  EXPECT_LE(on.Events("error").size(), 1U) << "fault " << n << "\n" << on.Describe();
}

int CountOperations(int (*operations)(const TestStation&)) {
  TestStation on("2026-11-21 12:05:00");
  on.Load();
  PutOnAir(on);
  EXPECT_EQ(Plays(on), 3);
  return operations(on);
}

TEST(FaultSweep, AnyOperationOnTheStationsFilesMayFail) {
  const int operations =
      CountOperations([](const TestStation& on) { return on.stationFolder.fault.count; });
  ASSERT_GT(operations, 10);
  for (int n = 1; n <= operations; ++n) {
    TestStation on("2026-11-21 12:05:00");
    on.stationFolder.fault.number = n;
    on.Load();
    PutOnAir(on);
    ExpectAirGoesOn(on, 3, n);
  }
}

TEST(FaultSweep, AnyOperationOnTheMachinesFilesMayFail) {
  const int operations =
      CountOperations([](const TestStation& on) { return on.machineFolder.fault.count; });
  ASSERT_GT(operations, 3);
  for (int n = 1; n <= operations; ++n) {
    TestStation on("2026-11-21 12:05:00");
    on.machineFolder.fault.number = n;
    on.Load();
    PutOnAir(on);
    ExpectAirGoesOn(on, 3, n);
  }
}

TEST(FaultSweep, AnySoundMayFailToOpen) {
  const int operations =
      CountOperations([](const TestStation& on) { return on.opener.fault.count; });
  ASSERT_EQ(operations, 3);
  for (int n = 1; n <= operations; ++n) {
    TestStation on("2026-11-21 12:05:00");
    on.opener.fault.number = n;
    on.Load();
    PutOnAir(on);
    ExpectAirGoesOn(on, 2, n);
    EXPECT_EQ(on.Events("skip").size(), 1U) << n;
  }
}

TEST(FullDisk, ReportRowsAreWrittenWhenThereIsRoomAgain) {
  ON_FILES_ALONE("the disk is full by SQLite's own word");
  TestStation on("2026-11-21 12:05:00");
  on.Load();
  on.AppendCard(on.AddCard({.lengthMs = 8000}));
  on.AppendCard(on.AddCard({.lengthMs = 8000, .artist = std::string(40, 'A')}));
  on.AppendCard(on.AddCard({.lengthMs = 8000}));
  on.Start();
  // The report's page is filled, and the file may not grow.
  on.At(3000, [&] {
    while (on.SqlText("SELECT COUNT(*) FROM Rapport") < "9")
      on.Sql("INSERT INTO Rapport (AUTEUR, LABEL, DATENUM) VALUES ('" + std::string(40, 'B') +
             "', '" + std::string(40, 'B') + "', 1)");
    on.station.base.Db().Execute("PRAGMA max_page_count = 1");
  });
  on.At(25000, [&] { on.station.base.Db().Execute("PRAGMA max_page_count = 1000000"); });
  on.RunUntil(60000);
  EXPECT_EQ(Plays(on), 3) << on.Describe();
  EXPECT_EQ(on.Events("report").size(), 3U) << on.Describe();
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport WHERE TITRE = 'TITLE'"), "3");
}

// --- one fault each; the next title starts on time ---

class Fault : public testing::Test {
 protected:
  Fault() : on("2026-11-21 12:05:00") {}
  void SetUp() override { on.Load(); }
  void AppendTitles(int number, int64_t lengthMs) {
    for (int i = 0; i < number; ++i) on.AppendCard(on.AddCard({.lengthMs = lengthMs}));
  }
  TestStation on;
};

TEST_F(Fault, KeyHeldOnALostFileDoesNotHoldTheAir) {
  on.Sql(
      "INSERT INTO DiscothequeVirgule (FILENAME, DUREE, LIBELLE, TOUCHE) VALUES "
      "('/nowhere/key.wav', 1000, "
      "'KEY', 1)");
  LoadHotKeys(on.station);
  AppendTitles(3, 10000);
  on.Start();
  on.At(5000, [&] { on.keyboard.Press(97); });
  on.RunUntil(30000);
  ASSERT_EQ(Plays(on), 3) << on.Describe();
  EXPECT_EQ(on.Starts()[1].atMs, 8500);
  EXPECT_EQ(on.Events("error").size(), 1U);  // not one a tick
}

TEST_F(Fault, SettingStoredDuringAnOverlapHoldsBehindIt) {
  AppendTitles(1, 60000);
  OnAirElement spot;
  spot.file = on.MakeSound("spot.wav", 20000);
  spot.code = -2;
  on.Append(spot);
  on.Start();
  on.At(59000, [&] { on.Set("PmixPubs", "9000"); });  // the overlap lasts from 58500 to 60100
  on.RunUntil(65000);
  ASSERT_EQ(on.Events("onair").size(), 2U) << on.Describe();
  EXPECT_EQ(on.Events("onair")[1].Int("mix_ms"), 9000);
}

TEST_F(Fault, GenreTooLongForTheReportCostsTheRowAlone) {
  on.AppendCard(on.AddCard({.lengthMs = 10000, .genre = "ABCDEFGHIJKLMNOPQRSTU"}));  // 21 of 20
  AppendTitles(1, 10000);
  on.Start();
  on.RunUntil(15000);
  EXPECT_EQ(on.Events("onair").size(), 2U) << on.Describe();
  EXPECT_EQ(on.Events("report").size(), 1U);
  ASSERT_EQ(on.Events("error").size(), 1U);
  EXPECT_EQ(on.Events("error")[0].Int("number"), kErrFieldTooSmall);
}

TEST_F(Fault, ExtractBehindTheEndOfTheFilePlaysWhole) {
  on.Set("ExtraitAuto", "1");
  on.Set("InExtrait", "100");
  on.station.engine.CheckExtrait = true;
  AppendTitles(1, 60000);
  on.Start();
  on.RunUntil(10000);
  ASSERT_EQ(Plays(on), 1);
  EXPECT_EQ(on.Starts()[0].Int("position_ms"), 0);
  EXPECT_EQ(on.station.engine.ExtractEndMs, 0);
}

TEST_F(Fault, VoiceTrackFreedBeforeItsMomentLeavesTheMusicLoud) {
  AppendTitles(1, 100000);
  on.AppendVoiceTrack(on.MakeSound("link.wav", 5000), 70000);
  on.Start();
  on.At(60000, [&] { StartStopZemoRadio(on.station, true); });  // frees slot 2
  on.RunUntil(80000);
  EXPECT_TRUE(on.Events("overlay").empty()) << on.Describe();
  EXPECT_TRUE(on.Events("volume").empty());
  EXPECT_EQ(on.station.engine.VoiceTrackState, 0);
}

TEST_F(Fault, OverlayTellsItsStoredPath) {
  AppendTitles(1, 100000);
  std::string stored = on.MakeSound("link.wav", 5000);
  std::replace(stored.begin(), stored.end(), '/', '\\');
  on.AppendVoiceTrack(stored, 70000);
  on.Start();
  on.RunUntil(80000);
  ASSERT_EQ(on.Events("overlay").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("overlay")[0]["file"], stored);
}

// The virtual clock does not see what is waited for another process, the wall's does: 200 ticks of
// 100 ms each would be 20 s of waiting, and a single operation with a wait of its own is 5 s.
TEST_F(Fault, BaseLockedWhollyDoesNotDelayTheNextStart) {
  ON_FILES_ALONE("a server lets everybody read");
  AppendTitles(3, 10000);
  on.Start();
  on.RunUntil(5000);
  BaseLock other(on.station.base.Path(), "BEGIN EXCLUSIVE");
  const auto began = std::chrono::steady_clock::now();
  on.RunUntil(24900);
  const auto took = std::chrono::steady_clock::now() - began;
  EXPECT_LT(took, std::chrono::seconds(3));
  EXPECT_THROW(on.station.base.Db().OpenRecordset("SELECT * FROM Rapport"), StoreError);
  EXPECT_EQ(on.Events("report").size(), 1U) << on.Describe();
  other.Release();
  on.RunUntil(60000);
  ASSERT_EQ(Plays(on), 3) << on.Describe();
  EXPECT_EQ(on.Starts()[1].atMs, 8500);
  EXPECT_EQ(on.Starts()[2].atMs, 16900);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "3");
}

// Begun at 100 ms, six seconds of each before its own exit point; the setting's 1600 ms would give
// 14500 for the third.
TEST_F(Fault, ATitleWhoseCardCannotBeReadGivesWayAtTheExitPointOfItsRow) {
  for (int i = 0; i < 3; ++i) on.AppendCard(on.AddCard({.lengthMs = 10000, .exitMs = 4000}));
  on.station.base.Db().Waiting().LetEachWait(0);
  on.Start();
  on.RunUntil(5000);
  BaseLock other(on.station.base.Path(), "BEGIN EXCLUSIVE");
  on.RunUntil(13000);
  ASSERT_EQ(Plays(on), 3) << on.Describe();
  EXPECT_EQ(on.Starts()[1].atMs, 6100);
  EXPECT_EQ(on.Starts()[2].atMs, 12100);
}

// None of them is opened; each is told as what it is, and the next title sounds.
TEST_F(Fault, APipeAFolderAndADeviceInThePlaceOfASoundFileAreToldAsWhatTheyAre) {
  const std::string pipe = on.stationDir.Path() + "/pipe.wav";
  const std::string folder = on.stationDir.Path() + "/folder.wav";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  ASSERT_EQ(mkdir(folder.c_str(), 0700), 0);
  for (const std::string& file : {pipe, folder, std::string("/dev/zero")})
    on.AppendCard(on.AddCard({.file = file, .lengthMs = 10000}));
  AppendTitles(1, 10000);
  on.Start();
  on.RunUntil(5000);
  std::vector<std::string> told;
  for (const Seen& one : on.Events("error")) told.push_back(one["text"]);
  EXPECT_EQ(told,
            (std::vector<std::string>{pipe + ": not a regular file", folder + ": Is a directory",
                                      "/dev/zero: not a regular file"}))
      << on.Describe();
  EXPECT_EQ(on.Events("skip").size(), 3U);
  EXPECT_EQ(Plays(on), 1) << on.Describe();
}

TEST_F(Fault, KeptRowsAreWrittenBeforeTheEnd) {
  AppendTitles(1, 5000);
  std::unique_ptr<Database> other = test::OpenElsewhere(on.station.base.Path());
  on.Start();
  other->BeginTrans();
  on.At(1000, [&] { StartStopZemoRadio(on.station, false); });
  on.RunUntil(3000);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "0");
  other->CommitTrans();
  EXPECT_TRUE(EndInOrder(on.station));
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "1");
}

TEST(FaultAtStart, DamagedShortcutTableDoesNotKeepTheMachineOffTheAir) {
  ON_FILES_ALONE("the base is a copy of a file");
  TestStation made;
  made.Load();
  made.Sql("DROP TABLE VT");
  made.Sql("ALTER TABLE DiscothequeVirgule DROP COLUMN POINTSORTIE");
  TestStation on;
  on.stationFolder.Write("Triskin.MDB", *made.stationFolder.Read("Triskin.MDB"));
  on.machineFolder.Write("NoRapport.txt", "");  // a production machine creates no table
  on.machineFolder.Write("ZemoPlay.Ini", "#TRUE#\r\n");
  on.Load();
  EXPECT_TRUE(on.station.engine.IsRunning) << on.Describe();
  EXPECT_FALSE(on.Events("error").empty());
}

TEST(FaultAtStart, TimesOfTheDayStandWhenTheirFileCannotBeRead) {
  TestStation on("2026-11-21 12:59:00");
  on.MakeFile("StartStop.5", "\"START\",\"13:01\"\r\n");
  on.Load();
  // The first read in the minute 00 fails; the lists keep what they had.
  on.At(60000, [&] { on.stationFolder.fault.number = on.stationFolder.fault.count + 1; });
  std::vector<std::string> times;
  on.At(60050, [&] { times = on.station.lists.ComboHeure; });
  on.RunUntil(61000);
  EXPECT_EQ(times, std::vector<std::string>{"13:01"});
}

}  // namespace
}  // namespace zemo::test
