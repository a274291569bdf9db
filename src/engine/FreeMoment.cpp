#include "engine/FreeMoment.h"

#include "engine/MainTick.h"
#include "station/Station.h"

namespace zemo {

namespace {

// Around an exit point no order begins that may take as long as storing a list does. Behind it the
// next element begins with a tick; where it does not, nobody waits for it any longer.
constexpr int kQuietBeforeMs = 500, kQuietBehindMs = 1000;

bool ElementAboutToBegin(const Station& station) {
  if (!station.engine.IsRunning || station.PL.Empty()) return false;
  const double leftMs = MsToExitPoint(station);
  return leftMs < kQuietBeforeMs && leftMs > -kQuietBehindMs;
}

}  // namespace

bool NoTickBelow(const Station& station) {
  return !station.engine.tickRunning && station.engine.mainTimerHolds == 0;
}

bool IsFreeMoment(const Station& station) {
  return NoTickBelow(station) && !ElementAboutToBegin(station);
}

}  // namespace zemo
