#include "platform/real/desktop/RealEventLoop.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QObject>
#include <QTimer>
#include <cstdio>
#include <exception>
#include <utility>

namespace zemo {

namespace {
constexpr int kWaitMs = 10;

// Exceptions must not cross Qt's loop.
void RunGuarded(const std::function<void()>& handler) {
  try {
    handler();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "zemoradio: %s\n", error.what());
  }
}
}  // namespace

// Qt does not deliver a timer inside its own handler and keeps at most one missed firing, which is
// what a LoopTimer promises.
class RealEventLoop::Timer : public LoopTimer {
 public:
  Timer(RealEventLoop& loop, int intervalMs, std::function<void()> handler) {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(intervalMs);
    // The handler may destroy its timer, and with it the function that it runs in.
    QObject::connect(&timer_, &QTimer::timeout,
                     [&loop, shared = std::make_shared<std::function<void()>>(std::move(handler))] {
                       loop.Serve([held = shared] { (*held)(); });
                     });
  }
  void SetEnabled(bool enabled) override {
    if (enabled)
      timer_.start();
    else
      timer_.stop();
  }
  bool Enabled() const override { return timer_.isActive(); }

 private:
  QTimer timer_;
};

RealEventLoop::RealEventLoop()
    : receiver_(std::make_unique<QObject>()), waitLimit_(std::make_unique<QTimer>()) {
  waitLimit_->setSingleShot(true);
  waitLimit_->setTimerType(Qt::PreciseTimer);
  waitLimit_->setInterval(kWaitMs);
}

RealEventLoop::~RealEventLoop() = default;

void RealEventLoop::Yield() {
  QCoreApplication::processEvents();
}

void RealEventLoop::WaitYield() {
  QCoreApplication::processEvents();
  waitLimit_->start();  // a wait nested in this one only moves the limit of a wait that is over
  QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void RealEventLoop::PassYield() {
  Yield();
}

std::unique_ptr<LoopTimer> RealEventLoop::MakeTimer(int intervalMs, std::function<void()> handler) {
  return std::make_unique<Timer>(*this, intervalMs, std::move(handler));
}

void RealEventLoop::Post(std::function<void()> order) {
  QMetaObject::invokeMethod(
      receiver_.get(), [this, order = std::move(order)] { Serve(order); }, Qt::QueuedConnection);
}

void RealEventLoop::SetIdle(std::function<void()> idle, int everyMs) {
  idleTimer_.reset();
  if (!idle) return;
  idleTimer_ = std::make_unique<QTimer>();
  idleTimer_->setTimerType(Qt::PreciseTimer);
  QObject::connect(idleTimer_.get(), &QTimer::timeout,
                   [idle = std::move(idle)] { RunGuarded(idle); });
  idleTimer_->start(everyMs);
}

void RealEventLoop::Run() {
  while (!quit_) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  quit_ = false;
}

void RealEventLoop::Quit() {
  quit_ = true;
  QMetaObject::invokeMethod(
      receiver_.get(), [] {}, Qt::QueuedConnection);  // ends the wait
}

void RealEventLoop::Serve(const std::function<void()>& handler) {
  ++served_;
  RunGuarded(handler);
}

}  // namespace zemo
