#include "engine/TickMoment.h"

#include <cstring>

#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {
constexpr int kDaySec = 86400;

// From one "hh:mm:ss" to another, over midnight as well; of other texts 0.
int SecondsPassed(const std::string& from, const std::string& to) {
  const auto second = [](const std::string& time) {
    return ValInt(time.substr(0, 2)) * 3600 + ValInt(time.substr(3, 2)) * 60 +
           ValInt(time.substr(6));
  };
  if (from == to) return 0;  // nine of ten ticks
  if (from.size() != to.size() || to.size() != std::strlen("hh:mm:ss")) return 0;
  return static_cast<int>((second(to) - second(from) + kDaySec) % kDaySec);
}
}  // namespace

Moment::Moment(const Station& station, const std::string& lastTick) {
  Read(station);
  passedSec = SecondsPassed(lastTick, time);
}

void Moment::Read(const Station& station) {
  now = station.Now();
  timer = SecondsSinceMidnight(now);
  time = TimeText(now);
  hourMinute = time.substr(0, 5);
}

bool WithinMinute(const Moment& at, float guard) {
  return !GuardIsAhead(at.timer, guard) && at.timer - guard < kMinuteGuardSec;
}

bool IsDue(const Moment& at, const std::string& time) {
  if (at.time.starts_with(time)) return true;
  if (time.size() != at.time.size() || at.passedSec > kMinuteGuardSec) return false;
  return SecondsPassed(time, at.time) < at.passedSec;
}

}  // namespace zemo
