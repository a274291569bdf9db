// Two people at work on one base: what one stores while the other one's screen is open, on either
// engine. `on.Sql` is the other one, through a connection of his own.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/StoredListMerge.h"
#include "engine/StoredPlaylists.h"
#include "library/HourPips.h"
#include "library/LibraryScreen.h"
#include "reports/ReportScreen.h"
#include "scheduling/ModelEditor.h"
#include "scheduling/ModelMerge.h"
#include "scheduling/ModelScreen.h"
#include "settings/tests/SettingsStation.h"
#include "traffic/CampaignMarking.h"
#include "traffic/tests/CampaignFixture.h"

namespace zemo::test {
namespace {

using Strings = std::vector<std::string>;

// What was asked: a line a box, its buttons and its answer.
Strings Asked(const TestStation& on) {
  Strings asked;
  for (const auto& box : on.Events("message"))
    asked.push_back(box["buttons"] + " " + box["answer"]);
  return asked;
}

std::string LastText(const TestStation& on) {
  const auto boxes = on.Events("message");
  return boxes.empty() ? std::string() : std::string(boxes.back()["text"]);
}

// --- a card ---

class TwoOnACard : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    on.Set("Langue", "1");
    code_ = on.AddCard({.lengthMs = 61000, .artist = "NENA", .title = "99", .genre = "POP"});
    Library::Discotheque_Click(on.station, editor);
  }
  std::string Field(const std::string& column) {
    return on.SqlText("SELECT " + column +
                      " FROM Discotheque WHERE CODE = " + std::to_string(code_));
  }
  void Other(const std::string& change) { on.Sql("UPDATE Discotheque SET " + change); }
  void Replace() { Library::Replacer_Click(on.station, editor); }

  TestStation on;
  LibraryEditor editor;
  int32_t code_ = 0;
};

TEST_F(TwoOnACard, FieldsThatOneOfBothChangedAreStoredWithoutAQuestion) {
  Other("GENRE = 'ROCK', TRANCHE02 = '" + std::string(24, '0') + "'");
  editor.music.ChTitre = "100";
  editor.masks.Tranche[0] = false;
  Replace();
  EXPECT_EQ(Field("TITRE"), "100");
  EXPECT_EQ(Field("GENRE"), "ROCK");
  EXPECT_EQ(Field("TRANCHE01"), "0" + std::string(23, '1'));
  EXPECT_EQ(Field("TRANCHE02"), std::string(24, '0'));
  EXPECT_EQ(editor.music.ChGenre, "ROCK");
  EXPECT_TRUE(Asked(on).empty());
}

TEST_F(TwoOnACard, UnansweredNothingIsStoredAndWhatWasTypedStays) {
  Other("TITRE = 'THEIRS'");
  editor.music.ChTitre = "MINE";
  Replace();
  EXPECT_EQ(Asked(on), (Strings{"minetheirslook cancel"}));
  EXPECT_EQ(Field("TITRE"), "THEIRS");
  EXPECT_EQ(editor.music.ChTitre, "MINE");
}

TEST_F(TwoOnACard, KeepMineStoresTheOwnFieldAndTheOthersThatOnlyTheyChanged) {
  Other("TITRE = 'THEIRS', LABEL = 'L'");
  editor.music.ChTitre = "MINE";
  on.messages.AnswerNext(Answer::kYes);
  Replace();
  EXPECT_EQ(Field("TITRE"), "MINE");
  EXPECT_EQ(Field("LABEL"), "L");
  EXPECT_FALSE(Library::IsChanged(editor));
  editor.music.ChIntro = "3";
  Replace();  // nobody has changed anything since
  EXPECT_EQ(Asked(on), (Strings{"minetheirslook yes"}));
}

TEST_F(TwoOnACard, TakeTheirsKeepsTheContestedFieldOfTheOtherAndStoresTheRest) {
  Other("TITRE = 'THEIRS'");
  editor.music.ChTitre = "MINE";
  editor.music.ChGenre = "ROCK";
  on.messages.AnswerNext(Answer::kNo);
  Replace();
  EXPECT_EQ(Field("TITRE"), "THEIRS");
  EXPECT_EQ(Field("GENRE"), "ROCK");
  EXPECT_EQ(editor.music.ChTitre, "THEIRS");
}

TEST_F(TwoOnACard, ALookShowsEachContestedFieldAndAsksAgain) {
  Other("TITRE = 'THEIRS', GENRE = 'ROCK'");
  editor.music.ChTitre = "MINE";
  on.messages.AnswerNext(Answer::kOk);
  on.messages.AnswerNext(Answer::kYes);
  Replace();
  EXPECT_EQ(Asked(on), (Strings{"minetheirslook ok", "minetheirs yes"}));
  EXPECT_EQ(LastText(on),
            "Somebody else has changed the same fields as you\r\nsince they were shown to you."
            "\r\n\r\nTitle : theirs \"THEIRS\", yours \"MINE\"");
  EXPECT_EQ(Field("TITRE"), "MINE");
}

TEST_F(TwoOnACard, BothWithTheSameValueAreNotAsked) {
  Other("TITRE = 'BOTH'");
  editor.music.ChTitre = "BOTH";
  Replace();
  EXPECT_TRUE(Asked(on).empty());
  EXPECT_EQ(Field("TITRE"), "BOTH");
}

TEST_F(TwoOnACard, TheDatesOfACardAreOneField) {
  Other("MMJJDebut = '0101', MMJJFin = '0201'");
  editor.music.LblMMJJFin = "1231";
  Replace();
  EXPECT_EQ(Asked(on), (Strings{"minetheirslook cancel"}));
}

TEST_F(TwoOnACard, TheScreenTakesOverWhatTheOperatorHasNotChanged) {
  editor.music.ChTitre = "TYPED";
  Other("TITRE = 'THEIRS', GENRE = 'ROCK', DIFFUSION01 = '21/11/2026 à 08:00'");
  Library::TakeOver(on.station, editor);
  EXPECT_EQ(editor.music.ChTitre, "TYPED");
  EXPECT_EQ(editor.music.ChGenre, "ROCK");
  EXPECT_EQ(editor.music.ChDiffusion[0], "21/11/2026 à 08:00");
  editor.music.ChTitre = "99";
  EXPECT_FALSE(Library::IsChanged(editor)) << "what was taken over is no change of the operator's";
}

// What was typed is still the second of two changes when it is stored later.
TEST_F(TwoOnACard, AFieldThatWasKeptWhileTakingOverIsAskedForAtTheSaving) {
  editor.music.ChTitre = "TYPED";
  Other("TITRE = 'THEIRS'");
  Library::TakeOver(on.station, editor);
  Replace();
  EXPECT_EQ(Asked(on), (Strings{"minetheirslook cancel"}));
}

// No longer his own change, so that what becomes of it later is shown.
TEST_F(TwoOnACard, WhatHeTypedAndTheOtherStoredGoesOnAsTheOtherHasIt) {
  editor.music.ChTitre = "ALIKE";
  Other("TITRE = 'ALIKE'");
  Library::TakeOver(on.station, editor);
  Other("TITRE = 'LATER'");
  Library::TakeOver(on.station, editor);
  EXPECT_EQ(editor.music.ChTitre, "LATER");
}

TEST_F(TwoOnACard, ADeletedCardStaysOnTheScreenAndCanBeAddedAgain) {
  editor.music.ChTitre = "TYPED";
  on.Sql("DELETE FROM Discotheque");
  Library::TakeOver(on.station, editor);
  EXPECT_TRUE(editor.gone);
  EXPECT_FALSE(editor.ReplacerEnabled);
  EXPECT_EQ(editor.music.ChTitre, "TYPED");
  Library::Ajouter_Click(on.station, editor);
  EXPECT_FALSE(editor.gone);
  EXPECT_EQ(on.SqlText("SELECT TITRE FROM Discotheque"), "TYPED");
}

TEST_F(TwoOnACard, CardsThatOthersAddAreCounted) {
  on.AddCard({.artist = "ABBA"});
  Library::TakeOver(on.station, editor);
  EXPECT_EQ(editor.Slider1Max, 2);
  EXPECT_EQ(editor.Slider1, 1);
}

TEST_F(TwoOnACard, AJinglesFieldsMeetToo) {
  on.Sql("INSERT INTO DiscothequeJingle (LIBELLE, FILENAME, GENREASSOCIE) VALUES ('J', '/j', 'A')");
  Library::TabStrip1_Click(on.station, editor, LibraryTab::kJingles);
  on.Sql("UPDATE DiscothequeJingle SET GENREASSOCIE = 'B'");
  editor.jingle.ChLibJingle = "JINGLE";
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT LIBELLE FROM DiscothequeJingle"), "JINGLE");
  EXPECT_EQ(on.SqlText("SELECT GENREASSOCIE FROM DiscothequeJingle"), "B");
}

TEST_F(TwoOnACard, AShortElementsFieldsMeetToo) {
  on.Sql("INSERT INTO DiscothequeVirgule (LIBELLE, FILENAME, TOUCHE) VALUES ('E', '/e', 1)");
  Library::TabStrip1_Click(on.station, editor, LibraryTab::kShortElements);
  on.Sql("UPDATE DiscothequeVirgule SET TOUCHE = 2");
  editor.other.Tch = 3;
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(Asked(on), (Strings{"minetheirslook cancel"}));
  EXPECT_EQ(on.SqlText("SELECT TOUCHE FROM DiscothequeVirgule"), "2");
}

TEST_F(TwoOnACard, HourPipsOfDifferentHoursAreBothStored) {
  Library::TabStrip1_Click(on.station, editor, LibraryTab::kHourPips);
  Library::GTopH_Change(editor, 1, 1, "/mine.wav");
  on.Sql("UPDATE Toph SET FICHIER = '/theirs.wav' WHERE HEURE = 2");
  Library::TabStrip1_Click(on.station, editor, LibraryTab::kMusic);
  EXPECT_EQ(on.SqlText("SELECT FICHIER FROM Toph WHERE HEURE = 1"), "/mine.wav");
  EXPECT_EQ(on.SqlText("SELECT FICHIER FROM Toph WHERE HEURE = 2"), "/theirs.wav");
}

TEST_F(TwoOnACard, AnHourPipThatBothChangedIsAskedFor) {
  Library::TabStrip1_Click(on.station, editor, LibraryTab::kHourPips);
  Library::GTopH_Change(editor, 1, 1, "/mine.wav");
  on.Sql("UPDATE Toph SET FICHIER = '/theirs.wav' WHERE HEURE = 1");
  Library::TabStrip1_Click(on.station, editor, LibraryTab::kMusic);
  EXPECT_EQ(Asked(on), (Strings{"minetheirslook cancel"}));
  EXPECT_EQ(on.SqlText("SELECT FICHIER FROM Toph WHERE HEURE = 1"), "/theirs.wav");
}

// --- a campaign ---

class TwoOnACampaign : public testing::Test {
 protected:
  void SetUp() override {
    file_ = on.MakeSound("spot.wav", 15000);
    code_ = on.AddCampaign({{"FILENAMEAUDIO", "'" + file_ + "'"}});
    Campaigns::MnuHPubs_Click(on.station, editor());
    // Monday 07:00 has its cross.
    editor().GPub.SetCell(kFirstMomentRow, 1, std::string(kCross));
    ASSERT_TRUE(Save());
    Campaigns::ShowRecordOfCode(on.station, editor(), code_);
    on.seen.clear();
  }
  CampaignEditor& editor() { return on.editor; }
  bool Save() { return Campaigns::BtnReplacer_Click(on.station, editor()); }
  void Other(const std::string& change) { on.Sql("UPDATE GrillePub SET " + change); }
  std::string Field(const std::string& column) {
    return on.SqlText("SELECT " + column + " FROM GrillePub");
  }
  // Another machine's editor, with a record of its own of the same campaign.
  void OtherMarks(int column) {
    CampaignEditor other;
    Campaigns::ShowRecordOfCode(on.station, other, code_);
    other.GPub.SetCell(kFirstMomentRow, column, std::string(kCross));
    LoadSaveCampaignGrid(on.station, other, "Save", other.FILENAMEGRILLE, RowYields::kNone);
  }
  std::string Crosses() {
    CampaignEditor stored;
    Campaigns::ShowRecordOfCode(on.station, stored, code_);
    return RowText(stored.GPub, kFirstMomentRow);
  }

  CampaignStation on;
  std::string file_;
  int32_t code_ = 0;
};

TEST_F(TwoOnACampaign, FieldsThatOneOfBothChangedAreStoredWithoutAQuestion) {
  Other("CONTACT = 'THEIRS'");
  editor().ChAnnonceur = "MINE";
  EXPECT_TRUE(Save());
  EXPECT_EQ(Field("CONTACT"), "THEIRS");
  EXPECT_EQ(Field("ANNONCEUR"), "MINE");
  EXPECT_TRUE(Asked(on).empty());
}

TEST_F(TwoOnACampaign, AFieldThatBothChangedIsAskedForAndUnansweredNothingIsStored) {
  Other("ANNONCEUR = 'THEIRS'");
  editor().ChAnnonceur = "MINE";
  EXPECT_FALSE(Save());
  EXPECT_EQ(Asked(on), (Strings{"minetheirslook cancel"}));
  EXPECT_EQ(Field("ANNONCEUR"), "THEIRS");
  on.messages.AnswerNext(Answer::kYes);
  EXPECT_TRUE(Save());
  EXPECT_EQ(Field("ANNONCEUR"), "MINE");
}

TEST_F(TwoOnACampaign, CrossesOfTheOtherStandWhereOnlyTheFieldsWereChangedHere) {
  OtherMarks(2);
  editor().ChAnnonceur = "MINE";
  EXPECT_TRUE(Save());
  EXPECT_EQ(Crosses(), "X X     ");
  EXPECT_TRUE(Asked(on).empty());
}

TEST_F(TwoOnACampaign, CrossesThatBothSetAreAskedFor) {
  OtherMarks(2);
  editor().GPub.SetCell(kFirstMomentRow, 3, std::string(kCross));
  on.messages.AnswerNext(Answer::kNo);
  EXPECT_TRUE(Save());
  EXPECT_EQ(Asked(on), (Strings{"minetheirslook no"}));
  EXPECT_EQ(Crosses(), "X X     ");
}

// Theirs has other hours, mine other crosses: a grid of the one with the hours of the other is
// none.
TEST_F(TwoOnACampaign, HoursAndCrossesAreOneField) {
  Other("HFIN = '09'");
  editor().GPub.SetCell(kFirstMomentRow, 3, std::string(kCross));
  EXPECT_FALSE(Save());
  EXPECT_EQ(Asked(on), (Strings{"minetheirslook cancel"}));
}

TEST_F(TwoOnACampaign, TheScreenTakesOverWhatTheOperatorHasNotChanged) {
  editor().ChAnnonceur = "TYPED";
  OtherMarks(2);
  Other("CONTACT = 'THEIRS', ANNONCEUR = 'THEIRS'");
  Campaigns::TakeOver(on.station, editor());
  EXPECT_EQ(editor().ChAnnonceur, "TYPED");
  EXPECT_EQ(editor().ChContact, "THEIRS");
  EXPECT_EQ(RowText(editor().GPub, kFirstMomentRow), "X X     ");
  EXPECT_FALSE(Save());  // it is still the second of two changes
  EXPECT_EQ(Asked(on), (Strings{"minetheirslook cancel"}));
}

TEST_F(TwoOnACampaign, ARecordThatIsGoneIsToldAndCanBeAddedAsANewOne) {
  on.Sql("DELETE FROM GrillePub");
  EXPECT_FALSE(Save());
  EXPECT_EQ(on.LastMessage(), "Impossible de sauver");
  EXPECT_TRUE(editor().BtnAjouterEnabled);
  EXPECT_FALSE(editor().BtnReplacerEnabled);
  EXPECT_TRUE(Campaigns::BtnAjouter_Click(on.station, editor()));
  EXPECT_EQ(Field("ANNONCEUR"), "Advertiser");
}

TEST_F(TwoOnACampaign, TheOverviewKeepsItsOrder) {
  Campaigns::BtnRecherhe_Click(on.station, editor());
  Campaigns::PLPub_ColumnClick(editor(), 0);
  Campaigns::PLPub_ColumnClick(editor(), 0);  // downwards
  on.AddCampaign({{"ANNONCEUR", "'Zoo'"}, {"FILENAMEAUDIO", "'/z.wav'"}});
  Campaigns::TakeOver(on.station, editor());
  ASSERT_EQ(editor().PLPub.size(), 2U);
  EXPECT_EQ(editor().PLPub[0].text, "Zoo");
  EXPECT_TRUE(editor().PLPubVisible);
}

// --- a day of the model ---

class TwoOnAModel : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    on.Sql("DELETE FROM Models");
    Row("POP", 60);
    Row("ROCK", 40);
    on.Set("Squelette", "0");
    Models::MnuModel_Click(on.station);
    Models::JourSemaine_Click(on.station, 6);
    on.seen.clear();
  }
  // The same per cent in every hour of Saturday.
  void Row(const std::string& genre, int percent) {
    std::string fields, values;
    for (int hour = 0; hour < 24; ++hour) {
      fields += ", TRANCHE" + TwoDigits(hour);
      values += ", " + std::to_string(percent);
    }
    on.Sql("INSERT INTO Models (JOUR, GENRE" + fields + ") VALUES (6, '" + genre + "'" + values +
           ")");
  }
  ModelEditor& Editor() { return on.station.modelEditor; }
  std::string Stored(const std::string& genre, const std::string& hour) {
    return on.SqlText("SELECT TRANCHE" + hour + " FROM Models WHERE JOUR = 6 AND GENRE = '" +
                      genre + "'");
  }
  // Of the genre in that row and the hour, as the operator puts it.
  void Put(int row, int hour, const std::string& percent) {
    Editor().Models.SetCell(row, hour + 1, percent);
  }
  TestStation on;
};

TEST_F(TwoOnAModel, HoursThatOneOfBothChangedAreStoredWithoutAQuestion) {
  Put(1, 7, "50");
  on.Sql("UPDATE Models SET TRANCHE08 = 30 WHERE GENRE = 'POP'");
  Row("JAZZ", 0);
  on.Sql("UPDATE Models SET TRANCHE08 = 5 WHERE GENRE = 'JAZZ'");
  EXPECT_TRUE(Models::BtnSave_Click(on.station));
  EXPECT_EQ(Stored("POP", "07"), "50");
  EXPECT_EQ(Stored("JAZZ", "07"), "0") << "the hour is the operator's";
  EXPECT_EQ(Stored("POP", "08"), "30");
  EXPECT_EQ(Stored("JAZZ", "08"), "5");
  EXPECT_EQ(Stored("ROCK", "08"), "40");
}

TEST_F(TwoOnAModel, AnHourThatBothChangedIsAskedFor) {
  Put(1, 7, "50");
  on.Sql("UPDATE Models SET TRANCHE07 = 30 WHERE GENRE = 'ROCK'");
  EXPECT_FALSE(Models::BtnSave_Click(on.station));
  EXPECT_EQ(Asked(on), (Strings{"minetheirslook cancel"}));
  EXPECT_EQ(Stored("POP", "07"), "60");
  on.messages.AnswerNext(Answer::kYes);
  EXPECT_TRUE(Models::BtnSave_Click(on.station));
  EXPECT_EQ(Stored("POP", "07"), "50");
  EXPECT_EQ(Stored("ROCK", "07"), "40");
}

TEST_F(TwoOnAModel, TheScreenTakesOverTheHoursThatTheOperatorHasNotChanged) {
  Put(1, 7, "50");
  on.Sql("UPDATE Models SET TRANCHE07 = 30, TRANCHE08 = 31 WHERE GENRE = 'POP'");
  Models::TakeOver(on.station);
  EXPECT_EQ(Editor().Models.Cell(1, 8), "50");
  EXPECT_EQ(Editor().Models.Cell(1, 9), "31");
  EXPECT_EQ(Editor().Models.Cell(3, 9), "71 %");
  EXPECT_TRUE(Models::IsChanged(on.station));
}

TEST_F(TwoOnAModel, AnUnchangedDayBecomesThatOfTheOthersAndIsNotUnsaved) {
  Row("JAZZ", 0);
  on.Sql("DELETE FROM Models WHERE GENRE = 'POP'");
  Models::TakeOver(on.station);
  EXPECT_EQ(Editor().Models.Cell(1, 0), "ROCK");
  EXPECT_EQ(Editor().Models.Cell(2, 0), "JAZZ");
  EXPECT_FALSE(Models::IsChanged(on.station));
}

TEST_F(TwoOnAModel, ASkeletonsHoursMeetToo) {
  on.Set("Squelette", "-1");
  on.Sql("DELETE FROM ModelSquelette");
  on.Sql("INSERT INTO ModelSquelette (JOUR, TRANCHE07, TRANCHE08) VALUES (6, 'POP', 'ROCK')");
  on.station.base.CheckCnf();
  Models::JourSemaine_Click(on.station, 6);
  ASSERT_EQ(Editor().ModelSquelette.Cell(1, 7), "POP");
  Editor().ModelSquelette.SetCell(1, 7, "JAZZ");
  on.Sql("UPDATE ModelSquelette SET TRANCHE08 = 'FOLK'");
  on.Sql("INSERT INTO ModelSquelette (JOUR, TRANCHE08) VALUES (6, 'SOUL')");
  EXPECT_TRUE(Models::BtnSave_Click(on.station));
  EXPECT_EQ(on.SqlText("SELECT TRANCHE07 FROM ModelSquelette WHERE TRANCHE08 = 'FOLK'"), "JAZZ");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM ModelSquelette WHERE TRANCHE08 = 'SOUL'"), "1");
}

// --- the settings ---

class TwoOnTheSettings : public SettingsStation {
 protected:
  void SetUp() override {
    Settings::MnuParametrage_Click(on.station, devices);
    ASSERT_TRUE(on.station.settings.open);
    on.seen.clear();
  }
  void Close() { Settings::Form_Unload(on.station); }
};

TEST_F(TwoOnTheSettings, AFieldThatOnlyTheOtherChangedStays) {
  on.Set("TextVeille", "'THEIRS'");
  on.station.settings.SpinPurge = "77";
  Close();
  EXPECT_EQ(Stored("TextVeille"), "THEIRS");
  EXPECT_FALSE(on.station.settings.open);
  EXPECT_TRUE(Asked(on).empty());
}

TEST_F(TwoOnTheSettings, AFieldThatBothChangedKeepsTheScreenOpenUntilItIsAnswered) {
  on.Set("TextVeille", "'THEIRS'");
  on.station.settings.TexteV = "MINE";
  Close();
  EXPECT_TRUE(on.station.settings.open);
  EXPECT_EQ(Stored("TextVeille"), "THEIRS");
  on.messages.AnswerNext(Answer::kYes);
  Close();
  EXPECT_FALSE(on.station.settings.open);
  EXPECT_EQ(Stored("TextVeille"), "MINE");
  EXPECT_EQ(Asked(on), (Strings{"minetheirslook cancel", "minetheirslook yes"}));
}

TEST_F(TwoOnTheSettings, TheScreenTakesOverWhatTheOperatorHasNotChanged) {
  on.station.settings.TexteV = "TYPED";
  on.Sql("UPDATE Cnf SET TextVeille = 'THEIRS', FadeOut = 700");
  Settings::TakeOver(on.station);
  EXPECT_EQ(on.station.settings.TexteV, "TYPED");
  EXPECT_EQ(on.station.settings.HsFadeOut, 700);
}

// --- a stored list ---

class TwoOnAList : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    for (int i = 0; i < 3; ++i) on.AddCard({.lengthMs = 10000});
    on.Sql(
        "INSERT INTO Playlist (CODE, LADATE, LHEURE, LIBELLE, NOJINGLE) VALUES (7, "
        "'21/11/2026', '18:00', 'EVENING', 0)");
    on.Sql("INSERT INTO Pls (NUMPLS, DISCOTHEQUE, FICHE) VALUES (7, 1, 1)");
    on.station.storedList.open = true;
    ASSERT_TRUE(OnAir::SelectStoredList(on.station, 7));
    on.seen.clear();
  }
  StoredListEditor& Panel() { return on.station.storedList; }
  std::string Head(const std::string& column) {
    return on.SqlText("SELECT " + column + " FROM Playlist WHERE CODE = 7");
  }
  std::string Rows() { return on.SqlText("SELECT COUNT(*) FROM Pls WHERE NUMPLS = 7"); }
  TestStation on;
};

TEST_F(TwoOnAList, FieldsAndRowsThatOneOfBothChangedAreStored) {
  Panel().ChHeure = "19:00";
  on.Sql("UPDATE Playlist SET LIBELLE = 'THEIRS'");
  on.Sql("INSERT INTO Pls (NUMPLS, DISCOTHEQUE, FICHE) VALUES (7, 2, 2)");
  EXPECT_TRUE(OnAir::BtnSauve_Click(on.station));
  EXPECT_EQ(Head("LHEURE"), "19:00");
  EXPECT_EQ(Head("LIBELLE"), "THEIRS");
  EXPECT_EQ(Rows(), "2");
  EXPECT_TRUE(Asked(on).empty());
}

// PL never held them: it is what the list was before.
TEST_F(TwoOnAList, RowsOfOthersStayHoweverOftenTheRestIsStored) {
  on.Sql("INSERT INTO Pls (NUMPLS, DISCOTHEQUE, FICHE) VALUES (7, 2, 2)");
  for (const char* hour : {"19:00", "20:00", "21:00"}) {
    Panel().ChHeure = hour;
    EXPECT_TRUE(OnAir::BtnSauve_Click(on.station));
    EXPECT_EQ(Head("LHEURE"), hour);
    EXPECT_EQ(Rows(), "2");
  }
  EXPECT_TRUE(Asked(on).empty());
  on.AppendCard(3);
  EXPECT_FALSE(OnAir::BtnSauve_Click(on.station));
  EXPECT_EQ(Asked(on).size(), 1U);
  EXPECT_EQ(Rows(), "2");
}

TEST_F(TwoOnAList, RowsThatBothChangedAreAskedFor) {
  on.AppendCard(3);
  on.Sql("INSERT INTO Pls (NUMPLS, DISCOTHEQUE, FICHE) VALUES (7, 2, 2), (7, 2, 2)");
  EXPECT_FALSE(OnAir::BtnSauve_Click(on.station));
  EXPECT_EQ(Rows(), "3");
  on.messages.AnswerNext(Answer::kYes);
  EXPECT_TRUE(OnAir::BtnSauve_Click(on.station));
  EXPECT_EQ(Rows(), "2");
}

TEST_F(TwoOnAList, ThePanelTakesOverListsAndFieldsAndKeepsWhatIsTyped) {
  Panel().ComboPLS.text = "TYPED";
  on.Sql("UPDATE Playlist SET LIBELLE = 'THEIRS', LHEURE = '20:00'");
  on.Sql("INSERT INTO Playlist (CODE, LIBELLE) VALUES (8, 'NIGHT')");
  EXPECT_TRUE(OnAir::TakeOverLists(on.station));
  EXPECT_EQ(Panel().ComboPLS.text, "TYPED");
  EXPECT_EQ(Panel().ChHeure, "20:00");
  ASSERT_EQ(Panel().ComboPLS.items.size(), 2U);
  EXPECT_EQ(Panel().ComboPLS.items[0].text, "THEIRS");
  EXPECT_EQ(Panel().ComboPLS.index, 0);
}

TEST_F(TwoOnAList, AListThatIsGoneIsANewOneAndItsTitlesStay) {
  on.Sql("DELETE FROM Playlist");
  EXPECT_FALSE(OnAir::TakeOverLists(on.station));
  EXPECT_EQ(Panel().LblCodePL, 0);
  EXPECT_EQ(on.station.PL.Count(), 1);
  EXPECT_TRUE(OnAir::BtnSauve_Click(on.station));
  EXPECT_EQ(on.SqlText("SELECT LIBELLE FROM Playlist"), "EVENING");
}

// --- the report ---

class TwoOnTheReport : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    Add("10:00:00", "Zoo", 46347.416666666667);
    Add("10:05:00", "Abba", 46347.420138888889);
    Report::MnuRapport_Click(on.station, editor);
    ASSERT_EQ(editor.ListRap.Count(), 2U);
  }
  // A row of 21 November 2026, which is day 46347.
  void Add(const std::string& time, const std::string& artist, double moment) {
    on.Sql("INSERT INTO Rapport (LADATE, HEURE, AUTEUR, TITRE, DATENUM) VALUES ('21/11/2026', '" +
           time + "', '" + artist + "', 'T', " + std::to_string(moment) + ")");
  }
  Strings Artists() {
    Strings artists;
    for (size_t line = 0; line < editor.ListRap.Count(); ++line)
      artists.push_back(editor.ListRap.Cell(line, RapCol::kArtist));
    return artists;
  }
  TestStation on{"2026-11-21 12:00:00"};
  ReportEditor editor;
};

TEST_F(TwoOnTheReport, RowsThatOthersWroteAreListedInTheOrderThatStands) {
  Report::ListRap_ColumnClick(on.station, editor, RapCol::kArtist);
  editor.ListRap.chosen = 1;  // Zoo
  Add("10:10:00", "Nena", 46347.423611111111);
  Report::TakeOver(on.station, editor);
  EXPECT_EQ(Artists(), (Strings{"Abba", "Nena", "Zoo"}));
  EXPECT_EQ(editor.ListRap.chosen, 2U);
  EXPECT_EQ(editor.LblCompteur, "3 Fiches");
}

TEST_F(TwoOnTheReport, TheListIsNotReadWhereNoRowCame) {
  const uint64_t before = editor.ListRap.generation;
  on.AddCard({});
  Report::TakeOver(on.station, editor);
  EXPECT_EQ(editor.ListRap.generation, before);
}

}  // namespace
}  // namespace zemo::test
