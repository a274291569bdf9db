// A base and campaigns that another machine drops beside the base of the station on air.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "engine/BaseMaintenance.h"
#include "engine/StartStop.h"
#include "engine/Startup.h"
#include "library/KnownCards.h"
#include "platform/BaseUse.h"
#include "scheduling/LastAnswers.h"
#include "store/DatabaseFiles.h"
#include "store/SoundMeasuresTable.h"
#include "support/SomebodyElse.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

namespace fs = std::filesystem;

std::string CampaignLine(const std::string& file, const std::string& advertiser) {
  std::string line = "JOURNALIER\tJOURNALIER\t00\t23";
  for (int mark = 0; mark < 8; ++mark) line += "\t";
  return line + "\t" + file + "\t30000\t" + advertiser + "\tCAT\t\t10\tme\tTrue\r\n";
}

class HandOver : public testing::Test {
 protected:
  HandOver() {
    on.Load();
    on.stationFolder.Remove("Triskin.BAK");
  }

  // The bytes of a base like the station's with a card more.
  std::string NewBase(const std::string& artist) {
    const std::string path = on.stationDir.Path() + "/production";
    fs::copy_file(on.station.base.Path(), path, fs::copy_options::overwrite_existing);
    DBEngine::ExecuteNative(
        path, "INSERT INTO Discotheque(AUTEUR, TITRE, FILENAME) VALUES('" + artist + "', 'T', '')");
    std::string bytes = *on.stationFolder.Read("production");
    on.stationFolder.Remove("production");
    return bytes;
  }
  std::string Artists() {
    return on.SqlText(
        "SELECT group_concat(AUTEUR) FROM (SELECT AUTEUR FROM Discotheque ORDER BY CODE)");
  }
  void PutOnAir(int titles) {
    for (int i = 0; i < titles; ++i) on.AppendCard(on.AddCard({}));
    on.Start();
  }

  TestStation on;
};

// Whoever opens a pipe to read it waits for its writer, and the air with him.
TEST_F(HandOver, APipeOrAFolderInThePlaceOfANewBaseIsLeftAlone) {
  ON_FILES_ALONE("a file takes the place of another one");
  const std::string path = on.stationDir.Path() + "/New.mdb";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  TakeDroppedBase(on.station);
  EXPECT_EQ(on.First("base", "state", "swapped"), nullptr);
  EXPECT_TRUE(on.station.base.IsOpen());
  fs::remove(path);
  fs::create_directory(path);
  TakeDroppedBase(on.station);
  EXPECT_EQ(on.First("base", "state", "swapped"), nullptr);
  EXPECT_TRUE(on.station.base.IsOpen());
}

// The start that comes next would have made the table anew, and the swap does.
TEST_F(HandOver, ABaseOfAnOlderVersionIsTakenAndBroughtUpToDate) {
  ON_FILES_ALONE("a file takes the place of another one");
  const std::string path = on.stationDir.Path() + "/old";
  fs::copy_file(on.station.base.Path(), path);
  DBEngine::ExecuteNative(path, "ALTER TABLE Cnf DROP COLUMN OutExtrait");
  fs::rename(path, on.stationDir.Path() + "/New.mdb");
  TakeDroppedBase(on.station);
  EXPECT_NE(on.First("base", "state", "swapped"), nullptr) << on.Describe();
  EXPECT_NE(on.First("base", "table", "Cnf"), nullptr) << on.Describe();
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM pragma_table_info('Cnf')"), "50");
}

TEST_F(HandOver, NothingThatTheFormerBaseAnsweredIsKept) {
  ON_FILES_ALONE("a file takes the place of another one");
  on.AddCard({});
  while (ReadCardsAhead(on.station)) {
  }
  ASSERT_EQ(CountOrLast(on.station, "Discotheque"), 1);
  ASSERT_TRUE(CardsAsLastRead(on.station));
  on.stationFolder.Write("New.mdb", NewBase("NEW"));
  TakeDroppedBase(on.station);
  ASSERT_NE(on.First("base", "state", "swapped"), nullptr) << on.Describe();
  EXPECT_FALSE(CardsAsLastRead(on.station));
  EXPECT_FALSE(LastAnswersOf(on.station).counts["Discotheque"]);
}

TEST_F(HandOver, WhatWasMeasuredGoesAlongWithTheNewBase) {
  ON_FILES_ALONE("a file takes the place of another one");
  StoreMeasures(on.station.base, "/a.wav", {5, 7}, {.lengthMs = 1234});
  const std::string bytes = NewBase("NEW");
  on.stationFolder.Write("New.mdb", bytes);
  TakeDroppedBase(on.station);
  EXPECT_NE(on.First("base", "state", "swapped"), nullptr) << on.Describe();
  EXPECT_EQ(on.Events("error").size(), 0U) << on.Describe();
  EXPECT_EQ(Artists(), "NEW");
  EXPECT_TRUE(FindMeasures(on.station.base.Db(), "/a.wav", {5, 7}));
}

// Another program of the station measures the first file beside the engine.
TEST_F(HandOver, ATableThatAnotherProgramAddsOnAirIsNoChangeThatIsTold) {
  ON_FILES_ALONE("a file takes the place of another one");
  PutOnAir(2);
  on.At(5000, [&] {
    StationBase other(on.station.base.Path());
    other.OpenOrCreateDatabase();
    StoreMeasures(other, "/a.wav", {5, 7}, {.lengthMs = 1234});
  });
  on.RunUntil(10000);
  EXPECT_EQ(on.Events("error").size(), 0U) << on.Describe();
  EXPECT_TRUE(FindMeasures(on.station.base.Db(), "/a.wav", {5, 7}));
}

TEST_F(HandOver, ANewBaseIsTakenAsTheNextTitleStartsAndTheAirGoesOn) {
  ON_FILES_ALONE("a file takes the place of another one");
  on.RunUntil(1000);
  PutOnAir(3);
  on.At(60000, [&] { on.MakeFile("NEW.MDB", NewBase("THE NEW ONE")); });
  on.RunUntil(120000);
  EXPECT_EQ(on.First("base", "state", "swapped"), nullptr);  // not before a title starts
  on.RunUntil(500000);
  const Seen* swapped = on.First("base", "state", "swapped");
  ASSERT_NE(swapped, nullptr) << on.Describe();
  EXPECT_EQ(on.Starts().size(), 3U);
  EXPECT_EQ(Artists(), "ARTIST,ARTIST,ARTIST,THE NEW ONE");
  EXPECT_TRUE(on.Events("error").empty()) << on.Describe();
  EXPECT_FALSE(on.stationFolder.Exists("New.mdb"));
  EXPECT_TRUE(on.stationFolder.Exists("Triskin.BAK"));
  EXPECT_FALSE(on.station.notices.hourglass);
  // The grid of the day was composed from the new base.
  bool composed = false;
  for (const Seen& grid : on.Events("grid")) composed |= grid.atMs >= swapped->atMs;
  EXPECT_TRUE(composed) << on.Describe();
  // The row of the first title came with it, that of the second stands in the old one.
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport"), "2");
}

TEST_F(HandOver, SettingsAndCountsAreThoseOfTheNewBaseAtOnce) {
  ON_FILES_ALONE("a file takes the place of another one");
  on.AddCard({});
  EXPECT_EQ(on.station.base.CountRecords("Discotheque"), 1);
  EXPECT_EQ(on.station.base.CnfInt(Cnf::kFadeOut), 1600);
  std::string bytes = NewBase("NEW");
  on.MakeFile("New.mdb", bytes);
  DBEngine::ExecuteNative(on.stationDir.Path() + "/New.mdb",
                          "UPDATE Cnf SET FadeOut = 777; "
                          "INSERT INTO DiscothequeVirgule(FILENAME, TOUCHE) VALUES('/k.wav', 5)");
  TakeDroppedBase(on.station);
  EXPECT_EQ(on.station.base.CnfInt(Cnf::kFadeOut), 777);
  EXPECT_EQ(on.station.base.CountRecords("Discotheque"), 2);
  ASSERT_EQ(on.station.lists.Touches.size(), 1U);
  EXPECT_EQ(on.station.lists.Touches[0].FileName, "/k.wav");
}

// The swap comes while others are at work further up the stack.
TEST_F(HandOver, WhoAsksForATableGetsTheNewOneAndWhoKeptSomethingSeesThatItIsOld) {
  ON_FILES_ALONE("a file takes the place of another one");
  on.AddCard({});
  const auto before = on.station.base.Table("Discotheque");
  EXPECT_EQ(before->RecordCount(), 1);
  const int64_t known = on.station.base.Db().ChangeCounter();
  on.MakeFile("New.mdb", NewBase("NEW"));
  TakeDroppedBase(on.station);
  EXPECT_EQ(on.station.base.Table("Discotheque")->RecordCount(), 2);
  EXPECT_THROW(before->RecordCount(), StoreError);
  EXPECT_GT(on.station.base.Db().ChangeCounter(), known);
}

TEST_F(HandOver, CampaignsDroppedWithANewBaseGoIntoTheNewOne) {
  ON_FILES_ALONE("a file takes the place of another one");
  on.MakeFile("New.mdb", NewBase("NEW"));
  on.MakeFile("ExportPubs.Txt", CampaignLine("/spot.wav", "BOTH"));
  TakeDroppedBase(on.station);
  EXPECT_EQ(Artists(), "NEW");
  EXPECT_EQ(on.SqlText("SELECT ANNONCEUR FROM GrillePub"), "BOTH");
  EXPECT_FALSE(on.stationFolder.Exists("ExportPubs.Txt"));
  EXPECT_LT(on.First("base", "state", "swapped"), on.First("import"));
}

TEST_F(HandOver, ALineWithoutSoundFileAddsACampaignUnlessTheTableHasOne) {
  on.MakeFile("ExportPubs.Txt", CampaignLine("", "FIRST"));
  TakeDroppedBase(on.station);
  on.MakeFile("ExportPubs.Txt", CampaignLine("", "SECOND"));
  TakeDroppedBase(on.station);
  EXPECT_EQ(on.SqlText("SELECT group_concat(ANNONCEUR) FROM GrillePub"), "FIRST");
}

TEST_F(HandOver, AnEmptyListOfCampaignsIsDeleted) {
  on.MakeFile("ExportPubs.Txt", "");
  TakeDroppedBase(on.station);
  EXPECT_FALSE(on.stationFolder.Exists("ExportPubs.Txt"));
  EXPECT_EQ(on.First("import")->Int("added"), 0);
}

TEST_F(HandOver, ALineThatRepeatsAnothersSoundFileAddsTheCampaignTwice) {
  on.MakeFile("ExportPubs.Txt", CampaignLine("/a.wav", "ONE") + CampaignLine("/a.wav", "TWO"));
  TakeDroppedBase(on.station);
  EXPECT_EQ(on.SqlText("SELECT group_concat(ANNONCEUR) FROM GrillePub"), "ONE,TWO");
}

// --- what cannot be the base ---

TEST_F(HandOver, AFileThatIsNoBaseStaysAndIsToldOnceUntilItChanges) {
  ON_FILES_ALONE("a file takes the place of another one");
  on.AddCard({});
  on.MakeFile("New.mdb", std::string(3000, 'x'));
  for (int element = 0; element < 4; ++element) {
    TakeDroppedBase(on.station);
    on.RunUntil((element + 1) * 10000);  // past the time in which the log passes over a repetition
  }
  ASSERT_EQ(on.Events("error").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("error")[0]["where"], "SurveilleNewBase");
  EXPECT_EQ(on.Events("error")[0]["text"], on.stationDir.Path() + "/New.mdb is not a database");
  EXPECT_TRUE(on.stationFolder.Exists("New.mdb"));
  EXPECT_FALSE(on.stationFolder.Exists("Triskin.BAK"));
  EXPECT_EQ(on.station.base.CountRecords("Discotheque"), 1);

  on.MakeFile("New.mdb", NewBase("GOOD"));
  TakeDroppedBase(on.station);
  EXPECT_EQ(Artists(), "ARTIST,GOOD");
}

TEST_F(HandOver, ABaseThatLacksATableStays) {
  ON_FILES_ALONE("a file takes the place of another one");
  on.MakeFile("New.mdb", NewBase("NEW"));
  DBEngine::ExecuteNative(on.stationDir.Path() + "/New.mdb", "DROP TABLE Pls");
  TakeDroppedBase(on.station);
  ASSERT_EQ(on.Events("error").size(), 1U);
  EXPECT_EQ(on.Events("error")[0]["text"], on.stationDir.Path() + "/New.mdb lacks the table Pls");
  EXPECT_TRUE(on.stationFolder.Exists("New.mdb"));
  EXPECT_EQ(Artists(), "");
}

TEST_F(HandOver, AFileThatIsStillBeingCopiedIsTakenOnceItIsWhole) {
  ON_FILES_ALONE("a file takes the place of another one");
  const std::string bytes = NewBase("NEW");
  on.MakeFile("New.mdb", bytes.substr(0, bytes.size() / 2));
  TakeDroppedBase(on.station);
  EXPECT_EQ(Artists(), "");
  on.MakeFile("New.mdb", bytes);
  TakeDroppedBase(on.station);
  EXPECT_EQ(Artists(), "NEW");
}

TEST_F(HandOver, WhileAnotherHasTheBaseTheOldOneStaysOpenAndItIsTriedAgainAtEachElement) {
  ON_FILES_ALONE("a file takes the place of another one");
  SomebodyElse somebody;
  somebody.there = true;
  on.station.platform.baseUse = &somebody;
  on.MakeFile("New.mdb", NewBase("NEW"));
  for (int element = 0; element < 3; ++element) {
    TakeDroppedBase(on.station);
    on.RunUntil((element + 1) * 10000);
  }
  EXPECT_EQ(on.Events("error").size(), 1U) << on.Describe();
  EXPECT_TRUE(on.station.base.IsOpen());
  EXPECT_TRUE(on.stationFolder.Exists("New.mdb"));
  somebody.there = false;
  TakeDroppedBase(on.station);
  EXPECT_EQ(Artists(), "NEW");
  on.station.platform.baseUse = nullptr;
}

TEST_F(HandOver, ATransactionOfAToolKeepsTheOldBaseOpen) {
  ON_FILES_ALONE("a file takes the place of another one");
  on.MakeFile("New.mdb", NewBase("NEW"));
  const auto tool = DBEngine::OpenDatabase(on.station.base.Path());
  tool->BeginTrans();
  TakeDroppedBase(on.station);
  EXPECT_EQ(on.Events("error").size(), 1U);
  EXPECT_TRUE(on.station.base.IsOpen());
  tool->CommitTrans();
  tool->Close();
  TakeDroppedBase(on.station);
  EXPECT_EQ(Artists(), "NEW");
}

TEST_F(HandOver, AFaultAtAnyStepLeavesAWholeBaseOpen) {
  ON_FILES_ALONE("a file takes the place of another one");
  for (int n = 1;; ++n) {
    on.MakeFile("New.mdb", NewBase("NEW" + std::to_string(n)));
    const std::string former = Artists();
    on.stationFolder.fault = {n, 0, nullptr};
    TakeDroppedBase(on.station);
    const bool reached = on.stationFolder.fault.count >= n;
    on.stationFolder.fault = {};
    ASSERT_TRUE(on.station.base.IsOpen()) << "fault " << n << "\n" << on.Describe();
    EXPECT_EQ(on.SqlText("PRAGMA integrity_check"), "ok") << n;
    // The old one with the new beside it, or the new one.
    if (on.stationFolder.Exists("New.mdb"))
      EXPECT_EQ(Artists(), former) << n;
    else
      EXPECT_EQ(Artists(), former + (former.empty() ? "" : ",") + "NEW" + std::to_string(n));
    if (!reached) {
      EXPECT_FALSE(on.stationFolder.Exists("New.mdb"));
      EXPECT_GT(n, 6);
      break;
    }
    on.stationFolder.Remove("New.mdb");
  }
}

TEST_F(HandOver, ADamagedBaseIsReplacedAsWell) {
  ON_FILES_ALONE("a file takes the place of another one");
  const std::string bytes = NewBase("NEW");
  on.station.base.Close();
  on.MakeFile("Triskin.MDB", std::string(8192, 'x'));
  on.MakeFile("New.mdb", bytes);
  TakeDroppedBase(on.station);
  EXPECT_TRUE(on.station.base.IsOpen()) << on.Describe();
  EXPECT_EQ(Artists(), "NEW");
}

// --- a start without a base ---

class InterruptedChange : public HandOver {
 protected:
  InterruptedChange() {
    if (test::TestsAreOnServer()) return;
    on.localValues.Set("LastCompactage", "03/11/2026 08:00:00");
    bytes = NewBase("NEW");
    old = NewBase("OLD");
    EndInOrder(on.station);
    fs::remove(on.station.base.Path());
    on.seen.clear();
  }
  void Start() {
    ASSERT_TRUE(OnAir::Form_Load(on.station));
    OnAir::Form_Activate(on.station, true);
  }
  std::string bytes, old;
};

TEST_F(InterruptedChange, ANewBaseTakesThePlaceOfTheMissingOne) {
  ON_FILES_ALONE("a file takes the place of another one");
  on.MakeFile("New.mdb", bytes);
  on.MakeFile("Triskin.BAK", old);
  Start();
  EXPECT_EQ(Artists(), "NEW");
  EXPECT_EQ(on.Events("base")[0]["state"], "swapped");
  EXPECT_EQ(on.Events("base")[1]["state"], "opened");
  EXPECT_FALSE(on.stationFolder.Exists("New.mdb"));
  EXPECT_EQ(on.Events("error").size(), 1U);
  EXPECT_EQ(on.Events("error")[0]["text"],
            "Triskin.MDB was missing after an interrupted change: New.mdb has taken its place");
}

TEST_F(InterruptedChange, TheCopyOfACompactionTakesThePlaceOfTheMissingBase) {
  ON_FILES_ALONE("a file takes the place of another one");
  on.MakeFile("TriskinN.MDB", bytes);
  on.MakeFile("Triskin.BAK", old);
  Start();
  EXPECT_EQ(Artists(), "NEW");
  EXPECT_FALSE(on.stationFolder.Exists("TriskinN.MDB"));
}

TEST_F(InterruptedChange, WithADamagedNewBaseTheOldOneComesBack) {
  ON_FILES_ALONE("a file takes the place of another one");
  on.MakeFile("New.mdb", "no base");
  on.MakeFile("Triskin.BAK", old);
  Start();
  EXPECT_EQ(Artists(), "OLD");
  EXPECT_TRUE(on.stationFolder.Exists("New.mdb"));
}

TEST_F(InterruptedChange, AJournalOfTheOldBaseIsNotPlayedIntoTheNewOne) {
  ON_FILES_ALONE("a file takes the place of another one");
  on.MakeFile("New.mdb", bytes);
  std::string journal("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7", 8);
  on.MakeFile("Triskin.MDB-journal", journal + std::string(4096, '\1'));
  Start();
  EXPECT_EQ(Artists(), "NEW");
  EXPECT_FALSE(on.stationFolder.Exists("Triskin.MDB-journal"));
  EXPECT_EQ(on.SqlText("PRAGMA integrity_check"), "ok");
}

TEST_F(InterruptedChange, WithoutAnyOfThemABaseIsCreatedAsEver) {
  ON_FILES_ALONE("a file takes the place of another one");
  on.MakeFile("Triskin.BAK", old);
  Start();
  EXPECT_EQ(on.Events("base")[0]["state"], "created");
  EXPECT_EQ(Artists(), "");
}

}  // namespace
}  // namespace zemo::test
