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
  LookAfterIdle();
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

void RealEventLoop::SetIdle(std::function<bool()> idle, int everyMs, int restMs) {
  idleTimer_.reset();
  idle_ = std::move(idle);
  if (!idle_) return;
  idleEveryMs_ = everyMs;
  idleRestMs_ = restMs;
  idleTimer_ = std::make_unique<QTimer>();
  idleTimer_->setTimerType(Qt::PreciseTimer);
  QObject::connect(idleTimer_.get(), &QTimer::timeout, [this] { RunIdle(); });
  idleTimer_->start(everyMs);
}

void RealEventLoop::LookAfterIdle() {
  if (idleTimer_ == nullptr ||
      std::chrono::steady_clock::now() - idleRan_ < std::chrono::milliseconds(idleEveryMs_))
    return;
  RunIdle();
}

// The hook may take itself away, and may yield.
void RealEventLoop::RunIdle() {
  if (inIdle_) return;
  inIdle_ = true;
  bool again = false;
  RunGuarded([&again, idle = idle_] { again = idle(); });
  inIdle_ = false;
  idleRan_ = std::chrono::steady_clock::now();
  if (idleTimer_ != nullptr) idleTimer_->start(again ? idleEveryMs_ : idleRestMs_);
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
  LookAfterIdle();
  ++served_;
  RunGuarded(handler);
}

}  // namespace zemo
