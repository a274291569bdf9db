#include "engine/DayAndHour.h"

#include <cmath>
#include <optional>
#include <utility>

#include "engine/TickMoment.h"
#include "platform/Clock.h"
#include "station/Station.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

constexpr int64_t kMinuteMs = 60000, kDayMs = 86400000;

// True once for each jump of the wall clock by a minute or more.
bool ClockJumped(Station& station, const Moment& at) {
  const auto wallMs = static_cast<int64_t>(std::llround(DateSerial(at.now) * kDayMs));
  const int64_t aheadMs = wallMs - station.platform.clock.MonotonicMs();
  std::optional<int64_t>& known = station.engine.wallAheadMs;
  if (known && std::abs(aheadMs - *known) < kMinuteMs) return false;
  return std::exchange(known, aheadMs).has_value();
}

}  // namespace

// Seconds since midnight begin again: no guard may stay ahead of the clock.
void ServeDayChange(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (at.now.day == engine.LastDay) return;
  engine.LastDay = at.now.day;
  engine.LastGridCheckTimer = at.timer;
  engine.LastJingleTimer = at.timer;
  engine.LastIntroJingleTimer = at.timer;
  engine.LastPlaylistWatchTimer = at.timer - kMinuteGuardSec;  // a list due at midnight is seen
  engine.LastAssociationTimer = at.timer;
  engine.LastTopHourTimer = at.timer;
}

// Unplayed music of the old hour does not survive; spots, jingles and the pip do. Where the clock
// jumps, into an hour or back to its beginning, what was done for the hour is done again.
void ServeNewHour(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  const bool jumped = ClockJumped(station, at);
  if (engine.PlaylistRunning || (at.now.minute != 0 && !jumped)) return;
  if (jumped) engine.FittingActive = false;
  engine.HourBlockHandled = false;
  if (at.now.hour == engine.LastHour) return;
  engine.LastHour = at.now.hour;
  station.requests.restUntilMs = -1;  // its titles may be listed where the old hour's may not
  ForgetListOrder(station);
  for (int row = station.PL.Count(); row >= 1; --row)
    if (station.PL.Row(row).code > 0) station.PL.Remove(row);
}

}  // namespace zemo
