// The sound file selector over a window.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QSlider>
#include <QWindow>
#include <filesystem>
#include <fstream>

#include "library/screens/LibraryDesk.h"
#include "library/screens/tests/LibraryWindowFixture.h"

namespace zemo::test {
namespace {

class TheSelector : public LibraryScreenTest {
 protected:
  void SetUp() override {
    LibraryScreenTest::SetUp();
    folder = on.machineDir.Path() + "/sounds";
    std::filesystem::create_directories(folder + "/more");
    for (const char* name : {"a.wav", "b.mp3", "c.wav"}) files.push_back(Sound(name));
    Sound("more/deep.wav");
    std::ofstream(folder + "/notes.txt") << "no sound";
    desk = std::make_unique<LibraryDesk>(on.station, sources);
    AddSong("CHER", "Believe");
    desk->Open();
    over = desk->Window();
    on.localValues.Set("AudioOutPFLID", "1");
  }
  void TearDown() override {
    desk.reset();
    LibraryScreenTest::TearDown();
  }
  std::string Sound(const std::string& name) {
    std::ofstream(folder + "/" + name) << "sound";
    on.opener.lengthsMs[folder + "/" + name] = 8000;
    return folder + "/" + name;
  }
  void Choose(const std::string& current = {}, const Names& known = {}) {
    Dialog().Choose(*over, current.empty() ? files[0] : current, known,
                    [this](const Names& chosen) { taken.push_back(chosen); });
    QApplication::processEvents();
  }
  SelectorDialog& Dialog() { return desk->Selector(); }
  template <typename Control>
  Control& Part(const char* name) {
    return *Dialog().findChild<Control*>(QString::fromUtf8(name));
  }
  void Push(const char* name) {
    QTest::mouseClick(&Part<QAbstractButton>(name), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
  }
  void ClickFile(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    auto& list = Part<QListWidget>("File1");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, modifiers,
                      list.visualItemRect(list.item(row)).center());
  }
  Names Listed(const char* name) {
    Names names;
    for (int row = 0; row < Part<QListWidget>(name).count(); ++row)
      names.push_back(Part<QListWidget>(name).item(row)->text().toStdString());
    return names;
  }
  Names Selected() {
    Names names;
    for (const QListWidgetItem* item : Part<QListWidget>("File1").selectedItems())
      names.push_back(item->text().toStdString());
    return names;
  }
  std::string Chosen() { return Part<QLineEdit>("FileName").text().toStdString(); }
  Prelisten::State Player() { return on.prelisten.PlayerState(); }

  std::string folder;
  Names files;
  std::vector<Names> taken;
  std::unique_ptr<LibraryDesk> desk;
  LibraryWindow* over = nullptr;
};

TEST_F(TheSelector, OpensOnTheFolderOfTheCurrentFileOverItsWindow) {
  Choose(files[1]);
  EXPECT_TRUE(Dialog().isVisible());
  EXPECT_EQ(Dialog().windowModality(), Qt::WindowModal);
  EXPECT_EQ(Dialog().windowHandle()->transientParent(), over->windowHandle());
  EXPECT_EQ(Dialog().windowTitle().toStdString(), "Sélecteur de fichier audio / Préécoute");
  EXPECT_EQ(Listed("File1"), (Names{"a.wav", "b.mp3", "c.wav"}));
  EXPECT_EQ(Listed("DirList"), (Names{"..", "more"}));
  EXPECT_EQ(Selected(), (Names{"b.mp3"}));
  EXPECT_EQ(Chosen(), files[1]);
  EXPECT_EQ(Part<QSlider>("TrackBar").maximum(), 8000);
}

TEST_F(TheSelector, GivesWhatIsSelectedToWhoOpenedIt) {
  Choose();
  ClickFile(1);
  EXPECT_EQ(Chosen(), files[1]);
  ClickFile(2, Qt::ControlModifier);
  EXPECT_EQ(Chosen(), files[2]);
  Push("BtnOk");
  EXPECT_FALSE(Dialog().isVisible());
  EXPECT_EQ(taken, (std::vector<Names>{{files[1], files[2]}}));
}

TEST_F(TheSelector, CancelAndEscapeGiveNothing) {
  Choose();
  ClickFile(1);
  Push("BtnCancel");
  EXPECT_FALSE(Dialog().isVisible());
  Choose();
  QTest::keyClick(&Dialog(), Qt::Key_Escape);
  EXPECT_FALSE(Dialog().isVisible());
  EXPECT_TRUE(taken.empty());
  EXPECT_FALSE(Dialog().State().selectorOk);
}

TEST_F(TheSelector, BrowsesByFoldersAndByThePathBox) {
  Choose();
  auto& folders = Part<QListWidget>("DirList");
  folders.setCurrentRow(1);
  QTest::keyClick(&folders, Qt::Key_Return);
  EXPECT_EQ(Listed("File1"), (Names{"deep.wav"}));
  EXPECT_EQ(Part<QLineEdit>("Dir1").text().toStdString(), folder + "/more");
  folders.setCurrentRow(0);
  QTest::keyClick(&folders, Qt::Key_Return);
  EXPECT_EQ(Listed("File1").size(), 3U);
  auto& path = Part<QLineEdit>("Dir1");
  path.setFocus();
  path.selectAll();
  QTest::keyClicks(&path, QString::fromStdString(folder + "/more"));
  QTest::keyClick(&path, Qt::Key_Return);
  EXPECT_EQ(Listed("File1"), (Names{"deep.wav"}));
  EXPECT_TRUE(Dialog().isVisible());
}

TEST_F(TheSelector, TheDriveIsItsRoot) {
  Choose();
  auto& drive = Part<QComboBox>("Drive1");
  EXPECT_EQ(drive.currentText(), QStringLiteral("/"));
  Q_EMIT drive.activated(0);
  EXPECT_EQ(Part<QLineEdit>("Dir1").text(), QStringLiteral("/"));
  EXPECT_NE(Listed("DirList").front(), "..");
}

TEST_F(TheSelector, AFileWhoseNameIsTypedIsChosen) {
  Choose();
  auto& name = Part<QLineEdit>("FileName");
  name.setFocus();
  name.selectAll();
  QTest::keyClicks(&name, QString::fromStdString(folder + "/more/deep.wav"));
  EXPECT_TRUE(Selected().empty());
  QTest::keyClick(&name, Qt::Key_Return);
  EXPECT_EQ(taken, (std::vector<Names>{{folder + "/more/deep.wav"}}));
}

TEST_F(TheSelector, PlaysPausesAndStops) {
  Choose();
  Push("btnPlay");
  EXPECT_EQ(Player(), Prelisten::State::kPlaying);
  on.RunUntil(2000);
  Dialog().Refresh();
  EXPECT_EQ(Part<QLabel>("LblTemp").text(), QStringLiteral("00:00:02"));
  EXPECT_EQ(Part<QSlider>("TrackBar").value(), 2000);
  Push("btnPause");
  EXPECT_EQ(Player(), Prelisten::State::kPaused);
  Push("btnRestart");
  EXPECT_EQ(Player(), Prelisten::State::kPlaying);
  auto& bar = Part<QSlider>("TrackBar");
  bar.setFocus();
  QTest::keyClick(&bar, Qt::Key_Right);
  EXPECT_EQ(on.prelisten.PositionMs(), 3000);
  Push("BtnStop");
  EXPECT_EQ(Player(), Prelisten::State::kOpen);
  EXPECT_EQ(bar.value(), 0);
  Push("btnPlay");
  Push("BtnOk");
  EXPECT_EQ(Player(), Prelisten::State::kClosed);
}

TEST_F(TheSelector, PlayIsOffOnTheOutputThatIsOnAir) {
  on.localValues.Set("AudioOutID", "1");
  on.station.engine.IsRunning = true;
  Choose();
  EXPECT_FALSE(Part<QPushButton>("btnPlay").isEnabled());
  EXPECT_EQ(Part<QLabel>("LblOut").text(), QStringLiteral("Mauvais choix de sortie PFL"));
  on.station.engine.IsRunning = false;
}

TEST_F(TheSelector, PlayIsOffUntilAFileIsChosen) {
  Dialog().Choose(*over, {}, {}, nullptr);
  EXPECT_FALSE(Part<QPushButton>("btnPlay").isEnabled());
  auto& path = Part<QLineEdit>("Dir1");
  path.setText(QString::fromStdString(folder));
  QTest::keyClick(&path, Qt::Key_Return);
  ClickFile(0);
  EXPECT_TRUE(Part<QPushButton>("btnPlay").isEnabled());
  EXPECT_EQ(Part<QLabel>("LblOut").text(), QString());
}

TEST_F(TheSelector, TellsInTheOperatorsWordsThatNoOutputIsChosenAndWhereOneIs) {
  on.localValues.Set("AudioOutPFLID", "-1");
  on.Set("Langue", "1");
  on.station.base.CheckCnf();
  Choose();
  EXPECT_EQ(Part<QLabel>("LblOut").text().toStdString(),
            "No prelisten output is chosen: on-air screen, Options > Settings...");
  on.messages.AnswerNext(Answer::kOk);
  Push("SelectAll");
  EXPECT_EQ(Part<QLabel>("LblOut").text(), QStringLiteral("Done"));
}

TEST_F(TheSelector, SelectsAllAndLeavesOutWhatHasACard) {
  Choose({}, {files[1]});
  on.messages.AnswerNext(Answer::kOk);
  Push("SelectAll");
  EXPECT_EQ(on.Events("message").back()["text"], "Filtrer les fiches existantes");
  EXPECT_EQ(Selected(), (Names{"a.wav", "c.wav"}));
  EXPECT_EQ(Part<QLabel>("LblOut").text(), QStringLiteral("Fini"));
  Push("BtnSelectAll");  // not filtered: the answer is cancel
  EXPECT_EQ(Selected().size(), 3U);
}

TEST_F(TheSelector, CannotBeLeftWhileFilesAreFiltered) {
  Choose({}, {files[1]});
  on.messages.AnswerNext(Answer::kOk);
  bool stayed = false;
  on.At(0, [&] {
    Dialog().reject();
    stayed = Dialog().isVisible();
  });
  Push("SelectAll");
  EXPECT_TRUE(stayed);
  EXPECT_TRUE(Dialog().isVisible());
}

TEST_F(TheSelector, StaysLoadedAndSpeaksTheLanguageOfTheMoment) {
  Choose();
  Push("BtnCancel");
  on.Set("Langue", "1");
  on.station.base.CheckCnf();
  Dialog().Choose(*over, {}, {}, nullptr);
  EXPECT_EQ(Listed("File1").size(), 3U);  // where it was left
  EXPECT_EQ(Dialog().windowTitle().toStdString(), "Selector of sound file / Listened Meadow");
  EXPECT_EQ(Part<QPushButton>("btnPlay").text(), QStringLiteral("Play"));
}

TEST_F(TheSelector, ServesTheLibraryWindow) {
  QTest::mouseClick(over->findChild<QWidget*>(QStringLiteral("CmdFileMusique")), Qt::LeftButton);
  ASSERT_TRUE(Dialog().isVisible());
  auto& path = Part<QLineEdit>("Dir1");
  path.setText(QString::fromStdString(folder));
  QTest::keyClick(&path, Qt::Key_Return);
  ClickFile(2);
  Push("BtnOk");
  EXPECT_EQ(over->Editor().music.ChFileName, files[2]);
  EXPECT_EQ(over->Editor().music.ChAuteur, "c");
}

TEST_F(TheSelector, NothingOfItIsCutInAnyLanguage) {
  on.localValues.Set("AudioOutPFLID", "-1");  // which is told
  for (int langue = 0; langue < 4; ++langue) {
    on.Set("Langue", std::to_string(langue));
    on.station.base.CheckCnf();
    for (const QSize& size : {QSize(1024, 768), QSize(1280, 800), QSize(1920, 1080)}) {
      over->resize(size);
      QApplication::processEvents();
      Choose();
      for (const QAbstractButton* button : Dialog().findChildren<QAbstractButton*>()) {
        if (!button->isVisible()) continue;
        EXPECT_NE(button->text(), QString());
        EXPECT_GE(button->width(), button->minimumSizeHint().width())
            << button->text().toStdString();
      }
      for (const QLabel* label : Dialog().findChildren<QLabel*>())
        EXPECT_GE(label->width(), label->fontMetrics().horizontalAdvance(label->text()));
      KeepPicture(Dialog(),
                  "selector-" + std::to_string(langue) + "-" + std::to_string(size.width()));
      Push("BtnCancel");
    }
  }
}

}  // namespace
}  // namespace zemo::test
