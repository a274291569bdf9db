// The measuring of the cards' sound files beside the air, as a run of the program has it.
#pragma once

#include <cstdint>
#include <string>

#include "app/PacedTimer.h"
#include "library/CardMeasuring.h"
#include "platform/real/analysis/MeasuringThread.h"

namespace zemo {

struct Station;

// Works from its making on, at free moments (engine/FreeMoment.h). Thread: the logic's. The
// station, whose base is open, outlives it.
class BackgroundMeasuring {
 public:
  explicit BackgroundMeasuring(Station& station);

  // Of an import: the exit point that nobody set.
  void Add(int32_t code, const std::string& file);

 private:
  void Turn();

  Station& station_;
  MeasuringThread thread_;
  CardMeasuring cards_;
  PacedTimer timer_;
};

}  // namespace zemo
