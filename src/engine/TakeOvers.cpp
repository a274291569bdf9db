// States, each kept in one flag that a restart forgets:
//
//   SatelliteTaking   false -> BeginSatellite -> true -> EndSatellite -> false
//   LocalProgrammeOn  false -> BeginLocalProgramme -> true -> EndLocalProgramme -> false
//
// Both can be called again by an event served while the start of the engine yields; the flags are
// set right behind it.
#include "engine/TakeOvers.h"

#include <algorithm>
#include <string>

#include "engine/ElementPlayback.h"
#include "engine/StartStop.h"
#include "platform/Desktop.h"
#include "reports/AirWrites.h"
#include "reports/BroadcastReport.h"
#include "scheduling/JingleSelection.h"
#include "scheduling/PercentageRequest.h"
#include "settings/SideFiles.h"
#include "station/Station.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

void TellNeighbours(Station& station, const char* word) {
  station.platform.clipboard.SetText(word);
}

void ReportSatellite(Station& station) {
  if (station.engine.ReportsDisabled) return;
  ReportRow report = NewReportRow(station);
  report.AUTEUR = "DEBUT INFO SAT";
  report.TITRE = "DEBUT INFO SAT";
  report.GENRE = "INFO SAT";
  WriteOrKeep(station, {.row = report, .where = "BeginSatellite"});
}

}  // namespace

void ComputeInputsAllowed(Station& station) {
  const auto& periods = station.lists.Exclusion;
  const std::string minute = TimeText(station.Now()).substr(0, 5);
  station.engine.InputsAllowed =
      std::none_of(periods.begin(), periods.end(), [&](const auto& period) {
        return !period.first.empty() && period.first <= minute && minute <= period.second;
      });
}

void BeginSatellite(Station& station) {
  EngineState& engine = station.engine;
  StartStopZemoRadio(station, false);
  engine.NextRequested = true;
  engine.SatelliteTaking = true;
  if (!engine.PlaylistRunning) {
    ForgetListOrder(station);
    station.PL.Clear();
  }
  TellNeighbours(station, "Info Sat On");
  ReportSatellite(station);
}

void EndSatellite(Station& station) {
  EngineState& engine = station.engine;
  TellNeighbours(station, "Fin Info Sat");
  FindLinkJingle(station);
  engine.LastJingleTimer = station.Timer();
  if (!engine.PlaylistRunning) engine.HourBlockHandled = false;
  StartStopZemoRadio(station, true);
  engine.SatelliteTaking = false;
}

void PrepareReturnFromSatellite(Station& station) {
  const EngineState& engine = station.engine;
  const SoundChain& sound = station.platform.sound;
  if (engine.SatelliteTaking && sound.ChannelDone(0) && sound.ChannelDone(1) &&
      !engine.PlaylistRunning)
    AutomaticRequest(station);
}

void BeginLocalProgramme(Station& station) {
  StartStopZemoRadio(station, true);
  station.engine.LocalProgrammeOn = true;
  TellNeighbours(station, "Prg Local On");
}

void EndLocalProgramme(Station& station) {
  EngineState& engine = station.engine;
  StartStopZemoRadio(station, false);
  engine.LocalProgrammeOn = false;
  engine.NextRequested = true;
  TellNeighbours(station, "Prg Local Off");
}

void StartPulse(Station& station) {
  if (station.engine.IsRunning || station.Sound().OutputPosition() != 0) return;
  FindLinkJingle(station);
  if (station.PL.Empty()) return;
  WriteZemoOnOff(station, '1');
  PlayFirstRow(station);
  // A lost file sounds not at all, and no drain would take the "1" back.
  if (!station.engine.IsRunning && NothingOnAir(station)) WriteZemoOnOff(station, '0');
}

}  // namespace zemo
