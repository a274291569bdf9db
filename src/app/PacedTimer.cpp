#include "app/PacedTimer.h"

#include <utility>

namespace zemo {

PacedTimer::PacedTimer(EventLoop& loop, std::function<void()> handler)
    : loop_(loop), handler_(std::move(handler)) {}

void PacedTimer::SetInterval(int ms) {
  if (ms == intervalMs_) return;
  intervalMs_ = ms;
  timer_ = loop_.MakeTimer(ms, [this] { handler_(); });
  timer_->SetEnabled(true);
}

}  // namespace zemo
