// VoiceTrackState: 0 none -> -1 armed in the second half of the element it speaks over -> -2 on air
// at its position -> 0 at its end. An armed track that reached the next element goes back to 0.
#include "engine/VoiceTrackOnAir.h"

#include <exception>

#include "platform/Folder.h"
#include "station/Overlay.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr int kVoiceTrackNotice = 0;  // no fault of a kind that has a number
constexpr int32_t kSoonMs = 150;      // a tick, and what the next one may be late
constexpr int kLookEveryMs = 1;       // for so long

// A presenter who announces the title before is heard over another one: the list may have had
// another there, and the operator may have ended the right one behind the arming.
void TellForeignElement(Station& station) {
  const EngineState::ArmedTrack& track = station.engine.armedTrack;
  if (!track.madeOver) return;
  const std::string& onAir = station.Sound().FileName(station.engine.CurrentChannel);
  if (onAir == station.platform.soundFiles.Resolve(*track.madeOver)) return;
  LogNotice(station, "VoiceTrack", kVoiceTrackNotice,
            "voice track " + track.code + " was made for " +
                (track.madeOver->empty() ? "nothing" : *track.madeOver) + " and airs over " +
                onAir);
}

void ArmVoiceTrack(Station& station) {
  EngineState& engine = station.engine;
  if (engine.ProgressPercent <= 50 || engine.ProgressPercent >= 65 || engine.VoiceTrackState != 0)
    return;
  if (station.PL.Empty() || !station.PL.Row(1).liesOver) return;
  const OnAirRow row = station.PL.Row(1);
  // First, so that a track that cannot be opened does not stay in the way.
  station.PL.TakeToAir(row.key);
  LoadOverlay(station, row.file);
  engine.armedTrack = {row.secondLine, {}};
  if (row.madeFor) engine.armedTrack.madeOver = row.madeFor->fileBefore;
  engine.VoiceTrackStartMs = static_cast<int32_t>(row.startMs.value_or(0));
  engine.VoiceTrackState = -1;
}

void StartVoiceTrack(Station& station) {
  EngineState& engine = station.engine;
  SoundChain& sound = station.Sound();
  if (sound.FileName(kOverlaySlot).empty()) {  // freed since it was armed
    engine.VoiceTrackState = 0;
    return;
  }
  engine.VoiceTrackState = -2;
  sound.SetVolume(engine.CurrentChannel,
                  static_cast<int>(station.base.CnfInt(Cnf::kVolumeMusiqueSous)));
  sound.SetVolume(kOverlaySlot,
                  static_cast<int>(station.base.CnfInt(Cnf::kVolumeMusiqueSurImpression)));
  StartOverlay(station, "voicetrack");
  TellForeignElement(station);
}

int64_t MsToStart(Station& station) {
  const EngineState& engine = station.engine;
  return int64_t{engine.VoiceTrackStartMs} - station.Sound().Position(engine.CurrentChannel);
}

// Between two ticks. Where the tick may not run the next one sees to it.
void LookForStart(Station& station) {
  EngineState& engine = station.engine;
  const bool mayRun =
      !engine.tickRunning && engine.mainTimerHolds == 0 && engine.IsRunning && engine.IsAutomatic;
  const bool starts = mayRun && engine.VoiceTrackState == -1;
  if (starts && MsToStart(station) > 0) return;
  engine.VoiceTrackTimer->SetEnabled(false);
  if (!starts) return;
  try {
    station.base.CheckCnf();
    StartVoiceTrack(station);
  } catch (const std::exception&) {
    LogCurrentException(station, "MainTimer");
  }
}

// The tick is too coarse for a voice that was placed to the hundredth of a second.
void AwaitStart(Station& station) {
  EngineState& engine = station.engine;
  if (MsToStart(station) >= kSoonMs) return;
  if (!engine.VoiceTrackTimer)
    engine.VoiceTrackTimer =
        station.platform.loop.MakeTimer(kLookEveryMs, [&station] { LookForStart(station); });
  engine.VoiceTrackTimer->SetEnabled(true);
}

}  // namespace

void ServeVoiceTrack(Station& station) {
  EngineState& engine = station.engine;
  SoundChain& sound = station.Sound();
  ArmVoiceTrack(station);
  if (engine.VoiceTrackState == -1) {
    if (MsToStart(station) <= 0)
      StartVoiceTrack(station);
    else if (engine.ProgressPercent > 30 && engine.ProgressPercent < 40)
      engine.VoiceTrackState = 0;
    else
      AwaitStart(station);
  }
  if (engine.VoiceTrackState == -2 && sound.ChannelDone(kOverlaySlot)) {
    const auto volume = static_cast<int>(station.base.CnfInt(Cnf::kVolumeMusique));
    sound.SetVolume(0, volume);
    sound.SetVolume(1, volume);
    engine.VoiceTrackState = 0;
  }
}

}  // namespace zemo
