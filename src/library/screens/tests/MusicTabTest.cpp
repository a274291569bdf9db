// The library window: its frame and the tab of the music.
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPrinter>
#include <QRadioButton>
#include <QScreen>
#include <QSlider>
#include <QTabBar>

#include "library/screens/tests/LibraryWindowFixture.h"
#include "ui/CalendarWindow.h"

namespace zemo::test {
namespace {

class MusicTab : public LibraryScreenTest {
 protected:
  void SetUp() override {
    LibraryScreenTest::SetUp();
    on.MakeFile("Genre.Txt", "INSTRUMENTAL\r\nPOP\r\nROCK\r\n");
  }
  size_t Messages() { return on.Events("message").size(); }
  std::string LastMessage() { return on.Events("message").back()["text"]; }
};

TEST_F(MusicTab, OpensOnTheFirstCard) {
  AddSongs();
  Open();
  EXPECT_EQ(Text("lblNumero"), "1");
  EXPECT_EQ(Text("ChAuteur"), "CHER");
  EXPECT_EQ(Text("ChTitre"), "Believe");
  EXPECT_EQ(Text("Longeur"), "185000");
  EXPECT_EQ(Text("LblTemp"), "03:05");
  EXPECT_EQ(Text("LblInfoMus"), "Fiche 1 sur 3");
  EXPECT_EQ(Find<QTabBar>("TabStrip1")->currentIndex(), 0);
}

TEST_F(MusicTab, TheMenusHaveTheirLetters) {
  AddSongs();
  Open();
  QTest::keyClick(window.get(), Qt::Key_N, Qt::AltModifier);
  EXPECT_EQ(Text("lblNumero"), "0");
  EXPECT_EQ(Find<QAction>("MnuExporter")->text(), QStringLiteral("&Exporter vers un tableur..."));
}

TEST_F(MusicTab, IsNeverLargerThanTheScreen) {
  window = std::make_unique<LibraryWindow>(on.station, sources);
  window->resize(8000, 6000);
  window->Open();
  EXPECT_EQ(window->size(), window->screen()->availableSize());
}

TEST_F(MusicTab, WithoutCardsOnlyANewOneCanBeMade) {
  Open();
  EXPECT_FALSE(On("Replacer"));
  EXPECT_FALSE(On("MnuDelete"));
  EXPECT_TRUE(On("Ajouter"));
  EXPECT_FALSE(Find("Slider1")->isEnabled());
  EXPECT_EQ(Text("LblInfoMus"), "Fiche 0 sur 0");
}

TEST_F(MusicTab, StaysClosedWhileTheMenusAreLocked) {
  on.station.engine.ScreenLocked = true;
  Open();
  EXPECT_FALSE(window->isVisible());
  EXPECT_FALSE(window->IsOpen());
}

TEST_F(MusicTab, ButtonsSliderAndOrderMoveThroughTheCards) {
  AddSongs();
  Open();
  Click("BtnPlus");
  EXPECT_EQ(Text("ChAuteur"), "ABBA");
  Click("BtnMoins");
  EXPECT_EQ(Text("ChAuteur"), "CHER");
  auto* slider = Find<QSlider>("Slider1");
  EXPECT_EQ(slider->maximum(), 3);
  slider->setFocus();
  QTest::keyClick(slider, Qt::Key_End);
  EXPECT_EQ(Text("ChAuteur"), "Édith");
  Click("OptionTri_1");
  EXPECT_TRUE(Find<QRadioButton>("OptionTri_1")->isChecked());
  EXPECT_EQ(Text("ChAuteur"), "ABBA");
}

TEST_F(MusicTab, EveryBoxIsStoredByReplacer) {
  AddSongs();
  Open();
  const std::pair<const char*, const char*> boxes[] = {
      {"ChAuteur", "AUTEUR"},           {"ChTitre", "TITRE"},
      {"ChCommentaire", "COMMENTAIRE"}, {"ChAuteurCompositeur", "AUTEURCOMPOSITEUR"},
      {"ChRefAlbum", "REFERENCE"},      {"ChFileName", "FILENAME"},
      {"ChDiffusion_3", "DIFFUSION03"}};
  for (const auto& [box, field] : boxes) Type(box, std::string("/a ") + box);
  const std::pair<const char*, const char*> numbers[] = {
      {"Longeur", "DUREE"},           {"ChIntro", "INTRO"},
      {"ChNbPassJour", "NBPASSJOUR"}, {"ChEcartMinutes", "ECARTMINUTES"},
      {"ChEcartJours", "ECARTJOURS"}, {"ChEcartArtiste", "ECARTARTISTE"}};
  for (const auto& [box, field] : numbers) Type(box, "12");
  Type("ChAnne", "1998");
  EXPECT_EQ(Stored("AUTEUR", 1), "CHER");
  Menu("Replacer");
  for (const auto& [box, field] : boxes) EXPECT_EQ(Stored(field, 1), std::string("/a ") + box);
  for (const auto& [box, field] : numbers) EXPECT_EQ(Stored(field, 1), "12") << field;
  EXPECT_EQ(Stored("ANNEE", 1), "1998");
}

TEST_F(MusicTab, ListsExitPointAndWindowAreStored) {
  AddSongs();
  on.Sql("INSERT INTO Variete (VARIETE) VALUES ('REGIONAL')");
  Open();
  Type("ChGenre", "ROCK");
  auto* variety = Find<QComboBox>("ChVariete");
  variety->setFocus();
  QTest::keyClick(variety, Qt::Key_End);
  auto* exit = Find<QSlider>("PointSortie");
  exit->setFocus();
  QTest::keyClick(exit, Qt::Key_Home);
  for (int step = 0; step < 3; ++step) QTest::keyClick(exit, Qt::Key_PageUp);
  EXPECT_EQ(Text("LblPMix"), "3.0");
  Menu("Replacer");
  EXPECT_EQ(Stored("GENRE", 1), "ROCK");
  EXPECT_EQ(Stored("VARIETE", 1), Text("ChVariete"));
  EXPECT_NE(Stored("VARIETE", 1), "");
  EXPECT_EQ(Stored("POINTSORTIE", 1), "3000");
}

TEST_F(MusicTab, ADayOfTheWindowIsPickedFromTheCalendarAndARightClickEmptiesIt) {
  AddSongs();
  Open();
  Click("LblMMJJDebut");
  auto* calendar = window->findChild<QCalendarWidget*>(QStringLiteral("Calendrier"));
  ASSERT_TRUE(calendar);
  Q_EMIT calendar->activated(QDate(2026, 12, 24));
  EXPECT_EQ(Text("LblMMJJDebut"), "1224");
  Menu("Replacer");
  EXPECT_EQ(Stored("MMJJDebut", 1), "1224");
  QTest::mouseClick(Find("LblMMJJDebut"), Qt::RightButton);
  EXPECT_EQ(Editor().music.LblMMJJDebut, "");
  EXPECT_NE(Text("LblMMJJDebut"), "");
}

TEST_F(MusicTab, ReturnPutsAGenreOnItsListAndDeleteTakesItOff) {
  AddSongs();
  Open();
  Type("ChGenre", "soul");
  QTest::keyClick(Find("ChGenre"), Qt::Key_Return);  // the box has the keyboard, not its line
  EXPECT_EQ(Editor().ChGenreList, (Names{"INSTRUMENTAL", "POP", "ROCK", "SOUL"}));
  EXPECT_EQ(Find<QComboBox>("ChGenre")->count(), 4);
  on.messages.AnswerNext(Answer::kOk);
  QTest::keyClick(Find("ChGenre"), Qt::Key_Delete);
  EXPECT_EQ(LastMessage(), "Effacer ce genre soul");
  EXPECT_EQ(Find<QComboBox>("ChGenre")->count(), 3);
}

TEST_F(MusicTab, DeleteWithinAGenreDeletesALetter) {
  AddSongs();
  Open();
  Type("ChGenre", "ROCKS");
  QWidget* box = Find("ChGenre");
  QTest::keyClick(box, Qt::Key_Home);
  QTest::keyClick(box, Qt::Key_Delete);
  EXPECT_EQ(Messages(), 0U);
  EXPECT_EQ(Editor().music.ChGenre, "OCKS");
}

TEST_F(MusicTab, AGenreOf23CharactersIsCutTo22) {
  AddSongs();
  Open();
  Type("ChGenre", "ABCDEFGHIJKLMNOPQRSTUVW");
  EXPECT_EQ(LastMessage(), "Trop de caractères");
  EXPECT_EQ(Find<QComboBox>("ChGenre")->lineEdit()->text().toStdString(), "ABCDEFGHIJKLMNOPQRSTUV");
}

TEST_F(MusicTab, ANewCardIsEmptyAndIsAdded) {
  AddSongs();
  Open();
  Menu("Nouveau");
  EXPECT_EQ(Text("lblNumero"), "0");
  EXPECT_EQ(Text("ChAuteur"), "");
  EXPECT_FALSE(On("Replacer"));
  EXPECT_FALSE(On("MnuDelete"));
  Type("ChFileName", "/new.wav");
  Type("ChAuteur", "NENA");
  Menu("Ajouter");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Discotheque"), "4");
  EXPECT_EQ(Text("LblInfoMus"), "Fiche 4 sur 4");
  EXPECT_EQ(Column("PLDisco", 0), (Names{"ABBA", "CHER", "Édith", "NENA"}));
}

TEST_F(MusicTab, ClearEmptiesTheBoxesAndKeepsTheNumber) {
  AddSongs();
  Open();
  Click("BtnClear");
  EXPECT_EQ(Text("ChAuteur"), "");
  EXPECT_EQ(Text("lblNumero"), "1");
}

TEST_F(MusicTab, ThePickedFilesComeFromTheSelectorThatOpensOverTheWindow) {
  AddSongs();
  std::string current;
  QWidget* below = nullptr;
  const std::string file = on.MakeSound("MADONNA.wav", 61000);
  sources.chooseFiles = [&](QWidget* over, const std::string& opensOn, const Names&,
                            const LibrarySources::TakeFiles& take) {
    below = over;
    current = opensOn;
    take({file});
  };
  Open();
  const std::string shown = Text("ChFileName");
  Click("CmdFileMusique");
  EXPECT_EQ(below, window.get());
  EXPECT_EQ(current, shown);
  EXPECT_EQ(Text("ChFileName"), file);
  EXPECT_EQ(Text("Longeur"), "61000");
  EXPECT_EQ(Text("ChAuteur"), "MADONNA");
}

TEST_F(MusicTab, ALotOfFilesIsAddedWhileTheControlsAreBarred) {
  AddSongs();
  const Names files = {on.MakeSound("A.wav", 60000), on.MakeSound("B.wav", 60000)};
  sources.chooseFiles = [&](QWidget*, const std::string&, const Names&,
                            const LibrarySources::TakeFiles& take) { take(files); };
  Open();
  Click("CmdFileMusique");
  EXPECT_EQ(LastMessage(),
            "Vous avez sélectioné 2 Fichiers audios\r\nVous n'avez plus qu'à cliquer sur le menu "
            "Ajouter");
  bool looked = false, worked = false;
  on.At(0, [&] {
    looked = Editor().working > 0;
    worked = Find("ChAuteur")->isEnabled() || On("Nouveau");
    window->close();
  });
  Menu("Ajouter");
  EXPECT_TRUE(looked);
  EXPECT_FALSE(worked);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Discotheque"), "5");
  EXPECT_FALSE(window->isVisible());  // closed at the end, not before
  EXPECT_FALSE(window->IsOpen());
}

TEST_F(MusicTab, DeletingAsksAndShowsTheNextCard) {
  AddSongs();
  Open();
  Menu("MnuDelete");
  EXPECT_EQ(LastMessage(), "Confirmez la suppression de la séléction");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Discotheque"), "3");
  on.messages.AnswerNext(Answer::kYes);
  Menu("MnuDelete");
  EXPECT_EQ(Text("ChAuteur"), "ABBA");
  EXPECT_EQ(Text("LblInfoMus"), "Fiche 1 sur 2");
  EXPECT_EQ(Column("PLDisco", 0), (Names{"ABBA", "Édith"}));
}

TEST_F(MusicTab, TheLibraryIsExportedToTheFileThatWasChosen) {
  AddSongs();
  Open();
  Menu("MnuExporter");
  bool stands = false;
  sheets.writing = [&] {
    const auto* open = window->findChild<QFileDialog*>();
    stands = open && open->isVisible();
  };
  auto* dialog = window->findChild<QFileDialog*>(QStringLiteral("FrmExporter"));
  ASSERT_TRUE(dialog);
  dialog->setDirectory(QString::fromStdString(on.machineDir.Path()));
  dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QStringLiteral("all"));
  QTest::keyClick(dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")), Qt::Key_Return);
  QApplication::processEvents();
  EXPECT_EQ(sheets.path, on.machineDir.Path() + "/all.xlsx");
  EXPECT_FALSE(stands);
  EXPECT_EQ(sheets.sheet.cells[0].text, "Auteur");
}

// "/Type /Page" in a PDF, without the "/Type /Pages" of their list.
int PagesOf(const std::string& pdf) {
  int pages = 0;
  const std::string page = "/Type /Page";
  for (size_t at = pdf.find(page); at != std::string::npos; at = pdf.find(page, at + 1))
    pages += pdf[at + page.size()] == 's' ? 0 : 1;
  return pages;
}

TEST_F(MusicTab, TheLibraryIsPrintedSixtyTitlesAPage) {
  for (int song = 0; song < 121; ++song) AddSong("A", std::to_string(song));
  bool asked = false;
  sources.questions.choosePrinter = [&](QWidget*, QPrinter& printer) {
    asked = true;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString(on.machineDir.Path() + "/library.pdf"));
    return true;
  };
  Open();
  Menu("MnuImp");
  EXPECT_TRUE(asked);
  EXPECT_EQ(PagesOf(on.machineFolder.Read("library.pdf").value_or("")), 3);
}

TEST_F(MusicTab, PlayDatesAreResetOnlyWhenThatIsConfirmed) {
  for (int song = 0; song < 7; ++song) AddSong("A", std::to_string(song));
  Open();
  const std::string played = "SELECT COUNT(*) FROM Discotheque WHERE LASTDIFF > 0";
  Menu("MnuInitDate");
  EXPECT_EQ(LastMessage(), "Marquer toute la discothèque comme diffusée maintenant ?");
  EXPECT_EQ(on.SqlText(played), "0");
  on.messages.AnswerNext(Answer::kYes);
  Menu("MnuInitDate");
  EXPECT_EQ(LastMessage(), "Traitement Fini");
  EXPECT_EQ(on.SqlText(played), "6");
  EXPECT_EQ(Text("ChDiffusion_1"), "21/11/2026 à 12:00");
}

TEST_F(MusicTab, ExchangeFilesAreWrittenOfEveryCard) {
  const std::string file = on.MakeSound("one.wav", 60000);
  on.AddCard({.file = file});
  Open();
  Menu("MnuTxt");
  EXPECT_TRUE(on.soundFiles.Exists(file.substr(0, file.size() - 3) + "Mus"));
}

TEST_F(MusicTab, HelpTellsTheKeys) {
  Open();
  Menu("MnuAide");
  EXPECT_NE(LastMessage().find("Ctrl+N"), std::string::npos);
}

TEST_F(MusicTab, OpensOnACardOfTheMusic) {
  AddSongs();
  Open();
  Tab(2);
  window->OpenOnCard(3);
  EXPECT_EQ(Text("ChAuteur"), "Édith");
  EXPECT_EQ(Find<QTabBar>("TabStrip1")->currentIndex(), 0);
}

}  // namespace
}  // namespace zemo::test
