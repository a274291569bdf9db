// What moves with the virtual clock: the simulated sound chain.
#pragma once

#include <cstdint>
#include <limits>

namespace zemo {

// Times are virtual ms since the simulation's begin. Thread: the simulation's.
class SimMover {
 public:
  virtual ~SimMover() = default;
  // The next moment at which something ends; kNever for none.
  virtual int64_t NextDueMs() const = 0;
  virtual void AdvanceTo(int64_t virtualMs) = 0;
  static constexpr int64_t kNever = std::numeric_limits<int64_t>::max();
};

}  // namespace zemo
