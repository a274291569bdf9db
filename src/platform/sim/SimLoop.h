// The virtual clock and the event loop that owns it: time stands still while code runs, and moves
// only when the loop waits, to the next due moment of a timer, an order or the sound.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "platform/Clock.h"
#include "platform/EventLoop.h"
#include "platform/sim/SimMover.h"

namespace zemo {

// Thrown out of a yield when the simulated time is over, through whatever routine was waiting. Not
// a std::exception, so that no error boundary takes it for a fault.
struct SimulationEnd {};

// One thread. Two runs with the same timers and orders serve them in the same order: at one moment
// first the sound, then orders in the order they were given, then timers in the order they came
// due.
class SimLoop : public EventLoop, public Clock {
 public:
  // Local time at the begin, in the zone of the process (TZ).
  explicit SimLoop(const LocalDateTime& begin);
  ~SimLoop() override;

  // --- Clock ---
  LocalDateTime LocalNow() const override;
  int64_t MonotonicMs() const override { return nowMs_; }

  // --- EventLoop ---
  void Yield() override;
  void WaitYield() override;
  void PassYield() override;
  std::unique_ptr<LoopTimer> MakeTimer(int intervalMs, std::function<void()> handler) override;
  void Post(std::function<void()> order) override;  // the simulation's own thread only
  uint64_t EventsServed() const override { return served_; }

  // --- the simulation's side ---
  void SetSound(SimMover* sound) { sound_ = sound; }          // the air's; not owned
  void SetPreview(SimMover* preview) { preview_ = preview; }  // beside it; not owned
  void At(int64_t virtualMs, std::function<void()> order);    // an order at that moment
  // Serves everything due up to and at that moment. False when the moment was reached inside a
  // routine that still waited (it was left by SimulationEnd).
  bool RunUntil(int64_t virtualMs);
  void SetWallClock(const LocalDateTime& moment);  // the operator or the system sets the clock
  void ShiftWallClock(int64_t ms) { wallShiftMs_ += ms; }

 private:
  struct Timer;
  int64_t NextDue() const;
  void MoveTo(int64_t virtualMs);  // clock and sound
  void AdvanceSound();
  void ServeDue();
  bool ServeOneOrder();
  bool ServeOneTimer();

  int64_t epochMs_;          // UTC of the begin
  int64_t wallShiftMs_ = 0;  // what clock settings added
  int64_t nowMs_ = 0;
  int64_t endMs_ = SimMover::kNever;
  uint64_t served_ = 0;
  SimMover* sound_ = nullptr;
  SimMover* preview_ = nullptr;
  std::multimap<int64_t, std::function<void()>> orders_;
  std::list<Timer*> timers_;
  mutable int64_t zoneBlock_ = -1;  // quarter hour of UTC for which zoneOffsetMs_ holds
  mutable int64_t zoneOffsetMs_ = 0;
  mutable int64_t toldMs_ = INT64_MIN;  // local time, since 1970, that told_ is
  mutable LocalDateTime told_ = {};     // asked for several times a moment
};

}  // namespace zemo
