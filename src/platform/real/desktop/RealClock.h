// The system clock: local time of the studio, and a time that only runs forward.
#pragma once

#include "platform/Clock.h"

namespace zemo {

class RealClock : public Clock {
 public:
  LocalDateTime LocalNow() const override;
  int64_t MonotonicMs() const override;
};

}  // namespace zemo
