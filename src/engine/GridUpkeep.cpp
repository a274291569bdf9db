#include "engine/GridUpkeep.h"

#include <string>

#include "engine/ElementPlayback.h"
#include "engine/TickMoment.h"
#include "platform/Folder.h"
#include "station/Station.h"
#include "station/TimeForms.h"
#include "traffic/DayGridComposition.h"

namespace zemo {

namespace {

constexpr int64_t kGridRetryMs = 10000;
constexpr int32_t kMinuteMs = 60000;

// A composition that fails is tried again, but not tick after tick. True when the grid is whole.
bool ComposeGrid(Station& station) {
  station.engine.gridRetryMs = station.platform.clock.MonotonicMs() + kGridRetryMs;
  return ComposeDayGrid(station);
}

bool GridIsOf(const Station& station, const Moment& at) {
  return station.GPubJour.Cell(0, GridCol::kDateStamp).substr(0, 8) == ShortDateText(at.now);
}

// False after a composition that failed; the signal then waits for the next try.
bool ServeGridSignal(Station& station, const Moment& at) {
  Folder& folder = station.platform.stationFolder;
  const std::string& signal = station.files.MajGrillePub;
  if (station.engine.ReportsDisabled || at.now.second % 2 != 0 || !folder.Exists(signal))
    return true;
  if (!ComposeGrid(station)) return false;
  folder.Remove(signal);
  return true;
}

}  // namespace

void ServeGridSignalAtRest(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (!NothingOnAir(station) || engine.composing) return;
  if (station.platform.clock.MonotonicMs() < engine.gridRetryMs) return;
  if (ServeGridSignal(station, at)) engine.gridRetryMs = 0;
}

void RebuildGrid(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (engine.RemainingMs < kMinuteMs || engine.ProgressPercent <= 25 || engine.composing) return;
  if (station.platform.clock.MonotonicMs() < engine.gridRetryMs) return;
  if (!GridIsOf(station, at)) {
    if (!ComposeGrid(station)) return;
    engine.LastJingleTimer = at.timer;
  }
  if (!ServeGridSignal(station, at)) return;
  if (GridIsOf(station, at)) engine.gridRetryMs = 0;
}

}  // namespace zemo
