// What a machine remembers of its air from second to second, so that a start behind a crash takes
// the air up where it was; its only writer is engine/KeptPosition, but for what PlayWave notes.
#pragma once

#include <cstdint>
#include <optional>

#include "station/OnAirElement.h"

namespace zemo {

struct KeptAir {
  bool wanted = false;          // this program keeps it: of a run, never of a simulation
  OnAirElement element;         // that sounds, once its start is followed up
  int64_t nextMs = 0;           // monotonic: it is not kept again before
  std::optional<int32_t> from;  // ms: the next element begins there, and was reported before
};

}  // namespace zemo
