// The music tab: adding, replacing, deleting, moving through the cards.
#include "library/LibraryTexts.h"
#include "library/tests/LibraryFixture.h"
#include "platform/Desktop.h"

namespace zemo {

namespace {

struct LibraryMusic : LibraryFixture {
  std::string Field(const std::string& field, int32_t code) {
    return on.SqlText("SELECT " + field + " FROM Discotheque WHERE CODE = " + std::to_string(code));
  }
  std::string Count() { return on.SqlText("SELECT COUNT(*) FROM Discotheque"); }
  void AddThree() {
    on.AddCard({.artist = "C", .title = "1"});
    on.AddCard({.artist = "A", .title = "2"});
    on.AddCard({.artist = "B", .title = "3"});
  }
};

}  // namespace

TEST_F(LibraryMusic, OpensOnTheFirstCardInTheOrderOfItsNumber) {
  AddThree();
  Open();
  EXPECT_TRUE(editor.open);
  EXPECT_EQ(editor.music.lblNumero, "1");
  EXPECT_EQ(editor.Slider1, 1);
  EXPECT_EQ(editor.Slider1Max, 3);
  EXPECT_EQ(Library::InfoText(editor, LibraryTab::kMusic), "Discotheque1 / 3");
  EXPECT_TRUE(editor.ReplacerEnabled);
}

TEST_F(LibraryMusic, OpensWithoutACardWithItsMenusOff) {
  Open();
  EXPECT_TRUE(editor.open);
  EXPECT_FALSE(editor.ReplacerEnabled);
  EXPECT_FALSE(editor.MnuDeleteEnabled);
  EXPECT_EQ(editor.Slider1Max, 0);
  EXPECT_EQ(Library::InfoText(editor, LibraryTab::kMusic), "Discotheque0 / 0");
}

TEST_F(LibraryMusic, LockedMenuDoesNotOpenIt) {
  on.station.engine.ScreenLocked = true;
  Open();
  EXPECT_FALSE(editor.open);
}

TEST_F(LibraryMusic, ALotOfThreeOfWhichTheSecondIsKnownAddsTwoTellsOnceAndClearsTheLot) {
  const std::string known = on.MakeSound("b.wav", 1000);
  on.AddCard({.file = known, .artist = "KNOWN"});
  Open();
  const std::vector<std::string> lot = {on.MakeSound("a.wav", 61000), known,
                                        on.MakeSound("c.wav", 3000)};
  Library::TakeFiles(on.station, editor, lot);
  EXPECT_EQ(Message(0),
            "Vous avez sélectioné 3 Fichiers audios\r\nVous n'avez plus qu'à cliquer "
            "sur le menu Ajouter");
  EXPECT_TRUE(editor.lotMode);
  Library::Ajouter_Click(on.station, editor);
  EXPECT_EQ(Count(), "3");
  EXPECT_EQ(Messages(), 2U);
  EXPECT_EQ(Message(1), known + "\r\nExiste déjà dans la base");
  EXPECT_FALSE(editor.lotMode);
  EXPECT_TRUE(editor.ListLot.empty());
  EXPECT_EQ(editor.music.lblNumero, "3");
  EXPECT_EQ(editor.music.ChAuteur, "c");
  EXPECT_EQ(editor.Slider1, 3);
  EXPECT_EQ(editor.Slider1Max, 3);
  EXPECT_EQ(Field("DUREE", 2), "61000");
  EXPECT_EQ(Field("GENRE", 2), "NOGENRE");
}

TEST_F(LibraryMusic, AFileThatHasACardIsToldAndGetsNoSecondOne) {
  const std::string known = on.MakeSound("b.wav", 1000);
  on.AddCard({.file = known, .artist = "KNOWN"});
  Open();
  Library::Nouveau_Click(on.station, editor);
  Library::TakeFiles(on.station, editor, {known});
  Library::Ajouter_Click(on.station, editor);
  EXPECT_EQ(Count(), "1");
  EXPECT_EQ(Message(0), known + "\r\nExiste déjà dans la base");
}

TEST_F(LibraryMusic, WhoMovesOnDuringALotStaysOnTheCardThatHeWentTo) {
  AddThree();
  Open();
  Library::TakeFiles(on.station, editor,
                     {on.MakeSound("a.wav", 1000), on.MakeSound("b.wav", 1000)});
  on.loop.Post([&] { Library::Slider1_Change(on.station, editor, 2); });
  Library::Ajouter_Click(on.station, editor);
  EXPECT_EQ(Count(), "5");
  EXPECT_EQ(editor.music.lblNumero, "2");
  EXPECT_EQ(editor.Slider1, 2);
}

TEST_F(LibraryMusic, InALotATextThatNoFieldHoldsRefusesItsCardAndTheLotGoesOn) {
  Open();
  const std::string longName = std::string(41, 'x') + ".wav";
  Library::TakeFiles(
      on.station, editor,
      {on.MakeSound("a.wav", 1000), on.MakeSound(longName, 1000), on.MakeSound("c.wav", 1000)});
  Library::Ajouter_Click(on.station, editor);
  EXPECT_EQ(Count(), "2");
  const auto errors = on.Events("error");
  ASSERT_EQ(errors.size(), 1U);
  EXPECT_EQ(errors[0]["where"], "Ajouter");
}

TEST_F(LibraryMusic, OneFileFillsTheCardFromItsExchangeFileFirst) {
  Open();
  const std::string file = on.MakeSound("song.wav", 92000);
  std::string masks = "\"" + kAllDay + "\"";
  for (int day = 2; day <= 7; ++day) masks += ",\"" + kAllDay + "\"";
  on.MakeFile("song.Mus",
              "\"ARTIST\",\"TITLE\",\"ROCK\",\"NATIONAL\",\"1999\",5,2,60,1,0\r\n"
              "900,\"L\",\"AC\",\"R\",\"CD\"\r\n" +
                  masks + "\r\n\"words\"\r\n");
  on.MakeFile("song.Txt", "\"OLDER\",\"\",\"\",\"\",\"\",0,0,0,0\r\n");
  Library::TakeFiles(on.station, editor, {file});
  EXPECT_FALSE(editor.lotMode);
  EXPECT_EQ(editor.music.ChFileName, file);
  EXPECT_EQ(editor.music.Longeur, "92000");
  EXPECT_EQ(editor.music.ChAuteur, "ARTIST");
  EXPECT_EQ(editor.music.PointSortie, 900);
  EXPECT_EQ(Messages(), 0U);
}

TEST_F(LibraryMusic, AFileThatCannotBeOpenedIsAddedWithoutALength) {
  Open();
  Library::TakeFiles(on.station, editor, {on.MakeFile("broken.wav", "no sound")});
  EXPECT_EQ(editor.music.Longeur, "0");
  Library::Ajouter_Click(on.station, editor);
  EXPECT_EQ(Count(), "1");
}

TEST_F(LibraryMusic, ASavedCardLeavesItsExchangeFileBesideItsSoundFile) {
  Open();
  const std::string file = on.MakeSound("song.wav", 1000);
  Library::TakeFiles(on.station, editor, {file});
  Library::Ajouter_Click(on.station, editor);
  editor.music.ChTitre = "TITLE";
  Library::Replacer_Click(on.station, editor);
  const auto mus = on.soundFiles.Read(file.substr(0, file.size() - 3) + "Mus");
  ASSERT_TRUE(mus);
  EXPECT_TRUE(mus->starts_with("\"song\",\"TITLE\",\"NOGENRE\",\"NATIONAL\",\"\",0,1,120,0,0\r\n"))
      << *mus;
}

TEST_F(LibraryMusic, ANewCardNeverHasThePlaysOfTheCardShownBefore) {
  const int32_t played = on.AddCard({});
  on.Sql("UPDATE Discotheque SET DIFFUSION01 = '01/01/2026 à 10:00'");
  Open();
  EXPECT_EQ(editor.music.ChDiffusion[0], "01/01/2026 à 10:00");
  Library::TakeFiles(on.station, editor, {on.MakeSound("new.wav", 1000)});
  Library::Ajouter_Click(on.station, editor);
  EXPECT_EQ(Field("DIFFUSION01", played + 1), " ");
  EXPECT_EQ(Field("DIFFUSION08", played + 1), " ");
}

TEST_F(LibraryMusic, ReplacingStoresABlankYearAndTrimmedTexts) {
  const int32_t code = on.AddCard({});
  Open();
  editor.music.ChAnne = "";
  editor.music.ChAuteurCompositeur = "  A ";
  editor.music.ChRefAlbum = " R ";
  editor.music.ChNbPassJour = "7";
  editor.masks.Tranche[0] = false;
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(Field("ANNEE", code), " ");
  EXPECT_EQ(Field("AUTEURCOMPOSITEUR", code), "A");
  EXPECT_EQ(Field("REFERENCE", code), "R");
  EXPECT_EQ(Field("NBPASSJOUR", code), "7");
  EXPECT_EQ(Field("TRANCHE01", code), "0" + std::string(23, '1'));
}

TEST_F(LibraryMusic, ReplacingTakesTheOrderByNumberWithoutShowingAnotherCard) {
  AddThree();
  Open();
  Library::OptionTri_Click(on.station, editor, 1);
  EXPECT_EQ(editor.music.ChAuteur, "A");
  editor.music.ChTitre = "NEW";
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(editor.OptionTri, 0);
  EXPECT_EQ(editor.music.lblNumero, "2");
  EXPECT_EQ(editor.Slider1, 2);
  EXPECT_EQ(Field("TITRE", 2), "NEW");
}

TEST_F(LibraryMusic, ReplacingACardThatIsGoneChangesNothingAndSaysNothing) {
  AddThree();
  Open();
  on.Sql("DELETE FROM Discotheque WHERE CODE = 1");
  editor.music.ChTitre = "NEW";
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Discotheque WHERE TITRE = 'NEW'"), "0");
  EXPECT_EQ(Messages(), 0U);
  EXPECT_TRUE(on.Events("error").empty());
}

TEST_F(LibraryMusic, APlaySinceTheCardWasShownIsKeptWithoutAQuestion) {
  const int32_t code = on.AddCard({});
  Open();
  on.Sql("UPDATE Discotheque SET DIFFUSION01 = '22/11/2026 à 08:00', LASTDIFF = 46348.3");
  editor.music.ChTitre = "NEW";
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(Field("TITRE", code), "NEW");
  EXPECT_EQ(Field("DIFFUSION01", code), "22/11/2026 à 08:00");
  EXPECT_EQ(Field("LASTDIFF", code), "46348.3");
  EXPECT_EQ(Messages(), 0U);
}

TEST_F(LibraryMusic, APlayThatTheOperatorTypedIsStored) {
  const int32_t code = on.AddCard({});
  Open();
  editor.music.ChDiffusion[1] = "21/11/2026 à 08:00";
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(Field("DIFFUSION02", code), "21/11/2026 à 08:00");
}

TEST_F(LibraryMusic, AFieldThatWasChangedElsewhereTooIsReplacedOnlyAfterAQuestion) {
  const int32_t code = on.AddCard({});
  Open();
  on.Sql("UPDATE Discotheque SET TITRE = 'ELSEWHERE'");
  editor.music.ChTitre = "NEW";
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(Messages(), 1U);
  EXPECT_EQ(Field("TITRE", code), "ELSEWHERE");
  on.messages.AnswerNext(Answer::kYes);
  Library::Replacer_Click(on.station, editor);
  EXPECT_EQ(Field("TITRE", code), "NEW");
}

TEST_F(LibraryMusic, ANewCardIsEmptyAllowedAtEveryHourAndCannotBeReplaced) {
  AddThree();
  Open();
  editor.masks.Tranche[3] = false;
  Library::Nouveau_Click(on.station, editor);
  EXPECT_EQ(editor.music.lblNumero, "0");
  EXPECT_EQ(editor.music.Longeur, "0");
  EXPECT_EQ(editor.music.ChNbPassJour, "1");
  EXPECT_EQ(editor.music.ChAuteur + editor.music.ChEcartMinutes + editor.music.ChGenre, "");
  EXPECT_EQ(editor.masks.Mask(1), kAllDay);
  EXPECT_FALSE(editor.ReplacerEnabled);
  EXPECT_FALSE(editor.MnuDeleteEnabled);
  EXPECT_EQ(editor.List1Tmp.size(), 3U);
}

TEST_F(LibraryMusic, DeletingShowsTheNextCardElseTheLast) {
  AddThree();
  Open();
  Library::BtnPlus_Click(on.station, editor);
  on.messages.AnswerNext(Answer::kYes);
  Library::MnuDelete_Click(on.station, editor);
  EXPECT_EQ(Message(0), "Confirmez la suppression de la séléction");
  EXPECT_EQ(editor.music.lblNumero, "3");
  EXPECT_EQ(Library::InfoText(editor, LibraryTab::kMusic), "Discotheque2 / 2");
  on.messages.AnswerNext(Answer::kYes);
  Library::MnuDelete_Click(on.station, editor);
  EXPECT_EQ(editor.music.lblNumero, "1");
  on.messages.AnswerNext(Answer::kYes);
  Library::MnuDelete_Click(on.station, editor);
  EXPECT_EQ(Count(), "0");
  EXPECT_FALSE(editor.MnuDeleteEnabled);
  Library::MnuDelete_Click(on.station, editor);
  EXPECT_EQ(Message(3), "Il n'y a pas de fiche à supprimer");
}

TEST_F(LibraryMusic, DeletingAsksAndDoesNothingWithoutAYes) {
  AddThree();
  Open();
  Library::MnuDelete_Click(on.station, editor);
  EXPECT_EQ(Count(), "3");
  EXPECT_EQ(on.Events("message")[0]["buttons"], "yescancel");
}

TEST_F(LibraryMusic, DeletingTheSelectionTakesItsLinesOffTheListToo) {
  AddThree();
  Open();
  Library::MnuListe_Click(on.station, editor);
  ASSERT_EQ(editor.PLDisco.Count(), 3U);
  EXPECT_EQ(editor.PLDisco.Cell(0, DiscoCol::kArtist), "A");
  Library::PLDisco_Click(on.station, editor, {0, 2});
  EXPECT_EQ(editor.music.ChAuteur, "C");
  on.messages.AnswerNext(Answer::kYes);
  Library::MnuDelete_Click(on.station, editor);
  EXPECT_EQ(Messages(), 1U);
  EXPECT_EQ(on.SqlText("SELECT AUTEUR FROM Discotheque"), "B");
  ASSERT_EQ(editor.PLDisco.Count(), 1U);
  EXPECT_EQ(editor.PLDisco.Cell(0, DiscoCol::kArtist), "B");
  EXPECT_FALSE(editor.PLDisco.selected[0]);
  EXPECT_EQ(editor.music.ChAuteur, "B");
}

TEST_F(LibraryMusic, ASelectionInAListThatIsNotSeenIsNotDeleted) {
  AddThree();
  Open();
  Library::MnuListe_Click(on.station, editor);
  Library::PLDisco_Click(on.station, editor, {0, 2});
  Library::TabStrip1_Click(on.station, editor, LibraryTab::kJingles);
  Library::TabStrip1_Click(on.station, editor, LibraryTab::kMusic);
  EXPECT_EQ(editor.music.ChAuteur, "C");
  on.messages.AnswerNext(Answer::kYes);
  Library::MnuDelete_Click(on.station, editor);
  EXPECT_EQ(on.SqlText("SELECT GROUP_CONCAT(AUTEUR) FROM Discotheque"), "A,B");
}

TEST_F(LibraryMusic, DeletingASelectionShowsTheCardBehindTheOneThatWasShown) {
  AddThree();
  on.AddCard({.artist = "D"});
  on.AddCard({.artist = "E"});
  Open();
  Library::MnuListe_Click(on.station, editor);
  // Artists A (2), B (3), C (1), D (4) and E (5).
  Library::PLDisco_Click(on.station, editor, {0, 2, 1});
  EXPECT_EQ(editor.music.lblNumero, "3");
  on.messages.AnswerNext(Answer::kYes);
  Library::MnuDelete_Click(on.station, editor);
  EXPECT_EQ(editor.music.lblNumero, "4");
  EXPECT_EQ(editor.Slider1, 1);
}

TEST_F(LibraryMusic, TheCardBehindOneThatIsGoneIsTheNext) {
  AddThree();
  Open();
  on.Sql("DELETE FROM Discotheque WHERE CODE = 1");
  Library::BtnPlus_Click(on.station, editor);
  EXPECT_EQ(editor.music.lblNumero, "2");
}

TEST_F(LibraryMusic, TheSliderGoesToItsPlaceAlsoWhereAnAdditionLeftItOnTheCount) {
  AddThree();
  Open();
  Library::OptionTri_Click(on.station, editor, 1);
  Library::TakeFiles(on.station, editor, {on.MakeSound("AA.wav", 1000)});
  Library::Ajouter_Click(on.station, editor);
  Library::Slider1_Change(on.station, editor, 3);
  EXPECT_EQ(editor.music.ChAuteur, "B");
  EXPECT_EQ(editor.Slider1, 3);
}

TEST_F(LibraryMusic, ACardWithoutASoundFileHasNoExchangeFile) {
  Open();
  editor.music.ChTitre = "TITLE";
  Library::Ajouter_Click(on.station, editor);
  EXPECT_EQ(Count(), "1");
  EXPECT_FALSE(on.soundFiles.Exists("Mus"));
  EXPECT_TRUE(on.Events("error").empty());
}

TEST_F(LibraryMusic, MovesThroughTheCardsInTheChosenOrderAndStopsAtItsEnds) {
  AddThree();
  Open();
  Library::OptionTri_Click(on.station, editor, 1);
  EXPECT_EQ(editor.music.ChAuteur, "A");
  Library::BtnPlus_Click(on.station, editor);
  EXPECT_EQ(editor.music.ChAuteur, "B");
  Library::Slider1_Change(on.station, editor, 99);
  EXPECT_EQ(editor.music.ChAuteur, "C");
  Library::BtnPlus_Click(on.station, editor);
  EXPECT_EQ(editor.music.ChAuteur, "C");
  EXPECT_EQ(editor.Slider1, 3);
  Library::Slider1_Change(on.station, editor, 1);
  Library::BtnMoins_Click(on.station, editor);
  EXPECT_EQ(editor.music.ChAuteur, "A");
}

TEST_F(LibraryMusic, AfterAddingTheSliderHasTheNewCountInAnyOrderAndTheAddedCardIsShown) {
  AddThree();
  Open();
  Library::OptionTri_Click(on.station, editor, 1);
  Library::TakeFiles(on.station, editor, {on.MakeSound("AA.wav", 1000)});
  Library::Ajouter_Click(on.station, editor);
  EXPECT_EQ(editor.Slider1, 4);
  EXPECT_EQ(editor.Slider1Max, 4);
  EXPECT_EQ(editor.music.ChAuteur, "AA");
  Library::BtnPlus_Click(on.station, editor);
  EXPECT_EQ(editor.music.ChAuteur, "B");
}

TEST_F(LibraryMusic, AGenreOf23CharactersIsCutTo22AndTold) {
  Open();
  Library::FreeEntry_Change(on.station, editor, Library::FreeList::kGenre,
                            "ÉBCDEFGHIJKLMNOPQRSTUVW");
  EXPECT_EQ(editor.music.ChGenre, "ÉBCDEFGHIJKLMNOPQRSTUV");
  EXPECT_EQ(Message(0), "Trop de caractères");
  Library::FreeEntry_Change(on.station, editor, Library::FreeList::kLabel, std::string(41, 'x'));
  Library::FreeEntry_Change(on.station, editor, Library::FreeList::kCD, std::string(40, 'x'));
  EXPECT_EQ(editor.music.ChLabel.size(), 40U);
  EXPECT_EQ(Messages(), 2U);
}

TEST_F(LibraryMusic, EnterAddsAnEntryInCapitalsOnceAndDeleteTakesItOffAfterAnOk) {
  Open();
  Library::FreeEntry_Change(on.station, editor, Library::FreeList::kLabel, "Étoile");
  Library::FreeEntry_KeyEnter(on.station, editor, Library::FreeList::kLabel);
  Library::FreeEntry_KeyEnter(on.station, editor, Library::FreeList::kLabel);
  EXPECT_EQ(editor.ChLabelList, std::vector<std::string>{"ÉTOILE"});
  EXPECT_TRUE(on.stationFolder.Exists("Labels.Txt"));
  Library::FreeEntry_KeyDelete(on.station, editor, Library::FreeList::kLabel);
  EXPECT_EQ(Message(0), "Effacer ce genre Étoile");
  EXPECT_EQ(editor.ChLabelList.size(), 1U);
  on.messages.AnswerNext(Answer::kOk);
  Library::FreeEntry_KeyDelete(on.station, editor, Library::FreeList::kLabel);
  EXPECT_TRUE(editor.ChLabelList.empty());
}

TEST_F(LibraryMusic, TheMaskOfADayGoesOverTheClipboard) {
  Open();
  editor.masks.Tranche[1] = false;
  Library::BtnCopy_Click(on.station, editor);
  EXPECT_EQ(on.clipboard.Text(), "10" + std::string(22, '1'));
  Library::JourSem_Click(editor, 6);
  Library::BtnColler_Click(on.station, editor);
  EXPECT_EQ(editor.masks.Mask(6), "10" + std::string(22, '1'));
}

TEST_F(LibraryMusic, ADayOfTheCalendarGoesIntoTheLabelOfItsMode) {
  Library::PickDay(editor, 7, 12, 1);
  Library::PickDay(editor, 8, 1, 31);
  Library::PickDay(editor, 9, 6, 5);
  Library::PickDay(editor, 10, 7, 14);
  EXPECT_EQ(editor.music.LblMMJJDebut, "1201");
  EXPECT_EQ(editor.music.LblMMJJFin, "0131");
  EXPECT_EQ(editor.jingle.LblMMJJDebutJ, "0605");
  EXPECT_EQ(editor.jingle.LblMMJJFinJ, "0714");
}

TEST_F(LibraryMusic, OpensOnTheCardThatIsAskedFor) {
  AddThree();
  EXPECT_TRUE(Library::OpenOnCard(on.station, editor, 3));
  EXPECT_EQ(editor.music.ChAuteur, "B");
  EXPECT_EQ(editor.Slider1, 3);
  EXPECT_FALSE(Library::OpenOnCard(on.station, editor, 99));
}

}  // namespace zemo
