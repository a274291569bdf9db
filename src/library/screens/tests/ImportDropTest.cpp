// Files and folders dropped on the library window, by real drag and drop events.
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDropEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QUrl>

#include "engine/FreeMoment.h"
#include "library/screens/tests/LibraryWindowFixture.h"
#include "support/ReadAtOnce.h"

namespace zemo::test {
namespace {

class Dropped : public LibraryScreenTest {
 protected:
  void SetUp() override {
    LibraryScreenTest::SetUp();
    sources.import = {&files, [this](int32_t code, const std::string&) { bare.push_back(code); }};
  }

  // Over a control of the window. False: it is not taken.
  bool Drop(const char* over, const Names& paths, Qt::DropActions offered = Qt::CopyAction) {
    QMimeData data;
    QList<QUrl> urls;
    for (const std::string& path : paths) urls << QUrl::fromLocalFile(QString::fromStdString(path));
    data.setUrls(urls);
    return DropData(*Find(over), data, offered);
  }
  bool DropData(QWidget& over, const QMimeData& data, Qt::DropActions offered) {
    const QPoint place(4, 4);
    QDragEnterEvent enter(place, offered, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&over, &enter);
    if (!enter.isAccepted()) return false;
    QDragMoveEvent move(place, offered, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&over, &move);
    if (!move.isAccepted()) return false;
    QDropEvent drop(QPointF(place), offered, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&over, &drop);
    action = drop.dropAction();
    return drop.isAccepted();
  }
  bool AtWork() { return Find("ImportStrip")->isVisible(); }
  void RunOut() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return !AtWork(); }, 60000));
  }
  QDialog* Report() { return window->findChild<QDialog*>(QStringLiteral("FrmImport")); }
  std::string ReportText() {
    return Find<QPlainTextEdit>("ImportReport")->toPlainText().toStdString();
  }
  std::string Count(const std::string& table) {
    return on.SqlText("SELECT COUNT(*) FROM " + table);
  }

  ReadAtOnce files{on.opener, on.soundFiles};
  std::vector<int32_t> bare;
  Qt::DropAction action = Qt::IgnoreAction;
};

TEST_F(Dropped, FilesAndFoldersBecomeCardsOfTheTabAndTheReportTellsWhat) {
  on.MakeFile("music/words.txt", "no sound");
  const Names made = {on.MakeSound("music/A.wav", 61000), on.MakeSound("music/in/B.wav", 62000),
                      on.MakeSound("C.wav", 63000)};
  const std::string broken = on.MakeFile("music/D.wav", "no sound");
  on.Set("Langue", "1");
  Open();
  EXPECT_TRUE(Drop("CadreDisco", {on.stationDir.Path() + "/music", made[2]}));
  EXPECT_TRUE(AtWork());
  RunOut();
  EXPECT_EQ(Count("Discotheque"), "3");
  EXPECT_TRUE(QTest::qWaitFor(
      [this] {
        return Column("PLDisco", 0) == Names{"A", "B", "C"};
      },
      60000));
  EXPECT_EQ(Text("ChAuteur"), "A");
  EXPECT_EQ(Text("LblInfoMus"), "Card 1 of 3");
  EXPECT_EQ(bare, (std::vector<int32_t>{1, 2, 3}));
  ASSERT_TRUE(Report());
  EXPECT_EQ(
      ReportText().substr(0, ReportText().find(": '")),
      "3 added, 0 known already, 1 refused\n3 without a genre of the station's, which no model "
      "asks for (see ImportGenres.Txt): none 3\n\nRefused (1):\n" +
          broken);
  KeepPicture(*Report(), "import-report");
}

TEST_F(Dropped, OverABoxTheyAreTheWindowsAndNoText) {
  AddSongs();
  Open();
  EXPECT_TRUE(Drop("ChAuteur", {on.MakeSound("A.wav", 61000)}));
  RunOut();
  EXPECT_EQ(Text("ChAuteur"), "CHER");
  EXPECT_EQ(Count("Discotheque"), "4");
}

TEST_F(Dropped, ANameOfBytesThatAreNoUtf8IsTakenAsItIs) {
  on.MakeSound("caf\xE9 50%.wav", 61000);
  Open();
  QMimeData data;
  data.setUrls({QUrl::fromEncoded("file://" + QByteArray::fromStdString(on.stationDir.Path()) +
                                  "/caf%E9%2050%25.wav")});
  EXPECT_TRUE(DropData(*window, data, Qt::CopyAction));
  RunOut();
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Discotheque"), "1");
}

TEST_F(Dropped, TheFilesStayWhereTheyAreWhateverWasOffered) {
  Open();
  EXPECT_TRUE(Drop("CadreDisco", {on.MakeSound("A.wav", 61000)}, Qt::MoveAction | Qt::CopyAction));
  EXPECT_EQ(action, Qt::CopyAction);
}

TEST_F(Dropped, JinglesAndShortElementsGoToTheirOwnTab) {
  Open();
  Tab(2);
  EXPECT_TRUE(Drop("CadreJingles", {on.MakeSound("J.wav", 5000)}));
  Tab(1);  // while it runs
  RunOut();
  EXPECT_EQ(Count("DiscothequeJingle"), "1");
  delete Report();
  Tab(3);
  EXPECT_TRUE(Drop("ChLibVirgule", {on.MakeSound("V.wav", 5000)}));
  RunOut();
  EXPECT_EQ(Count("DiscothequeVirgule"), "1");
  EXPECT_EQ(Count("Discotheque"), "0");
  EXPECT_EQ(Column("PLAutre", 0), Names{"V"});
  EXPECT_TRUE(bare.empty());
}

TEST_F(Dropped, NothingIsTakenOnTheHourPipsWhileOneRunsOrOfWhatIsNoFile) {
  Open();
  Tab(4);
  EXPECT_FALSE(On("MnuImport"));
  EXPECT_FALSE(Drop("GTopH", {on.MakeSound("A.wav", 61000)}));
  Tab(1);
  QMimeData text;
  text.setText(QStringLiteral("/a.wav"));
  EXPECT_FALSE(DropData(*window, text, Qt::CopyAction));
  EXPECT_TRUE(On("MnuImport"));
  files.held = true;
  EXPECT_TRUE(Drop("CadreDisco", {on.MakeSound("A.wav", 61000)}));
  EXPECT_FALSE(Drop("CadreDisco", {on.MakeSound("B.wav", 61000)}));
  EXPECT_FALSE(On("MnuImport"));
}

TEST_F(Dropped, TheStripTellsHowFarItIs) {
  Open();
  files.held = true;
  EXPECT_TRUE(Drop("CadreDisco", {on.MakeSound("A.wav", 61000), on.MakeSound("B.wav", 61000)}));
  ASSERT_TRUE(QTest::qWaitFor([this] { return Text("LblImport") == "0 / 2"; }, 60000));
  EXPECT_EQ(Find<QProgressBar>("ImportBar")->maximum(), 2);
  KeepPicture(*window, "import-strip");
  AddSongs();
  Click("BtnPlus");  // the window goes on
  files.held = false;
  RunOut();
  EXPECT_EQ(Count("Discotheque"), "5");
}

TEST_F(Dropped, CancelKeepsTheCardsThatWereMadeAndSaysSo) {
  Open();
  files.held = true;
  EXPECT_TRUE(Drop("CadreDisco", {on.MakeSound("A.wav", 61000)}));
  Click("BtnImportCancel");
  EXPECT_FALSE(AtWork());
  EXPECT_FALSE(files.atWork);
  EXPECT_EQ(ReportText(),
            "0 ajoutés, 0 déjà connus, 0 refusés\nArrêtée : les fiches créées restent.");
}

TEST_F(Dropped, TheReportGoesToTheClipboardAndEscapeClosesIt) {
  Open();
  EXPECT_TRUE(Drop("CadreDisco", {on.MakeSound("A.wav", 61000)}));
  RunOut();
  QTest::mouseClick(Find("BtnImportCopy"), Qt::LeftButton);
  EXPECT_EQ(on.clipboard.Text(),
            "1 ajoutés, 0 déjà connus, 0 refusés\n1 sans genre de la station, qu'aucun modèle ne "
            "demande (voir ImportGenres.Txt) : aucun 1");
  QTest::keyClick(Report(), Qt::Key_Escape);
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(Report());
}

TEST_F(Dropped, WhoClosesTheWindowMeanwhileIsAsked) {
  Open();
  files.held = true;
  EXPECT_TRUE(Drop("CadreDisco", {on.MakeSound("A.wav", 61000)}));
  QTest::keyClick(window.get(), Qt::Key_Escape);
  EXPECT_TRUE(AtWork());
  window->close();
  EXPECT_TRUE(window->isVisible());
  EXPECT_TRUE(AtWork());
  EXPECT_EQ(on.Events("message").back()["text"],
            "Une importation est en cours. L'arrêter et fermer ?");
  on.messages.AnswerNext(Answer::kYes);
  window->close();
  EXPECT_FALSE(window->isVisible());
  EXPECT_FALSE(files.atWork);
}

TEST_F(Dropped, TheImportWaitsForTheAnswerAndNothingCoversTheQuestion) {
  Open();
  EXPECT_TRUE(Drop("CadreDisco", {on.MakeSound("A.wav", 61000)}));
  const auto seen = on.messages.shown;
  bool asked = false;
  on.messages.shown = [&](const std::string& title, const std::string& text, Buttons buttons,
                          Answer answer) {
    seen(title, text, buttons, answer);
    asked = true;
    for (int turn = 0; turn < 20; ++turn) QTest::qWait(5);
    EXPECT_TRUE(AtWork());
    EXPECT_FALSE(Report());
  };
  window->close();
  EXPECT_TRUE(asked);
  RunOut();
  EXPECT_TRUE(window->isVisible());
  EXPECT_TRUE(Report());
}

TEST_F(Dropped, TheEndOfTheProgramEndsItWithoutAQuestion) {
  Open();
  files.held = true;
  EXPECT_TRUE(Drop("CadreDisco", {on.MakeSound("A.wav", 61000)}));
  EXPECT_TRUE(window->LeaveNow());
  EXPECT_FALSE(files.atWork);
  EXPECT_TRUE(on.Events("message").empty());
}

TEST_F(Dropped, TheMenuImportsAFolderByTheKeyboardAlone) {
  on.MakeSound("music/A.wav", 61000);
  Open();
  Menu("MnuImport");
  auto* dialog = window->findChild<QFileDialog*>(QStringLiteral("FrmImportFolder"));
  ASSERT_TRUE(dialog);
  auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  name->setText(QString::fromStdString(on.stationDir.Path() + "/music"));
  QTest::keyClick(name, Qt::Key_Return);
  RunOut();
  EXPECT_EQ(Count("Discotheque"), "1");
}

TEST_F(Dropped, NothingGoesInWhileAnElementIsAboutToBegin) {
  on.AppendCard(AddSong("ON", "Air"));
  on.AppendCard(AddSong("NEXT", "Air"));
  Open();
  on.Start();
  while (IsFreeMoment(on.station) && on.loop.MonotonicMs() < 200'000)
    on.RunUntil(on.loop.MonotonicMs() + 50);
  ASSERT_FALSE(IsFreeMoment(on.station));
  EXPECT_TRUE(Drop("CadreDisco", {on.MakeSound("A.wav", 61000)}));
  for (int pass = 0; pass < 20; ++pass) QTest::qWait(5);
  EXPECT_TRUE(AtWork());
  EXPECT_EQ(Count("Discotheque"), "2");
  on.RunUntil(on.loop.MonotonicMs() + 3000);
  RunOut();
  EXPECT_EQ(Count("Discotheque"), "3");
}

}  // namespace
}  // namespace zemo::test
