// Time in frames for an output ring: how many a clock would have drained, and whether a device
// keeps to about as many. Times are handed in. Mixer's thread.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace zemo {

using SteadyTime = std::chrono::steady_clock::time_point;

inline double SecondsBetween(SteadyTime from, SteadyTime to) {
  return std::chrono::duration<double>(to - from).count();
}

// Drains by the clock, from Restart on, so many frames a second.
class ClockDrain {
 public:
  void Restart(SteadyTime now, int rate) { start_ = now, rate_ = rate, drained_ = 0; }

  // Frames due since the last call.
  int64_t Due(SteadyTime now) {
    const auto all = static_cast<int64_t>(SecondsBetween(start_, now) * rate_);
    const int64_t due = std::max<int64_t>(0, all - drained_);
    drained_ += due;
    return due;
  }

 private:
  SteadyTime start_;
  int rate_ = 0;
  int64_t drained_ = 0;
};

// Tells a device that no longer plays from one that does: it asks for nothing for far longer than
// it ever rested while it played, or for far more than time can pass.
class DeviceWatch {
 public:
  // A device that has just begun to play.
  void Restart(SteadyTime now, uint64_t asked, int rate) {
    start_ = now;
    rate_ = rate;
    longestRest_ = 0.0;
    settled_ = false;
    Resume(now, asked);
  }

  // The same one, when nobody looked meanwhile.
  void Resume(SteadyTime now, uint64_t asked) {
    last_ = moved_ = now;
    asked_ = asked;
    ahead_ = 0.0;
    still_ = 0.0;
  }

  // `asked`: the frames it has asked for in all. Null while it plays, else what is wrong with it.
  const char* Look(SteadyTime now, uint64_t asked) {
    const double passed = SecondsBetween(last_, now);
    last_ = now;
    const auto moved = static_cast<double>(asked - asked_);
    asked_ = asked;
    // A turn that itself came late tells nothing about the device's rests.
    still_ += std::min(passed, kLongestTurn);
    if (moved > 0.0) {
      longestRest_ = std::max(longestRest_, still_);
      still_ = 0.0;
      moved_ = now;
    }
    if (!settled_ && SecondsBetween(start_, now) > kSettleSeconds) {
      settled_ = true;
      ahead_ = 0.0;
    }
    if (still_ > Patience()) return "it takes no more sound";
    ahead_ = std::max(0.0, ahead_ + moved / rate_ - passed * kFastestClock);
    if (ahead_ > (settled_ ? kAheadSeconds + longestRest_ : kGulpSeconds))
      return "it no longer keeps time";
    return nullptr;
  }

  SteadyTime LastMoved() const { return moved_; }  // when it was last seen to ask

 private:
  // Seconds: until its rhythm is known, and while it is the slowest, a device has all of them.
  double Patience() const {
    if (!settled_) return kMostPatience;
    return std::clamp(longestRest_ * kRhythmSlack, kLeastPatience, kMostPatience);
  }

  static constexpr double kLongestTurn = 0.1;
  static constexpr double kLeastPatience = 0.5;
  static constexpr double kMostPatience = 3.0;
  static constexpr double kRhythmSlack = 1.25;
  static constexpr double kFastestClock = 1.01;
  static constexpr double kSettleSeconds = 5.0;
  static constexpr double kAheadSeconds = 0.5;
  static constexpr double kGulpSeconds =
      3.0;  // what a device may take at first for its own buffers

  SteadyTime start_;
  SteadyTime last_;
  SteadyTime moved_;
  uint64_t asked_ = 0;
  int rate_ = 1;
  double ahead_ = 0.0;        // seconds of sound taken before their time
  double still_ = 0.0;        // seconds since the last call
  double longestRest_ = 0.0;  // seconds between two calls, the most that was seen
  bool settled_ = false;
};

}  // namespace zemo
