#include "engine/StartStop.h"

#include "engine/ElementPlayback.h"
#include "engine/KeptPosition.h"
#include "engine/PlaylistWatcher.h"
#include "platform/BaseLink.h"
#include "scheduling/PercentageRequest.h"
#include "settings/SideFiles.h"
#include "station/PlanTimes.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

void FreeOverlay(Station& station) {
  station.Sound().SetFileName(kOverlaySlot, "");
}

void Start(Station& station) {
  EngineState& engine = station.engine;
  FreeOverlay(station);
  ComputeBufferOffset(station);
  station.gridFrame.previewOffered = false;
  station.Sound().SetCycleMax(static_cast<int32_t>(station.base.CnfInt(Cnf::kCycleMaxi)));
  engine.LastHour = station.Now().hour;
  if (engine.IsAutomatic && station.PL.Empty()) AutomaticRequest(station);
  station.notices.cycleMs = station.base.CnfInt(Cnf::kCycleMaxi);
  WatchDueList(station);
  if (station.Sound().State() != OutputState::kStarted) {
    engine.LastJingleTimer = station.Timer();
    // A dated list begins by the tick's own rule, since nothing sounds.
    if (!engine.PlaylistRunning) engine.StartNextNow = true;
    RefreshPlanTimes(station);
  }
  engine.IsRunning = true;
  if (BaseLink* link = station.platform.baseLink) link->GoesOnAir();
  engine.FittingActive = false;
  WriteZemoOnOff(station, '1');
  LoadSavePlay(station, "Save");
}

void Stop(Station& station) {
  FreeOverlay(station);
  station.engine.IsRunning = false;
  ForgetAirPosition(station);
  station.gridFrame.previewOffered = true;
  LoadSavePlay(station, "Save");
}

}  // namespace

void StartStopZemoRadio(Station& station, bool start) {
  const bool wasRunning = station.engine.IsRunning;
  station.base.CheckCnf();
  try {
    if (start)
      Start(station);
    else
      Stop(station);
  } catch (const std::exception&) {
    LogCurrentException(station, "StartStopZemoRadio");
    station.engine.IsRunning = start;
  }
  if (station.engine.IsRunning != wasRunning)
    station.events.Engine(station.engine.IsRunning, station.engine.IsAutomatic);
  station.WatchSilence();
}

}  // namespace zemo
