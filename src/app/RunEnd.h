// The end of a run on air: the first signal stops and drains, the second leaves at once.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace zemo {

class RealStation;
struct Station;

class RunEnd {
 public:
  struct Told {
    std::function<void()> draining;  // what is on air plays to its end first
    std::function<void()> drained;   // stopped, and all that was to be heard has been heard
    std::function<void()> leaving;   // at once: the process ends when this comes back
  };
  // After `forMs`, when it is given, the run ends as by a signal.
  RunEnd(RealStation& real, std::optional<int64_t> forMs, Told told);

  void OnSignal();  // SIGINT or SIGTERM
  void Watch();     // about 20 times a second
  static constexpr int kWatchMs = 50;

 private:
  void Ask();
  [[noreturn]] void LeaveAtOnce();

  RealStation& real_;
  std::optional<int64_t> endMs_;
  Told told_;
  bool asked_ = false;
};

// The exit status of a station that was left in order: 0, or 1 with a line on standard error where
// the base could not take all that was aired.
int EndStatus(const Station& station);

}  // namespace zemo
