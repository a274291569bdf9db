// The event loop of a station, with a look at each yield.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

#include "platform/sim/SimLoop.h"

namespace zemo::test {

class WatchedLoop : public EventLoop {
 public:
  explicit WatchedLoop(SimLoop& loop) : loop_(loop) {}
  std::function<void()> onYield;
  void Yield() override {
    loop_.Yield();
    if (onYield) onYield();
  }
  void WaitYield() override { loop_.WaitYield(); }
  void PassYield() override { loop_.PassYield(); }
  std::unique_ptr<LoopTimer> MakeTimer(int ms, std::function<void()> handler) override {
    return loop_.MakeTimer(ms, std::move(handler));
  }
  void Post(std::function<void()> order) override { loop_.Post(std::move(order)); }
  uint64_t EventsServed() const override { return loop_.EventsServed(); }

 private:
  SimLoop& loop_;
};

}  // namespace zemo::test
