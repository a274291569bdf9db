#include "station/PlanTimes.h"

#include <cmath>

#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {
// ms since midnight at which the first row begins.
double FirstStartMs(const Station& station) {
  const EngineState& engine = station.engine;
  if (HasListTime(station.storedList)) {
    const std::string& time = station.storedList.ChHeure;  // "hh:mm"
    const double hours = Val(time);
    const double minutes = time.size() > 3 ? Val(time.substr(3)) : 0;
    return (hours * 3600 + minutes * 60) * 1000 + engine.BufferOffsetSec * 1000.0;
  }
  return SecondsSinceMidnight(station.Now()) * 1000.0 + engine.RemainingMs - engine.MixPointMs;
}
}  // namespace

bool HasListTime(const StoredListEditor& editor) {
  return editor.open && !editor.ChHeure.empty() && editor.ChHeure[0] >= '0' &&
         editor.ChHeure[0] <= '9';
}

void RefreshPlanTimes(Station& station) {
  double startMs = FirstStartMs(station);
  for (int row = 1; row <= station.PL.Count(); ++row) {
    OnAirElement& element = station.PL.Row(row);
    element.plannedMs = startMs;
    startMs += element.AirMs();
  }
}

int32_t ListTotalSec(const Station& station) {
  double totalMs = 0;
  for (const OnAirElement& element : station.PL) totalMs += element.AirMs();
  return static_cast<int32_t>(std::floor(totalMs / 1000));
}

}  // namespace zemo
