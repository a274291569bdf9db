// The waveform of a music card in the library window, by mouse and keys. The titles are 185 s long,
// or 8158500 frames.
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QWheelEvent>

#include "library/screens/MarkerPane.h"
#include "library/screens/tests/LibraryWindowFixture.h"
#include "store/SoundMeasuresTable.h"

namespace zemo::test {
namespace {

constexpr int64_t kFrames = 8158500;
constexpr int kBoundMs = 20000;

class Waveform : public LibraryScreenTest {
 protected:
  void SetUp() override {
    LibraryScreenTest::SetUp();
    AddSongs();
    on.localValues.Set("AudioOutPFLID", "1");
    shapes.lengthFrames = kFrames;
  }
  void OpenAndLook(int width = 1280, int height = 800) {
    Open(width, height);
    Look();
  }
  MarkerPane& Pane() { return *static_cast<MarkerPane*>(Find("CadreOnde")); }
  MarkerView& View() { return *static_cast<MarkerView*>(Find("VueOnde")); }
  void Look() {
    Pane().Look();
    Pane().Refresh();
    View().setFocus();
  }
  const SoundMarkers& Marks() { return Editor().sound.markers; }
  QPoint At(int32_t ms) { return {Markers::XOf(Marks(), ms, View().width()), 60}; }
  int MarkX(Mark mark) {
    return Markers::XOf(Marks(), Markers::PlaceOf(Marks(), mark), View().width());
  }
  void ClickAt(int32_t ms) { QTest::mouseClick(&View(), Qt::LeftButton, Qt::NoModifier, At(ms)); }
  void DragFrom(int32_t fromMs, int32_t toMs) {
    QTest::mousePress(&View(), Qt::LeftButton, Qt::NoModifier, At(fromMs));
    QTest::mouseMove(&View(), At((fromMs + toMs) / 2));
    QTest::mouseMove(&View(), At(toMs));
    QTest::mouseRelease(&View(), Qt::LeftButton, Qt::NoModifier, At(toMs));
  }
  void Key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&View(), static_cast<Qt::Key>(key), modifiers);
  }
  // A pixel of the view, ms.
  int32_t PixelMs() { return 185000 / View().width() + 1; }
  std::string PlayerFile() {
    const std::string& path = on.prelisten.FileName();
    return path.substr(path.rfind('/') + 1);
  }
};

TEST_F(Waveform, ShowsTheMarksOfTheBoxesAndFollowsThemAsTheyAreTyped) {
  OpenAndLook();
  EXPECT_EQ(Markers::LengthMs(Marks()), 185000);
  EXPECT_EQ(MarkX(Mark::kExit), Markers::XOf(Marks(), -1, View().width())) << "none";
  Type("ChIntro", "14");
  Find<QSlider>("PointSortie")->setValue(9000);
  Pane().Refresh();
  const int width = View().width();
  EXPECT_EQ(MarkX(Mark::kIntro), 14 * width / 185);
  EXPECT_EQ(MarkX(Mark::kExit), 176 * width / 185);
}

TEST_F(Waveform, ADraggedExitIsTheBoxesAndStoredByReplacer) {
  OpenAndLook();
  Find<QSlider>("PointSortie")->setValue(9000);
  Pane().Refresh();
  DragFrom(176000, 165000);
  const int exitMs = Find<QSlider>("PointSortie")->value();
  EXPECT_NEAR(exitMs, 20000, PixelMs());
  EXPECT_EQ(Text("LblPMix"), "20." + std::to_string(exitMs / 100 % 10));
  EXPECT_EQ(Stored("POINTSORTIE", 1), "0");
  Menu("Replacer");
  EXPECT_EQ(Stored("POINTSORTIE", 1), std::to_string(exitMs));
}

TEST_F(Waveform, ADraggedIntroGoesBySecondsIntoItsBox) {
  OpenAndLook();
  Type("ChIntro", "14");
  Pane().Refresh();
  DragFrom(14000, 30500);
  EXPECT_EQ(Text("ChIntro"), "30");
}

TEST_F(Waveform, AClickSetsTheCursorAndTheKeysItsMarks) {
  OpenAndLook();
  ClickAt(20700);
  const int32_t cursorMs = Marks().cursorMs;
  EXPECT_NEAR(cursorMs, 20700, PixelMs());
  Key(Qt::Key_I);
  EXPECT_EQ(Text("ChIntro"), "20");
  ClickAt(170000);
  Key(Qt::Key_O);
  EXPECT_NEAR(Find<QSlider>("PointSortie")->value(), 15000, PixelMs());
  ClickAt(60000);
  Key(Qt::Key_B);
  ClickAt(75000);
  Key(Qt::Key_E);
  EXPECT_NEAR(Marks().marks.extractBeginMs, 60000, PixelMs());
  EXPECT_NEAR(Marks().marks.extractEndMs, 75000, PixelMs());
  const ExtractMarks extract{Marks().marks.extractBeginMs, Marks().marks.extractEndMs};
  Menu("Replacer");
  EXPECT_EQ(ReadExtractMarks(on.station, Editor().music.ChFileName), extract);
}

TEST_F(Waveform, ArrowsMoveTheMarkByTenAndByAHundredMs) {
  OpenAndLook();
  Find<QSlider>("PointSortie")->setValue(9000);
  Pane().Refresh();
  ClickAt(176000);  // chosen
  Key(Qt::Key_Right);
  EXPECT_EQ(Find<QSlider>("PointSortie")->value(), 8990);
  Key(Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_EQ(Find<QSlider>("PointSortie")->value(), 9090);
  EXPECT_EQ(Text("LblPosition"), "02:55.910");
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Find<QSlider>("PointSortie")->value(), 9000) << "the steps are one change";
  Key(Qt::Key_Escape);
  ClickAt(90000);
  const int32_t cursorMs = Marks().cursorMs;
  Key(Qt::Key_Right);
  EXPECT_EQ(Marks().cursorMs, cursorMs + 10);
}

TEST_F(Waveform, AChosenMarkIsErasedAndComesBack) {
  OpenAndLook();
  Find<QSlider>("PointSortie")->setValue(9000);
  Pane().Refresh();
  EXPECT_FALSE(Find("BtnAnnule")->isEnabled());
  ClickAt(176000);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Find<QSlider>("PointSortie")->value(), 0);
  Click("BtnAnnule");
  EXPECT_EQ(Find<QSlider>("PointSortie")->value(), 9000);
  EXPECT_FALSE(Find("BtnAnnule")->isEnabled());
}

TEST_F(Waveform, MarksAreSetWhereTheTitleIsHeard) {
  OpenAndLook();
  Key(Qt::Key_Space);
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kPlaying);
  on.RunUntil(12600);
  Pane().Refresh();
  EXPECT_EQ(View().HeardX(), At(12600).x());
  EXPECT_EQ(Text("LblPosition"), "00:12.600");
  EXPECT_EQ(Text("BtnEcoute"), "Pause");
  Key(Qt::Key_I);
  EXPECT_EQ(Text("ChIntro"), "12");
  on.RunUntil(170000);
  Click("BtnSortie");
  EXPECT_EQ(Find<QSlider>("PointSortie")->value(), 15000);
  Key(Qt::Key_Space);
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kPaused);
  EXPECT_EQ(Marks().cursorMs, 170000);
  EXPECT_EQ(Text("BtnEcoute"), "Écouter");
}

TEST_F(Waveform, AClickWhileItIsHeardGoesOnThere) {
  OpenAndLook();
  Click("BtnEcoute");
  on.RunUntil(1000);
  ClickAt(100000);
  EXPECT_EQ(on.prelisten.PositionMs(), Marks().cursorMs);
  EXPECT_NEAR(Marks().cursorMs, 100000, PixelMs());
}

TEST_F(Waveform, ZoomGoesDownToSingleFramesAndShowsThatPart) {
  OpenAndLook();
  ClickAt(92500);
  EXPECT_FALSE(View().ShowsPart());
  shapes.parts = false;
  for (int step = 0; step < 20; ++step) Key(Qt::Key_Plus);
  EXPECT_EQ(Marks().toFrame - Marks().fromFrame, 220);
  EXPECT_EQ(shapes.wished.fromFrame, Marks().fromFrame);
  EXPECT_EQ(shapes.wished.toFrame, Marks().toFrame);
  EXPECT_EQ(shapes.wished.most, static_cast<size_t>(View().width()));
  EXPECT_FALSE(View().ShowsPart()) << "it is not read yet";
  shapes.parts = true;
  Pane().Refresh();
  EXPECT_TRUE(View().ShowsPart());
  Click("BtnZoomMoins");
  EXPECT_EQ(Marks().toFrame - Marks().fromFrame, 440);
  for (int step = 0; step < 20; ++step) Key(Qt::Key_Minus);
  EXPECT_EQ(Marks().toFrame - Marks().fromFrame, kFrames);
}

TEST_F(Waveform, TheWheelZoomsAboutTheMouse) {
  OpenAndLook();
  const QPointF place(View().width() / 4, 50);
  QWheelEvent turn(place, View().mapToGlobal(place), {}, {0, 240}, Qt::NoButton, Qt::NoModifier,
                   Qt::NoScrollPhase, false);
  QApplication::sendEvent(&View(), &turn);
  EXPECT_EQ(Marks().toFrame - Marks().fromFrame, kFrames / 4);
  EXPECT_NEAR(Marks().fromFrame, kFrames * 3 / 16, 40000);
  const int64_t before = Marks().fromFrame;
  QWheelEvent sideways(place, View().mapToGlobal(place), {}, {0, -120}, Qt::NoButton,
                       Qt::ShiftModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&View(), &sideways);
  EXPECT_GT(Marks().fromFrame, before);
}

TEST_F(Waveform, TheFilesOwnLengthTakesThePlaceOfTheCards) {
  shapes.lengthFrames = 100 * kSampleRate;
  OpenAndLook();
  EXPECT_EQ(Markers::LengthMs(Marks()), 100000);
}

TEST_F(Waveform, TheMeasuredExitIsTakenByButtonAndByKey) {
  const std::string file = on.stationDir.Path() + "/title1.wav";
  SoundMeasures measures;
  measures.lengthMs = 185000;
  measures.soundBeginMs = 200;
  measures.soundEndMs = 181000;
  measures.exitMs = 6400;
  StoreMeasures(on.station.base, file, on.station.platform.soundFiles.Stamp(file).value(),
                measures);
  OpenAndLook();
  Click("BtnPropose");
  EXPECT_EQ(Find<QSlider>("PointSortie")->value(), 6400);
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Find<QSlider>("PointSortie")->value(), 0);
  Key(Qt::Key_P);
  EXPECT_EQ(Find<QSlider>("PointSortie")->value(), 6400);
  Click("BtnPlus");
  Look();
  EXPECT_FALSE(Find("BtnPropose")->isEnabled());
}

TEST_F(Waveform, WhatIsMeasuredMeanwhileShowsByItself) {
  OpenAndLook();
  EXPECT_FALSE(Find("BtnPropose")->isEnabled());
  const std::string file = on.stationDir.Path() + "/title1.wav";
  SoundMeasures measures;
  measures.lengthMs = 185000;
  measures.exitMs = 6400;
  StoreMeasures(on.station.base, file, on.station.platform.soundFiles.Stamp(file).value(),
                measures);
  EXPECT_TRUE(QTest::qWaitFor([this] { return Find("BtnPropose")->isEnabled(); }, kBoundMs));
}

TEST_F(Waveform, TheJoinsAreHeardWithTheCardsAheadAndBehind) {
  OpenAndLook();
  EXPECT_FALSE(Find("BtnRaccordAvant")->isEnabled()) << "it is the first card";
  EXPECT_TRUE(Find("BtnRaccordApres")->toolTip().contains(QStringLiteral("ABBA - Waterloo")));
  Find<QSlider>("PointSortie")->setValue(9000);
  Click("BtnRaccordApres");
  EXPECT_EQ(PlayerFile(), "title1.wav");
  EXPECT_EQ(on.prelisten.PositionMs(), 185000 - 9000 - 5000);
  on.RunUntil(6000);
  EXPECT_EQ(PlayerFile(), "title2.wav");
  Pane().Refresh();
  EXPECT_EQ(View().HeardX(), -1);
  EXPECT_TRUE(View().hasFocus());
}

TEST_F(Waveform, OneTitleIsKeptToBeHeardWithAllOthers) {
  OpenAndLook();
  Click("BtnRetenir");
  EXPECT_TRUE(Find<QPushButton>("BtnRetenir")->isChecked());
  Click("BtnPlus");
  Click("BtnPlus");
  Look();
  EXPECT_FALSE(Find<QPushButton>("BtnRetenir")->isChecked());
  EXPECT_TRUE(Find("BtnRaccordApres")->toolTip().contains(QStringLiteral("CHER - Believe")));
  Click("BtnRaccordApres");
  EXPECT_EQ(PlayerFile(), "title3.wav");
  on.RunUntil(60000);
  EXPECT_EQ(PlayerFile(), "title1.wav");
}

TEST_F(Waveform, AnOutputThatRefusesIsTold) {
  on.localValues.Set("AudioOutPFLID", "7");
  OpenAndLook();
  Click("BtnEcoute");
  EXPECT_EQ(on.Events("message").back()["text"], "Impossible d'écouter sur cette sortie audio");
  EXPECT_EQ(Text("BtnEcoute"), "Écouter");
}

TEST_F(Waveform, ACardIsLookedAtByItselfOnceItStandsStill) {
  Open();
  EXPECT_EQ(Editor().sound.file, "");
  ASSERT_TRUE(QTest::qWaitFor([this] { return !Editor().sound.file.empty(); }, kBoundMs));
  Click("BtnPlus");
  EXPECT_EQ(Editor().sound.file, "") << "nothing of it is read while the operator goes on";
  ASSERT_TRUE(QTest::qWaitFor([this] { return Editor().sound.code == 2; }, kBoundMs));
  EXPECT_EQ(Editor().sound.file, on.stationDir.Path() + "/title2.wav");
}

TEST_F(Waveform, StandsBelowTheListAndWhereThatIsAwayBelowTheCard) {
  OpenAndLook();
  EXPECT_GT(View().mapTo(window.get(), QPoint()).y(),
            Find("PLDisco")->mapTo(window.get(), QPoint()).y());
  EXPECT_GT(View().mapTo(window.get(), QPoint()).x(), 640);
  window->resize(1024, 768);
  QApplication::processEvents();
  EXPECT_TRUE(View().isVisible());
  EXPECT_GT(View().width(), 900);
  Menu("MnuListe");
  EXPECT_FALSE(View().isVisible());
  window->resize(1280, 800);
  QApplication::processEvents();
  EXPECT_TRUE(View().isVisible());
  Tab(2);
  EXPECT_FALSE(View().isVisible());
}

TEST_F(Waveform, AMusicCardWithoutAFileHasNoMarksToSet) {
  OpenAndLook();
  Menu("Nouveau");
  Look();
  EXPECT_FALSE(Find("BtnEcoute")->isEnabled());
  EXPECT_FALSE(Find("BtnIntro")->isEnabled());
  ClickAt(1000);
  Key(Qt::Key_O);
  Key(Qt::Key_Plus);
  Key(Qt::Key_Space);
  EXPECT_EQ(Find<QSlider>("PointSortie")->value(), 0);
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kClosed);
}

}  // namespace
}  // namespace zemo::test
