// VoiceTrackState: 0 none -> -1 armed in the second half of the element it speaks over -> -2 on air
// at its position -> 0 at its end. An armed track that reached the next element goes back to 0.
#include "engine/VoiceTrackOnAir.h"

#include "platform/Folder.h"
#include "station/Overlay.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr int kVoiceTrackNotice = 0;  // no fault of a kind that has a number

// A presenter who announces the title before is heard over another one.
void TellForeignElement(Station& station, const OnAirRow& track) {
  if (!track.madeFor) return;
  const std::string wanted = station.platform.soundFiles.Resolve(track.madeFor->fileBefore);
  const std::string& onAir = station.Sound().FileName(station.engine.CurrentChannel);
  if (onAir == wanted) return;
  LogNotice(station, "VoiceTrack", kVoiceTrackNotice,
            "voice track " + track.secondLine + " was made for " + track.madeFor->fileBefore +
                " and airs over " + onAir);
}

void ArmVoiceTrack(Station& station) {
  EngineState& engine = station.engine;
  if (engine.ProgressPercent <= 50 || engine.ProgressPercent >= 65 || engine.VoiceTrackState != 0)
    return;
  if (station.PL.Empty() || !station.PL.Row(1).liesOver) return;
  const OnAirRow row = station.PL.Row(1);
  // First, so that a track that cannot be opened does not stay in the way.
  station.PL.TakeToAir(row.key);
  TellForeignElement(station, row);
  LoadOverlay(station, row.file);
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
}

}  // namespace

void ServeVoiceTrack(Station& station) {
  EngineState& engine = station.engine;
  SoundChain& sound = station.Sound();
  ArmVoiceTrack(station);
  if (engine.VoiceTrackState == -1) {
    if (sound.Position(engine.CurrentChannel) >= engine.VoiceTrackStartMs)
      StartVoiceTrack(station);
    else if (engine.ProgressPercent > 30 && engine.ProgressPercent < 40)
      engine.VoiceTrackState = 0;
  }
  if (engine.VoiceTrackState == -2 && sound.ChannelDone(kOverlaySlot)) {
    const auto volume = static_cast<int>(station.base.CnfInt(Cnf::kVolumeMusique));
    sound.SetVolume(0, volume);
    sound.SetVolume(1, volume);
    engine.VoiceTrackState = 0;
  }
}

}  // namespace zemo
