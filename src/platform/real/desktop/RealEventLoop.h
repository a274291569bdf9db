// The event loop of real time: Qt's, without a screen. The screens join the same loop.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

#include "platform/EventLoop.h"

class QObject;
class QTimer;

namespace zemo {

// Needs a QCoreApplication (or one derived from it) for its whole life. Thread: the one that made
// it, but for Post. A handler that throws a std::exception costs one line on standard error, no
// more.
class RealEventLoop : public EventLoop {
 public:
  RealEventLoop();
  ~RealEventLoop() override;
  RealEventLoop(const RealEventLoop&) = delete;
  RealEventLoop& operator=(const RealEventLoop&) = delete;

  void Yield() override;
  void WaitYield() override;  // comes back at the first event, after 10 ms at the latest
  void PassYield() override;
  std::unique_ptr<LoopTimer> MakeTimer(int intervalMs, std::function<void()> handler) override;
  void Post(std::function<void()> order) override;
  uint64_t EventsServed() const override { return served_; }

  // What has to be looked after, also inside yields (the sound chain's status): ahead of whatever
  // else the loop wakes for, so that it costs no waking of its own, but never twice within
  // `everyMs`; by itself after `restMs`, or after `everyMs` where its last answer was true. Not
  // counted among the events served. An empty function ends it.
  void SetIdle(std::function<bool()> idle, int everyMs, int restMs);

  // Runs the loop until Quit; serves everything meanwhile.
  void Run();
  void Quit();  // any thread

 private:
  class Timer;
  void Serve(const std::function<void()>& handler);
  void LookAfterIdle();
  void RunIdle();

  std::unique_ptr<QObject> receiver_;  // of posted orders
  std::unique_ptr<QTimer> waitLimit_;  // ends the wait of WaitYield
  std::unique_ptr<QTimer> idleTimer_;
  std::function<bool()> idle_;
  int idleEveryMs_ = 0, idleRestMs_ = 0;
  std::chrono::steady_clock::time_point idleRan_;
  bool inIdle_ = false;
  uint64_t served_ = 0;
  std::atomic<bool> quit_ = false;
};

}  // namespace zemo
