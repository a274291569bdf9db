// The join as it will air, on a sound chain of its own: the element before from a while ahead of
// its exit point, the track in its place, the element after.
//
//   CheckCut off  the track begins at LblPositionVT of the element before, over the ducked music;
//                 at the exit point the element before fades and the element after begins
//   CheckCut on   at the exit point the element before fades and the track begins; its own exit
//                 point starts the element after
// The track takes part while CheckTest is set.
#include <algorithm>
#include <exception>
#include <functional>
#include <utility>

#include "library/LibraryHandler.h"
#include "library/PrelistenOutput.h"
#include "platform/PreviewChain.h"
#include "platform/Recorder.h"
#include "platform/SoundChain.h"
#include "platform/SoundSource.h"
#include "station/Loudness.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "voicetrack/JoinPlan.h"
#include "voicetrack/VoiceTrackParts.h"
#include "voicetrack/VoiceTrackScreen.h"

namespace zemo {

namespace {

using VoiceTracks::ExitOfBefore;

constexpr int kTimerVTMs = 50;
constexpr int32_t kExitPastTheEndMs = 1000;  // in place of one that lies there
constexpr int kBefore = JoinProgress::kBefore, kAfter = JoinProgress::kAfter,
              kTrack = JoinProgress::kTrack;

int Setting(Station& station, int field) {
  return static_cast<int>(station.base.CnfInt(field));
}

EngineEvents::JoinSlot SlotOf(Station& station, const VoiceTrackEditor& editor, int slot) {
  const SoundChain& sound = station.platform.preview->Sound();
  return {slot, editor.join.files[static_cast<size_t>(slot)], sound.Position(slot),
          sound.Volume(slot)};
}

class JoinEvents : public SoundObserver {
 public:
  JoinEvents(Station& station, const VoiceTrackEditor& editor)
      : station_(station), editor_(editor) {}

  void OnSlotEnd(int slot, SlotEnd) override { Send("end", slot); }
  void OnFade(int slot, int ms) override {
    station_.events.Preview("fade", SlotOf(station_, editor_, slot), ms);
  }
  void OnVolume(int slot, int, int) override { Send("volume", slot); }
  void OnOutput(const char*) override {}

 private:
  void Send(const char* state, int slot) {
    station_.events.Preview(state, SlotOf(station_, editor_, slot));
  }

  Station& station_;
  const VoiceTrackEditor& editor_;
};

void FreeJoinSlot(SoundChain& sound, VoiceTrackEditor& editor, int slot) {
  sound.SetFileName(slot, "");
  editor.join.files[static_cast<size_t>(slot)].clear();
}

void LoadJoinSlot(Station& station, VoiceTrackEditor& editor, int slot, const std::string& file,
                  int volume) {
  SoundChain& sound = station.platform.preview->Sound();
  FreeJoinSlot(sound, editor, slot);  // its end is told under its own name
  sound.SetFileName(slot, station.platform.soundFiles.Resolve(file));
  editor.join.files[static_cast<size_t>(slot)] = file;
  sound.SetGain(slot, LoudnessGain(station, file));
  sound.SetVolume(slot, volume);
}

void StartJoinSlot(Station& station, const VoiceTrackEditor& editor, int slot) {
  SoundChain& sound = station.platform.preview->Sound();
  sound.SetChannelDone(slot, false);
  if (sound.State() != OutputState::kStarted) sound.Start();
  if (sound.Sounds(slot)) station.events.Preview("start", SlotOf(station, editor, slot));
}

bool TrackTakesPart(const Station& station, const VoiceTrackEditor& editor) {
  return editor.CheckTest && station.platform.soundFiles.Exists(editor.FileVoiceTrack);
}

void StartAfter(Station& station, VoiceTrackEditor& editor, int volume) {
  if (editor.join.afterStarted || editor.join.files[kAfter].empty()) return;
  editor.join.afterStarted = true;
  station.platform.preview->Sound().SetVolume(kAfter, volume);
  StartJoinSlot(station, editor, kAfter);
}

void FadeBefore(Station& station, VoiceTrackEditor& editor) {
  if (std::exchange(editor.join.beforeFaded, true)) return;
  station.platform.preview->Sound().FadeOut(kBefore, Setting(station, Cnf::kFadeOut));
}

void StartTrack(Station& station, VoiceTrackEditor& editor, int volume, int32_t fromMs = 0) {
  if (editor.join.trackStarted || !TrackTakesPart(station, editor)) return;
  editor.join.trackStarted = true;
  LoadJoinSlot(station, editor, kTrack, editor.FileVoiceTrack, volume);
  if (fromMs > 0) station.platform.preview->Sound().SetPosition(kTrack, fromMs);
  StartJoinSlot(station, editor, kTrack);
}

// The track is an element of its own.
void ServeCut(Station& station, VoiceTrackEditor& editor, bool atExit) {
  const SoundChain& sound = station.platform.preview->Sound();
  const int music = Setting(station, Cnf::kVolumeMusique);
  if (atExit) {
    FadeBefore(station, editor);
    StartTrack(station, editor, music);
  }
  const int32_t exitMs = sound.Length(kTrack) - editor.PointSortie;
  if (editor.join.trackStarted && (sound.ChannelDone(kTrack) || sound.Position(kTrack) >= exitMs))
    StartAfter(station, editor, music);
}

// The track speaks over.
void ServeOver(Station& station, VoiceTrackEditor& editor, bool atExit) {
  SoundChain& sound = station.platform.preview->Sound();
  const int under = Setting(station, Cnf::kVolumeMusiqueSous);
  if (!editor.join.trackStarted && sound.Position(kBefore) >= editor.LblPositionVT &&
      TrackTakesPart(station, editor)) {
    sound.SetVolume(kBefore, under);
    StartTrack(station, editor, Setting(station, Cnf::kVolumeMusiqueSurImpression));
  }
  if (!atExit || editor.join.beforeFaded) return;
  StartAfter(station, editor, under);
  FadeBefore(station, editor);
}

// As on air the neighbours have their volume back at the end of the track; without one the element
// after has it from its start.
void RestoreVolumes(Station& station, VoiceTrackEditor& editor) {
  SoundChain& sound = station.platform.preview->Sound();
  if (!sound.ChannelDone(kTrack)) return;
  const int music = Setting(station, Cnf::kVolumeMusique);
  sound.SetVolume(kAfter, music);
  if (!editor.join.trackStarted || std::exchange(editor.join.trackEnded, true)) return;
  sound.SetVolume(kBefore, music);
}

void ShowJoin(const SoundChain& sound, VoiceTrackEditor& editor) {
  const auto shown = [&](int slot, int32_t ms) {
    return editor.join.files[static_cast<size_t>(slot)].empty() ? std::string()
                                                                : FormatDuration(ms);
  };
  editor.PoAvant = shown(kBefore, sound.Length(kBefore) - sound.Position(kBefore));
  editor.PoApres = shown(kAfter, sound.Position(kAfter));
  editor.PoVT = shown(kTrack, sound.Position(kTrack));
}

void ServeJoin(Station& station, VoiceTrackEditor& editor) {
  const SoundChain& sound = station.platform.preview->Sound();
  ShowJoin(sound, editor);
  const bool atExit = sound.Position(kBefore) >= ExitOfBefore(editor);
  if (editor.CheckCut)
    ServeCut(station, editor, atExit);
  else
    ServeOver(station, editor, atExit);
  RestoreVolumes(station, editor);
}

// Nothing of it sounds any more, nor begins: its positions stand still.
bool JoinIsOver(const Station& station) {
  const SoundChain& sound = station.platform.preview->Sound();
  return sound.ChannelDone(kBefore) && sound.ChannelDone(kAfter) && sound.ChannelDone(kTrack);
}

// A take may have begun in the silence behind the element before.
bool RetakeBegins(const Station& station, const VoiceTrackEditor& editor) {
  const int32_t atMs = editor.join.recordAtMs;
  if (atMs < 0) return false;
  const auto heard = VoiceTracks::HeardAtMs(station, editor);
  return heard && (*heard >= atMs || JoinIsOver(station));
}

// The next take begins where this one was meant to, and not at the turn behind that.
void BeginRetake(Station& station, VoiceTrackEditor& editor) {
  const int32_t atMs = editor.join.recordAtMs;
  VoiceTracks::BtnRecord_Click(station, editor);
  editor.takeAtMs = atMs;
}

bool TakeJoinOutput(Station& station, VoiceTrackEditor& editor) {
  try {
    station.platform.preview->UseDevice(editor.VoiceTrackOututID);
    station.platform.preview->OnLost([&] {
      HandleControl(station, "BtnPplay2", [&] { VoiceTracks::EndJoin(station, editor); });
      TellPrelistenRefused(station);
    });
    return true;
  } catch (const SoundError&) {
    TellPrelistenRefused(station);
    return false;
  }
}

// The track as far as it would have come by then.
void JoinTrackAt(Station& station, VoiceTrackEditor& editor, const JoinPlan& plan, int32_t ms) {
  if (ms <= plan.trackFromMs || !TrackTakesPart(station, editor)) return;
  if (ms >= plan.trackToMs) {
    editor.join.trackStarted = editor.join.trackEnded = true;
    return;
  }
  StartTrack(station, editor,
             Setting(station, plan.ducks ? Cnf::kVolumeMusiqueSurImpression : Cnf::kVolumeMusique),
             ms - plan.trackFromMs);
}

// The element before is not heard any more.
void JoinBehindExit(Station& station, VoiceTrackEditor& editor, const JoinPlan& plan, int32_t ms) {
  SoundChain& sound = station.platform.preview->Sound();
  editor.join.beforeFaded = true;
  if (editor.CheckCut && (!editor.join.trackStarted || ms < plan.afterFromMs)) return;
  sound.SetPosition(kAfter, std::max(0, ms - plan.afterFromMs));
  const bool ducked = plan.ducks && !sound.ChannelDone(kTrack);
  StartAfter(station, editor,
             Setting(station, ducked ? Cnf::kVolumeMusiqueSous : Cnf::kVolumeMusique));
  if (!editor.CheckCut) editor.join.trackStarted = true;  // none begins behind the exit point
}

void BeginJoin(Station& station, VoiceTrackEditor& editor, int32_t ms) {
  SoundChain& sound = station.platform.preview->Sound();
  VoiceTracks::EndJoin(station, editor);
  if (editor.FileAvant.empty() || !TakeJoinOutput(station, editor)) return;
  if (!editor.joinEvents) editor.joinEvents = std::make_unique<JoinEvents>(station, editor);
  sound.SetObserver(editor.joinEvents.get());
  const int music = Setting(station, Cnf::kVolumeMusique);
  LoadJoinSlot(station, editor, kBefore, editor.FileAvant, music);
  if (station.platform.soundFiles.Exists(editor.FileApres))
    LoadJoinSlot(station, editor, kAfter, editor.FileApres, music);
  editor.join.on = true;
  const JoinPlan plan = PlanOf(editor, 0);
  sound.SetPosition(kBefore, std::min(ms, plan.exitMs));
  JoinTrackAt(station, editor, plan, ms);
  if (ms < plan.exitMs || ms == 0) {
    if (!sound.ChannelDone(kTrack))
      sound.SetVolume(kBefore, Setting(station, Cnf::kVolumeMusiqueSous));
    StartJoinSlot(station, editor, kBefore);
  } else {
    JoinBehindExit(station, editor, plan, ms);
  }
  VoiceTracks::RunTimer(station, editor);
}

}  // namespace

void VoiceTracks::RunTimer(Station& station, VoiceTrackEditor& editor) {
  if (!editor.TimerVT)
    editor.TimerVT = station.platform.loop.MakeTimer(
        kTimerVTMs, [&station, &editor] { TimerVT_Timer(station, editor); });
  if (!editor.TimerVT->Enabled()) editor.TimerVT->SetEnabled(true);
}

int32_t VoiceTracks::JoinPositionMs(const Station& station) {
  return station.platform.preview->Sound().Position(kBefore);
}

void VoiceTracks::FreeTrackSlot(Station& station, VoiceTrackEditor& editor) {
  if (PreviewChain* preview = station.platform.preview)
    FreeJoinSlot(preview->Sound(), editor, kTrack);
}

void VoiceTracks::EndJoin(Station& station, VoiceTrackEditor& editor) {
  PreviewChain* preview = station.platform.preview;
  if (!preview) return;
  SoundChain& sound = preview->Sound();
  sound.Stop();
  sound.Close();
  for (int slot = 0; slot < kSlots; ++slot) FreeJoinSlot(sound, editor, slot);
  editor.join = JoinProgress();
  editor.PoAvant.clear();
  editor.PoApres.clear();
  editor.PoVT.clear();
}

void VoiceTracks::CheckTest_Click(Station& station, VoiceTrackEditor& editor, bool ticked) {
  editor.CheckTest = ticked;
  if (!ticked) return;
  HandleControl(station, "CheckTest", [&] { ReadTrackLength(station, editor); });
  if (editor.PointSortie >= editor.trackLengthMs) PointSortie_Change(editor, kExitPastTheEndMs);
  BtnPplay2_Click(station, editor);
  editor.BtnNormalizeEnabled = true;
}

void VoiceTracks::BtnPplay2_Click(Station& station, VoiceTrackEditor& editor) {
  PlayJoinFrom(station, editor, ExitOfBefore(editor) - editor.SpinPreRoll * 1000);
}

void VoiceTracks::PlayJoinFrom(Station& station, VoiceTrackEditor& editor, int32_t ms) {
  if (editor.GaugeVisible) return;
  HandleControl(station, "BtnPplay2", [&] {
    if (station.platform.preview) BeginJoin(station, editor, std::max(0, ms));
  });
}

void VoiceTracks::BtnStop2_Click(Station& station, VoiceTrackEditor& editor) {
  HandleControl(station, "BtnStop2", [&] { EndJoin(station, editor); });
}

void VoiceTracks::TimerVT_Timer(Station& station, VoiceTrackEditor& editor) {
  HandleControl(station, "TimerVT", [&] {
    const bool recording = IsRecording(station);
    if (recording) editor.LblTimeVT = FormatDuration(station.platform.recorder->RecordedMs());
    if (editor.join.on) ServeJoin(station, editor);
    ShowLevels(station, editor);
    if (RetakeBegins(station, editor)) return BeginRetake(station, editor);
    if (!recording && !editor.join.on) editor.TimerVT->SetEnabled(false);
  });
}

}  // namespace zemo
