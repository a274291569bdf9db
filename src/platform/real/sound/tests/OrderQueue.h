// An event loop that serves nothing but what was posted, when a test says so.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <utility>

#include "platform/EventLoop.h"

namespace zemo::testing {

class OrderQueue : public EventLoop {
 public:
  void Yield() override {
    while (!orders_.empty()) {
      const auto order = std::move(orders_.front());
      orders_.pop_front();
      order();
    }
  }
  void WaitYield() override { Yield(); }
  void PassYield() override { Yield(); }
  std::unique_ptr<LoopTimer> MakeTimer(int, std::function<void()>) override { return nullptr; }
  void Post(std::function<void()> order) override { orders_.push_back(std::move(order)); }
  uint64_t EventsServed() const override { return 0; }
  bool Waits() const { return !orders_.empty(); }

 private:
  std::deque<std::function<void()>> orders_;
};

}  // namespace zemo::testing
