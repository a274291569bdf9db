#include "engine/StateDump.h"

#include <iterator>
#include <string>
#include <vector>

#include "engine/MainScreenPicture.h"
#include "station/OnAirColumns.h"
#include "station/Station.h"

namespace zemo {

namespace {

// Every engine variable under its name.
NamedValues CollectFlags(const Station& station) {
  const EngineState& e = station.engine;
  const MainScreen screen = PictureOf(station);
  NamedValues flags;
  const auto yes = [&flags](const char* name, bool value) { flags.emplace_back(name, value); };
  const auto number = [&flags](const char* name, double value) { flags.emplace_back(name, value); };
  yes("IsRunning", e.IsRunning);
  yes("IsAutomatic", e.IsAutomatic);
  yes("PlaylistRunning", e.PlaylistRunning);
  number("CurrentChannel", e.CurrentChannel);
  number("NextChannel", e.NextChannel);
  number("MixPointMs", e.MixPointMs);
  number("BufferOffsetSec", e.BufferOffsetSec);
  number("ElementLengthMs", e.ElementLengthMs);
  number("ElementPositionMs", e.ElementPositionMs);
  number("RemainingMs", e.RemainingMs);
  number("ProgressPercent", e.ProgressPercent);
  yes("NextRequested", e.NextRequested);
  yes("StartNextNow", e.StartNextNow);
  yes("DrainPending", e.DrainPending);
  yes("HourPipPending", e.HourPipPending);
  number("SavedVolume", e.SavedVolume);
  yes("FittingActive", e.FittingActive);
  yes("HourBlockHandled", e.HourBlockHandled);
  yes("ScreenLocked", e.ScreenLocked);
  yes("PipSuppressed", e.PipSuppressed);
  yes("NoJingleActive", e.NoJingleActive);
  number("LastHour", e.LastHour);
  number("LastDay", e.LastDay);
  yes("TopagePending", e.TopagePending);
  yes("SatelliteTaking", e.SatelliteTaking);
  yes("LocalProgrammeOn", e.LocalProgrammeOn);
  yes("InputsAllowed", e.InputsAllowed);
  yes("SerialInputOpen", e.SerialInputOpen);
  yes("JoystickInUse", e.JoystickInUse);
  flags.emplace_back("LedSat",
                     std::vector<int32_t>(std::begin(screen.LedSat), std::end(screen.LedSat)));
  flags.emplace_back("LedJoystique", screen.LedJoystique.text);
  number("TempsMaxiImPulsion", e.TempsMaxiImPulsion);
  number("VoiceTrackState", e.VoiceTrackState);
  number("VoiceTrackStartMs", e.VoiceTrackStartMs);
  yes("IntroOverlayPending", e.IntroOverlayPending);
  number("IntroLengthSec", e.IntroLengthSec);
  number("IntroArmedTimer", e.IntroArmedTimer);
  number("LastAssociationTimer", e.LastAssociationTimer);
  number("ExtractEndMs", e.ExtractEndMs);
  yes("CheckExtrait", e.CheckExtrait);
  yes("CheckNoJingle", e.CheckNoJingle);
  yes("OptionDirect", e.OptionDirect);
  yes("HotKeysArmed", e.HotKeysArmed);
  yes("MnuStartStop", e.MnuStartStop);
  yes("PCProduction", e.PCProduction);
  number("CodeEnCours", e.CodeEnCours);
  number("LastTopHourTimer", e.LastTopHourTimer);
  number("LastGridCheckTimer", e.LastGridCheckTimer);
  number("LastJingleTimer", e.LastJingleTimer);
  number("LastIntroJingleTimer", e.LastIntroJingleTimer);
  number("LastPlaylistWatchTimer", e.LastPlaylistWatchTimer);
  number("LastTopageTimer", e.LastTopageTimer);
  number("LastActivityTimer", e.LastActivityTimer);
  yes("ReportsDisabled", e.ReportsDisabled);
  return flags;
}

Rows ListRows(const OnAirList& list) {
  Rows rows;
  for (const OnAirElement& element : list) {
    const Cells cells = ColumnsOf(element);
    rows.emplace_back(cells.begin(), cells.end());
  }
  return rows;
}

// Each row cut behind its last non-empty cell.
Rows GridRows(const DayGrid& grid) {
  Rows rows = grid.Rows();
  for (auto& row : rows)
    while (!row.empty() && row.back().empty()) row.pop_back();
  return rows;
}

}  // namespace

Event DumpState(const Station& station) {
  const EngineState& engine = station.engine;
  const SoundChain& sound = station.platform.sound;
  const int slot = sound.ChannelDone(0) ? 1 : 0;
  const int32_t positionMs = sound.Position(slot);
  const auto remainingMs =
      static_cast<int64_t>(engine.BufferOffsetSec * 1000) + engine.ElementLengthMs - positionMs;
  return {"state",
          {{"pl", ListRows(station.PL)},
           {"flags", CollectFlags(station)},
           {"grid", GridRows(station.GPubJour)},
           {"position_ms", int64_t{positionMs}},
           {"remaining_ms", remainingMs},
           {"mix_ms", static_cast<double>(engine.MixPointMs)},
           {"slot", int64_t{slot}}}};
}

}  // namespace zemo
