// The window of the voice tracks under an operator's hand: each control by its name, and the keys.
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QSlider>
#include <QSpinBox>

#include "platform/LevelTool.h"
#include "platform/Recorder.h"
#include "station/OnAirColumns.h"
#include "ui/LevelMeter.h"
#include "ui/ScreenDesktop.h"
#include "voicetrack/screens/tests/VoiceTrackWindowFixture.h"

namespace zemo::test {
namespace {

class VoiceTrackWindowTest : public VoiceTrackScreenTest {
 protected:
  JoinList& Joins() { return *Find<JoinList>("ListJoins"); }
  std::string Tip(int join) { return Joins().item(join)->toolTip().toStdString(); }
  std::string ColumnOf(int row, int column) { return ColumnText(on.station.PL.Row(row), column); }
  std::string Note() {
    for (const QLabel* label : window->findChildren<QLabel*>())
      if (label->property("note").toBool() && label->isVisible())
        return label->text().toStdString();
    return {};
  }
};

TEST_F(VoiceTrackWindowTest, TheElementsAroundTheTrackAreShown) {
  OpenOn(1);
  EXPECT_EQ(Text("Avant"), "ADA  SONG");
  EXPECT_EQ(Text("FileAvant"), on.station.PL.Row(1).file);
  EXPECT_EQ(Text("InfoPS"), "PS = 5.0");
  EXPECT_EQ(Text("Apres"), "BOB  TUNE");
  EXPECT_EQ(Text("FileApres"), on.station.PL.Row(2).file);
  EXPECT_EQ(Text("Intro"), "Intro = 12");
  EXPECT_EQ(Text("LblIntro"), "12");
  EXPECT_EQ(Text("Diffusion"), "Diffusion à 12 h 02 ' 55");
  EXPECT_EQ(Text("LblCodeVT"), "1");
  EXPECT_EQ(Text("LblARemplir"), "0:12.0");
  EXPECT_EQ(Text("LblDecompte"), "–");
  EXPECT_EQ(Note(), "");  // nothing stands in the list of which there would be something to say
}

TEST_F(VoiceTrackWindowTest, ItBarsTheListAndNotTheAir) {
  on.Start();
  on.RunUntil(on.loop.MonotonicMs() + 1000);
  OpenOn(1);
  EXPECT_EQ(QApplication::activeModalWidget(), window);
  const size_t aired = on.Starts().size();
  Wait(180000);
  EXPECT_EQ(on.Starts().size(), aired + 1) << on.Describe();
  EXPECT_TRUE(window->isVisible());
  window->close();
  EXPECT_FALSE(QApplication::activeModalWidget());
}

// The saver of the main screen does not come over a presenter who speaks.
TEST_F(VoiceTrackWindowTest, WhoRecordsOrListensIsThere) {
  OpenOn(1);
  const double opened = on.station.engine.LastActivityTimer;
  Wait(2000);
  EXPECT_EQ(on.station.engine.LastActivityTimer, opened);
  Click("BtnPplay2");
  Wait(2000);
  EXPECT_EQ(on.station.engine.LastActivityTimer, on.station.Timer());
  Click("BtnStop2");
  Click("BtnRecord");
  Wait(2000);
  EXPECT_EQ(on.station.engine.LastActivityTimer, on.station.Timer());
}

TEST_F(VoiceTrackWindowTest, WhatCannotBeDoneIsOff) {
  OpenOn(1);
  for (const char* off :
       {"BtnStop", "BtnPlay1", "BtnNormalize", "BtnEditVT", "CheckTest", "BtnUndoNormalize"})
    EXPECT_FALSE(On(off)) << off;
  EXPECT_TRUE(On("BtnRecord") && On("BntLoadVT"));
  EXPECT_FALSE(IsSeen("Gauge") || IsSeen("PointSortie") || IsSeen("LblMicro"));
  Click("BtnRecord");
  Wait(50);
  EXPECT_TRUE(On("BtnStop"));
  EXPECT_FALSE(On("BtnRecord") || On("BntLoadVT"));
  Click("BtnStop");
  for (const char* usable : {"BtnRecord", "BtnPlay1", "BtnNormalize", "BtnEditVT", "CheckTest"})
    EXPECT_TRUE(On(usable)) << usable;
}

// Heard from 170 s on, the element after comes in at 175 s and its intro ends at 187 s.
TEST_F(VoiceTrackWindowTest, AWholeTakeByKeysAlone) {
  OpenOn(1);
  Key(Qt::Key_F5);
  Wait(3000);
  EXPECT_EQ(Text("PoAvant"), "00:07");
  EXPECT_EQ(Text("LblDecompte"), "0:14.0");
  Key(Qt::Key_F9);
  EXPECT_EQ(Note(), "Enregistrement");
  Wait(12500);
  EXPECT_EQ(Text("LblTimeVT"), "00:12");
  EXPECT_EQ(Text("LblDecompte").substr(0, 5), "0:01.");
  Wait(3000);
  EXPECT_EQ(Text("LblDecompte").substr(0, 6), "-0:01.");
  Key(Qt::Key_F7);
  EXPECT_FALSE(on.recorder.Recording());
  EXPECT_EQ(Text("LblPositionVT"), std::to_string(173000 - 2420));
  EXPECT_EQ(Note(), "Pas encore sauvé");
  Key(Qt::Key_S, Qt::ControlModifier);
  ASSERT_EQ(on.station.PL.Count(), 4);
  EXPECT_EQ(ColumnOf(2, Col::kTitle), "Voice Track");
  EXPECT_EQ(ColumnOf(2, Col::kIntro), std::to_string(173000 - 2420));
  EXPECT_EQ(Note(), "");
}

TEST_F(VoiceTrackWindowTest, ARetakeTellsWhenItBeginsAndBeginsByItself) {
  OpenOn(1);
  Key(Qt::Key_F5);
  Wait(3000);
  Key(Qt::Key_F9);
  Wait(2000);
  Key(Qt::Key_F8);
  Wait(1500);  // 3.5 s are left
  EXPECT_EQ(Note(), "Reprise dans 4 s");
  Wait(3600);
  EXPECT_TRUE(on.recorder.Recording());
  Key(Qt::Key_Escape);
  EXPECT_FALSE(on.recorder.Recording());
  EXPECT_FALSE(Editor().join.on);
}

// A box that stands open is what Escape is for.
TEST_F(VoiceTrackWindowTest, EscapeClosesABoxBeforeItStopsARecording) {
  ScreenMessageBoxes boxes;
  boxes.SetWindow(over.get(), [] { return true; });
  OpenOn(1);
  Key(Qt::Key_F9);
  boxes.Show("Alerte", "something", Buttons::kOk);
  QApplication::setActiveWindow(window);
  QApplication::processEvents();
  Key(Qt::Key_Escape);
  EXPECT_TRUE(on.recorder.Recording());
  for (const QWidget* box : QApplication::topLevelWidgets())
    EXPECT_FALSE(box->isVisible() && box->objectName() == QStringLiteral("Alerte"));
  Key(Qt::Key_Escape);
  EXPECT_FALSE(on.recorder.Recording());
}

TEST_F(VoiceTrackWindowTest, TheExitPointOfACutTrackIsSetWithItsSlider) {
  OpenOn(1);
  Load(17000);
  Key(Qt::Key_F2);
  EXPECT_EQ(Text("CheckCut"), "Cut On");
  EXPECT_TRUE(IsSeen("PointSortie") && IsSeen("LblPS"));
  EXPECT_FALSE(On("CmdVTToIntro"));
  EXPECT_EQ(Text("LblARemplir"), "–");
  auto* slider = Find<QSlider>("PointSortie");
  EXPECT_EQ(slider->maximum(), 17000);
  slider->setFocus();
  for (int step = 0; step < 7; ++step) Key(Qt::Key_Right);
  EXPECT_EQ(Editor().PointSortie, 700);
  EXPECT_EQ(Text("LblPS"), "0.7");
  Click("CheckCut");
  EXPECT_FALSE(IsSeen("PointSortie"));
  EXPECT_TRUE(On("CmdVTToIntro"));
}

TEST_F(VoiceTrackWindowTest, TickingTheTestPlaysTheJoinWithTheTrack) {
  OpenOn(1);
  Load(500);
  Key(Qt::Key_F2);
  auto* slider = Find<QSlider>("PointSortie");
  slider->setValue(500);
  Key(Qt::Key_F2);
  Click("CheckTest");
  EXPECT_TRUE(Editor().join.on);
  EXPECT_EQ(Editor().PointSortie, 1000);
  EXPECT_TRUE(On("BtnNormalize"));
  Click("BtnStop2");
  EXPECT_FALSE(Editor().join.on);
  Key(Qt::Key_F4);
  EXPECT_FALSE(Editor().CheckTest);
}

TEST_F(VoiceTrackWindowTest, WhatDoesNotFitTheIntroIsTold) {
  OpenOn(2);  // what follows has no intro
  Load(17000);
  Key(Qt::Key_F3);
  EXPECT_EQ(LastMessage(), VoiceTracks::kNoIntro);
  OpenOn(1);
  Load(42000, "long.wav");  // the intro and 30 s
  Click("CmdVTToIntro");
  EXPECT_EQ(LastMessage(), VoiceTracks::kDoesNotFit);
  EXPECT_EQ(Editor().LblPositionVT, 0);
}

TEST_F(VoiceTrackWindowTest, OnTheLastRowNothingFollows) {
  OpenOn(3);
  EXPECT_EQ(Text("Apres"), "");
  EXPECT_EQ(Text("LblIntro"), "");
  Click("BtnPplay2");
  Wait(2000);
  EXPECT_NE(Text("PoAvant"), "");
  EXPECT_EQ(Text("PoApres"), "");
  Click("CmdVTToIntro");
  EXPECT_EQ(LastMessage(), VoiceTracks::kNoIntro);
}

TEST_F(VoiceTrackWindowTest, ARecordingWithoutAJoinLeavesThePlaceAsItWas) {
  OpenOn(1);
  Load(17000);
  Click("CmdVTToIntro");
  Click("BtnRecord");
  Wait(1000);
  Click("BtnStop");
  EXPECT_EQ(Text("LblPositionVT"), "170000");
}

TEST_F(VoiceTrackWindowTest, TheTrackAloneIsHeardAndStopped) {
  OpenOn(1);
  const std::string file = Load(17000);
  EXPECT_EQ(Text("FileVoiceTrack"), file);
  EXPECT_EQ(Text("LblTimeVT"), "00:17");
  Key(Qt::Key_F6);
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kPlaying);
  EXPECT_TRUE(On("BtnStop"));
  Click("BtnStop");
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kClosed);
}

// --- the sitting ---

TEST_F(VoiceTrackWindowTest, TheListTellsWhatIsDoneAndWhatIsMissing) {
  OpenOn(1);
  EXPECT_EQ(Text("LblJoins"), "2 à faire sur 2");
  EXPECT_EQ(Tip(0), "ADA  SONG\nBOB  TUNE\nSans voice track");
  Load(17000);
  Click("BtnSave");
  EXPECT_EQ(Text("LblJoins"), "1 à faire sur 2");
  EXPECT_EQ(Tip(0), "ADA  SONG\nBOB  TUNE\nVoice track prêt");
  Key(Qt::Key_PageDown, Qt::AltModifier);
  EXPECT_EQ(Text("Avant"), "BOB  TUNE");
  EXPECT_EQ(Joins().currentRow(), 1);
  Load(9000, "second.wav");
  Click("BtnPrecedent");  // stores it
  EXPECT_EQ(Text("Avant"), "ADA  SONG");
  EXPECT_EQ(Text("LblTimeVT"), "00:17");
  EXPECT_EQ(Text("LblJoins"), "Tout est fait");
}

TEST_F(VoiceTrackWindowTest, AJoinIsOpenedFromTheList) {
  OpenOn(1);
  Joins().setFocus();
  Key(Qt::Key_Down);
  Key(Qt::Key_Return);
  EXPECT_EQ(Text("Avant"), "BOB  TUNE");
}

TEST_F(VoiceTrackWindowTest, ATrackWhoseNeighboursChangedIsMarked) {
  OpenOn(1);
  Load(17000);
  Click("BtnSave");
  on.station.PL.Remove(3);
  Wait(600);
  EXPECT_EQ(Tip(0), "ADA  SONG\nCY  AIR\nCe Voice Track a été fait pour précéder un autre élément");
  EXPECT_EQ(Note(), "Ce Voice Track a été fait pour précéder un autre élément");
}

// --- the machine ---

TEST_F(VoiceTrackWindowTest, TheDevicesAreChosenByName) {
  on.soundDevices.devices = {{{"Line", "l"}, {"Studio microphone", "m"}}, {{"Front", "f"}}};
  OpenOn(1);
  auto* inputs = Find<QComboBox>("VoiceTrackInputID");
  EXPECT_EQ(inputs->currentText().toStdString(), "Line");
  inputs->setFocus();
  Key(Qt::Key_Down);
  EXPECT_EQ(Editor().VoiceTrackInputID, 1);
  EXPECT_EQ(on.recorder.Listening(), 1);
  EXPECT_EQ(on.localValues.GetText("VoiceTrackInputName", ""), "m");
  EXPECT_EQ(Find<QComboBox>("VoiceTrackOututID")->currentText().toStdString(), "Front");
}

TEST_F(VoiceTrackWindowTest, WhatIsSetOnTheMachineIsKept) {
  OpenOn(1);
  auto* preRoll = Find<QSpinBox>("SpinPreRoll");
  preRoll->setFocus();
  Key(Qt::Key_Up);
  EXPECT_EQ(Editor().SpinPreRoll, 6);
  auto* level = Find<QSpinBox>("LevelNormalize");
  EXPECT_EQ(TextOn(level), "-18 LUFS");
  EXPECT_EQ(level->minimum(), -40);
  EXPECT_EQ(level->maximum(), -5);
  level->setFocus();
  level->selectAll();
  QTest::keyClicks(level, QStringLiteral("-23"));
  window->close();
  EXPECT_EQ(on.localValues.GetText("PreRoll", ""), "6");
  EXPECT_EQ(on.localValues.GetText("LevelNormalize", ""), "-23");
}

TEST_F(VoiceTrackWindowTest, TheMeasuredLatencyIsShownAndUsed) {
  OpenOn(1);
  EXPECT_EQ(Text("LblLatence"), "–");
  EXPECT_FALSE(On("CheckLatence"));
  on.roundTrip.delayMs = 137;
  Click("BtnLatence");
  EXPECT_EQ(Text("LblLatence"), "137");
  Key(Qt::Key_F5);
  Wait(3000);
  Key(Qt::Key_F9);
  EXPECT_EQ(Editor().LblPositionVT, 173000 - 137);
  Key(Qt::Key_F7);
  Click("CheckLatence");
  EXPECT_FALSE(Editor().CheckLatence);
}

TEST_F(VoiceTrackWindowTest, AMicrophoneThatGivesNothingIsTold) {
  on.recorder.gives = false;
  OpenOn(1);
  Wait(2000);
  EXPECT_TRUE(IsSeen("LblMicro"));
  on.recorder.gives = true;
  Wait(50);
  EXPECT_FALSE(IsSeen("LblMicro"));
}

TEST_F(VoiceTrackWindowTest, AnOutputThatIsTheAirsIsTold) {
  on.localValues.Set("AudioOutID", "0");
  OpenOn(1);
  EXPECT_TRUE(IsSeen("LblSortie"));
  auto* outputs = Find<QComboBox>("VoiceTrackOututID");
  outputs->setFocus();
  QTest::keyClick(outputs, Qt::Key_Down);
  Wait(50);
  EXPECT_EQ(Editor().VoiceTrackOututID, 1);
  EXPECT_FALSE(IsSeen("LblSortie"));
}

// Gives half of full scale on the left.
struct HalfLoud : Recorder {
  void Listen(int) override {}
  void Start(int, zemo::Folder&, const std::string&) override {}
  void Stop() override {}
  bool Recording() const override { return false; }
  int64_t RecordedMs() const override { return 0; }
  bool HasFile() const override { return false; }
  int64_t SilentMs() const override { return 0; }
  Levels HeardLevels() override { return {0.5F, 0}; }
  void OnEnd(std::function<void(const std::string& reason)>) override {}
};

TEST_F(VoiceTrackWindowTest, TheMetersShowTheMicrophone) {
  HalfLoud loud;
  on.station.platform.recorder = &loud;
  OpenOn(1);
  EXPECT_NEAR(Find<LevelMeter>("MMLevelX1")->Decibels(), -6, 0.1);
  EXPECT_EQ(Find<LevelMeter>("MMLevelX2")->Decibels(), -60);
  window->close();
  on.station.platform.recorder = &on.recorder;
}

struct WatchedTool : LevelTool {
  std::function<void()> meanwhile;
  bool BringTo(const Level& level, const std::string&, zemo::Folder& folder,
               const std::string& name) override {
    lufs = level.loudnessLufs;
    folder.Write(name, "louder");
    meanwhile();
    return true;
  }
  void Copy(zemo::Folder&, const std::string&, const std::string&) override {}
  double lufs = 0;
};

TEST_F(VoiceTrackWindowTest, TheGaugeShowsWhileTheLevelIsChangedAndItIsUndone) {
  WatchedTool tool;
  on.station.platform.levelTool = &tool;
  OpenOn(1);
  const std::string file = Load(17000);
  bool seen = false, barred = false;
  tool.meanwhile = [&] {
    window->Refresh();
    seen = IsSeen("Gauge");
    barred = !On("BtnRecord") && !On("BtnSave");
  };
  Click("BtnNormalize");
  EXPECT_TRUE(seen);
  EXPECT_TRUE(barred);
  EXPECT_EQ(tool.lufs, -18);
  EXPECT_FALSE(IsSeen("Gauge"));
  EXPECT_NE(Text("FileVoiceTrack"), file);
  Click("BtnUndoNormalize");
  EXPECT_EQ(Text("FileVoiceTrack"), file);
  on.station.platform.levelTool = nullptr;
}

TEST_F(VoiceTrackWindowTest, TheChosenEditorRunsWithTheTrack) {
  OpenOn(1);
  const std::string file = Load(17000);
  Click("BtnEditVT");
  EXPECT_EQ(LastMessage(), VoiceTracks::kNoEditor);
  const std::string program = on.MakeFile("editor", "");
  Click("BtnChoseEditeur");
  SaveIn(*window, "FrmEditeur", program);
  EXPECT_EQ(Text("LblEditeur"), program);
  Click("BtnEditVT");
  const Seen* run = on.First("system", "action", "run");
  ASSERT_TRUE(run) << on.Describe();
}

TEST_F(VoiceTrackWindowTest, TheMixerOfTheMachineOpens) {
  OpenOn(1);
  Click("BtnTableMixage");
  EXPECT_TRUE(on.First("system", "action", "run")) << on.Describe();
}

// --- closing ---

TEST_F(VoiceTrackWindowTest, ATrackThatIsNotStoredIsAskedForAtTheClosing) {
  OpenOn(1);
  Load(17000);
  on.messages.AnswerNext(Answer::kCancel);
  window->close();
  EXPECT_EQ(LastMessage(), VoiceTracks::kAskSave);
  EXPECT_TRUE(window->isVisible());
  on.messages.AnswerNext(Answer::kYes);
  window->close();
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(on.station.PL.Count(), 4);
  OpenOn(2);
  Click("CheckCut");
  on.messages.AnswerNext(Answer::kNo);
  Key(Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(ColumnOf(2, Col::kTitle), "Voice Track");
}

TEST_F(VoiceTrackWindowTest, WithoutATrackNothingIsAsked) {
  OpenOn(1);
  window->close();
  EXPECT_FALSE(window->isVisible());
  EXPECT_TRUE(on.Events("message").empty());
}

TEST_F(VoiceTrackWindowTest, ClosingEndsTheRecordingAndTheJoin) {
  OpenOn(1);
  Key(Qt::Key_F5);
  Key(Qt::Key_F9);
  Wait(500);
  EXPECT_TRUE(window->LeaveNow());
  EXPECT_FALSE(on.recorder.Recording());
  EXPECT_EQ(on.recorder.Listening(), -1);
  EXPECT_EQ(on.preview.Sound().State(), OutputState::kClosed);
  EXPECT_FALSE(window->isVisible());
}

TEST_F(VoiceTrackWindowTest, NothingOpensWhileTheScreenIsLockedOrTheRowIsGone) {
  on.station.engine.ScreenLocked = true;
  window = new VoiceTrackWindow(on.station, {&shapes}, *over);
  window->Open(on.station.PL.Row(1).key);
  EXPECT_FALSE(window->IsOpen() || window->isVisible());
  on.station.engine.ScreenLocked = false;
  window->Open(12345);
  EXPECT_FALSE(window->IsOpen() || window->isVisible());
}

}  // namespace
}  // namespace zemo::test
