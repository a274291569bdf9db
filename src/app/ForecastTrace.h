// The trace of a simulation as a forecast: its lines told as what a presenter wants to know.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Forecast.h"

namespace zemo {

class ForecastTrace {
 public:
  void Take(std::string_view line);  // one of the trace; what is no such line is passed over
  void End();                        // a silence that lasts to the end is told
  const std::vector<ForecastLine>& Lines() const { return lines_; }

 private:
  std::vector<ForecastLine> lines_;
  std::string silentSince_;  // "hh:mm:ss.mmm", empty while something sounds
};

}  // namespace zemo
