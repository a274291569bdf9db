// What the base cannot take while elements start is kept, journalled in the machine folder, and
// written once: in the same run, or in the next one after a power loss.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "engine/StartStop.h"
#include "engine/Startup.h"
#include "reports/AirWriteJournal.h"
#include "reports/AirWrites.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

constexpr const char* kTimes = "SELECT COUNT(*) FROM Rapport WHERE HEURE = '";

// Another connection that lets nobody write.
class Writer {
 public:
  explicit Writer(TestStation& on) : base_(test::OpenElsewhere(on.station.base.Path())) {
    base_->BeginTrans();
  }
  ~Writer() { base_->RollbackTrans(); }

 private:
  std::unique_ptr<Database> base_;
};

class KeptWrites : public testing::Test {
 protected:
  KeptWrites() : on("2026-11-21 12:05:00") {}
  void SetUp() override { on.Load(); }

  // Three titles that begin at 0, 8500 and 16900 ms, and get their rows behind their overlaps of
  // 1600 ms, at 10100 and 18500 ms; the base cannot be written from `fromMs` on.
  void PlayLocked(int64_t fromMs, int64_t untilMs) {
    for (int i = 0; i < 3; ++i)
      on.AppendCard(on.AddCard({.lengthMs = 10000, .title = "T" + std::to_string(i)}));
    on.Start();
    on.At(fromMs, [this] { writer = std::make_unique<Writer>(on); });
    on.RunUntil(untilMs);
  }

  std::string Journal() const {
    return on.machineFolder.Read(JournalName(on.station)).value_or("");
  }

  // A second machine, started with what the first one's disks hold.
  void CarryOver(TestStation& next, const std::string& base, const std::string& journal) const {
    next.stationFolder.Write("Triskin.MDB", base);
    next.machineFolder.Write(JournalName(next.station), journal);
    next.Load();
  }
  std::string BaseBytes() const { return *on.stationFolder.Read("Triskin.MDB"); }

  TestStation on;
  std::unique_ptr<Writer> writer;
};

std::string Count(TestStation& on, const std::string& query) {
  return on.SqlText(query);
}

TEST_F(KeptWrites, ArePutIntoTheJournalAtTheirMomentAndLeaveItWhenTheyAreWritten) {
  PlayLocked(5000, 20000);
  EXPECT_EQ(Count(on, "SELECT COUNT(*) FROM Rapport"), "1");
  // A card and a report row of the second and the third title.
  EXPECT_EQ(on.station.engine.kept.writes.size(), 4U);
  EXPECT_NE(Journal().find("\"12:05:10\""), std::string::npos) << Journal();
  EXPECT_NE(Journal().find("\"12:05:18\""), std::string::npos) << Journal();
  writer.reset();
  on.RunUntil(26000);
  EXPECT_EQ(Count(on, "SELECT COUNT(*) FROM Rapport"), "3");
  EXPECT_TRUE(on.station.engine.kept.writes.empty());
  EXPECT_FALSE(on.machineFolder.Exists(JournalName(on.station)));
  EXPECT_EQ(on.Events("report").size(), 3U);
}

TEST_F(KeptWrites, OfARunThatLostItsPowerAreWrittenByTheNextOne) {
  ON_FILES_ALONE("a second machine starts from a copy of the file");
  PlayLocked(5000, 20000);
  TestStation next("2026-11-21 12:10:00");
  CarryOver(next, BaseBytes(), Journal());
  EXPECT_EQ(next.station.engine.kept.writes.size(), 4U);
  next.RunUntil(5000);
  EXPECT_EQ(Count(next, "SELECT COUNT(*) FROM Rapport"), "3");
  EXPECT_EQ(Count(next, std::string(kTimes) + "12:05:10' AND TITRE = 'T1'"), "1");
  EXPECT_EQ(Count(next, std::string(kTimes) + "12:05:18' AND TITRE = 'T2'"), "1");
  EXPECT_EQ(Count(next, "SELECT DIFFUSION01 FROM Discotheque WHERE TITRE = 'T2'"),
            "21/11/2026 à 12:05");
  EXPECT_FALSE(next.machineFolder.Exists(JournalName(next.station)));
}

TEST_F(KeptWrites, ThatStoodInTheBaseWhenThePowerWentAreNotWrittenTwice) {
  ON_FILES_ALONE("a second machine starts from a copy of the file");
  PlayLocked(5000, 20000);
  const std::string journal = Journal();
  writer.reset();
  on.RunUntil(26000);
  ASSERT_EQ(Count(on, "SELECT COUNT(*) FROM Rapport"), "3");
  TestStation next("2026-11-21 12:10:00");  // the commit was made, the journal did not hear of it
  CarryOver(next, BaseBytes(), journal);
  next.RunUntil(5000);
  EXPECT_EQ(Count(next, "SELECT COUNT(*) FROM Rapport"), "3");
  EXPECT_EQ(Count(next, "SELECT COUNT(*) FROM Discotheque WHERE DIFFUSION02 <> ''"), "0");
  EXPECT_TRUE(next.station.engine.kept.writes.empty());
  EXPECT_FALSE(next.machineFolder.Exists(JournalName(next.station)));
}

ReportRow RowAt(const std::string& time) {
  ReportRow row;
  row.LADATE = "21/11/2026";
  row.HEURE = time;
  row.DATENUM = 46347.6;  // behind the titles that were played
  return row;
}

// Of two that are the same, one of which the base got, the other one is still due.
TEST_F(KeptWrites, ThatAreTwiceTheSameAreWrittenAsOftenAsTheyCame) {
  ON_FILES_ALONE("a second machine starts from a copy of the file");
  {
    const Writer locked(on);
    on.station.base.Waiting().LetAllWait(0);
    for (int i = 0; i < 2; ++i)
      WriteOrKeep(on.station, {.row = RowAt("12:00:00"), .where = "Test"});
    WriteKeptSlice(on.station);  // into the journal
  }
  const std::string journal = Journal();
  TestStation next("2026-11-21 12:10:00");
  CarryOver(next, BaseBytes(), "");
  next.Sql("DELETE FROM Rapport");
  WriteOrKeep(next.station, {.row = RowAt("12:00:00"), .where = "Test"});
  next.machineFolder.Write(JournalName(next.station), journal);
  TakeUpKeptWrites(next.station);
  ASSERT_EQ(next.station.engine.kept.writes.size(), 2U);
  next.RunUntil(6000);
  EXPECT_EQ(Count(next, std::string(kTimes) + "12:00:00'"), "2");
}

// Only what an earlier run left may stand in the base already.
TEST_F(KeptWrites, OfThisRunAreWrittenThoughTheSameRowStandsInTheBase) {
  ON_FILES_ALONE("a second machine starts from a copy of the file");
  PlayLocked(5000, 20000);
  TestStation next("2026-11-21 12:10:00");
  CarryOver(next, BaseBytes(), Journal());
  const auto keepOne = [&next](const std::string& time) {
    const Writer locked(next);
    next.station.base.Waiting().LetAllWait(0);
    next.station.engine.kept.retryMs = 0;
    WriteOrKeep(next.station, {.row = RowAt(time), .where = "Test"});
  };
  WriteOrKeep(next.station, {.row = RowAt("12:00:00"), .where = "Test"});
  keepOne("12:00:00");
  next.RunUntil(6000);
  EXPECT_EQ(Count(next, std::string(kTimes) + "12:00:00'"), "2");
  keepOne("12:00:00");
  next.RunUntil(20000);
  EXPECT_EQ(Count(next, std::string(kTimes) + "12:00:00'"), "3");
}

TEST_F(KeptWrites, LetNoneThatComesLaterPassThem) {
  on.station.base.Waiting().LetAllWait(0);
  writer = std::make_unique<Writer>(on);
  WriteOrKeep(on.station, {.row = RowAt("12:00:00"), .where = "Test"});
  writer.reset();
  WriteOrKeep(on.station, {.row = RowAt("12:00:01"), .where = "Test"});
  EXPECT_EQ(on.station.engine.kept.writes.size(), 2U);
  on.RunUntil(6000);
  EXPECT_EQ(
      Count(on, "SELECT group_concat(HEURE) FROM (SELECT HEURE FROM Rapport ORDER BY CODE) r"),
      "12:00:00,12:00:01");
}

TEST_F(KeptWrites, PartlyWrittenBeforeThePowerWentAreCompletedInTheirOrder) {
  ON_FILES_ALONE("a second machine starts from a copy of the file");
  PlayLocked(5000, 20000);
  const std::string journal = Journal();
  TestStation next("2026-11-21 12:10:00");
  CarryOver(next, BaseBytes(), journal + "\"WRITTEN\",2,END\r\n");
  ASSERT_EQ(next.station.engine.kept.writes.size(), 2U);  // the second title's are done
  next.RunUntil(5000);
  EXPECT_EQ(Count(next, std::string(kTimes) + "12:05:10'"), "0");
  EXPECT_EQ(Count(next, "SELECT COUNT(*) FROM Rapport WHERE TITRE = 'T2'"), "1");
}

TEST_F(KeptWrites, LoseALineThatThePowerCutAndNothingElse) {
  ON_FILES_ALONE("a second machine starts from a copy of the file");
  PlayLocked(5000, 20000);
  const std::string journal = Journal();
  TestStation next("2026-11-21 12:10:00");
  CarryOver(next, BaseBytes(), journal.substr(0, journal.size() - 9));
  EXPECT_EQ(next.station.engine.kept.writes.size(), 3U);
  const auto errors = next.Events("error");
  ASSERT_EQ(errors.size(), 1U) << next.Describe();
  EXPECT_NE(errors[0]["text"].find(": 1 lines cannot be read"), std::string::npos)
      << errors[0]["text"];
}

// What is kept next must not become part of the line that was cut.
TEST_F(KeptWrites, BehindALineThatThePowerCutOutliveTheNextPowerLossToo) {
  ON_FILES_ALONE("a second machine starts from a copy of the file");
  PlayLocked(5000, 20000);
  const std::string journal = Journal();
  TestStation next("2026-11-21 12:10:00");
  CarryOver(next, BaseBytes(), journal.substr(0, journal.size() - 9));
  {
    const Writer locked(next);
    next.station.base.Waiting().LetAllWait(0);
    ReportRow row;
    row.LADATE = "21/11/2026";
    row.HEURE = "12:10:01";
    WriteOrKeep(next.station, {.row = row, .where = "Test"});
    WriteKeptSlice(next.station);
  }
  int damaged = 0;
  const auto kept = ReadJournal(next.station, damaged);
  EXPECT_EQ(kept.size(), 4U);
  EXPECT_EQ(kept.back().row.HEURE, "12:10:01");
}

TEST_F(KeptWrites, OfAFileThatIsTooLargeToBeAJournalAreLeftAsideUnread) {
  ON_FILES_ALONE("a second machine starts from a copy of the file");
  const std::string huge = "\"x\",END\r\n" + std::string(33 << 20, 'x');
  TestStation next("2026-11-21 12:10:00");
  CarryOver(next, BaseBytes(), huge);
  EXPECT_TRUE(next.station.engine.kept.writes.empty());
  EXPECT_FALSE(next.machineFolder.Exists(JournalName(next.station)));
  const auto aside = next.machineFolder.Read(JournalName(next.station) + ".unread");
  ASSERT_TRUE(aside);
  EXPECT_EQ(aside->size(), huge.size());
  ASSERT_EQ(next.Events("error").size(), 1U) << next.Describe();
}

TEST_F(KeptWrites, WithoutAMomentThatADayCanHaveAreDamaged) {
  ON_FILES_ALONE("a second machine starts from a copy of the file");
  PlayLocked(5000, 20000);
  std::string journal = Journal();
  const auto spoil = [&](const char* moment) {
    const size_t at = journal.find(",46347.");
    ASSERT_NE(at, std::string::npos) << journal;
    journal.replace(at + 1, journal.find(',', at + 1) - at - 1, moment);
  };
  for (const char* moment : {"nan", "inf", "4e300"}) spoil(moment);
  TestStation next("2026-11-21 12:10:00");
  CarryOver(next, BaseBytes(), journal);
  EXPECT_EQ(next.station.engine.kept.writes.size(), 1U);
  ASSERT_EQ(next.Events("error").size(), 1U) << next.Describe();
}

TEST_F(KeptWrites, OfAnotherStationOnThisMachineStayWhereTheyAre) {
  ON_FILES_ALONE("a second machine starts from a copy of the file");
  on.machineFolder.Write("KeptRows-00000000.Txt", "\"/elsewhere/Triskin.MDB\",END\r\n");
  PlayLocked(5000, 20000);
  writer.reset();
  on.RunUntil(26000);
  EXPECT_TRUE(on.machineFolder.Exists("KeptRows-00000000.Txt"));
}

TEST_F(KeptWrites, KeepTheirTextsThroughTheJournal) {
  ON_FILES_ALONE("a second machine starts from a copy of the file");
  const std::string odd = "l'\"été\", a,b; 100 % #TRUE#";
  on.AppendCard(on.AddCard({.lengthMs = 10000}));
  OnAirElement spot;
  spot.title = odd;
  spot.secondLine = "x";
  spot.file = on.MakeSound("spot.wav", 5000);
  spot.code = -2;
  on.Append(spot);
  on.Start();
  on.At(5000, [this] { writer = std::make_unique<Writer>(on); });
  on.RunUntil(12000);
  TestStation next("2026-11-21 12:10:00");
  CarryOver(next, BaseBytes(), Journal());
  next.RunUntil(5000);
  EXPECT_EQ(next.SqlText("SELECT AUTEUR FROM Rapport WHERE GENRE = 'PUB'"), odd);
}

TEST_F(KeptWrites, AreWrittenAFewATickInOneTransactionEach) {
  on.station.base.Waiting().LetAllWait(0);
  writer = std::make_unique<Writer>(on);
  for (int i = 0; i < 50; ++i) {
    ReportRow row;
    row.LADATE = "21/11/2026";
    row.HEURE = "12:05:00";
    row.TITRE = std::to_string(i);
    WriteOrKeep(on.station, {.row = row, .where = "Test"});
  }
  ASSERT_EQ(on.station.engine.kept.writes.size(), 50U);
  EXPECT_EQ(Journal(), "") << "the disk is waited for by the tick, once";
  writer.reset();
  std::vector<size_t> left;
  for (int64_t atMs = 5050; atMs < 5500; atMs += 100)
    on.At(atMs, [&] { left.push_back(on.station.engine.kept.writes.size()); });
  on.RunUntil(6000);
  EXPECT_EQ(left, (std::vector<size_t>{30, 10, 0, 0, 0}));
  EXPECT_EQ(Count(on, "SELECT COUNT(*) FROM Rapport"), "50");
  // In their order, by the order in which they got their numbers.
  EXPECT_EQ(Count(on, "SELECT COUNT(*) FROM Rapport WHERE TITRE = CODE - 1"), "50");
}

// The first rows of the slice find room in the report's last page, a later one does not: none of
// them may stay, or they would be written again.
TEST_F(KeptWrites, OfASliceThatTheDiskHasNoRoomForAreWrittenOnceEachLater) {
  ON_FILES_ALONE("the disk is full by SQLite's own word");
  on.station.base.Waiting().LetAllWait(0);
  writer = std::make_unique<Writer>(on);
  for (int i = 0; i < 20; ++i) {
    ReportRow row;
    row.TITRE = std::to_string(i);
    row.AUTEUR = row.LABEL = std::string(40, 'A');  // 280 bytes a row: 14 in a page of 4096
    row.GENRE = row.VARIETE = row.REFERENCE = std::string(20, 'C');
    row.AUTEURCOMPOSITEUR = std::string(60, 'B');
    WriteOrKeep(on.station, {.row = row, .where = "Test"});
  }
  writer.reset();
  on.station.base.Db().Execute("PRAGMA max_page_count = 1");  // as many as it has
  on.RunUntil(8000);
  EXPECT_EQ(Count(on, "SELECT COUNT(*) FROM Rapport"), "0");
  EXPECT_EQ(on.station.engine.kept.writes.size(), 20U);
  on.station.base.Db().Execute("PRAGMA max_page_count = 1000000");
  on.RunUntil(20000);
  EXPECT_EQ(Count(on, "SELECT COUNT(*) FROM Rapport"), "20");
}

TEST_F(KeptWrites, WaitForTheExitPointToPass) {
  on.AppendCard(on.AddCard({.lengthMs = 10000}));
  on.AppendCard(on.AddCard({.lengthMs = 10000}));
  on.Start();
  // The second title begins at 8500 ms; what is kept at 2800 ms is tried again from 7800 ms on.
  on.At(2700, [this] { writer = std::make_unique<Writer>(on); });
  on.At(2800, [this] {
    WriteOrKeep(on.station, {.where = "Test"});
    writer.reset();
  });
  std::vector<size_t> kept;
  for (const int64_t atMs : {8450, 11000})
    on.At(atMs, [&] { kept.push_back(on.station.engine.kept.writes.size()); });
  on.RunUntil(12000);
  EXPECT_EQ(kept, (std::vector<size_t>{1, 0}));
}

TEST_F(KeptWrites, ARowThatTheBaseRefusesForItsOwnFaultCostsThatRowAlone) {
  on.station.base.Waiting().LetAllWait(0);
  writer = std::make_unique<Writer>(on);
  for (const char* genre : {"A", "A GENRE OF MORE THAN TWENTY CHARACTERS", "B"}) {
    ReportRow row;
    row.GENRE = genre;
    WriteOrKeep(on.station, {.row = row, .where = "Test"});
  }
  writer.reset();
  on.RunUntil(6000);
  EXPECT_EQ(Count(on, "SELECT COUNT(*) FROM Rapport"), "2");
  EXPECT_EQ(on.Events("error").size(), 2U) << on.Describe();  // the lock's, and the row's
}

TEST_F(KeptWrites, AreKeptInMemoryAloneWhereTheJournalCannotBeWrittenAndThatIsToldOnce) {
  on.At(5000, [this] { on.machineFolder.writesFail = true; });
  PlayLocked(5000, 20000);
  int told = 0;
  for (const Seen& error : on.Events("error"))
    told += error["text"].find("kept in memory alone") != std::string::npos ? 1 : 0;
  EXPECT_EQ(told, 1) << on.Describe();
  writer.reset();
  on.RunUntil(26000);
  EXPECT_EQ(Count(on, "SELECT COUNT(*) FROM Rapport"), "3");
}

TEST_F(KeptWrites, AJournalThatCouldNotBeWrittenIsMadeWholeWhenItCan) {
  on.At(5000, [this] { on.machineFolder.writesFail = true; });
  on.At(12000, [this] { on.machineFolder.writesFail = false; });
  PlayLocked(5000, 20000);
  EXPECT_NE(Journal().find("\"12:05:10\""), std::string::npos) << Journal();
}

TEST_F(KeptWrites, OfAnEndOnALockedBaseStayInTheJournalAndTheEndSaysSo) {
  PlayLocked(5000, 12000);
  on.station.base.Waiting().LetEachWait(0);
  EXPECT_FALSE(Journal().empty());
  EXPECT_TRUE(WriteKeptAtTheEnd(on.station)) << "they are safe";
  EXPECT_FALSE(Journal().empty());
  const auto errors = on.Events("error");
  ASSERT_FALSE(errors.empty());
  EXPECT_NE(errors.back()["text"].find("2 rows stay in KeptRows-"), std::string::npos)
      << errors.back()["text"];
}

TEST_F(KeptWrites, AJournalThatThePowerCutTwiceLosesTheCutLinesAlone) {
  ON_FILES_ALONE("a second machine starts from a copy of the file");
  PlayLocked(5000, 20000);
  const std::string journal = Journal();
  TestStation next("2026-11-21 12:10:00");
  CarryOver(next, BaseBytes(), journal.substr(0, journal.size() - 2));  // its line end is gone
  ASSERT_EQ(next.station.engine.kept.writes.size(), 4U);
  const std::unique_ptr<Writer> locked = std::make_unique<Writer>(next);
  next.station.base.Waiting().LetAllWait(0);
  WriteOrKeep(next.station, {.where = "Test"});
  WriteKeptSlice(next.station);
  int damaged = 0;
  EXPECT_EQ(ReadJournal(next.station, damaged).size(), 5U);
  EXPECT_EQ(damaged, 0);
}

TEST_F(KeptWrites, OfATitleWhoseCardWasReadStandAsTheCardSaidThen) {
  PlayLocked(5000, 20000);
  writer.reset();
  on.Sql("UPDATE Discotheque SET TITRE = 'RENAMED' WHERE TITRE = 'T1'");
  on.Sql("DELETE FROM Discotheque WHERE TITRE = 'T2'");
  on.RunUntil(26000);
  EXPECT_EQ(Count(on, "SELECT COUNT(*) FROM Rapport WHERE TITRE = 'T1'"), "1");
  EXPECT_EQ(Count(on, "SELECT COUNT(*) FROM Rapport WHERE TITRE = 'T2'"), "1");
}

TEST_F(KeptWrites, OfATitleWhoseCardIsGoneBeforeItCouldBeReadAreToldAsLost) {
  on.station.base.Waiting().LetAllWait(0);
  writer = std::make_unique<Writer>(on);
  WriteOrKeep(on.station, {.kind = AirWrite::Kind::kMusicReport, .code = 4711, .where = "Test"});
  WriteOrKeep(on.station, {.where = "Test"});
  writer.reset();
  on.RunUntil(6000);
  EXPECT_TRUE(on.station.engine.kept.writes.empty());
  ASSERT_NE(on.First("error", "number", "3021"), nullptr) << on.Describe();
}

TEST_F(KeptWrites, AJournalThatCannotBeReadIsSetAsideAndNotWrittenOver) {
  TestStation next("2026-11-21 12:10:00");
  const std::string name = JournalName(next.station);
  next.machineFolder.Write(name, "WORTH KEEPING");
  next.At(0, [] {});
  next.machineFolder.unreadable = name;
  next.Load();
  EXPECT_FALSE(next.machineFolder.Exists(name));
  EXPECT_TRUE(next.machineFolder.Exists(name + ".unread")) << next.Describe();
}

TEST_F(KeptWrites, AreFoundInTheReportAfterTheClockWasSetBack) {
  ReportRow late, early;
  late.LADATE = early.LADATE = "21/11/2026";
  late.HEURE = "02:59:50";
  late.DATENUM = 46347.1248842593;
  early.HEURE = "02:00:10";  // an hour was put back in between
  early.DATENUM = 46347.0834490741;
  on.station.base.Waiting().LetAllWait(0);
  for (const ReportRow& row : {late, early}) WriteOrKeep(on.station, {.row = row, .where = "Test"});
  on.station.engine.kept.writes = {{.row = late, .where = "Test"}, {.row = early, .where = "Test"}};
  on.station.engine.kept.fromEarlierRun = 2;
  on.RunUntil(6000);
  EXPECT_EQ(Count(on, "SELECT COUNT(*) FROM Rapport"), "2");
}

// --- a base that is gone when a title begins ---

TEST_F(KeptWrites, ATitleThatBeginsWhileTheBaseIsClosedHasItsOwnExitPointAndItsRows) {
  on.Set("PmixDef", "1600");
  on.AppendCard(on.AddCard({.lengthMs = 10000, .exitMs = 4000}));
  on.AppendCard(on.AddCard({.lengthMs = 10000, .title = "SECOND"}));
  on.Start();
  on.At(5900, [this] { on.station.base.Close(); });  // the second begins at 6000 ms
  on.RunUntil(9000);
  ASSERT_EQ(on.Events("onair").size(), 2U) << on.Describe();
  EXPECT_EQ(on.Events("onair")[1].Int("mix_ms"), 1600);
  on.RunUntil(16000);
  EXPECT_TRUE(on.station.base.IsOpen());
  EXPECT_EQ(Count(on, "SELECT COUNT(*) FROM Rapport WHERE TITRE = 'SECOND'"), "1");
  EXPECT_EQ(Count(on, "SELECT COUNT(*) FROM Discotheque WHERE DIFFUSION01 <> ''"), "2");
}

}  // namespace
}  // namespace zemo::test
