// Opening the editor, the track's file, and what is kept at closing.
#include "platform/Recorder.h"
#include "platform/SoundSource.h"
#include "voicetrack/tests/VoiceTrackFixture.h"

namespace zemo {
namespace {

using VoiceTrack = VoiceTrackFixture;

TEST_F(VoiceTrack, OpensOnARowWithItsNeighboursAndARecordOfItsOwn) {
  EXPECT_TRUE(editor.open);
  EXPECT_EQ(editor.Avant, "ADA  SONG");
  EXPECT_EQ(editor.FileAvant, Cell(1, Col::kFile));
  EXPECT_EQ(editor.PS1, 5000);
  EXPECT_EQ(editor.InfoPS, "PS = 5.0");
  EXPECT_EQ(editor.Apres, "BOB  TUNE");
  EXPECT_EQ(editor.FileApres, Cell(2, Col::kFile));
  EXPECT_EQ(editor.Intro, "Intro = 12");
  EXPECT_EQ(editor.LblIntro, 12);
  EXPECT_EQ(editor.Diffusion, "Broadcasting at " + Cell(2, Col::kPlanned));
  EXPECT_EQ(editor.LblCodeVT, 1);
  EXPECT_EQ(editor.FileVoiceTrack, "");
  EXPECT_EQ(editor.LblPS, "0.0");
  EXPECT_FALSE(editor.CheckTestEnabled);
  EXPECT_FALSE(editor.BtnPlay1Enabled);
  EXPECT_EQ(on.SqlText("SELECT CUT + START + DUREE + POINTSORTIE FROM VT WHERE CODE = 1"), "0");
}

TEST_F(VoiceTrack, AnExitPointOfNothingIsTheStationsOwn) {
  on.AppendCard(on.AddCard({.lengthMs = 90000}));
  on.Set("PmixDef", "1800");
  Open(3);
  EXPECT_EQ(editor.PS1, 1800);
}

TEST_F(VoiceTrack, OnTheLastRowThereIsNoElementAfter) {
  Open(2);
  EXPECT_EQ(editor.Avant, "BOB  TUNE");
  EXPECT_EQ(editor.FileApres, "");
  EXPECT_EQ(editor.Apres, "");
  EXPECT_EQ(editor.Intro, "");
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  Wait(1000);
  EXPECT_EQ(editor.PoApres, "");
  VoiceTracks::CmdVTToIntro_Click(on.station, editor);
  EXPECT_EQ(LastMessage(), "Action impossible car pas d'intro");
}

TEST_F(VoiceTrack, ARowThatThereIsNotOpensNothing) {
  Open(3);
  EXPECT_FALSE(editor.open);
}

TEST_F(VoiceTrack, ARecordingIsAFileOfItsNumberAndAsLongAsItRan) {
  VoiceTracks::BtnRecord_Click(on.station, editor);
  EXPECT_EQ(editor.FileVoiceTrack, OwnFile());
  EXPECT_TRUE(editor.BtnStopEnabled);
  for (const bool enabled :
       {editor.BtnRecordEnabled, editor.BtnPlay1Enabled, editor.BtnNormalizeEnabled,
        editor.BtnEditVTEnabled, editor.BntLoadVTEnabled})
    EXPECT_FALSE(enabled);
  Wait(3000);
  EXPECT_EQ(editor.LblTimeVT, "00:03");
  on.opener.lengthsMs[OwnFile()] = 3000;
  VoiceTracks::BtnStop_Click(on.station, editor);
  EXPECT_TRUE(editor.BtnRecordEnabled);
  EXPECT_TRUE(editor.CheckTestEnabled);
  EXPECT_FALSE(editor.BtnStopEnabled);
  EXPECT_EQ(editor.trackLengthMs, 3000);
  EXPECT_EQ(on.stationFolder.Subfolder("VoiceTrack").SizeBytes("00000001.Wav"), 44 + 3 * 44100 * 2);
  const auto told = on.Events("record");
  ASSERT_EQ(told.size(), 2U);
  EXPECT_EQ(told[0]["state"] + " " + told[0]["ms"], "start 0");
  EXPECT_EQ(told[1]["state"] + " " + told[1]["ms"], "stop 3000");
  EXPECT_EQ(told[1]["file"], OwnFile());
}

TEST_F(VoiceTrack, ARecordingWithoutTheJoinLeavesTheTracksPlace) {
  editor.LblPositionVT = 12345;
  VoiceTracks::BtnRecord_Click(on.station, editor);
  EXPECT_EQ(editor.LblPositionVT, 12345);
}

// The join begins at 170 s: 5 s ahead of the exit at 175 s.
TEST_F(VoiceTrack, ARecordingInTheJoinBeginsWhereThePresenterBegan) {
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  Wait(4000);
  VoiceTracks::BtnRecord_Click(on.station, editor);
  EXPECT_EQ(editor.LblPositionVT, 174000 - 2420);
  Wait(500);
  VoiceTracks::BtnRecord_Click(on.station, editor);
  EXPECT_EQ(editor.LblPositionVT, 174500 - 2420);
  Wait(500);
  VoiceTracks::BtnRecord_Click(on.station, editor);  // at the exit itself
  EXPECT_EQ(editor.LblPositionVT, 175000 - 2420);
  Wait(1000);
  VoiceTracks::BtnRecord_Click(on.station, editor);  // behind it
  EXPECT_EQ(editor.LblPositionVT, 175000 - 2420);
}

TEST_F(VoiceTrack, ARecordingFromTheVeryBeginningGoesToTheExit) {
  editor.SpinPreRoll = 175;
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  Wait(2000);
  VoiceTracks::BtnRecord_Click(on.station, editor);
  EXPECT_EQ(editor.LblPositionVT, 175000 - 2420);
}

TEST_F(VoiceTrack, ARecordingBegunTheReactionBehindTheBeginStandsAtTheBegin) {
  VoiceTracks::PlayJoinFrom(on.station, editor, 0);
  Wait(2420);
  VoiceTracks::BtnRecord_Click(on.station, editor);
  EXPECT_EQ(editor.LblPositionVT, 0);
}

// The microphone would hear it.
TEST_F(VoiceTrack, ANewRecordingTakesTheFormerTrackOutOfTheJoin) {
  Load(8000);
  VoiceTracks::LblPositionVT_Change(editor, 170000);
  VoiceTracks::CheckTest_Click(on.station, editor, true);
  Wait(1500);
  ASSERT_EQ(editor.PoVT, "00:01");
  VoiceTracks::BtnRecord_Click(on.station, editor);
  EXPECT_FALSE(editor.CheckTest);
  const test::Seen last = on.Events("preview").back();
  EXPECT_EQ(last["state"] + " " + last["slot"], "end 2");
}

TEST_F(VoiceTrack, AnotherFileTakesTheFormerTrackOutOfTheJoin) {
  Load(8000);
  VoiceTracks::LblPositionVT_Change(editor, 170000);
  VoiceTracks::CheckTest_Click(on.station, editor, true);
  Wait(1000);
  Load(4000, "other.wav");
  const test::Seen last = on.Events("preview").back();
  EXPECT_EQ(last["state"] + " " + last["slot"], "end 2");
}

TEST_F(VoiceTrack, AnInputThatRefusesCostsNoWordThatWasSpokenBefore) {
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(2000);
  VoiceTracks::BtnStop_Click(on.station, editor);
  editor.VoiceTrackInputID = 9;
  VoiceTracks::BtnRecord_Click(on.station, editor);
  ASSERT_NE(on.First("error", "where", "BtnRecord"), nullptr);
  EXPECT_EQ(on.stationFolder.Subfolder("VoiceTrack").SizeBytes("00000001.Wav"), 44 + 2 * 44100 * 2);
  EXPECT_EQ(editor.FileVoiceTrack, OwnFile());
  EXPECT_TRUE(editor.BtnRecordEnabled);
  EXPECT_EQ(on.Events("record").size(), 2U);
}

TEST_F(VoiceTrack, AnInputThatIsLostIsToldAndWhatCameBeforeIsKept) {
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(2000);
  on.recorder.Lose();
  EXPECT_EQ(LastMessage(), "L'enregistrement s'est arrêté");
  EXPECT_EQ(on.Events("record").back()["ms"], "2000");
  EXPECT_EQ(on.stationFolder.Subfolder("VoiceTrack").SizeBytes("00000001.Wav"), 44 + 2 * 44100 * 2);
  EXPECT_TRUE(editor.BtnRecordEnabled);
}

// One that takes its time to open, and then does not.
struct LateRecorder : Recorder {
  std::function<void(const std::string& reason)> ended;
  bool recording = false;
  void Listen(int) override {}
  void Start(int, zemo::Folder&, const std::string&) override { recording = true; }
  void Stop() override { recording = false; }
  bool Recording() const override { return recording; }
  int64_t RecordedMs() const override { return 0; }
  bool HasFile() const override { return false; }
  int64_t SilentMs() const override { return 0; }
  Levels HeardLevels() override { return {}; }
  void OnEnd(std::function<void(const std::string& reason)> tell) override {
    ended = std::move(tell);
  }
};

TEST_F(VoiceTrack, AnInputThatRefusesLaterLeavesTheTrackAsItWas) {
  const std::string chosen = Load(4000);
  LateRecorder late;
  on.station.platform.recorder = &late;
  VoiceTracks::BtnRecord_Click(on.station, editor);
  EXPECT_EQ(editor.FileVoiceTrack, OwnFile());
  late.recording = false;
  late.ended("the input does not open");
  EXPECT_EQ(editor.FileVoiceTrack, chosen);
  EXPECT_EQ(editor.trackLengthMs, 4000);
  EXPECT_TRUE(editor.BtnRecordEnabled);
  EXPECT_EQ(LastMessage(), "L'enregistrement s'est arrêté");
  VoiceTracks::BtnRecord_Click(on.station, editor);
  VoiceTracks::BtnStop_Click(on.station, editor);
  EXPECT_EQ(editor.FileVoiceTrack, chosen);
  on.station.platform.recorder = nullptr;
}

// An end that takes its time, in which the presenter closes the editor.
TEST_F(VoiceTrack, AnEditorThatIsClosedWhileARecordingEndsRecordsNoMore) {
  struct ClosingRecorder : LateRecorder {
    std::function<void()> meanwhile;
    int begun = 0;
    void Start(int, zemo::Folder&, const std::string&) override { recording = ++begun > 0; }
    void Stop() override {
      recording = false;
      if (const auto once = std::exchange(meanwhile, nullptr)) once();
    }
  } closing;
  on.station.platform.recorder = &closing;
  VoiceTracks::BtnRecord_Click(on.station, editor);
  closing.meanwhile = [this] { VoiceTracks::Form_Unload(on.station, editor); };
  VoiceTracks::BtnRecord_Click(on.station, editor);
  EXPECT_FALSE(editor.open);
  EXPECT_EQ(closing.begun, 1);
  EXPECT_FALSE(closing.ended) << "nobody is there to be told";
  on.station.platform.recorder = nullptr;
}

TEST_F(VoiceTrack, WhatIsSaidIsInTheFileWhileItIsRecorded) {
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(2000);
  const auto file = on.stationFolder.Subfolder("VoiceTrack").Read("00000001.Wav");
  ASSERT_TRUE(file);
  EXPECT_EQ(file->size(), 44U + 2 * 44100 * 2);
  EXPECT_EQ(file->substr(0, 4), "RIFF");
  EXPECT_EQ(file->substr(40, 4), std::string("\x10\xb1\x02\0", 4));  // 176400 bytes
}

TEST_F(VoiceTrack, ARecordingOverAChosenFileLeavesThatFileAlone) {
  const std::string chosen = Load(4000);
  EXPECT_EQ(editor.LblTimeVT, "00:04");
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(1000);
  VoiceTracks::BtnStop_Click(on.station, editor);
  EXPECT_EQ(editor.FileVoiceTrack, OwnFile());
  EXPECT_EQ(on.soundFiles.Read(chosen), "sound");
}

TEST_F(VoiceTrack, AFileWithoutSoundIsNotTaken) {
  VoiceTracks::BntLoadVT_Click(on.station, editor, on.MakeFile("text.wav", "text"));
  EXPECT_EQ(LastMessage(), "Ce fichier ne contient pas de son");
  EXPECT_EQ(editor.FileVoiceTrack, "");
}

TEST_F(VoiceTrack, TheTrackAloneIsHeardOnTheEditorsOwnOutput) {
  const std::string file = Load(4000);
  editor.VoiceTrackOututID = 2;
  VoiceTracks::BtnPlay1_Click(on.station, editor);
  EXPECT_TRUE(editor.BtnStopEnabled);
  const test::Seen* played = on.First("prelisten", "state", "play");
  ASSERT_NE(played, nullptr);
  EXPECT_EQ((*played)["file"] + " " + (*played)["device"], file + " 2");
  Wait(4000);
  EXPECT_FALSE(editor.BtnStopEnabled);
  VoiceTracks::BtnPlay1_Click(on.station, editor);
  Wait(1000);
  VoiceTracks::BtnStop_Click(on.station, editor);
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kClosed);
}

TEST_F(VoiceTrack, AnotherFileEndsTheOneThatIsHeard) {
  Load(4000);
  VoiceTracks::BtnPlay1_Click(on.station, editor);
  Load(5000, "other.wav");
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kClosed);
  EXPECT_FALSE(editor.BtnStopEnabled);
}

TEST_F(VoiceTrack, AnotherOutputChosenIsThatOfTheNextPlaying) {
  Load(4000);
  VoiceTracks::BtnPlay1_Click(on.station, editor);
  Wait(1000);
  editor.VoiceTrackOututID = 3;
  VoiceTracks::BtnPlay1_Click(on.station, editor);
  EXPECT_EQ(on.prelisten.Device(), 3);
  EXPECT_EQ(on.prelisten.PositionMs(), 0);
}

TEST_F(VoiceTrack, AnOutputThatRefusesIsTold) {
  Load(4000);
  editor.VoiceTrackOututID = 7;
  VoiceTracks::BtnPlay1_Click(on.station, editor);
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  EXPECT_EQ(on.Events("message").size(), 2U);
  EXPECT_EQ(LastMessage(), "Impossible d'écouter sur cette sortie audio");
  EXPECT_TRUE(on.Events("preview").empty());
}

TEST_F(VoiceTrack, TheEditorForSoundFilesIsRunWithTheTrack) {
  const std::string file = Load(4000);
  VoiceTracks::BtnEditVT_Click(on.station, editor);
  EXPECT_EQ(LastMessage(), "Choisissez d'abord un éditeur audio");
  VoiceTracks::BtnChoseEditeur_Click(editor, "/opt/wave editor");
  VoiceTracks::BtnEditVT_Click(on.station, editor);
  const test::Seen* run = on.First("system", "action", "run");
  ASSERT_NE(run, nullptr);
  EXPECT_EQ((*run)["value"], "\"/opt/wave editor\" \"" + file + "\"");
}

TEST_F(VoiceTrack, AProgramThatTheMachineHasNotIsTold) {
  Load(4000);
  VoiceTracks::BtnChoseEditeur_Click(editor, "/opt/gone");
  on.system.hasPrograms = false;
  VoiceTracks::BtnEditVT_Click(on.station, editor);
  EXPECT_EQ(LastMessage(), "Choisissez d'abord un éditeur audio");
  VoiceTracks::BtnTableMixage_Click(on.station);
  EXPECT_EQ(LastMessage(), "Cette machine n'a pas de table de mixage");
}

// Writes a word in place of the sound.
struct WordTool : LevelTool {
  double lufs = 0, peakDb = 0;
  bool silent = false;  // there is nothing to be heard
  bool BringTo(const Level& level, const std::string& path, Folder& folder,
               const std::string& name) override {
    if (fails) throw SoundError(path + ": is damaged");
    if (silent) return false;
    lufs = level.loudnessLufs;
    peakDb = level.mostTruePeakDb;
    folder.Write(name, "louder than " + path);
    if (meanwhile) meanwhile();
    return true;
  }
  void Copy(Folder& folder, const std::string& from, const std::string& to) override {
    folder.Write(to, folder.Read(from).value());
    if (copied) copied();
  }
  std::function<void()> copied;     // in the yields of the copy
  std::function<void()> meanwhile;  // in the yields of the change
  bool fails = false;
};

struct VoiceTrackLevel : VoiceTrackFixture {
  WordTool tool;
  zemo::Folder& Tracks() { return on.stationFolder.Subfolder("VoiceTrack"); }
  void Record() {
    VoiceTracks::BtnRecord_Click(on.station, editor);
    Wait(1000);
    VoiceTracks::BtnStop_Click(on.station, editor);
  }
  using Names = std::vector<std::string>;
  void SetUp() override {
    VoiceTrackFixture::SetUp();
    on.station.platform.levelTool = &tool;
  }
};

TEST_F(VoiceTrackLevel, TheRecordingIsBroughtToTheLevelAndItsFormerFormComesBack) {
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(1000);
  VoiceTracks::BtnStop_Click(on.station, editor);
  const auto recorded = Tracks().Read("00000001.Wav");
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  EXPECT_EQ(tool.lufs, -18);
  EXPECT_EQ(tool.peakDb, -1);
  EXPECT_EQ(Tracks().Read("00000001.Wav"), "louder than " + OwnFile("Untouched-00000001.Wav"));
  EXPECT_TRUE(editor.BtnUndoNormalizeEnabled);
  editor.LevelNormalize = -23;
  VoiceTracks::BtnNormalize_Click(on.station, editor);  // from the untouched one again
  EXPECT_EQ(tool.lufs, -23);
  EXPECT_EQ(Tracks().Read("Untouched-00000001.Wav"), recorded);
  VoiceTracks::BtnUndoNormalize_Click(on.station, editor);
  EXPECT_EQ(Tracks().Read("00000001.Wav"), recorded);
  EXPECT_FALSE(Tracks().Exists("Untouched-00000001.Wav"));
  EXPECT_FALSE(editor.BtnUndoNormalizeEnabled);
}

TEST_F(VoiceTrackLevel, ATrackThatIsRecordedAnewHasNoFormerForm) {
  Record();
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  Record();
  EXPECT_FALSE(editor.BtnUndoNormalizeEnabled);
  EXPECT_EQ(Tracks().Names(), Names{"00000001.Wav"});
}

TEST_F(VoiceTrackLevel, AnotherFileChosenHasNoFormerForm) {
  Record();
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  const std::string chosen = Load(4000);
  EXPECT_FALSE(editor.BtnUndoNormalizeEnabled);
  EXPECT_EQ(Tracks().Names(), Names{"00000001.Wav"});
  VoiceTracks::BtnUndoNormalize_Click(on.station, editor);
  EXPECT_EQ(editor.FileVoiceTrack, chosen);
}

TEST_F(VoiceTrackLevel, AFormerFormThatCameBackIsToBeStored) {
  Record();
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  VoiceTracks::BtnSave_Click(on.station, editor);
  ASSERT_FALSE(VoiceTracks::IsUnsaved(editor));
  VoiceTracks::BtnUndoNormalize_Click(on.station, editor);
  EXPECT_TRUE(VoiceTracks::IsUnsaved(editor));
}

TEST_F(VoiceTrackLevel, WhereNothingIsToBeHeardThatIsToldAndTheTrackStays) {
  Record();
  tool.silent = true;
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  EXPECT_EQ(LastMessage(), "Ce fichier ne contient pas de son");
  EXPECT_FALSE(editor.BtnUndoNormalizeEnabled);
  EXPECT_EQ(Tracks().Names(), Names{"00000001.Wav"});
}

TEST_F(VoiceTrackLevel, ALevelThatCannotBeChangedIsToldWithItsReasonAndTheTrackStays) {
  Record();
  on.station.platform.levelTool = nullptr;
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  EXPECT_EQ(LastMessage(),
            "Le niveau n'a pas pu être changé :\r\nthere is nothing that changes a level");
  EXPECT_FALSE(editor.BtnUndoNormalizeEnabled);
  EXPECT_FALSE(editor.GaugeVisible);
  EXPECT_EQ(Tracks().Names(), Names{"00000001.Wav"});
}

TEST_F(VoiceTrackLevel, AnEditorThatIsClosedWhileItsTrackIsCopiedLeavesNoCopy) {
  Record();
  tool.copied = [this] { VoiceTracks::Form_Unload(on.station, editor); };
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  EXPECT_FALSE(editor.open);
  EXPECT_EQ(Tracks().Names(), Names{"00000001.Wav"});
}

TEST_F(VoiceTrackLevel, AChosenFileStaysAsItIsAndTheTrackBecomesAFileOfItsOwn) {
  const std::string chosen = Load(4000);
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  EXPECT_EQ(editor.FileVoiceTrack, OwnFile());
  EXPECT_EQ(on.soundFiles.Read(chosen), "sound");
  VoiceTracks::BtnUndoNormalize_Click(on.station, editor);
  EXPECT_EQ(editor.FileVoiceTrack, chosen);
  EXPECT_FALSE(Tracks().Exists("00000001.Wav"));
}

TEST_F(VoiceTrackLevel, AChosenFileAtItsLevelLeavesTheRecordingThatIsStored) {
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(1000);
  VoiceTracks::BtnStop_Click(on.station, editor);
  VoiceTracks::BtnSave_Click(on.station, editor);
  const auto recorded = Tracks().Read("00000001.Wav");
  const std::string chosen = Load(4000);
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  EXPECT_EQ(editor.FileVoiceTrack, OwnFile("Level-00000001.Wav"));
  EXPECT_EQ(Tracks().Read("Level-00000001.Wav"), "louder than " + chosen);
  EXPECT_EQ(Tracks().Read("00000001.Wav"), recorded);
  editor.LevelNormalize = -23;
  VoiceTracks::BtnNormalize_Click(on.station, editor);  // from the chosen file again
  EXPECT_EQ(Tracks().Read("Level-00000001.Wav"), "louder than " + chosen);
  VoiceTracks::BtnUndoNormalize_Click(on.station, editor);
  EXPECT_EQ(editor.FileVoiceTrack, chosen);
  EXPECT_EQ(Tracks().Names(), std::vector<std::string>{"00000001.Wav"});
  EXPECT_EQ(Tracks().Read("00000001.Wav"), recorded);
}

TEST_F(VoiceTrackLevel, AStoredFileAtItsLevelIsChangedAndComesBackAsTheStoredOne) {
  VoiceTracks::BtnRecord_Click(on.station, editor);
  VoiceTracks::BtnStop_Click(on.station, editor);
  Load(4000);
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  VoiceTracks::BtnSave_Click(on.station, editor);
  const auto stored = Tracks().Read("Level-00000001.Wav");
  Open(2);
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  EXPECT_EQ(Tracks().Read("Level-00000001.Wav"),
            "louder than " + OwnFile("Untouched-00000001.Wav"));
  VoiceTracks::BtnUndoNormalize_Click(on.station, editor);
  EXPECT_EQ(Tracks().Read("Level-00000001.Wav"), stored);
  EXPECT_EQ(editor.FileVoiceTrack, OwnFile("Level-00000001.Wav"));
}

TEST_F(VoiceTrackLevel, TheLevelOfATrackThatIsHeardEndsItFirst) {
  Load(4000);
  VoiceTracks::BtnPlay1_Click(on.station, editor);
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kClosed);
  VoiceTracks::BtnPlay1_Click(on.station, editor);
  VoiceTracks::BtnUndoNormalize_Click(on.station, editor);
  EXPECT_EQ(on.prelisten.PlayerState(), Prelisten::State::kClosed);
  EXPECT_FALSE(editor.BtnStopEnabled);
}

TEST_F(VoiceTrackLevel, AChangeThatFailsLeavesNothingToUndo) {
  VoiceTracks::BtnRecord_Click(on.station, editor);
  VoiceTracks::BtnStop_Click(on.station, editor);
  tool.fails = true;
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  ASSERT_NE(on.First("error", "where", "BtnNormalize"), nullptr);
  EXPECT_FALSE(editor.BtnUndoNormalizeEnabled);
  EXPECT_EQ(Tracks().Names(), std::vector<std::string>{"00000001.Wav"});
  const std::string chosen = Load(4000);
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  EXPECT_FALSE(editor.BtnUndoNormalizeEnabled);
  EXPECT_EQ(editor.FileVoiceTrack, chosen);
  tool.fails = false;
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  tool.fails = true;
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  EXPECT_TRUE(editor.BtnUndoNormalizeEnabled) << "the first change stands";
}

TEST_F(VoiceTrackLevel, AnUndoThatFailsCostsNoWordHoweverOftenItIsTried) {
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(1000);
  VoiceTracks::BtnStop_Click(on.station, editor);
  const auto recorded = Tracks().Read("00000001.Wav");
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  Tracks().Rename("Untouched-00000001.Wav", "away");
  for (int times = 0; times < 3; ++times) {
    VoiceTracks::BtnUndoNormalize_Click(on.station, editor);
    EXPECT_EQ(editor.FileVoiceTrack, OwnFile());
    EXPECT_TRUE(Tracks().Exists("00000001.Wav"));
  }
  EXPECT_NE(on.First("error", "where", "BtnUndoNormalize"), nullptr);
  Tracks().Rename("away", "Untouched-00000001.Wav");
  VoiceTracks::BtnUndoNormalize_Click(on.station, editor);
  EXPECT_TRUE(Tracks().Read("00000001.Wav") == recorded);
}

TEST_F(VoiceTrackLevel, NothingTouchesTheTrackWhileItsLevelIsChanged) {
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(1000);
  VoiceTracks::BtnStop_Click(on.station, editor);
  tool.meanwhile = [this] {
    EXPECT_TRUE(editor.GaugeVisible);
    EXPECT_FALSE(editor.BtnRecordEnabled);
    VoiceTracks::BtnRecord_Click(on.station, editor);
    VoiceTracks::BtnUndoNormalize_Click(on.station, editor);
    VoiceTracks::BtnNormalize_Click(on.station, editor);
    EXPECT_FALSE(on.recorder.Recording());
  };
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  EXPECT_EQ(Tracks().Read("00000001.Wav"), "louder than " + OwnFile("Untouched-00000001.Wav"));
  EXPECT_FALSE(editor.GaugeVisible);
  EXPECT_TRUE(editor.BtnRecordEnabled);
  EXPECT_TRUE(editor.BtnUndoNormalizeEnabled);
}

TEST_F(VoiceTrackLevel, AnEditorThatIsClosedMeanwhileStaysClosed) {
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(1000);
  VoiceTracks::BtnStop_Click(on.station, editor);
  tool.meanwhile = [this] { VoiceTracks::Form_Unload(on.station, editor); };
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  EXPECT_FALSE(editor.open);
  EXPECT_EQ(editor.FileVoiceTrack, "");
  EXPECT_EQ(Tracks().Names(), std::vector<std::string>{"00000001.Wav"});
}

TEST_F(VoiceTrackLevel, TheUntouchedRecordingGoesWhenTheEditorCloses) {
  VoiceTracks::BtnRecord_Click(on.station, editor);
  VoiceTracks::BtnStop_Click(on.station, editor);
  VoiceTracks::BtnNormalize_Click(on.station, editor);
  VoiceTracks::Form_Unload(on.station, editor);
  EXPECT_EQ(Tracks().Names(), std::vector<std::string>{"00000001.Wav"});
}

TEST_F(VoiceTrack, ClosingKeepsTheMachinesValuesAndWhatIsBeingRecorded) {
  editor.VoiceTrackInputID = 1;
  editor.VoiceTrackOututID = 2;
  editor.LevelNormalize = -20;
  editor.SpinPreRoll = 8;
  VoiceTracks::BtnChoseEditeur_Click(editor, "/opt/wave");
  VoiceTracks::BtnPplay2_Click(on.station, editor);
  VoiceTracks::BtnRecord_Click(on.station, editor);
  Wait(1000);
  VoiceTracks::Form_Unload(on.station, editor);
  EXPECT_FALSE(editor.open);
  EXPECT_FALSE(on.recorder.Recording());
  EXPECT_EQ(on.Events("record").back()["ms"], "1000");
  EXPECT_EQ(on.preview.Sound().State(), OutputState::kClosed);
  for (const auto& [name, value] :
       {std::pair("VoiceTrackInputID", "1"), std::pair("VoiceTrackOututID", "2"),
        std::pair("VoiceTrackEditeur", "/opt/wave"), std::pair("LevelNormalize", "-20"),
        std::pair("PreRoll", "8")})
    EXPECT_EQ(on.localValues.GetText(name, ""), value) << name;
  Open(1);
  EXPECT_EQ(editor.VoiceTrackInputID, 1);
  EXPECT_EQ(editor.SpinPreRoll, 8);
  EXPECT_EQ(editor.LblEditeur, "/opt/wave");
}

}  // namespace
}  // namespace zemo
