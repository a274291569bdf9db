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
  if (station.storedList.open) {
    const std::string& time =
        station.storedList.ChHeure;  // "hh:mm"; the neutral text counts as 00:00
    const double hours = Val(time);
    const double minutes = time.size() > 3 ? Val(time.substr(3)) : 0;
    return (hours * 3600 + minutes * 60) * 1000 + engine.BufferOffsetSec * 1000.0;
  }
  return SecondsSinceMidnight(station.Now()) * 1000.0 + engine.RemainingMs - engine.MixPointMs;
}
}  // namespace

void RefreshPlanTimes(Station& station) {
  const double firstMs = FirstStartMs(station);
  double startMs = firstMs;
  for (int row = 1; row <= station.PL.Count(); ++row) {
    OnAirElement& element = station.PL.Row(row);
    element.plannedMs = startMs;
    startMs += element.AirMs();
  }
  station.notices.listTotalSec = static_cast<int32_t>(std::floor((startMs - firstMs) / 1000));
}

}  // namespace zemo
