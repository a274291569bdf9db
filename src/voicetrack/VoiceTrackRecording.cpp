// The track's file: recorded, chosen, played by itself, edited, brought to a level.
#include <algorithm>
#include <exception>
#include <utility>

#include "library/LibraryHandler.h"
#include "library/PrelistenOutput.h"
#include "platform/Desktop.h"
#include "platform/LevelTool.h"
#include "platform/Prelisten.h"
#include "platform/Recorder.h"
#include "platform/SoundLengths.h"
#include "platform/SoundSource.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "voicetrack/JoinPlan.h"
#include "voicetrack/VoiceTrackParts.h"
#include "voicetrack/VoiceTrackScreen.h"

namespace zemo {

namespace {

// From where the presenter heard that the time had come to where the voice begins in the file: the
// reaction and the buffers. Where the machine's own delay was measured, that alone.
constexpr int32_t kReactionMs = 2420;
constexpr double kMostPeakDb = -1;  // dBTP

void SetTrackButtons(VoiceTrackEditor& editor, bool busy) {
  const bool file = !editor.FileVoiceTrack.empty();
  editor.BtnStopEnabled = busy;
  editor.BtnRecordEnabled = editor.BntLoadVTEnabled = !busy;
  editor.BtnPlay1Enabled = editor.BtnNormalizeEnabled = editor.BtnEditVTEnabled =
      editor.CheckTestEnabled = file && !busy;
  editor.BtnUndoNormalizeEnabled = !editor.untouchedFile.empty() && !busy;
}

bool IsOpenOn(const VoiceTrackEditor& editor, int32_t code) {
  return editor.open && editor.LblCodeVT == code;
}

// The presenter began while the join was heard: there the track begins on air.
void PlaceByVoice(VoiceTrackEditor& editor, int32_t heardMs) {
  const int32_t delayMs = editor.CheckLatence ? editor.LblLatence : kReactionMs;
  const int32_t atExit = VoiceTracks::ExitOfBefore(editor) - delayMs;
  editor.LblPositionVT = heardMs > VoiceTracks::ExitOfBefore(editor) ? atExit : heardMs - delayMs;
  if (editor.LblPositionVT < 0) editor.LblPositionVT = atExit;
}

// Where nothing was recorded the track is what it was.
void TakeEndOfRecording(Station& station, VoiceTrackEditor& editor) {
  const Recorder& recorder = *station.platform.recorder;
  station.events.Record("stop", editor.FileVoiceTrack, recorder.RecordedMs());
  if (recorder.HasFile()) {
    VoiceTracks::ForgetUntouched(station, editor);
    ++editor.takes;
  } else {
    editor.FileVoiceTrack = editor.fileBefore;
  }
  VoiceTracks::TakeTrackFile(station, editor);
}

// The station goes on while the recorder ends, and the editor may be closed in that time.
void EndRecording(Station& station, VoiceTrackEditor& editor) {
  const int32_t code = editor.LblCodeVT;
  SetTrackButtons(editor, true);
  editor.BtnStopEnabled = false;
  station.platform.recorder->Stop();
  if (IsOpenOn(editor, code)) TakeEndOfRecording(station, editor);
}

void BeginRecording(Station& station, VoiceTrackEditor& editor) {
  Recorder& recorder = *station.platform.recorder;
  recorder.Start(editor.VoiceTrackInputID, VoiceTracks::TrackFolder(station),
                 VoiceTracks::TrackName(editor.LblCodeVT));
  recorder.OnEnd([&](const std::string& reason) {
    TakeEndOfRecording(station, editor);
    LogError(station, "WaveRecorder", kErrFile, reason);
    VoiceTracks::Tell(station, VoiceTracks::kRecordingEnded);
  });
  editor.fileBefore = editor.FileVoiceTrack;
  editor.silenceLogged = false;
  editor.FileVoiceTrack =
      VoiceTracks::PathInFolder(station, VoiceTracks::TrackName(editor.LblCodeVT));
  station.events.Record("start", editor.FileVoiceTrack, 0);
}

// The name in the folder of the tracks of what the track is, if it is the editor's to write;
// empty for a file from elsewhere.
std::string OwnName(Station& station, const VoiceTrackEditor& editor) {
  for (const std::string& name :
       {VoiceTracks::TrackName(editor.LblCodeVT), VoiceTracks::LevelName(editor.LblCodeVT)})
    if (editor.FileVoiceTrack == VoiceTracks::PathInFolder(station, name)) return name;
  return {};
}

// What a change of the level writes: in place of the track; for a file from elsewhere one that
// takes no recording away, which the record may still have.
std::string NameAtLevel(Station& station, const VoiceTrackEditor& editor) {
  if (std::string own = OwnName(station, editor); !own.empty()) return own;
  std::string name = VoiceTracks::TrackName(editor.LblCodeVT);
  return VoiceTracks::TrackFolder(station).Exists(name) ? VoiceTracks::LevelName(editor.LblCodeVT)
                                                        : name;
}

// The untouched recording is kept beside its changed form; a file from elsewhere is its own.
void KeepUntouched(Station& station, VoiceTrackEditor& editor) {
  Folder& folder = VoiceTracks::TrackFolder(station);
  const std::string name = OwnName(station, editor);
  if (name.empty()) {
    editor.untouchedFile = editor.FileVoiceTrack;
    return;
  }
  const int32_t code = editor.LblCodeVT;
  const std::string kept = VoiceTracks::UntouchedName(code);
  station.platform.levelTool->Copy(folder, name, kept);
  if (!IsOpenOn(editor, code)) return folder.Remove(kept);
  editor.untouchedFile = VoiceTracks::PathInFolder(station, kept);
}

// False: there is nothing in it to be heard.
bool BringToLevel(Station& station, VoiceTrackEditor& editor) {
  const int32_t code = editor.LblCodeVT;
  const std::string name = NameAtLevel(station, editor);
  const LevelTool::Level level{static_cast<double>(editor.LevelNormalize), kMostPeakDb};
  if (!station.platform.levelTool->BringTo(
          level, station.platform.soundFiles.Resolve(editor.untouchedFile),
          VoiceTracks::TrackFolder(station), name))
    return false;
  if (!IsOpenOn(editor, code)) return true;
  editor.FileVoiceTrack = VoiceTracks::PathInFolder(station, name);
  ++editor.takes;
  return true;
}

// The editor may be closed in the yields, and its values are another track's then.
void Normalize(Station& station, VoiceTrackEditor& editor) {
  if (!station.platform.levelTool) throw SoundError("there is nothing that changes a level");
  const int32_t code = editor.LblCodeVT;
  VoiceTracks::FreeTrackSlot(station, editor);
  const bool changedBefore = !editor.untouchedFile.empty();
  if (!changedBefore) KeepUntouched(station, editor);
  if (!IsOpenOn(editor, code)) return;
  bool changed = false;
  try {
    changed = BringToLevel(station, editor);
  } catch (const std::exception&) {
    if (IsOpenOn(editor, code) && !changedBefore) VoiceTracks::ForgetUntouched(station, editor);
    throw;
  }
  if (!IsOpenOn(editor, code)) return;
  if (changed) return VoiceTracks::TakeTrackFile(station, editor);
  if (!changedBefore) VoiceTracks::ForgetUntouched(station, editor);
  VoiceTracks::Tell(station, VoiceTracks::kNoSound);
}

// Ahead of a new take. False: the editor is closed or on another track, by what came while the
// former one ended.
bool StopsForTake(Station& station, VoiceTrackEditor& editor) {
  const int32_t code = editor.LblCodeVT;
  VoiceTracks::StopTrack(station, editor);
  if (!IsOpenOn(editor, code)) return false;
  editor.CheckTest = false;
  return true;
}

}  // namespace

bool VoiceTracks::IsRecording(const Station& station) {
  const Recorder* recorder = station.platform.recorder;
  return recorder != nullptr && recorder->Recording();
}

void VoiceTracks::ReadTrackLength(Station& station, VoiceTrackEditor& editor) {
  if (IsRecording(station)) return;
  editor.trackLengthMs = station.platform.lengths.LengthMs(editor.FileVoiceTrack);
  editor.LblTimeVT = FormatDuration(editor.trackLengthMs);
}

void VoiceTracks::TakeTrackFile(Station& station, VoiceTrackEditor& editor) {
  ReadTrackLength(station, editor);
  SetTrackButtons(editor, false);
}

void VoiceTracks::ForgetUntouched(Station& station, VoiceTrackEditor& editor) {
  const std::string kept = UntouchedName(editor.LblCodeVT);
  const std::string untouched = std::exchange(editor.untouchedFile, {});
  if (untouched == PathInFolder(station, kept)) TrackFolder(station).Remove(kept);
}

void VoiceTracks::StopPlayer(Station& station, VoiceTrackEditor& editor) {
  if (!editor.BtnStopEnabled || IsRecording(station)) return;
  if (Prelisten* player = station.platform.prelisten) player->Close();
  editor.BtnStopEnabled = false;
}

void VoiceTracks::StopTrack(Station& station, VoiceTrackEditor& editor) {
  if (IsRecording(station)) return EndRecording(station, editor);
  StopPlayer(station, editor);
  TakeTrackFile(station, editor);
}

void VoiceTracks::BtnRecord_Click(Station& station, VoiceTrackEditor& editor) {
  if (editor.GaugeVisible) return;
  HandleControl(station, "BtnRecord", [&] {
    if (!station.platform.recorder) throw SoundError("there is no recorder");
    if (!StopsForTake(station, editor)) return;
    editor.join.recordAtMs = -1;
    FreeTrackSlot(station, editor);
    BeginRecording(station, editor);
    editor.takeAtMs = HeardAtMs(station, editor).value_or(-1);
    if (editor.join.on) PlaceByVoice(editor, JoinPositionMs(station));
    SetTrackButtons(editor, true);
    RunTimer(station, editor);
  });
}

void VoiceTracks::BtnStop_Click(Station& station, VoiceTrackEditor& editor) {
  HandleControl(station, "BtnStop", [&] {
    editor.join.recordAtMs = -1;
    StopTrack(station, editor);
  });
}

void VoiceTracks::BtnReprise_Click(Station& station, VoiceTrackEditor& editor) {
  if (editor.GaugeVisible) return;
  if (editor.takeAtMs < 0) return BtnRecord_Click(station, editor);
  HandleControl(station, "BtnReprise", [&] {
    if (!StopsForTake(station, editor)) return;
    const int32_t from = std::min(ExitOfBefore(editor), editor.takeAtMs);
    PlayJoinFrom(station, editor, from - editor.SpinPreRoll * 1000);
    if (editor.join.on) editor.join.recordAtMs = editor.takeAtMs;
  });
}

void VoiceTracks::BtnPlay1_Click(Station& station, VoiceTrackEditor& editor) {
  HandleControl(station, "BtnPlay1", [&] {
    Prelisten* player = station.platform.prelisten;
    if (!player) return;
    player->Close();
    player->SetDevice(editor.VoiceTrackOututID);
    player->Open(station.platform.soundFiles.Resolve(editor.FileVoiceTrack));
    player->OnEnd([&](bool lost) {
      SetTrackButtons(editor, false);
      if (lost) TellPrelistenRefused(station);
    });
    try {
      player->Start();
    } catch (const std::exception&) {
      return TellPrelistenRefused(station);
    }
    editor.BtnStopEnabled = true;
  });
}

void VoiceTracks::BntLoadVT_Click(Station& station, VoiceTrackEditor& editor,
                                  const std::string& file) {
  if (editor.GaugeVisible) return;
  HandleControl(station, "BntLoadVT", [&] {
    if (station.platform.lengths.LengthMs(file) == 0) return Tell(station, kNoSound);
    StopPlayer(station, editor);
    FreeTrackSlot(station, editor);
    ForgetUntouched(station, editor);
    editor.FileVoiceTrack = file;
    TakeTrackFile(station, editor);
  });
}

void VoiceTracks::BtnEditVT_Click(Station& station, VoiceTrackEditor& editor) {
  HandleControl(station, "BtnEditVT", [&] {
    const SoundFiles& files = station.platform.soundFiles;
    const bool begun =
        !editor.LblEditeur.empty() &&
        station.platform.system.Run(editor.LblEditeur, files.Resolve(editor.FileVoiceTrack));
    if (!begun) Tell(station, kNoEditor);
  });
}

void VoiceTracks::BtnChoseEditeur_Click(VoiceTrackEditor& editor, const std::string& program) {
  editor.LblEditeur = program;
}

void VoiceTracks::BtnTableMixage_Click(Station& station) {
  HandleControl(station, "BtnTableMixage", [&] {
    if (!station.platform.system.RunMixer()) Tell(station, kNoMixer);
  });
}

void VoiceTracks::BtnNormalize_Click(Station& station, VoiceTrackEditor& editor) {
  if (editor.GaugeVisible) return;
  const int32_t code = editor.LblCodeVT;
  HandleControl(station, "BtnNormalize", [&] { StopPlayer(station, editor); });
  editor.GaugeVisible = true;
  SetTrackButtons(editor, true);
  editor.BtnStopEnabled = false;
  station.platform.loop.Yield();  // the gauge is seen
  if (IsOpenOn(editor, code) && !IsRecording(station))
    HandleTold(station, "BtnNormalize", kNotNormalized, [&] { Normalize(station, editor); });
  if (!IsOpenOn(editor, code)) return;
  editor.GaugeVisible = false;
  SetTrackButtons(editor, IsRecording(station));
}

void VoiceTracks::BtnUndoNormalize_Click(Station& station, VoiceTrackEditor& editor) {
  if (editor.GaugeVisible) return;
  HandleControl(station, "BtnUndoNormalize", [&] {
    StopPlayer(station, editor);
    FreeTrackSlot(station, editor);
    Folder& folder = TrackFolder(station);
    const std::string kept = UntouchedName(editor.LblCodeVT), name = OwnName(station, editor);
    if (editor.untouchedFile.empty()) return;
    // Forgotten behind what may fail, so that it can be tried again.
    if (editor.untouchedFile == PathInFolder(station, kept)) {
      folder.Rename(kept, name);
    } else {
      folder.Remove(name);
      editor.FileVoiceTrack = editor.untouchedFile;
    }
    editor.untouchedFile.clear();
    ++editor.takes;
    TakeTrackFile(station, editor);
  });
}

}  // namespace zemo
