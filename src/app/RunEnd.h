// The end of a run on air: the first signal stops and drains, the second leaves at once. A run
// whose file is to be exactly so long is cut there.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "app/PacedTimer.h"

namespace zemo {

struct AirOptions;
class RealStation;
struct Station;

class RunEnd {
 public:
  struct Told {
    std::function<void()> drained;  // stopped, and all that was to be heard has been heard
    std::function<void()> leaving;  // at once: the process ends when this comes back
    std::function<void(const std::string&)> line;  // for whoever looks on
  };
  // After the options' time, when there is one, the run ends as by a signal, or is cut.
  RunEnd(RealStation& real, const AirOptions& options, Told told);

  void OnSignal();  // SIGINT or SIGTERM

 private:
  void Watch();
  void Rewatch();
  void Ask();
  bool TimeIsOver() const;
  void Cut();
  void TellLonger() const;
  [[noreturn]] void LeaveAtOnce();

  RealStation& real_;
  std::optional<int64_t> endMs_;  // monotonic
  int64_t endFrames_ = 0;         // of the file
  bool cut_;
  Told told_;
  bool asked_ = false;
  PacedTimer watch_;  // stands still while only a signal can end the run
};

// The exit status of a station that was left in order: 0, or 1 with a line on standard error where
// the base could not take all that was aired.
int EndStatus(const Station& station);

}  // namespace zemo
