// Stored playlists: saving, loading, deleting, and the rows of the on-air list they are rebuilt as.
#include <gtest/gtest.h>

#include "engine/OperatorControls.h"
#include "engine/StoredPlaylists.h"
#include "library/OnAirRows.h"
#include "station/OnAirColumns.h"
#include "station/PlanTimes.h"
#include "support/BaseLock.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

class StoredPlaylist : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    on.Sql(
        "INSERT INTO DiscothequeJingle (FILENAME, DUREE, LIBELLE, POINTSORTIE) VALUES ('/j.wav', "
        "5000, 'JINGLE', 300)");
    on.Sql(
        "INSERT INTO GrillePub (FILENAMEAUDIO, DUREE, ANNONCEUR, PUB) VALUES ('/p.wav', 30000, "
        "'SPOT', -1)");
    on.Sql(
        "INSERT INTO GrillePub (FILENAMEAUDIO, DUREE, ANNONCEUR, PUB) VALUES ('/r.wav', 60000, "
        "'NEWS', 0)");
    on.Sql(
        "INSERT INTO DiscothequeVirgule (FILENAME, DUREE, LIBELLE, POINTSORTIE) VALUES ('/v.wav', "
        "2000, 'OTHER', 100)");
    on.Sql(
        "INSERT INTO VT (FILENAME, START, LIBELLE, CUT, DUREE, POINTSORTIE) VALUES ('/t.wav', "
        "70000, 'LINK', 0, 4000, 0)");
    on.Sql(
        "INSERT INTO VT (FILENAME, START, LIBELLE, CUT, DUREE, POINTSORTIE) VALUES ('/u.wav', 0, "
        "'LINK', -1, 4000, 250)");
  }
  StoredListEditor& Panel() { return on.station.storedList; }
  void Save(const std::string& label) {
    Panel().ComboPLS.text = label;
    Panel().LblDate = "21/11/2026";
    Panel().ChHeure = "18:00";
    OnAir::BtnSauve_Click(on.station);
  }
  void Store(int32_t list, const std::string& rows) {
    on.Sql("INSERT INTO Playlist (CODE, LADATE, LHEURE, LIBELLE, NOJINGLE) VALUES (" +
           std::to_string(list) + ", '21/11/2026', '18:00', ' EVENING ', 2)");
    on.Sql("INSERT INTO Pls (NUMPLS, DISCOTHEQUE, FICHE) VALUES " + rows);
  }
  const OnAirRow& Row(int row) { return on.station.PL.Row(row); }
  TestStation on;
};

TEST_F(StoredPlaylist, LoadsEveryKindFromItsLibraryRecord) {
  const int32_t title = on.AddCard({.lengthMs = 185000,
                                    .artist = "ARTIST",
                                    .title = "TITLE",
                                    .genre = "GOLD",
                                    .exitMs = 2500,
                                    .introSec = 12});
  on.Sql("UPDATE Discotheque SET LASTDIFF = 46347.5");
  const std::string t = std::to_string(title);
  Store(7, "(7," + t + "," + t +
               "),(7,-1,1),(7,-2,1),(7,-4,2),(7,-5,1),(7,-6,-6),(7,-30,1),(7,-30,2)");
  ASSERT_TRUE(OnAir::SelectStoredList(on.station, 7));
  ASSERT_EQ(on.station.PL.Count(), 8);
  EXPECT_EQ(Row(1).title, "ARTIST");
  EXPECT_EQ(Row(1).secondLine, "TITLE");
  EXPECT_EQ(ColumnText(Row(1), Col::kLength), "03:05");
  EXPECT_EQ(Row(1).genre, "GOLD");
  EXPECT_EQ(Row(1).variety, "NATIONAL");
  EXPECT_EQ(ColumnText(Row(1), Col::kLengthMs), "185000");
  EXPECT_EQ(ColumnText(Row(1), Col::kExitMs), "2500");
  EXPECT_EQ(ColumnText(Row(1), Col::kIntro), "12");
  EXPECT_EQ(ColumnText(Row(1), Col::kLastPlayed), "2026/11/21  12:00:00");
  EXPECT_EQ(Row(2).genre, "JINGLE");
  EXPECT_EQ(ColumnText(Row(2), Col::kExitMs), "300");
  EXPECT_EQ(Row(3).genre, "PUB");
  EXPECT_EQ(ColumnText(Row(3), Col::kExitMs), "");
  EXPECT_EQ(Row(4).genre, "RUB");
  EXPECT_EQ(Row(4).title, "NEWS");
  EXPECT_EQ(Row(5).genre, "AUTRES");
  EXPECT_EQ(Row(6).title, "Begin Extrait");
  EXPECT_EQ(Row(6).genre, "");
  EXPECT_EQ(Row(7).title, "Voice Track");
  EXPECT_EQ(Row(7).secondLine, "1");
  EXPECT_EQ(ColumnText(Row(7), Col::kLengthMs), "0");
  EXPECT_EQ(ColumnText(Row(7), Col::kIntro), "70000");
  // A cut track: its text differs from its kind.
  EXPECT_EQ(Row(8).title, "Voice Track Cut");
  EXPECT_EQ(Row(8).genre, "Voice Track");
  EXPECT_EQ(ColumnText(Row(8), Col::kLengthMs), "4000");
  EXPECT_EQ(ColumnText(Row(8), Col::kExitMs), "250");
}

TEST_F(StoredPlaylist, LoadFillsThePanel) {
  Store(7, "(7,-1,1)");
  ASSERT_TRUE(OnAir::SelectStoredList(on.station, 7));
  EXPECT_EQ(Panel().ComboPLS.items.at(0).text, "EVENING");  // trimmed in the list
  EXPECT_EQ(Panel().ComboPLS.text, " EVENING ");            // as stored in the field
  EXPECT_EQ(Panel().LblDate, "21/11/2026");
  EXPECT_EQ(Panel().ChHeure, "18:00");
  EXPECT_EQ(Panel().OptPls, 2);
  EXPECT_EQ(Panel().LblCodePL, 7);
}

TEST_F(StoredPlaylist, RowWhoseCardIsGoneIsLeftOutWithoutAWord) {
  Store(7, "(7,4711,4711),(7,-1,99),(7,-1,1)");
  OnAir::SelectStoredList(on.station, 7);
  EXPECT_EQ(on.station.PL.Count(), 1);
  EXPECT_TRUE(on.Events("message").empty());
  EXPECT_TRUE(on.Events("error").empty());
}

TEST_F(StoredPlaylist, ThePanelsFieldsAreWhatTheOperatorTypesAndChooses) {
  OnAir::ComboPLS_Change(on.station, "MORNING");
  OnAir::OptPls_Click(on.station, 3);
  OnAir::PickListDay(on.station, {.year = 2026, .month = 12, .day = 1});
  EXPECT_EQ(Panel().ComboPLS.text, "MORNING");
  EXPECT_EQ(Panel().OptPls, 3);
  EXPECT_EQ(Panel().LblDate, "01/12/2026");
  OnAir::LblDate_RightClick(on.station);
  EXPECT_EQ(Panel().LblDate, "JOURNALIER");
}

TEST_F(StoredPlaylist, TheTypedTimePlansTheRowsAnewAndTheyPrintALineEach) {
  OnAir::Toolbar_ButtonClick(on.station, Toolbar::kLive);
  on.AppendCard(on.AddCard({.lengthMs = 180000, .artist = "ARTIST", .title = "TITLE"}));
  OnAir::ChHeure_Change(on.station, "06:30");
  EXPECT_EQ(OnAir::PrintedList(on.station),
            std::vector<std::string>{ColumnText(Row(1), Col::kPlanned) + "  03:00  ARTIST  TITLE"});
  EXPECT_EQ(ColumnText(Row(1), Col::kPlanned), "06 h 30 ' 02");  // two seconds of buffers
}

TEST_F(StoredPlaylist, NothingSelectedDoesNothing) {
  on.Append(BeginExtractRow());
  Panel().ComboPLS.index = -1;
  OnAir::ComboPLS_Click(on.station);
  EXPECT_EQ(on.station.PL.Count(), 1);
}

TEST_F(StoredPlaylist, SaveStoresPairsAndTopHourRowsAreDropped) {
  on.AppendCard(on.AddCard({}));
  OnAir::DropFromLibrary(on.station, BrowseList::kJingles, 1, 0);
  OnAir::DropFromLibrary(on.station, BrowseList::kJingles, 1, 0);
  OnAir::DropFromLibrary(on.station, BrowseList::kSpots, 1, 0);
  OnAir::DropFromLibrary(on.station, BrowseList::kSpots, 2, 0);
  OnAir::DropFromLibrary(on.station, BrowseList::kOthers, 1, 0);
  on.Append(RowOfHourPip("/pip.wav"));
  on.Append(BeginExtractRow());
  OnAirElement track;
  track.voiceTrack = 2;
  track.code = -30;
  on.Append(track);
  Save("L'HEURE");
  EXPECT_EQ(on.SqlText("SELECT LADATE || LHEURE || LIBELLE || NOJINGLE FROM Playlist"),
            "21/11/202618:00L'HEURE0");
  EXPECT_EQ(on.SqlText("SELECT group_concat(DISCOTHEQUE || ':' || FICHE, ' ') FROM "
                       "(SELECT * FROM Pls WHERE NUMPLS = 1 ORDER BY CODE) r"),
            "1:1 -1:1 -1:1 -2:1 -4:2 -5:1 -6:-6 -30:2");
  EXPECT_EQ(Panel().LblCodePL, 1);
  EXPECT_EQ(Panel().ComboPLS.items.size(), 1U);
}

TEST_F(StoredPlaylist, SavingAgainReplacesTheRows) {
  OnAir::DropFromLibrary(on.station, BrowseList::kJingles, 1, 0);
  Save("LIST");
  on.station.PL.Clear();
  OnAir::DropFromLibrary(on.station, BrowseList::kOthers, 1, 0);
  Save("RENAMED");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) || MAX(LIBELLE) FROM Playlist"), "1RENAMED");
  EXPECT_EQ(on.SqlText("SELECT group_concat(DISCOTHEQUE) FROM Pls"), "-5");
}

TEST_F(StoredPlaylist, LabelIsCutTo40Characters) {
  Save("ÉTÉ " + std::string(60, 'X'));
  EXPECT_EQ(on.SqlText("SELECT LIBELLE FROM Playlist"), "ÉTÉ " + std::string(36, 'X'));
}

TEST_F(StoredPlaylist, CardAbove32767CannotBeStoredAndTheOthersAre) {
  on.Sql(
      "INSERT INTO Discotheque (CODE, FILENAME, DUREE, AUTEUR, TITRE) VALUES (40000, '/x.wav', "
      "1000, 'A', 'B')");
  on.AppendCard(40000);
  OnAir::DropFromLibrary(on.station, BrowseList::kJingles, 1, 0);
  Save("LIST");
  EXPECT_EQ(on.SqlText("SELECT group_concat(DISCOTHEQUE) FROM Pls"), "-1");
  ASSERT_EQ(on.Events("error").size(), 1U);
  EXPECT_EQ(on.Events("error")[0].Int("number"), kErrOverflow);
}

TEST_F(StoredPlaylist, FailedHeadLeavesTheOtherListsRowsAlone) {
  Store(7, "(7,-1,1)");
  OnAir::DropFromLibrary(on.station, BrowseList::kOthers, 1, 0);
  Panel().ComboPLS.text = "LIST";
  Panel().LblDate = "a date that is longer than ten characters";
  OnAir::BtnSauve_Click(on.station);
  EXPECT_EQ(on.SqlText("SELECT group_concat(DISCOTHEQUE) FROM Pls"), "-1");
  EXPECT_EQ(Panel().LblCodePL, 0);
  EXPECT_FALSE(Panel().saving);
  EXPECT_FALSE(on.Events("error").empty());
}

// --- a save is whole or leaves everything as it was ---

class SavedList : public StoredPlaylist {
 protected:
  void SetUp() override {
    StoredPlaylist::SetUp();
    OnAir::DropFromLibrary(on.station, BrowseList::kJingles, 1, 0);
    Save("FORMER");
    on.seen.clear();
  }
  // More rows than the table's pages hold.
  void AppendRows() {
    for (int i = 0; i < 1000; ++i) on.Append(BeginExtractRow());
  }
  void LimitTheDisk(bool full) {
    on.station.base.Db().Execute(full ? "PRAGMA max_page_count = 1"
                                      : "PRAGMA max_page_count = 1000000");
  }
  std::string Lists() {
    return on.SqlText("SELECT group_concat(CODE || ' ' || LIBELLE, ', ') FROM Playlist");
  }
  std::string Rows(int32_t list) {
    return on.SqlText("SELECT COUNT(*) || ' from ' || MAX(DISCOTHEQUE) FROM Pls WHERE NUMPLS = " +
                      std::to_string(list));
  }
  void ExpectOneError(int number, const std::string& words) {
    ASSERT_EQ(on.Events("error").size(), 1U) << on.Describe();
    EXPECT_EQ(on.Events("error")[0]["where"], "BtnSauve");
    EXPECT_EQ(on.Events("error")[0].Int("number"), number);
    EXPECT_NE(on.station.notices.lastError.find(words), std::string::npos)
        << on.station.notices.lastError;
    EXPECT_FALSE(Panel().saving);
    EXPECT_EQ(Panel().ComboPLS.items.size(), 1U);
  }
};

TEST_F(SavedList, OnAFullDiskTheFormerListStaysWhole) {
  ON_FILES_ALONE("the disk is full by SQLite's own word");
  AppendRows();
  LimitTheDisk(true);
  Save("LATER");
  ExpectOneError(kErrDiskFull, "the stored list stays as it was");
  EXPECT_EQ(Lists() + "; " + Rows(1), "1 FORMER; 1 from -1");
  LimitTheDisk(false);
  Save("LATER");
  EXPECT_EQ(Lists() + "; " + Rows(1), "1 LATER; 1001 from -1");
}

TEST_F(SavedList, OnAFullDiskANewListLeavesNoHead) {
  ON_FILES_ALONE("the disk is full by SQLite's own word");
  Panel().LblCodePL = 0;
  AppendRows();
  LimitTheDisk(true);
  Save("NEW");
  ExpectOneError(kErrDiskFull, "the list is not stored");
  EXPECT_EQ(Lists(), "1 FORMER");
  EXPECT_EQ(Panel().LblCodePL, 0);
  LimitTheDisk(false);
  Save("NEW");
  EXPECT_EQ(Lists() + "; " + Rows(2), "1 FORMER, 2 NEW; 1001 from -1");
  EXPECT_EQ(Panel().LblCodePL, 2);
}

// Another process reads, so that the rows can be written but not stored; in real time.
TEST_F(SavedList, ThatCannotBeStoredForALockStaysWhole) {
  on.Append(BeginExtractRow());
  on.station.base.Waiting().LetEachWait(50);
  BaseLock reader(on.station.base.Path(), "BEGIN; SELECT * FROM Playlist");
  Save("LATER");
  ExpectOneError(kErrLocked, "the stored list stays as it was");
  reader.Release();
  EXPECT_EQ(Lists() + "; " + Rows(1), "1 FORMER; 1 from -1");
}

TEST_F(SavedList, ThatCannotBeDeletedForALockKeepsItsVoiceTracks) {
  const std::string track = on.MakeFile("link.wav", "sound");
  on.Sql("UPDATE VT SET FILENAME = '" + track + "' WHERE CODE = 1");
  on.Sql("INSERT INTO Pls (NUMPLS, DISCOTHEQUE, FICHE) VALUES (1, -30, 1)");
  OnAir::SelectStoredList(on.station, 1);
  on.station.base.Waiting().LetEachWait(50);
  BaseLock writer(on.station.base.Path(), "BEGIN IMMEDIATE");
  on.messages.AnswerNext(Answer::kOk);
  OnAir::ComboPLS_KeyDelete(on.station);
  EXPECT_EQ(on.Events("error").size(), 1U) << on.Describe();
  EXPECT_TRUE(on.stationFolder.Exists("link.wav"));
  writer.Release();
  EXPECT_EQ(Lists() + "; " + on.SqlText("SELECT COUNT(*) FROM VT"), "1 FORMER; 2");
}

TEST_F(StoredPlaylist, NewClearsListAndFields) {
  Store(7, "(7,-1,1)");
  OnAir::SelectStoredList(on.station, 7);
  OnAir::BtnNew_Click(on.station);
  EXPECT_TRUE(on.station.PL.Empty());
  EXPECT_EQ(Panel().LblDate, "JJ/MM/ANNE");
  EXPECT_EQ(Panel().ChHeure, "hh:mn");
  EXPECT_EQ(Panel().LblCodePL, 0);
  EXPECT_EQ(Panel().OptPls, 0);
}

TEST_F(StoredPlaylist, DeleteAsksAndTakesTheVoiceTracksAlong) {
  const std::string track = on.MakeFile("link.wav", "sound");
  on.Sql("UPDATE VT SET FILENAME = '" + track + "' WHERE CODE = 1");
  Store(7, "(7,-1,1),(7,-30,1)");
  OnAir::SelectStoredList(on.station, 7);
  OnAir::ComboPLS_KeyDelete(on.station);  // nobody answers: cancel
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Playlist"), "1");
  on.messages.AnswerNext(Answer::kOk);
  OnAir::ComboPLS_KeyDelete(on.station);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Playlist"), "0");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Pls"), "0");
  EXPECT_EQ(on.SqlText("SELECT group_concat(CODE) FROM VT"), "2");
  EXPECT_FALSE(on.stationFolder.Exists("link.wav"));
  EXPECT_EQ(on.Events("message")[0]["title"], "Suppresion");
  EXPECT_EQ(on.Events("message")[0]["text"], "Supprimer cette playlist");
}

TEST_F(StoredPlaylist, PlannedTimesInTheEditorBeginAtTheListsTime) {
  Panel().open = true;
  Panel().ChHeure = "23:59";
  OnAir::DropFromLibrary(on.station, BrowseList::kSpots, 2, 0);    // 60000 ms
  OnAir::DropFromLibrary(on.station, BrowseList::kJingles, 1, 0);  // 5000 ms, exit point 300
  OnAir::DropFromLibrary(on.station, BrowseList::kSpots, 1, 0);
  RefreshPlanTimes(on.station);
  // 2 s of buffers behind 23:59:00; the hours wrap at 24.
  EXPECT_EQ(ColumnText(Row(1), Col::kPlanned), "23 h 59 ' 02");
  EXPECT_EQ(ColumnText(Row(2), Col::kPlanned), "00 h 00 ' 02");
  EXPECT_EQ(ColumnText(Row(3), Col::kPlanned), "00 h 00 ' 06");
  // 60000 + 4700 + 30000 = 94.7 s
  EXPECT_EQ(ListTotalSec(on.station), 94);
}

TEST_F(StoredPlaylist, WithoutATimeInTheEditorPlannedTimesBeginNow) {
  Panel().open = true;
  OnAir::DropFromLibrary(on.station, BrowseList::kSpots, 2, 0);
  EXPECT_EQ(ColumnText(Row(1), Col::kPlanned), "12 h 00 ' 00");  // when the test begins
  Panel().ChHeure.clear();
  RefreshPlanTimes(on.station);
  EXPECT_EQ(ColumnText(Row(1), Col::kPlanned), "12 h 00 ' 00");
}

TEST_F(StoredPlaylist, ATimeLeftInTheEditorDoesNotCountOnceItIsClosed) {
  OnAir::DropFromLibrary(on.station, BrowseList::kSpots, 2, 0);
  Panel().ChHeure = "18:30";
  Panel().open = false;
  RefreshPlanTimes(on.station);
  EXPECT_EQ(ColumnText(Row(1), Col::kPlanned), "12 h 00 ' 00");
}

TEST_F(StoredPlaylist, AHalfTypedTimeCountsAsFarAsItGoes) {
  Panel().open = true;
  OnAir::DropFromLibrary(on.station, BrowseList::kSpots, 2, 0);
  OnAir::ChHeure_Change(on.station, "7");
  EXPECT_EQ(ColumnText(Row(1), Col::kPlanned), "07 h 00 ' 02");
}

TEST_F(StoredPlaylist, OnlyAListOfAWholeMomentIsBeyondDoubt) {
  const auto doubt = [](const std::string& date, const std::string& time) {
    StoredListEditor editor;
    editor.LblDate = date;
    editor.ChHeure = time;
    return OnAir::DoubtOf(editor);
  };
  EXPECT_EQ(doubt("24/12/2026", "18:30"), OnAir::ListDoubt::kNone);
  EXPECT_EQ(doubt("JOURNALIER", "00:00"), OnAir::ListDoubt::kNone);
  EXPECT_EQ(doubt("JJ/MM/ANNE", "hh:mn"), OnAir::ListDoubt::kNoMoment);
  EXPECT_EQ(doubt("", ""), OnAir::ListDoubt::kNoMoment);
  for (const char* time : {"hh:mn", "", "24:00", "18:60", "9:30", "1830"})
    EXPECT_EQ(doubt("24/12/2026", time), OnAir::ListDoubt::kNoTime) << time;
  for (const char* date : {"JJ/MM/ANNE", "", "31/02/2026", "24/13/2026", "tomorrow"})
    EXPECT_EQ(doubt(date, "18:30"), OnAir::ListDoubt::kNoDate) << date;
}

TEST_F(StoredPlaylist, SavingSaysWhetherTheListIsStored) {
  OnAir::DropFromLibrary(on.station, BrowseList::kSpots, 2, 0);
  EXPECT_TRUE(OnAir::BtnSauve_Click(on.station));
  on.Sql("DROP TABLE Playlist");
  Panel().LblCodePL = 0;
  EXPECT_FALSE(OnAir::BtnSauve_Click(on.station));
}

TEST_F(StoredPlaylist, AListWhoseHeadCannotBeChangedIsNotSaved) {
  ON_FILES_ALONE("the trigger is in SQLite's words");
  OnAir::DropFromLibrary(on.station, BrowseList::kSpots, 2, 0);
  ASSERT_TRUE(OnAir::BtnSauve_Click(on.station));
  EXPECT_TRUE(OnAir::BtnSauve_Click(on.station));
  on.Native(
      "CREATE TRIGGER Barred BEFORE UPDATE ON Playlist BEGIN SELECT RAISE(ABORT, 'barred'); END");
  EXPECT_FALSE(OnAir::BtnSauve_Click(on.station));
}

TEST_F(StoredPlaylist, AListWhoseHeadIsGoneIsNotSaved) {
  OnAir::DropFromLibrary(on.station, BrowseList::kSpots, 2, 0);
  ASSERT_TRUE(OnAir::BtnSauve_Click(on.station));
  on.Sql("DELETE FROM Playlist");
  EXPECT_FALSE(OnAir::BtnSauve_Click(on.station));
}

TEST_F(StoredPlaylist, DeletingTheOnlyRowMakesTheTotalsZero) {
  OnAir::DropFromLibrary(on.station, BrowseList::kSpots, 2, 0);
  EXPECT_EQ(ListTotalSec(on.station), 60);
  OnAir::PL_KeyDelete(on.station, 1);
  EXPECT_EQ(ListTotalSec(on.station), 0);
}

TEST_F(StoredPlaylist, DraggedRowKeepsItsColumns) {
  for (int i = 0; i < 3; ++i) OnAir::DropFromLibrary(on.station, BrowseList::kSpots, 1 + i % 2, 0);
  OnAir::DropFromLibrary(on.station, BrowseList::kOthers, 1, 0);
  OnAir::PL_DragDrop(on.station, 4, 1);
  EXPECT_EQ(on.station.PL.Codes(), (std::vector<int32_t>{-5, -2, -4, -2}));
  EXPECT_EQ(Row(1).file, "/v.wav");
}

TEST_F(StoredPlaylist, DeleteOfAVoiceTrackAsksForItsRecord) {
  OnAirElement track;
  track.title = "Voice Track";
  track.voiceTrack = 1;
  track.code = -30;
  on.Append(track);
  on.Append(track);
  OnAir::PL_KeyDelete(on.station, 1);  // nobody answers: no
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM VT"), "2");
  EXPECT_EQ(on.station.PL.Count(), 1);
  on.messages.AnswerNext(Answer::kYes);
  OnAir::PL_KeyDelete(on.station, 1);
  EXPECT_EQ(on.SqlText("SELECT group_concat(CODE) FROM VT"), "2");
  EXPECT_TRUE(on.station.PL.Empty());
}

}  // namespace
}  // namespace zemo::test
