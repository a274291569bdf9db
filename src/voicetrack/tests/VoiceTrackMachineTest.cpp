// What the editor has of the machine: which devices, and what the microphone gives.
#include <tuple>

#include "platform/RoundTrip.h"
#include "voicetrack/tests/VoiceTrackFixture.h"

namespace zemo {
namespace {

using VoiceTrackMachine = VoiceTrackFixture;

TEST_F(VoiceTrackMachine, TheMicrophoneIsHeardWhileTheEditorIsOpen) {
  EXPECT_EQ(on.recorder.Listening(), 0);
  VoiceTracks::VoiceTrackInputID_Change(on.station, editor, 2);
  EXPECT_EQ(on.recorder.Listening(), 2);
  VoiceTracks::Form_Unload(on.station, editor);
  EXPECT_EQ(on.recorder.Listening(), -1);
  Open(1);
  EXPECT_EQ(on.recorder.Listening(), 2);
}

TEST_F(VoiceTrackMachine, AMicrophoneThatGivesNothingIsShownWithinTwoSecondsAndLoggedOnce) {
  on.recorder.gives = false;
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(1000);
  EXPECT_FALSE(editor.LblMicroVisible);
  Wait(1000);
  EXPECT_TRUE(editor.LblMicroVisible);
  Wait(3000);
  EXPECT_TRUE(on.recorder.Recording());
  const auto errors = on.Events("error");
  ASSERT_EQ(errors.size(), 1U);
  EXPECT_EQ(errors[0]["where"], "WaveRecorder");
  EXPECT_EQ(errors[0]["text"], "the sound input gives nothing");
  on.recorder.gives = true;
  Wait(100);
  EXPECT_FALSE(editor.LblMicroVisible);
  EXPECT_TRUE(on.Events("message").empty());
}

TEST_F(VoiceTrackMachine, ASecondRecordingThatHasNothingIsLoggedAgain) {
  on.recorder.gives = false;
  for (const size_t times : {1U, 2U}) {
    VoiceTracks::BtnRecord_Click(on.station, editor);
    Wait(6000);
    VoiceTracks::BtnStop_Click(on.station, editor);
    EXPECT_EQ(on.Events("error").size(), times);
  }
}

TEST_F(VoiceTrackMachine, WhereNothingIsRecordedASilentMicrophoneIsShownAndNotLogged) {
  on.recorder.gives = false;
  Wait(2000);
  VoiceTracks::ShowLevels(on.station, editor);
  EXPECT_TRUE(editor.LblMicroVisible);
  EXPECT_TRUE(on.Events("error").empty());
}

TEST_F(VoiceTrackMachine, TheDevicesAreListedWithTheirNames) {
  Wait(100);
  ASSERT_EQ(editor.devices.inputs.size(), 4U);
  EXPECT_EQ(editor.devices.inputs[3].name, "3");
  EXPECT_FALSE(editor.devices.outputs.empty());
}

TEST_F(VoiceTrackMachine, TheOutputOfTheAirIsKnown) {
  on.localValues.Set("AudioOutID", "0");
  EXPECT_TRUE(VoiceTracks::PlaysOnTheAirsOutput(on.station, editor));  // nobody chose another
  Wait(100);
  VoiceTracks::VoiceTrackOututID_Change(on.station, editor, 2);
  EXPECT_FALSE(VoiceTracks::PlaysOnTheAirsOutput(on.station, editor));
  on.station.lists.AudioOutID = 2;
  EXPECT_TRUE(VoiceTracks::PlaysOnTheAirsOutput(on.station, editor));
  // What it is known by goes before the number, which others may have changed.
  on.localValues.Set("AudioOutName", "another");
  EXPECT_FALSE(VoiceTracks::PlaysOnTheAirsOutput(on.station, editor));
  on.localValues.Set("AudioOutName", editor.outputKey);
  on.station.lists.AudioOutID = 0;
  EXPECT_TRUE(VoiceTracks::PlaysOnTheAirsOutput(on.station, editor));
}

TEST_F(VoiceTrackMachine, AChosenDeviceIsKnownAgainByItsKeyWhenOthersComeAndGo) {
  Wait(100);
  VoiceTracks::VoiceTrackInputID_Change(on.station, editor, 1);
  VoiceTracks::VoiceTrackOututID_Change(on.station, editor, 2);
  EXPECT_EQ(on.localValues.GetText("VoiceTrackInputName", ""), "1");
  EXPECT_EQ(on.localValues.GetText("VoiceTrackOututName", ""), "2");
  VoiceTracks::Form_Unload(on.station, editor);
  auto& devices = on.soundDevices.devices;
  devices.inputs.insert(devices.inputs.begin(), {"new", "new"});
  devices.outputs.erase(devices.outputs.begin() + 2);
  Open(1);
  Wait(100);
  EXPECT_EQ(editor.VoiceTrackInputID, 2);
  EXPECT_EQ(on.recorder.Listening(), 2);
  EXPECT_EQ(on.localValues.GetText("VoiceTrackInputID", ""), "2");
  // One that is not there keeps its place at the end.
  const auto last = static_cast<int32_t>(devices.outputs.size());
  EXPECT_EQ(editor.VoiceTrackOututID, last);
  ASSERT_EQ(editor.devices.outputs.size(), devices.outputs.size() + 1);
  EXPECT_EQ(editor.devices.outputs.back().name, "2");
}

TEST_F(VoiceTrackMachine, ValuesThatNoFieldTakesAreTheNearestThatOneDoes) {
  for (const auto& [given, level, preRoll] :
       {std::tuple("2000000000", -5, 600), std::tuple("-2000000000", -40, 0)}) {
    VoiceTracks::Form_Unload(on.station, editor);
    on.localValues.Set("LevelNormalize", given);
    on.localValues.Set("PreRoll", given);
    Open(1);
    EXPECT_EQ(editor.LevelNormalize, level);
    EXPECT_EQ(editor.SpinPreRoll, preRoll);
  }
}

// By a program of before, which kept the number alone.
TEST_F(VoiceTrackMachine, ADeviceKnownByItsNumberAloneIsKnownByItsKeyFromTheAnswerOn) {
  VoiceTracks::Form_Unload(on.station, editor);
  on.localValues.Set("VoiceTrackInputID", "1");
  on.localValues.Set("VoiceTrackInputName", "");
  Open(1);
  Wait(100);
  EXPECT_EQ(on.localValues.GetText("VoiceTrackInputName", ""), "1");
}

TEST_F(VoiceTrackMachine, ANumberThatIsNotInTheListIsKnownByNothing) {
  Wait(100);
  VoiceTracks::VoiceTrackInputID_Change(on.station, editor, 1);
  VoiceTracks::VoiceTrackInputID_Change(on.station, editor, 9);
  EXPECT_EQ(on.localValues.GetText("VoiceTrackInputID", ""), "9");
  EXPECT_EQ(on.localValues.GetText("VoiceTrackInputName", ""), "");
}

// The join begins at 170 s; the order comes 4 s later.
TEST_F(VoiceTrackMachine, TheMeasuredLatencyPlacesWhatIsRecordedInTheJoin) {
  on.roundTrip.delayMs = 380;
  VoiceTracks::BtnLatence_Click(on.station, editor);
  EXPECT_EQ(editor.LblLatence, 380);
  EXPECT_TRUE(editor.CheckLatence);
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  Wait(4000);
  VoiceTracks::BtnRecord_Click(on.station, editor);
  EXPECT_EQ(editor.LblPositionVT, 174000 - 380);
  VoiceTracks::CheckLatence_Click(editor, false);
  VoiceTracks::BtnRecord_Click(on.station, editor);
  EXPECT_EQ(editor.LblPositionVT, 174000 - 2420);
}

TEST_F(VoiceTrackMachine, TheMeasuredLatencyIsKeptWithItsDevicesAlone) {
  on.roundTrip.delayMs = 380;
  VoiceTracks::BtnLatence_Click(on.station, editor);
  Open(1);
  EXPECT_EQ(editor.LblLatence, 380);
  EXPECT_TRUE(editor.CheckLatence);
  VoiceTracks::VoiceTrackInputID_Change(on.station, editor, 1);
  EXPECT_EQ(editor.LblLatence, -1);
  EXPECT_FALSE(editor.CheckLatence);
  VoiceTracks::CheckLatence_Click(editor, true);
  EXPECT_FALSE(editor.CheckLatence) << "nothing was measured";
  VoiceTracks::BtnLatence_Click(on.station, editor);
  ASSERT_EQ(editor.LblLatence, 380);
  VoiceTracks::VoiceTrackOututID_Change(on.station, editor, 1);
  EXPECT_EQ(editor.LblLatence, -1);
}

TEST_F(VoiceTrackMachine, MeasuringTheLatencyEndsTheRecordingAndTheJoin) {
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(1000);
  VoiceTracks::BtnLatence_Click(on.station, editor);
  EXPECT_FALSE(on.recorder.Recording());
  EXPECT_FALSE(editor.join.on);
  EXPECT_EQ(on.preview.Sound().State(), OutputState::kClosed);
}

// In the yields of the measuring.
TEST_F(VoiceTrackMachine, AnEditorThatIsClosedWhileTheLatencyIsMeasuredStaysClosed) {
  struct ClosingTrip : RoundTrip {
    std::function<void()> meanwhile;
    int32_t MeasureMs(int, int) override { return meanwhile(), 380; }
  } trip;
  trip.meanwhile = [this] { VoiceTracks::Form_Unload(on.station, editor); };
  on.station.platform.roundTrip = &trip;
  VoiceTracks::BtnLatence_Click(on.station, editor);
  on.station.platform.roundTrip = &on.roundTrip;
  EXPECT_FALSE(editor.open);
  EXPECT_EQ(editor.LblLatence, -1);
  EXPECT_FALSE(editor.GaugeVisible);
  EXPECT_EQ(on.recorder.Listening(), -1);
}

TEST_F(VoiceTrackMachine, ALatencyThatCannotBeMeasuredIsToldWithItsReason) {
  VoiceTracks::VoiceTrackOututID_Change(on.station, editor, 7);
  VoiceTracks::BtnLatence_Click(on.station, editor);
  EXPECT_EQ(LastMessage(), "La latence n'a pas pu être mesurée :\r\noutput 7 does not open");
  EXPECT_EQ(editor.LblLatence, -1);
  EXPECT_FALSE(editor.GaugeVisible);
}

// The file of the machine's values is edited by hand.
TEST_F(VoiceTrackMachine, ValuesOutsideTheirFieldsAreTakenAsTheirEnds) {
  VoiceTracks::Form_Unload(on.station, editor);
  on.localValues.Set("PreRoll", "99999999");
  on.localValues.Set("LevelNormalize", "9");
  on.localValues.Set("VoiceTrackLatence", "2000000000");
  on.localValues.Set("VoiceTrackLatenceMesuree", "True");
  Open(1);
  EXPECT_EQ(editor.SpinPreRoll, 600);
  EXPECT_EQ(editor.LevelNormalize, -5);
  EXPECT_EQ(editor.LblLatence, -1);  // no sound takes as long
  EXPECT_FALSE(editor.CheckLatence);
  VoiceTracks::Form_Unload(on.station, editor);
  on.localValues.Set("PreRoll", "-5");
  on.localValues.Set("LevelNormalize", "-1000");
  Open(1);
  EXPECT_EQ(editor.SpinPreRoll, 0);
  EXPECT_EQ(editor.LevelNormalize, -40);
}

TEST_F(VoiceTrackMachine, AnAnswerBehindTheClosingIsForNobody) {
  VoiceTracks::Form_Unload(on.station, editor);
  Wait(100);
  EXPECT_TRUE(editor.devices.inputs.empty());
}

}  // namespace
}  // namespace zemo
