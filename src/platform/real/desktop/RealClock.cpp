#include "platform/real/desktop/RealClock.h"

#include <time.h>

#include <chrono>

namespace zemo {

LocalDateTime RealClock::LocalNow() const {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  tm local{};
  localtime_r(&now.tv_sec, &local);
  return {.year = local.tm_year + 1900,
          .month = local.tm_mon + 1,
          .day = local.tm_mday,
          .hour = local.tm_hour,
          .minute = local.tm_min,
          .second = local.tm_sec < 60 ? local.tm_sec : 59,  // a leap second stays in its minute
          .millisecond = static_cast<int>(now.tv_nsec / 1'000'000)};
}

int64_t RealClock::MonotonicMs() const {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace zemo
