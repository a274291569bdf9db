// The emergency folder: what plays when nothing else can, what does not make it play, and what
// takes the air back from it.
#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "engine/MainTick.h"
#include "engine/OperatorControls.h"
#include "engine/StartStop.h"
#include "scenario/EmergencyStation.h"
#include "support/BaseFaults.h"

namespace zemo::test {
namespace {

constexpr int64_t kEmergencyRunMs = 180000;
constexpr int64_t kLongestMs = 5000;

// --- faults of the station, each made at 5 s; without the folder the air falls silent for good ---

using BringFault = void (*)(EmergencyStation& on, std::unique_ptr<Database>& other);

void LockBase(EmergencyStation& on, std::unique_ptr<Database>& other) {
  other = test::OpenElsewhere(on.station.base.Path());
  if (!test::TestsAreOnServer()) other->Execute("PRAGMA locking_mode = EXCLUSIVE");
  other->BeginTrans();
  other->Execute("UPDATE Cnf SET Veille = 0");
  if (!test::TestsAreOnServer()) other->CommitTrans();
  // Nobody else writes from here on; in a file nobody reads either.
}
void CloseBase(EmergencyStation& on, std::unique_ptr<Database>&) {
  on.station.base.Close();
}
void RemoveBase(EmergencyStation& on, std::unique_ptr<Database>&) {
  std::filesystem::remove(on.station.base.Path());
}
void RenameLibrary(EmergencyStation& on, std::unique_ptr<Database>&) {
  on.Sql("ALTER TABLE Discotheque RENAME TO Elsewhere");
}
void RenameSettings(EmergencyStation& on, std::unique_ptr<Database>&) {
  on.Sql("ALTER TABLE Cnf RENAME TO Elsewhere");
}
void RenameReport(EmergencyStation& on, std::unique_ptr<Database>&) {
  on.Sql("ALTER TABLE Rapport RENAME TO Elsewhere");
}
void LoseEveryFile(EmergencyStation& on, std::unique_ptr<Database>&) {
  on.MakeModels();
  for (int i = 0; i < 30; ++i)
    on.AddCard(
        {.file = "/lost/" + std::to_string(i) + ".mp3", .artist = "LOST" + std::to_string(i)});
}
void LeaveNoTitle(EmergencyStation& on, std::unique_ptr<Database>&) {
  on.Sql("DELETE FROM Discotheque");
}

struct FaultCase {
  const char* name;
  BringFault fault;
};
std::ostream& operator<<(std::ostream& out, const FaultCase& one) {
  return out << one.name;
}

class EmergencyFault : public testing::TestWithParam<FaultCase> {
 protected:
  // Two titles of 20 s, from 100 and 18500 ms to 38500 ms.
  void Play(EmergencyStation& on) {
    on.Load();
    on.AppendTitles(2, 20000);
    on.Start();
    on.At(5000, [&] { GetParam().fault(on, other_); });
    on.RunUntil(kEmergencyRunMs);
  }
  std::unique_ptr<Database> other_;
};

TEST_P(EmergencyFault, LeavesNoSilenceAboveFiveSeconds) {
  EmergencyStation on;
  on.PutEmergencies(3);
  Play(on);
  EXPECT_LE(on.LongestSilenceMs(kEmergencyRunMs), kLongestMs) << on.Describe();
  const auto starts = on.EmergencyStarts();
  ASSERT_GE(starts.size(), 4U) << on.Describe();
  EXPECT_GE(starts[0].atMs, 40500);
  EXPECT_LE(starts[0].atMs, 42000);
  // Its own elements follow one another at their exit points, 28400 ms after each start; rows that
  // are lost are tried first, one in each tick.
  for (size_t i = 1; i < starts.size(); ++i) {
    EXPECT_GE(starts[i].atMs - starts[i - 1].atMs, 28400) << i;
    EXPECT_LE(starts[i].atMs - starts[i - 1].atMs, 30500) << i;
  }
}

TEST_P(EmergencyFault, ChangesNothingWhereTheFolderIsEmpty) {
  EmergencyStation without;
  Play(without);
  other_.reset();
  EmergencyStation empty;
  std::filesystem::create_directories(empty.Folder());
  Play(empty);
  ASSERT_EQ(empty.seen.size(), without.seen.size());
  for (size_t i = 0; i < empty.seen.size(); ++i) {
    EXPECT_EQ(empty.seen[i].atMs, without.seen[i].atMs) << i;
    EXPECT_EQ(empty.seen[i].name, without.seen[i].name) << i;
  }
  EXPECT_GT(without.LongestSilenceMs(kEmergencyRunMs), 100000);
}

INSTANTIATE_TEST_SUITE_P(
    Each, EmergencyFault,
    testing::Values(FaultCase{"Locked", LockBase}, FaultCase{"Closed", CloseBase},
                    FaultCase{"Removed", RemoveBase}, FaultCase{"LibraryRenamed", RenameLibrary},
                    FaultCase{"SettingsRenamed", RenameSettings},
                    FaultCase{"ReportRenamed", RenameReport}, FaultCase{"FilesLost", LoseEveryFile},
                    FaultCase{"NoTitle", LeaveNoTitle}),
    [](const auto& one) { return std::string(one.param.name); });

class Emergency : public testing::Test {
 protected:
  BaseFaults base;  // ahead of the station, whose base it may fail
  EmergencyStation on;
};

TEST_F(Emergency, PlaysFromTheStartOfAStationWithoutMusic) {
  on.PutEmergencies(2);
  on.Load();
  on.Start();
  on.RunUntil(60000);
  // The first tick, at 100 ms, sees the silence.
  ASSERT_FALSE(on.EmergencyStarts().empty()) << on.Describe();
  EXPECT_EQ(on.EmergencyStarts()[0].atMs, 2100);
  EXPECT_LE(on.LongestSilenceMs(60000), kLongestMs);
}

TEST_F(Emergency, NeedsNoBaseAndNoSettings) {
  on.PutEmergencies(2);
  std::filesystem::remove(on.station.base.Path());
  on.station.engine.MainTimer = on.loop.MakeTimer(100, [&] { OnAir::MainTimer_Timer(on.station); });
  on.station.engine.MainTimer->SetEnabled(true);
  StartStopZemoRadio(on.station, true);
  on.RunUntil(120000);
  const auto starts = on.EmergencyStarts();
  ASSERT_GE(starts.size(), 4U) << on.Describe();
  EXPECT_EQ(starts[0].Int("volume"), 16384);  // of a new base
  EXPECT_EQ(on.Events("onair")[0].Int("mix_ms"), 1600);
  EXPECT_LE(on.LongestSilenceMs(120000), kLongestMs);
}

TEST_F(Emergency, LeavesAnOrdinaryDayAsItIs) {
  const auto play = [](EmergencyStation& station) {
    station.MakeModels();
    station.AddTitles(30);
    station.Load();
    station.Start();
    station.RunUntil(1800000);
  };
  EmergencyStation without;
  play(without);
  on.PutEmergencies(3);
  play(on);
  ASSERT_GE(on.Starts().size(), 10U);
  EXPECT_TRUE(on.EmergencyStarts().empty());
  EXPECT_EQ(on.seen.size(), without.seen.size());
}

TEST_F(Emergency, IsToldAsAShortElementInTheReport) {
  on.PutEmergency("Nuit calme.ogg", 30000);
  on.Load();
  on.Start();
  on.RunUntil(10000);
  const auto starts = on.EmergencyStarts();
  ASSERT_EQ(starts.size(), 1U) << on.Describe();
  EXPECT_EQ(starts[0].Int("code"), -5);
  EXPECT_EQ(starts[0]["title"], "Secours  Nuit calme");
  EXPECT_EQ(on.station.notices.titleOnAir, "Secours  Nuit calme");
  EXPECT_TRUE(on.station.PL.Empty());
  EXPECT_EQ(
      on.SqlText("SELECT GENRE || '/' || AUTEUR || '/' || TITRE || '/' || HEURE FROM Rapport"),
      "AUTRES/Secours/Nuit calme/12:05:02");
}

TEST_F(Emergency, NameLongerThanTheReportIsCut) {
  on.PutEmergency(std::string(60, 'a') + ".wav", 30000);
  on.Load();
  on.Start();
  on.RunUntil(10000);
  EXPECT_EQ(on.SqlText("SELECT TITRE FROM Rapport"), std::string(40, 'a')) << on.Describe();
}

TEST_F(Emergency, RowsOfALockedBaseAreWrittenLater) {
  on.PutEmergencies(3);
  on.Load();
  base.Arm(BasePoint::kLockToRead, BaseFault::kLocked);
  on.Start();
  on.At(100000, [&] { base.Disarm(); });
  on.RunUntil(120000);
  ASSERT_GE(on.EmergencyStarts().size(), 4U);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport WHERE AUTEUR = 'Secours'"),
            std::to_string(on.EmergencyStarts().size()))
      << on.Describe();
}

// The base is opened again by hand here.
TEST_F(Emergency, RowsOfAClosedBaseAreWrittenOnceItIsOpen) {
  on.PutEmergencies(3);
  on.Load();
  on.station.base.Close();
  on.Start();
  on.At(70000, [&] {
    on.station.base.OpenOrCreateDatabase();
    on.station.base.OpenAllTables();
  });
  on.RunUntil(80000);
  ASSERT_EQ(on.EmergencyStarts().size(), 3U);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport WHERE AUTEUR = 'Secours'"), "3");
}

TEST_F(Emergency, IsLoggedOnceWhenItBeginsAndOnceWhenItEnds) {
  on.PutEmergencies(3);
  on.Load();
  on.Start();
  on.At(100000, [&] { on.AppendTitle(20000); });
  on.RunUntil(110000);
  EXPECT_EQ(on.Notices(), (std::vector<std::string>{
                              "nothing else can play: the emergency folder has the air",
                              "the emergency folder has left the air: something else plays"}))
      << on.Describe();
  const auto log = on.stationFolder.Read("Messages.Txt");
  ASSERT_TRUE(log.has_value());
  EXPECT_NE(log->find("21/11/2026 12:05:02\tSecours\t0\tnothing else can play"), std::string::npos)
      << *log;
}

// --- giving way ---

TEST_F(Emergency, FadesToMusicThatIsThereAgain) {
  on.PutEmergencies(1, 300000);
  on.Load();
  on.Start();
  on.At(20050, [&] { on.AppendTitle(60000); });
  on.RunUntil(30000);
  const auto others = on.OtherStarts();
  ASSERT_EQ(others.size(), 1U) << on.Describe();
  EXPECT_LE(others[0].atMs, 20700);
  ASSERT_FALSE(on.Events("fade").empty());
  EXPECT_EQ(on.Events("fade")[0].Int("ms"), 1600);
  EXPECT_FALSE(on.station.engine.EmergencyOnAir);
  EXPECT_LE(on.LongestSilenceMs(30000), 2200);
}

TEST_F(Emergency, LeavesARowThatComesInTheLastMomentItsAir) {
  on.PutEmergencies(1);
  on.Load();
  on.Start();
  on.At(2050, [&] { on.AppendTitle(60000); });
  on.RunUntil(10000);
  EXPECT_TRUE(on.EmergencyStarts().empty()) << on.Describe();
  EXPECT_EQ(on.Starts()[0].atMs, 2100);
}

TEST_F(Emergency, GivesWayToTheRequestOnceTheBaseIsFree) {
  on.MakeModels();
  on.AddTitles(20);
  on.PutEmergencies(3, 60000);
  on.Load();
  base.Arm(BasePoint::kLockToRead, BaseFault::kLocked);
  on.Start();
  on.At(30000, [&] { base.Disarm(); });
  on.RunUntil(60000);
  const auto others = on.OtherStarts();
  ASSERT_FALSE(others.empty()) << on.Describe();
  EXPECT_LE(others[0].atMs, 41000);  // requests rest for ten seconds
  EXPECT_LE(on.LongestSilenceMs(60000), kLongestMs);
}

TEST_F(Emergency, RequestsNoOftenerThanEveryTenSeconds) {
  on.MakeModels();
  on.PutEmergencies(1, 100000);
  on.Load();
  on.Start();
  on.RunUntil(100000);
  const auto requests = on.Events("request");
  ASSERT_GE(requests.size(), 5U) << on.Describe();
  for (size_t i = 2; i < requests.size(); ++i)
    EXPECT_GE(requests[i].atMs - requests[i - 1].atMs, 10000) << i;
}

TEST_F(Emergency, StaysWhileTheListHoldsLostFilesOnly) {
  on.PutEmergencies(1, 60000);
  on.Load();
  on.Start();
  on.At(20000, [&] {
    for (int i = 0; i < 3; ++i) on.AppendCard(on.AddCard({.file = "/lost/a.mp3"}));
  });
  on.RunUntil(50000);
  EXPECT_TRUE(on.Events("fade").empty()) << on.Describe();
  EXPECT_EQ(on.Starts().size(), 1U);
}

TEST_F(Emergency, GivesWayToADatedList) {
  on.PutEmergencies(1, 300000);
  const int32_t code = on.AddCard({.lengthMs = 60000});
  on.Load();
  on.Sql(
      "INSERT INTO Playlist (LADATE, LHEURE, LIBELLE, NOJINGLE) VALUES ('21/11/2026', '12:06', "
      "'LIST', 0)");
  on.Sql("INSERT INTO Pls (NUMPLS, DISCOTHEQUE, FICHE) VALUES (1, 1, " + std::to_string(code) +
         ")");
  on.Start();
  on.RunUntil(70000);
  ASSERT_EQ(on.Events("list").size(), 1U) << on.Describe();
  const auto others = on.OtherStarts();
  ASSERT_EQ(others.size(), 1U) << on.Describe();
  EXPECT_GE(others[0].atMs, 60000);
  EXPECT_LE(others[0].atMs, 61500);
}

TEST_F(Emergency, PipThatWaitsForItsPercentageStillDoes) {
  on.PutEmergencies(1, 100000);
  on.Load();
  on.Start();
  on.At(10000, [&] {
    on.station.engine.HourPipPending = true;  // MiniFinHeure is 40
    OnAirElement pip;
    pip.title = "Top Horaire";
    pip.file = on.MakeSound("pip.wav", 5000);
    pip.code = -3;
    on.Append(pip);
  });
  on.RunUntil(60000);
  const auto others = on.OtherStarts();
  ASSERT_EQ(others.size(), 1U) << on.Describe();
  EXPECT_EQ(others[0].atMs, 43100);  // 41 per cent of 100 s behind 2100 ms
}

TEST_F(Emergency, NextOfTheOperatorTakesTheNextFile) {
  on.PutEmergencies(2, 100000);
  on.Load();
  on.Start();
  on.At(20000, [&] { OnAir::CmdStop_Click(on.station); });
  on.RunUntil(30000);
  ASSERT_EQ(on.EmergencyStarts().size(), 2U) << on.Describe();
  EXPECT_LE(on.EmergencyStarts()[1].atMs, 20100);
  EXPECT_NE(on.Played()[0], on.Played()[1]);
}

// --- silence that is meant ---

TEST_F(Emergency, DoesNotSoundOnAStoppedEngine) {
  on.PutEmergencies(2);
  on.Load();
  on.RunUntil(20000);
  on.Start();
  on.At(30000, [&] { StartStopZemoRadio(on.station, false); });
  on.RunUntil(120000);
  EXPECT_EQ(on.EmergencyStarts().size(), 1U) << on.Describe();
  ASSERT_FALSE(on.Events("fade").empty());  // it would have played up to 52100
  EXPECT_EQ(on.Events("fade")[0].atMs, 30000);
  EXPECT_EQ(on.sound.State(), OutputState::kClosed);
  EXPECT_EQ(on.Notices().back(), "the emergency folder has left the air: the engine was stopped");
}

TEST_F(Emergency, DoesNotSoundOverTopage) {
  EmergencyStation topage("2026-11-21 12:00:50");
  topage.PutEmergencies(2);
  topage.MakeFile("Topage.5", "\"12:01\"\r\n");
  topage.Load();
  topage.AppendJingle(20000);
  topage.Start();
  topage.RunUntil(120000);
  EXPECT_TRUE(topage.station.engine.TopagePending);
  EXPECT_TRUE(topage.EmergencyStarts().empty()) << topage.Describe();
}

TEST_F(Emergency, DoesNotSoundOverSatelliteNews) {
  EmergencyStation satellite;
  satellite.Set("EntreSat", "2");
  satellite.Set("PortCom", "1");
  satellite.PutEmergencies(2);
  satellite.Load();
  satellite.AppendJingle(60000);
  satellite.Start();
  satellite.Contact(10000, 1, true);
  satellite.RunUntil(120000);
  EXPECT_TRUE(satellite.station.engine.SatelliteTaking) << satellite.Describe();
  EXPECT_TRUE(satellite.EmergencyStarts().empty()) << satellite.Describe();
}

TEST_F(Emergency, LeavesTheEmptyListOfAPresenterSilent) {
  on.PutEmergencies(2);
  on.Load();
  OnAir::Toolbar_ButtonClick(on.station, Toolbar::kLive);
  on.Start();
  on.RunUntil(60000);
  EXPECT_TRUE(on.EmergencyStarts().empty()) << on.Describe();
}

TEST_F(Emergency, PlaysWhereThePresentersListIsLost) {
  on.PutEmergencies(2);
  on.Load();
  OnAir::Toolbar_ButtonClick(on.station, Toolbar::kLive);
  on.AppendCard(on.AddCard({.file = "/lost/a.mp3"}));
  on.Start();
  on.RunUntil(60000);
  ASSERT_FALSE(on.EmergencyStarts().empty()) << on.Describe();
  EXPECT_LE(on.LongestSilenceMs(60000), kLongestMs);
}

TEST_F(Emergency, StopsWhereThePresentersListIsToEndIt) {
  on.PutEmergencies(2);
  on.Load();
  OnAir::Toolbar_ButtonClick(on.station, Toolbar::kLive);
  on.station.engine.OptionDirect = true;
  on.AppendTitle(20000);
  on.Start();
  on.RunUntil(60000);
  EXPECT_FALSE(on.station.engine.IsRunning);
  EXPECT_TRUE(on.EmergencyStarts().empty()) << on.Describe();
}

TEST_F(Emergency, PresentersRowComesAtTheExitPoint) {
  on.PutEmergencies(1, 60000);
  on.Load();
  on.Start();
  on.At(10000, [&] {
    OnAir::Toolbar_ButtonClick(on.station, Toolbar::kLive);
    on.AppendTitle(30000);
  });
  on.RunUntil(70000);
  const auto others = on.OtherStarts();
  ASSERT_EQ(others.size(), 1U) << on.Describe();
  EXPECT_EQ(others[0].atMs, 2100 + 58400);
}

// --- the folder ---

TEST_F(Emergency, PlaysEveryFileBeforeAnyAgainAndNoneTwiceRunning) {
  on.PutEmergencies(5, 10000);
  on.Load();
  on.Start();
  on.RunUntil(300000);
  const auto played = on.Played();
  ASSERT_GE(played.size(), 30U);
  for (size_t round = 0; round + 5 <= played.size(); round += 5)
    EXPECT_EQ(std::set<std::string>(played.begin() + static_cast<int>(round),
                                    played.begin() + static_cast<int>(round) + 5)
                  .size(),
              5U)
        << round;
  for (size_t i = 1; i < played.size(); ++i) EXPECT_NE(played[i], played[i - 1]) << i;
}

TEST_F(Emergency, TakesTheSameFilesAtTheSameMoment) {
  EmergencyStation again;
  for (EmergencyStation* station : {&on, &again}) {
    station->PutEmergencies(5, 10000);
    station->Load();
    station->Start();
    station->RunUntil(120000);
  }
  EXPECT_EQ(on.Played(), again.Played());
}

TEST_F(Emergency, OnlyFileOfTheFolderPlaysOverAndOver) {
  on.PutEmergencies(1, 10000);
  on.Load();
  on.Start();
  on.RunUntil(60000);
  EXPECT_GE(on.EmergencyStarts().size(), 6U) << on.Describe();
  EXPECT_LE(on.LongestSilenceMs(60000), 2200);
}

TEST_F(Emergency, FilePutInJoinsTheNextRound) {
  on.PutEmergencies(2, 10000);
  on.Load();
  on.Start();
  on.At(5000, [&] { on.PutEmergency("new.wav", 10000); });
  on.RunUntil(60000);
  const auto played = on.Played();
  ASSERT_GE(played.size(), 5U) << on.Describe();
  EXPECT_EQ(std::count(played.begin() + 2, played.begin() + 5, "new.wav"), 1);
}

TEST_F(Emergency, LostAndUnplayableFilesAreToldOnceAndPassedOver) {
  on.PutEmergencies(2, 10000);
  on.PutEmergency("broken.mp3", 0);
  const std::string gone = on.PutEmergency("gone.mp3", 10000);
  on.Load();
  on.Start();
  on.At(2050, [&] { std::filesystem::remove(gone); });
  on.RunUntil(120000);
  EXPECT_LE(on.LongestSilenceMs(120000), 2200) << on.Describe();
  int broken = 0;
  for (const std::string& notice : on.Notices())
    broken += notice.find("broken.mp3 cannot be played (unreadable)") != std::string::npos;
  EXPECT_EQ(broken, 1);
  EXPECT_EQ(on.Events("skip").size(), 1U);
}

// More of them than are remembered must not fill the log round after round.
TEST_F(Emergency, UnplayableFilesWithoutNumberAreToldAThousandTimesAtMost) {
  for (int i = 0; i < 1010; ++i) on.PutEmergency("B" + std::to_string(i) + ".mp3", 0);
  on.PutEmergency("Good.mp3", 5000);
  on.Load();
  on.Start();
  on.RunUntil(60000);
  EXPECT_GT(on.Played().size(), 2U) << "several rounds";
  int told = 0;
  for (const std::string& notice : on.Notices()) told += notice.ends_with("(unreadable)") ? 1 : 0;
  EXPECT_EQ(told, 1000);
}

TEST_F(Emergency, FolderOfUnplayableFilesIsTriedSeldom) {
  for (int i = 0; i < 40; ++i) on.PutEmergency("broken" + std::to_string(i) + ".mp3", 0);
  on.Load();
  on.Start();
  on.RunUntil(60000);
  EXPECT_TRUE(on.Starts().empty());
  // A round takes three ticks of 16 files and two seconds of rest: from 2100 ms on 27 of them.
  EXPECT_LE(on.opener.fault.count, 27 * 40);
  EXPECT_GE(on.opener.fault.count, 10 * 40);
  on.PutEmergency("whole.mp3", 10000);
  on.RunUntil(65000);
  EXPECT_EQ(on.EmergencyStarts().size(), 1U) << on.Describe();
}

TEST_F(Emergency, OnePlayableFileAmongHundredsIsFoundInTime) {
  for (int i = 0; i < 200; ++i) on.PutEmergency("broken" + std::to_string(i) + ".mp3", 0);
  on.PutEmergency("whole.mp3", 10000);
  on.Load();
  on.Start();
  on.RunUntil(30000);
  ASSERT_FALSE(on.EmergencyStarts().empty()) << on.Describe();
  EXPECT_LE(on.EmergencyStarts()[0].atMs, kLongestMs);
}

TEST_F(Emergency, FolderThatLosesAllItsFilesIsToldToHaveLeftTheAir) {
  on.PutEmergencies(2, 10000);
  on.Load();
  on.Start();
  on.At(5000, [&] { std::filesystem::remove_all(on.Folder()); });
  on.RunUntil(30000);
  EXPECT_EQ(on.EmergencyStarts().size(), 1U) << on.Describe();
  EXPECT_FALSE(on.station.engine.EmergencyOnAir);
  EXPECT_EQ(on.Notices().back(),
            "the emergency folder has left the air: nothing in it can be played any more");
}

TEST_F(Emergency, FolderMadeOnAirInAnotherCaseIsFound) {
  on.Load();
  on.Start();
  on.At(10000, [&] {
    std::filesystem::create_directories(on.machineFolder.Path() + "SECOURS");
    std::ofstream(on.machineFolder.Path() + "SECOURS/a.wav") << "sound";
    on.opener.lengthsMs[on.machineFolder.Path() + "SECOURS/a.wav"] = 10000;
  });
  on.RunUntil(15000);
  EXPECT_EQ(on.Starts().size(), 1U) << on.Describe();
}

TEST_F(Emergency, ShortFileIsNotCutByTheExitPointOfMusic) {
  on.PutEmergencies(2, 1200);
  on.Load();
  on.Start();
  on.RunUntil(30000);
  ASSERT_FALSE(on.Events("onair").empty());
  EXPECT_EQ(on.Events("onair")[0].Int("mix_ms"), 300);  // a quarter of it
  EXPECT_LE(on.LongestSilenceMs(30000), 2200);
}

// CycleMaxi is 15 s: the output would have to begin anew, which takes 3.5 s on an ordinary road.
TEST_F(Emergency, FileLongerThanTheOutputMayRunIsHeardInTime) {
  on.Set("CycleMaxi", "15000");
  on.PutEmergencies(1, 60000);
  on.Load();
  on.AppendTitle(10000);
  on.Start();
  on.RunUntil(60000);
  EXPECT_LE(on.LongestSilenceMs(60000), 2200) << on.Describe();
  EXPECT_EQ(on.sound.CycleMax(), 15000);
}

}  // namespace
}  // namespace zemo::test
