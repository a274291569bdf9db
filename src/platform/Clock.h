// The only source of date and time for the logic. Real: the system clock. Simulated: virtual time.
#pragma once

#include <cstdint>

namespace zemo {

// A moment of local civil time, as the wall clock of the studio shows it.
struct LocalDateTime {
  int year = 1899;
  int month = 12;  // 1 to 12
  int day = 30;    // 1 to 31
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;

  bool operator==(const LocalDateTime&) const = default;
};

// Thread: the logic's.
class Clock {
 public:
  virtual ~Clock() = default;

  // Local time, with summer time and whatever the operator set the clock to: it can jump.
  virtual LocalDateTime LocalNow() const = 0;

  // Milliseconds since an arbitrary instant; never jumps, never goes back.
  virtual int64_t MonotonicMs() const = 0;
};

}  // namespace zemo
