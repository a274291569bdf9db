#include "engine/TimedStartStop.h"

#include <string>

#include "engine/StartStop.h"
#include "engine/TickMoment.h"
#include "platform/Desktop.h"
#include "settings/SideFiles.h"
#include "station/Station.h"
#include "station/TimeForms.h"

namespace zemo {

void LookForDayTimes(Station& station, const Moment& at) {
  if (at.now.minute == 0) ReloadDayTimes(station, CurrentWeekday(at.now) - 1);
}

void ServeTimedStart(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (engine.ReportsDisabled || !engine.MnuStartStop) return;
  for (const std::string& item : station.lists.ComboHeure) {
    if (item.empty() || !IsDue(at, item) || engine.IsRunning) continue;
    engine.IsAutomatic = true;
    StartStopZemoRadio(station, true);
    return;
  }
}

void ServeTopageTimes(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (engine.LastTopageTimer > at.timer) engine.LastTopageTimer = 0;
  if (at.timer - engine.LastTopageTimer < kMinuteGuardSec) return;
  for (const std::string& item : station.lists.Topage) {
    if (item != at.hourMinute || !engine.IsRunning) continue;
    engine.TopagePending = true;
    engine.LastTopageTimer = at.timer;
    station.platform.clipboard.SetText(at.time);
    StartStopZemoRadio(station, false);
  }
}

void ServeTimedStop(Station& station, Moment& at) {
  EngineState& engine = station.engine;
  if (!engine.MnuStartStop) return;
  for (const std::string& item : station.lists.HeureArretSystem) {
    if (item.empty()) continue;
    const std::string suffix = item.size() > 2 ? item.substr(item.size() - 2) : "";
    const bool fade = suffix == "-F";
    const bool quit = suffix == "-Q";
    const std::string time = fade || quit ? item.substr(0, item.size() - 2) : item;
    if (!IsDue(at, time)) continue;
    StartStopZemoRadio(station, false);
    if (fade) {
      engine.NextRequested = true;
      at.endsTick = true;
      return;
    }
    if (quit) {
      station.Sound().Stop();
      station.Sound().Close();
      station.platform.system.Shutdown();
    }
  }
}

}  // namespace zemo
