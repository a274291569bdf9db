// The event loop on which all logic runs: timers, orders of the operator, and the yields by which a
// long routine lets both be served. Real: Qt's. Simulated: a virtual clock that moves only in
// waits.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace zemo {

// A periodic timer of the loop. It fires one interval after it was last enabled or fired, and never
// queues. A handler that yields can be called again before it has ended: it refuses what it must.
// Destroying it stops it. Thread: the logic's.
class LoopTimer {
 public:
  virtual ~LoopTimer() = default;
  // Enabling starts a new interval, also when it was enabled already.
  virtual void SetEnabled(bool enabled) = 0;
  virtual bool Enabled() const = 0;
};

// Thread: the logic's, but for Post.
class EventLoop {
 public:
  virtual ~EventLoop() = default;

  // Serves what is due and comes back. Costs no virtual time.
  virtual void Yield() = 0;

  // One yield of a routine that waits for time or for the sound: serves what is due, and lets at
  // most 10 ms pass.
  virtual void WaitYield() = 0;

  // One pass of a loop that only a bound of seconds ends: serves what is due; 1 ms of virtual time.
  virtual void PassYield() = 0;

  virtual std::unique_ptr<LoopTimer> MakeTimer(int intervalMs, std::function<void()> handler) = 0;

  // Serves `order` as an event of its own, at the next yield or between two ticks. Any thread.
  virtual void Post(std::function<void()> order) = 0;

  // Counts up at each event served, so that whoever caches something over a routine knows that
  // other code may have run in between (see CnfRow).
  virtual uint64_t EventsServed() const = 0;
};

}  // namespace zemo
