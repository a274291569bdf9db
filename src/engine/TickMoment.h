// The moment of a tick, and what its steps ask of it.
#pragma once

#include <string>

#include "platform/Clock.h"

namespace zemo {

struct Station;

inline constexpr float kMinuteGuardSec = 60;

// Read once at the tick's begin, and again behind whatever may have waited.
struct Moment {
  // `lastTick`: the `time` of the tick before, empty before the first.
  Moment(const Station& station, const std::string& lastTick);
  void Read(const Station& station);

  LocalDateTime now;
  float timer = 0;         // seconds since midnight
  std::string time;        // "hh:mm:ss"
  std::string hourMinute;  // "hh:mm"
  int passedSec = 0;       // since the tick before
  bool endsTick = false;   // set by a "-F" stop: the steps behind it wait for the next tick
};

// Less than a minute has passed since what the guard remembers.
bool WithinMinute(const Moment& at, float guard);

// A time "hh:mm" is due in its whole minute. One with seconds is due in the tick of its second, or
// in the next one where a wait held that; not where the clock jumped.
bool IsDue(const Moment& at, const std::string& time);

}  // namespace zemo
