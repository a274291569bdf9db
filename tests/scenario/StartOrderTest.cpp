// Coming up and going down: what is created, resumed, refused.
#include <gtest/gtest.h>

#include "engine/MainScreenPicture.h"
#include "engine/OperatorControls.h"
#include "engine/StartStop.h"
#include "engine/Startup.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

void AppendSpot(TestStation& on, int64_t lengthMs) {
  OnAirElement row;
  row.title = "SPOT";
  row.file = on.MakeSound("spot.wav", lengthMs);
  row.code = -2;
  on.Append(row);
}

TEST(StartOrder, MissingBaseIsCreatedWithItsThirteenTablesAndSeedRows) {
  ON_FILES_ALONE("the base is a file of any bytes");
  TestStation on;
  on.Load();
  EXPECT_EQ((*on.First("base"))["state"], "created");
  EXPECT_EQ(
      on.SqlText(
          "SELECT COUNT(*) FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite%'"),
      "13");
  EXPECT_EQ(on.SqlText("SELECT group_concat(VARIETE || POURCENT) FROM Variete"),
            "NATIONAL40,INTERNATIONAL60");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) || MIN(HEURE) || MAX(HEURE) FROM Toph"), "24023");
  EXPECT_EQ(on.SqlText("SELECT CycleMaxi FROM Cnf"), "9000000");
  EXPECT_TRUE(on.stationFolder.Exists("Triskin.MDB"));
}

TEST(StartOrder, ExistingBaseIsOpenedInAnyCaseOfItsName) {
  ON_FILES_ALONE("the base is a file of any bytes");
  TestStation first;
  first.Load();
  TestStation on;
  on.stationFolder.Write("triskin.mdb", *first.stationFolder.Read("Triskin.MDB"));
  Station again(on.station.platform);  // the name is looked up when the station is made
  EXPECT_TRUE(OnAir::Form_Load(again));
  EXPECT_FALSE(again.base.Path().find("triskin.mdb") == std::string::npos);
}

TEST(StartOrder, TextFileAsBaseIsOneClearError) {
  ON_FILES_ALONE("the base is a file of any bytes");
  TestStation on;
  on.MakeFile("Triskin.MDB", "This is no database, only a text of some length.");
  try {
    OnAir::Form_Load(on.station);
    FAIL() << "a text file was opened as a base";
  } catch (const StoreError& error) {
    EXPECT_EQ(error.Number(), kErrBadDatabase);
    EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos);
  }
}

TEST(StartOrder, ScreenBelow800x600IsRefused) {
  ON_FILES_ALONE("the base is a file of any bytes");
  TestStation on;
  on.system.screen = {800, 599};
  EXPECT_FALSE(OnAir::Form_Load(on.station));
  ASSERT_EQ(on.Events("message").size(), 1U);
  EXPECT_EQ(on.Events("message")[0]["text"], "Le programme ne fonctione pas en dessous de 800x600");
  EXPECT_FALSE(on.stationFolder.Exists("Triskin.MDB"));
}

TEST(StartOrder, ScreenOf800x600IsEnough) {
  TestStation on;
  on.system.screen = {800, 600};
  EXPECT_TRUE(OnAir::Form_Load(on.station));
}

TEST(StartOrder, SoundIsConfiguredFromTheSettings) {
  TestStation on;
  on.Load();
  // 100 buffers of 4096 bytes, divided by 2048 and by 100.
  EXPECT_FLOAT_EQ(on.station.engine.BufferOffsetSec, 2.0F);
  EXPECT_EQ(PictureOf(on.station).LblOffsetBuffers, "2 '' de buffers");
  EXPECT_EQ(PictureOf(on.station).LblMaxPlayInfo, "02 h 30");  // 9000000 ms
  EXPECT_EQ(on.sound.OutputNumBuffers(), 100);
  EXPECT_EQ(on.sound.OutputBufferSize(), 4096);
}

TEST(StartOrder, MachineThatWasOnAirResumesByItself) {
  TestStation on;
  on.machineFolder.Write("ZemoPlay.Ini", "#TRUE#\r\n");
  on.Load();
  AppendSpot(on, 10000);
  on.RunUntil(1000);
  EXPECT_TRUE(on.station.engine.IsRunning);
  EXPECT_EQ(on.Starts().size(), 1U) << on.Describe();
}

TEST(StartOrder, MachineThatWasStoppedStaysIdle) {
  TestStation on;
  on.machineFolder.Write("ZemoPlay.Ini", "#FALSE#\r\n");
  on.Load();
  AppendSpot(on, 10000);
  on.RunUntil(1000);
  EXPECT_FALSE(on.station.engine.IsRunning);
  EXPECT_TRUE(on.Starts().empty());
}

TEST(StartOrder, AutoPlayStartsTheEngine) {
  TestStation on;
  on.localValues.Set("AutoPlay", "1");
  on.Load();
  EXPECT_TRUE(on.station.engine.IsRunning);
  EXPECT_EQ(on.machineFolder.Read("ZemoPlay.Ini"), "#TRUE#\r\n");
}

TEST(StartOrder, StopIsRememberedForTheNextStart) {
  TestStation on;
  on.Load();
  on.Start();
  StartStopZemoRadio(on.station, false);
  EXPECT_EQ(on.machineFolder.Read("ZemoPlay.Ini"), "#FALSE#\r\n");
}

TEST(StartOrder, NoRapportFileMakesAProductionMachine) {
  ON_FILES_ALONE("the base is a file of any bytes");
  TestStation first;
  first.Load();
  TestStation on;
  on.stationFolder.Write("Triskin.MDB", *first.stationFolder.Read("Triskin.MDB"));
  on.machineFolder.Write("NoRapport.txt", "");
  on.Load();
  EXPECT_TRUE(on.station.engine.ReportsDisabled);
  EXPECT_EQ(PictureOf(on.station).LblDateTitre, "No Rapport");
  AppendSpot(on, 10000);
  on.Start();
  on.RunUntil(5000);
  EXPECT_EQ(on.Starts().size(), 1U);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "0");
  EXPECT_FALSE(on.stationFolder.Exists("ZemoOnOff.Dat"));
}

TEST(StartOrder, ProductionMachineCreatesNoTable) {
  ON_FILES_ALONE("the base is a file of any bytes");
  TestStation on;
  on.machineFolder.Write("NoRapport.txt", "");
  EXPECT_THROW(OnAir::Form_Load(on.station), StoreError);  // no settings to go by
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM sqlite_master"), "0");
  EXPECT_EQ(on.First("base", "state", "rebuilt"), nullptr);
}

TEST(StartOrder, ProductionMachineDoesNotReplaceATableThatIsMissing) {
  ON_FILES_ALONE("the base is a file of any bytes");
  TestStation first;
  first.Load();
  first.Sql("DROP TABLE VT");
  TestStation on;
  on.stationFolder.Write("Triskin.MDB", *first.stationFolder.Read("Triskin.MDB"));
  on.localValues.Set("PCProduction", "1");
  on.Load();
  EXPECT_TRUE(on.station.engine.ReportsDisabled);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM sqlite_master WHERE name = 'VT'"), "0");
  EXPECT_EQ(on.Events("error").size(), 1U) << on.Describe();
}

TEST(StartOrder, EmptiedPipTableIsRefilled) {
  TestStation on;
  on.Load();
  on.Sql("DELETE FROM Toph");
  EndInOrder(on.station);
  Station again(on.station.platform);
  OnAir::Form_Load(again);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Toph WHERE JourSemaine = 'XXXXXXX'"), "24");
}

TEST(StartOrder, SecondStartChangesNoRowAndNoStructure) {
  ON_FILES_ALONE("the base is a file of any bytes");
  TestStation on;
  on.Load();
  EndInOrder(on.station);
  const std::string before = *on.stationFolder.Read("Triskin.MDB");
  Station again(on.station.platform);
  OnAir::Form_Load(again);
  EndInOrder(again);
  EXPECT_EQ(*on.stationFolder.Read("Triskin.MDB") == before, true);
}

TEST(StartOrder, CompactsInTheFirstStartOfAMonthAndKeepsTheMomentOnlyThen) {
  ON_FILES_ALONE("the base is a file of any bytes");
  TestStation on("2026-11-21 12:00:00");
  on.localValues.Set("LastCompactage", "03/11/2026 08:00:00");
  on.Load();
  EXPECT_EQ(on.First("base", "state", "compacted"), nullptr);
  EXPECT_FALSE(on.stationFolder.Exists("Triskin.BAK"));
  EXPECT_EQ(on.localValues.GetText("LastCompactage", ""), "03/11/2026 08:00:00");
  const std::string before = *on.stationFolder.Read("Triskin.MDB");
  on.localValues.Set("LastCompactage", "30/10/2026 08:00:00");
  EndInOrder(on.station);
  Station again(on.station.platform);
  OnAir::Form_Load(again);
  EXPECT_TRUE(*on.stationFolder.Read("Triskin.BAK") == before);
  EXPECT_EQ(on.localValues.GetText("LastCompactage", ""), "21/11/2026 12:00:00");
}

TEST(StartOrder, ACompactionThatFailsIsDueAtTheNextStart) {
  ON_FILES_ALONE("the base is a file of any bytes");
  TestStation on("2026-11-21 12:00:00");
  const auto tool = [&] {
    on.station.base.OpenOrCreateDatabase();
    on.station.base.CreateMissingTables({});
    on.station.base.OpenAllTables();
    on.station.base.SeedFixedRows();
    on.station.base.Close();
    return test::OpenElsewhere(on.station.base.Path());
  }();
  const auto reading = tool->OpenTable("Toph");
  on.localValues.Set("LastCompactage", "30/10/2026 08:00:00");
  tool->BeginTrans();  // held by another program, which writes nothing
  ASSERT_TRUE(OnAir::Form_Load(on.station));
  tool->CommitTrans();
  EXPECT_EQ(on.First("base", "state", "compacted"), nullptr);
  EXPECT_NE(on.First("error", "where", "CompactageTriskin"), nullptr) << on.Describe();
  EXPECT_EQ(on.localValues.GetText("LastCompactage", ""), "30/10/2026 08:00:00");
  EXPECT_TRUE(on.station.base.IsOpen());
}

TEST(Closing, IsRefusedWithoutAMessageWhileRunning) {
  TestStation on;
  on.Load();
  AppendSpot(on, 10000);
  on.Start();
  on.RunUntil(1000);
  EXPECT_FALSE(OnAir::Form_QueryUnload(on.station));
  EXPECT_TRUE(on.station.base.IsOpen());
  EXPECT_TRUE(on.Events("message").empty());
}

TEST(Closing, EndsAStoppedProgram) {
  TestStation on;
  on.Load();
  EXPECT_TRUE(OnAir::Form_QueryUnload(on.station));
  EXPECT_FALSE(on.station.base.IsOpen());
}

TEST(Start, PutsTheScreenInTheRunningState) {
  TestStation on;
  on.Load();
  on.Start();
  EXPECT_FALSE(PictureOf(on.station).MnuPlaylistEnabled);
  EXPECT_FALSE(on.station.gridFrame.previewOffered);
  EXPECT_EQ(PictureOf(on.station).CmdStopCaption, "Next");
  StartStopZemoRadio(on.station, false);
  EXPECT_TRUE(PictureOf(on.station).MnuPlaylistEnabled);
  EXPECT_EQ(PictureOf(on.station).CmdStopCaption, "Stop");
}

TEST(Settings, AreReadAtEachUse) {
  TestStation on;
  on.Load();
  on.AppendCard(on.AddCard({.lengthMs = 20000}));
  on.AppendCard(on.AddCard({.lengthMs = 20000}));
  on.AppendCard(on.AddCard({.lengthMs = 20000}));
  on.Start();
  on.At(5000, [&] { on.Set("PmixDef", "2600"); });  // another program changes the row
  on.RunUntil(60000);
  const auto onAir = on.Events("onair");
  ASSERT_EQ(onAir.size(), 3U) << on.Describe();
  EXPECT_EQ(onAir[0].Int("mix_ms"), 1600);
  EXPECT_EQ(onAir[1].Int("mix_ms"), 2600);
}

TEST(LiveMode, ReturnsToAutomaticWhenItsListRunsOut) {
  TestStation on;
  on.Load();
  OnAir::Toolbar_ButtonClick(on.station, Toolbar::kLive);
  AppendSpot(on, 20000);
  on.Start();
  on.RunUntil(15000);
  EXPECT_TRUE(on.station.engine.IsAutomatic) << on.Describe();
  EXPECT_FALSE(on.station.browse.open);
}

TEST(LiveMode, ItsReturnLetsTheJinglesPlayThatItsBoxHadStopped) {
  TestStation on;
  on.Load();
  OnAir::Toolbar_ButtonClick(on.station, Toolbar::kLive);
  OnAir::SetCheck(on.station, "CheckNoJingle", true);
  ASSERT_TRUE(on.station.engine.NoJingleActive);
  AppendSpot(on, 20000);
  on.Start();
  on.RunUntil(15000);
  ASSERT_TRUE(on.station.engine.IsAutomatic) << on.Describe();
  EXPECT_FALSE(on.station.engine.CheckNoJingle);
  EXPECT_FALSE(on.station.engine.NoJingleActive);
}

TEST(LiveMode, ItsReturnKeepsTheJinglesOffThatADatedListStopped) {
  TestStation on;
  on.Load();
  OnAir::Toolbar_ButtonClick(on.station, Toolbar::kLive);
  on.station.engine.NoJingleActive = true;
  AppendSpot(on, 20000);
  on.Start();
  on.RunUntil(15000);
  ASSERT_TRUE(on.station.engine.IsAutomatic) << on.Describe();
  EXPECT_TRUE(on.station.engine.NoJingleActive);
}

TEST(LiveMode, StopsWithOptionDirectWhenItsListRunsOut) {
  TestStation on;
  on.Load();
  OnAir::Toolbar_ButtonClick(on.station, Toolbar::kLive);
  OnAir::SetCheck(on.station, "OptionDirect", true);
  AppendSpot(on, 20000);
  on.Start();
  on.RunUntil(15000);
  EXPECT_FALSE(on.station.engine.IsRunning);
  EXPECT_FALSE(on.station.engine.IsAutomatic);
}

// 3000 buffers of 4096 bytes would be an offset of 60 s; 500 are the 10 s that the output can use.
TEST(StartOrder, BuffersBeyondTenSecondsAreBoundedAndTold) {
  TestStation on;
  on.Load();
  ASSERT_TRUE(EndInOrder(on.station));
  on.Set("NbrBuffers", "3000");
  on.seen.clear();
  on.Load();
  EXPECT_EQ(on.sound.OutputNumBuffers(), 500);
  EXPECT_FLOAT_EQ(on.station.engine.BufferOffsetSec, 10);
  const Seen* told = on.First("error");
  ASSERT_NE(told, nullptr) << on.Describe();
  EXPECT_EQ((*told)["text"],
            "NbrBuffers: 3000 buffers of 4096 bytes are 60 s: 10 s is the most (500 buffers)");
}

// Read once, though the tick looks at every turn of that minute; an edit counts at the next.
TEST(StartOrder, TheTimesOfTheDayAreReadWhereTheyChanged) {
  TestStation on("2026-11-21 11:59:58");
  on.MakeFile("StartStop.5", "\"START\",\"12:30\"\r\n");
  on.Load();
  on.stationFolder.reads.clear();
  on.At(30000, [&] { on.MakeFile("StartStop.5", "\"START\",\"12:00:40\"\r\n"); });
  on.RunUntil(62000);
  EXPECT_EQ(on.stationFolder.reads["StartStop.5"], 2) << on.Describe();
  EXPECT_EQ(on.station.lists.ComboHeure, std::vector<std::string>{"12:00:40"});
  ASSERT_NE(on.First("engine", "running", "true"), nullptr) << on.Describe();
  EXPECT_EQ(on.First("engine", "running", "true")->atMs / 1000, 42);  // 12:00:40
}

// The overlap of the first two titles holds the tick from 12:05:18.5 to 12:05:20. Saturday.
TEST(StartOrder, ATimedStopInASecondThatAnOverlapHoldsIsServedBehindIt) {
  TestStation on("2026-11-21 12:05:00");
  on.MakeFile("StartStop.5", "\"STOP\",\"12:05:19\"\r\n");
  on.Load();
  for (int i = 0; i < 3; ++i) on.AppendCard(on.AddCard({.lengthMs = 20000}));
  on.Start();
  on.RunUntil(60000);
  ASSERT_GE(on.Starts().size(), 2U);
  EXPECT_EQ(on.Starts()[1].atMs, 18500);
  EXPECT_EQ(on.Starts().size(), 2U) << on.Describe();
  ASSERT_NE(on.First("engine", "running", "false"), nullptr) << on.Describe();
}

TEST(StartOrder, ATimeThatTheClockJumpsOverIsNotServedBehindTheJump) {
  TestStation on("2026-11-21 12:05:00");
  on.MakeFile("StartStop.5", "\"STOP\",\"12:30:00\"\r\n");
  on.Load();
  on.AppendCard(on.AddCard({.lengthMs = 60000}));
  on.Start();
  on.RunUntil(5000);
  on.loop.SetWallClock(ParseMoment("2026-11-21 12:40:00"));
  on.RunUntil(10000);
  EXPECT_EQ(on.First("engine", "running", "false"), nullptr) << on.Describe();
}

TEST(StartOrder, TimesOfTheDayThatCouldNotBeReadAreReadAgain) {
  TestStation on("2026-11-21 11:59:50");
  on.Load();
  on.MakeFile("StartStop.5", "\"START\",\"12:00:40\"\r\n");
  on.stationFolder.unreadable = "StartStop.5";
  on.At(12000, [&] { on.stationFolder.unreadable.clear(); });
  on.RunUntil(15000);
  EXPECT_EQ(on.station.lists.ComboHeure, std::vector<std::string>{"12:00:40"});
}

// The order to the machine fails; what the tick does behind it is done all the same.
TEST(StartOrder, ATimedStopThatFailsCostsItsOwnStepAlone) {
  TestStation on("2026-11-21 12:04:50");
  on.MakeFile("StartStop.5", "\"STOP\",\"12:05-Q\"\r\n");
  on.Load();
  const int32_t card = on.AddCard({.lengthMs = 60000});
  on.AppendCard(card);
  on.Start();
  on.Set("Veille", "1");
  on.system.ordered = [&on](const char*, const std::string&) {
    on.station.engine.LastActivityTimer = on.station.Timer() - 100;  // the saver is due
    throw std::runtime_error("no order for the test");
  };
  for (int64_t ms = 9000; ms < 12000 && on.Events("error").empty(); ms += 10) on.RunUntil(ms);
  ASSERT_EQ(on.Events("error").size(), 1U) << on.Describe();
  EXPECT_TRUE(on.station.saver.open);  // in the same tick
}

}  // namespace
}  // namespace zemo::test
