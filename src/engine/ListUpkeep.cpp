#include "engine/ListUpkeep.h"

#include "engine/ElementPlayback.h"
#include "engine/EmergencyAir.h"
#include "engine/MainTick.h"
#include "engine/PlaylistWatcher.h"
#include "engine/TickMoment.h"
#include "scheduling/EndOfHourFitting.h"
#include "scheduling/PercentageRequest.h"
#include "station/Station.h"

namespace zemo {

namespace {

constexpr int64_t kTickMs = 100;

// The exit point would come while a request holds the tick, if it walks through the library as long
// as the last one: it waits for the next element then. One within a tick makes nobody late.
bool RequestWouldDelayNext(const Station& station) {
  const int64_t walkMs = station.requests.lastWalkMs;
  if (station.PL.Empty() || walkMs <= kTickMs) return false;
  return MsToExitPoint(station) < static_cast<double>(walkMs + kTickMs);
}

}  // namespace

void FitEndOfHour(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (engine.PlaylistRunning || !station.base.CnfBool(Cnf::kOptimiseToph)) return;
  if (at.now.minute < station.base.CnfInt(Cnf::kHOptimise)) {
    engine.FittingActive = false;
    return;
  }
  // The hour's break is placed from the grid, which is not whole while it is being composed.
  if (engine.FittingActive || engine.composing || RequestWouldDelayNext(station)) return;
  if (station.base.CnfInt(Cnf::kPubAvecTopH) == 1)
    FitHourWithBreakAtPip(station);
  else if (station.base.CnfInt(Cnf::kInstrumental) == 1)
    FitHourWithInstrumentals(station);
  else
    FitHour(station);
}

void WatchPlaylists(Station& station, Moment& at) {
  if (at.now.second % 5 != 0 || WithinMinute(at, station.engine.LastPlaylistWatchTimer)) return;
  WatchDueList(station);
  at.Read(station);
}

// The request that the base kept from its work left the list as it was, maybe empty before the
// first element: that one is made again without an element that progresses.
// One that found nothing to list rests: what it would look at is the same. The operator's own order
// does not come here.
void Refill(Station& station) {
  const int64_t nowMs = station.platform.clock.MonotonicMs();
  const bool failed = station.requests.askAgainMs >= 0;
  if (nowMs < station.requests.askAgainMs || nowMs < station.requests.restUntilMs) return;
  const bool early = station.engine.ProgressPercent <= 10 && !(failed && NothingOnAir(station));
  if (station.PL.Count() >= 5 || early) return;
  if (RequestWouldDelayNext(station) || !EmergencyLetsRequest(station)) return;
  AutomaticRequest(station);
}

}  // namespace zemo
