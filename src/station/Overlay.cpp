#include "station/Overlay.h"

#include "platform/Folder.h"
#include "station/Loudness.h"
#include "station/Station.h"

namespace zemo {

void LoadOverlay(Station& station, const std::string& storedPath) {
  station.Sound().SetFileName(kOverlaySlot, station.platform.soundFiles.Resolve(storedPath));
  station.Sound().SetGain(kOverlaySlot, LoudnessGain(station, storedPath));
  station.engine.OverlayFile = storedPath;
}

void StartOverlay(Station& station, const char* reason) {
  SoundChain& sound = station.Sound();
  sound.SetChannelDone(kOverlaySlot, false);
  if (sound.ChannelDone(kOverlaySlot) || sound.FileName(kOverlaySlot).empty()) return;
  station.events.Overlay(station.engine.OverlayFile, reason, sound.Volume(kOverlaySlot));
  station.WatchSilence();
}

}  // namespace zemo
