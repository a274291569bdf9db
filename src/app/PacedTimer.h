// A timer of the loop whose interval changes as it goes on.
#pragma once

#include <functional>
#include <memory>

#include "platform/EventLoop.h"

namespace zemo {

// Stands still until it has an interval. Thread: the logic's. The loop outlives it.
class PacedTimer {
 public:
  PacedTimer(EventLoop& loop, std::function<void()> handler);

  // Begins a new interval, also from inside the handler; nothing where it is `ms` long already.
  void SetInterval(int ms);

 private:
  EventLoop& loop_;
  std::function<void()> handler_;
  std::unique_ptr<LoopTimer> timer_;
  int intervalMs_ = 0;
};

}  // namespace zemo
