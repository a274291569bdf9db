// The tabs of jingles, short elements and hour pips.
#include "library/HotKeys.h"
#include "library/HourPips.h"
#include "library/tests/LibraryFixture.h"
#include "platform/Desktop.h"

namespace zemo {

namespace {

struct LibraryJingles : LibraryFixture {
  void OpenTab(LibraryTab tab) {
    Open();
    Library::TabStrip1_Click(on.station, editor, tab);
  }
  void Add(const std::string& name) {
    Library::TakeFiles(on.station, editor, {on.MakeSound(name, 4000)});
    Library::Ajouter_Click(on.station, editor);
  }
};

}  // namespace

TEST_F(LibraryJingles, TheSameFileAddedTwiceGivesTwoRows) {
  OpenTab(LibraryTab::kJingles);
  Add("jingle.wav");
  Add("jingle.wav");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM DiscothequeJingle"), "2");
  EXPECT_EQ(Messages(), 0U);
  EXPECT_EQ(Library::InfoText(editor, LibraryTab::kJingles), "DiscothequeJingle2 / 2");
}

TEST_F(LibraryJingles, ABareFileHasTheDefaultsOfAJingle) {
  on.Set("PmixJingles", "450");
  OpenTab(LibraryTab::kJingles);
  Add("Morning.wav");
  EXPECT_EQ(on.SqlText("SELECT LIBELLE || '|' || GENREASSOCIE || '|' || POINTSORTIE || '|' || "
                       "SURIMPRESSION || '|' || TRANCHE07 || '|' || AUTEURCOMPOSITEUR || '|' || "
                       "JingleExtraitYN || '|' || DUREE FROM DiscothequeJingle"),
            "Morning||450|0|" + kAllDay + "||0|4000");
}

TEST_F(LibraryJingles, ALotIsAddedWithItsOwnWords) {
  OpenTab(LibraryTab::kJingles);
  Library::TakeFiles(on.station, editor,
                     {on.MakeSound("a.wav", 1000), on.MakeSound("b.wav", 1000)});
  EXPECT_EQ(Message(0), "Vous avez sélectioné 2 Fichiers audios\r\nvalidez sur le menu Ajouter");
  Library::Ajouter_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM DiscothequeJingle"), "2");
}

TEST_F(LibraryJingles, LinkedToACardShowsItsArtistAndTitleAndLeavesTheStoredArtist) {
  const int32_t card = on.AddCard({.artist = "ARTIST", .title = "TITLE"});
  OpenTab(LibraryTab::kJingles);
  Add("jingle.wav");
  Library::LblArtisteAssocie_Change(on.station, editor, "SOMEBODY");
  Library::Replacer_Click(on.station, editor);
  Library::CodeAssocie_Change(on.station, editor, card);
  EXPECT_EQ(editor.jingle.LblArtisteAssocie, "ARTIST - TITLE");
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT CODEASSOCIE || ARTISTEASSOCIE FROM DiscothequeJingle"), "1SOMEBODY");
  Library::LblArtisteAssocie_Change(on.station, editor, "ELSE");
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT CODEASSOCIE || ARTISTEASSOCIE FROM DiscothequeJingle"), "1SOMEBODY");
}

TEST_F(LibraryJingles, LinkedToADeletedCardShowsTheStoredArtist) {
  OpenTab(LibraryTab::kJingles);
  Add("jingle.wav");
  on.Sql("UPDATE DiscothequeJingle SET CODEASSOCIE = 77, ARTISTEASSOCIE = 'SOMEBODY'");
  Library::TabStrip1_Click(on.station, editor, LibraryTab::kJingles);
  EXPECT_EQ(editor.jingle.LblArtisteAssocie, "SOMEBODY");
}

TEST_F(LibraryJingles, AJingleAiredMeanwhileDoesNotDivertReplacer) {
  OpenTab(LibraryTab::kJingles);
  Add("a.wav");
  Add("b.wav");
  on.Sql("UPDATE DiscothequeJingle SET LASTDIFF = 46348.5 WHERE CODE = 1");
  editor.jingle.ChLibJingle = "RENAMED";
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT CODE FROM DiscothequeJingle WHERE LIBELLE = 'RENAMED'"), "2");
  EXPECT_EQ(Messages(), 0U);
}

TEST_F(LibraryJingles, ItsLastPlayIsShownWithThreeBlanksBetween) {
  OpenTab(LibraryTab::kJingles);
  Add("a.wav");
  EXPECT_EQ(editor.jingle.LblDiff, "");
  on.Sql("UPDATE DiscothequeJingle SET LASTDIFF = 46348.5");  // 22 November 2026, noon
  Library::TabStrip1_Click(on.station, editor, LibraryTab::kJingles);
  EXPECT_EQ(editor.jingle.LblDiff, "22/11/2026   12:00:00");
}

TEST_F(LibraryJingles, DeletingNamesTheCard) {
  OpenTab(LibraryTab::kJingles);
  Add("Morning.wav");
  on.messages.AnswerNext(Answer::kYes);
  Library::MnuDelete_Click(on.station, editor);
  EXPECT_EQ(Message(0), "Confirmez la suppression de la fiche Morning");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM DiscothequeJingle"), "0");
  EXPECT_FALSE(editor.MnuDeleteEnabled);
}

TEST_F(LibraryJingles, CopyAndPasteGoOffWhileTheirListIsShown) {
  OpenTab(LibraryTab::kJingles);
  Add("B.wav");
  Add("A.wav");
  EXPECT_TRUE(Library::HourBoxesOn(editor));
  Library::BtnRechJingles_Click(on.station, editor);
  EXPECT_FALSE(Library::HourBoxesOn(editor));
  ASSERT_EQ(editor.PLJingles.Count(), 2U);
  EXPECT_EQ(editor.PLJingles.Cell(0, 0), "A");
  Library::PLJingles_Click(on.station, editor, 1);
  EXPECT_EQ(editor.jingle.ChLibJingle, "B");
  EXPECT_TRUE(Library::HourBoxesOn(editor));
}

TEST_F(LibraryJingles, AShortElementWithoutAKeyIsInNoTableOfKeys) {
  OpenTab(LibraryTab::kShortElements);
  Add("sweep.wav");
  EXPECT_TRUE(on.station.lists.Touches.empty());
  editor.other.Tch = 4;
  editor.other.CheckJingleRacro = true;
  Library::Replacer_Click(on.station, editor);
  ASSERT_EQ(on.station.lists.Touches.size(), 1U);
  EXPECT_EQ(on.station.lists.Touches[0].Touche, "4");
  EXPECT_EQ(on.SqlText("SELECT JingleRacro FROM DiscothequeVirgule"), "1");
  on.messages.AnswerNext(Answer::kYes);
  Library::MnuDelete_Click(on.station, editor);
  EXPECT_TRUE(on.station.lists.Touches.empty());
}

TEST_F(LibraryJingles, TheFileOfAKeyIsTrimmed) {
  on.Sql("INSERT INTO DiscothequeVirgule (FILENAME, TOUCHE) VALUES ('/a.wav ', 3)");
  LoadHotKeys(on.station);
  ASSERT_EQ(on.station.lists.Touches.size(), 1U);
  EXPECT_EQ(on.station.lists.Touches[0].FileName, "/a.wav");
}

TEST_F(LibraryJingles, AShortElementTakesItsLabelFromItsFile) {
  OpenTab(LibraryTab::kShortElements);
  on.MakeFile("sweep.Tx2", "A LABEL\r\n");
  Library::TakeFiles(on.station, editor, {on.MakeSound("sweep.wav", 1000)});
  EXPECT_EQ(editor.other.ChLibVirgule, "A LABEL");
}

TEST_F(LibraryJingles, ShortElementsAreListedByTheirLabels) {
  OpenTab(LibraryTab::kShortElements);
  Add("B.wav");
  Add("A.wav");
  Library::BtnFindAutre_Click(on.station, editor);
  ASSERT_EQ(editor.PLAutre.Count(), 2U);
  EXPECT_EQ(editor.PLAutre.Cell(0, 0), "A");
  EXPECT_EQ(editor.PLAutre.Cell(0, 1), "00:04");
  EXPECT_EQ(editor.PLAutre.Cell(0, 4), "2");
}

TEST_F(LibraryJingles, MusicMenusAreTheMusicTabsAlone) {
  on.AddCard({});
  OpenTab(LibraryTab::kJingles);
  Library::MnuListe_Click(on.station, editor);
  EXPECT_EQ(editor.PLDisco.Count(), 0U);
}

TEST_F(LibraryJingles, HourPipsAreSavedWhenTheirTabIsLeftAndWhenTheScreenIsClosed) {
  OpenTab(LibraryTab::kHourPips);
  Library::GTopH_Change(editor, 7, 1, "/pip.wav");
  Library::GTopH_Click(editor, 7, 2);
  Library::GTopH_Change(editor, 7, 3, "xx");
  EXPECT_EQ(HourPipCell(editor, 7, 0), "07:00 ");
  EXPECT_EQ(HourPipCell(editor, 7, 2), "True");
  Library::TabStrip1_Click(on.station, editor, LibraryTab::kMusic);
  EXPECT_EQ(on.SqlText("SELECT FICHIER || SURIMPRESSION || JourSemaine FROM Toph WHERE HEURE = 7"),
            "/pip.wav-1XX     ");
  Library::TabStrip1_Click(on.station, editor, LibraryTab::kHourPips);
  EXPECT_EQ(editor.GTopH[7].file, "/pip.wav");
  Library::GTopH_Change(editor, 8, 1, "/other.wav");
  Library::Form_Unload(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT FICHIER FROM Toph WHERE HEURE = 8"), "/other.wav");
}

TEST_F(LibraryJingles, ADayOfAnHourPipIsACharacterAndNotAByte) {
  OpenTab(LibraryTab::kHourPips);
  Library::GTopH_Change(editor, 7, 3, "–X–x–X–X");
  EXPECT_EQ(HourPipCell(editor, 7, 3), " X X X ");
}

TEST_F(LibraryJingles, TheOverlayMarkIsReadInBothLanguages) {
  OpenTab(LibraryTab::kHourPips);
  Library::GTopH_Change(editor, 1, 2, "Vrai");
  EXPECT_TRUE(editor.GTopH[1].overlay);
  Library::GTopH_Change(editor, 1, 2, "True");
  EXPECT_TRUE(editor.GTopH[1].overlay);
  Library::GTopH_Change(editor, 1, 2, "");
  EXPECT_FALSE(editor.GTopH[1].overlay);
}

TEST_F(LibraryJingles, DeletingOnTheHourPipsEmptiesTheChosenHourAndSaves) {
  OpenTab(LibraryTab::kHourPips);
  Library::GTopH_Change(editor, 5, 1, "/pip.wav");
  Library::GTopH_Click(editor, 5, 1);
  Library::MnuDelete_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT FICHIER FROM Toph WHERE HEURE = 5"), "");
  EXPECT_EQ(editor.GTopH[5].file, "");
}

}  // namespace zemo
