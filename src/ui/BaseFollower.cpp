#include "ui/BaseFollower.h"

#include <QEvent>
#include <QWidget>
#include <exception>
#include <utility>

#include "engine/FreeMoment.h"
#include "station/Station.h"

namespace zemo {

BaseFollower::BaseFollower(Station& station, QWidget& window, std::function<bool()> takeOver,
                           std::function<std::string()> sideSign)
    : station_(station),
      window_(window),
      takeOver_(std::move(takeOver)),
      sideSign_(std::move(sideSign)) {
  try {
    seen_ = station_.base.Db().ForeignCounter();
  } catch (const std::exception&) {
    seen_ = -1;  // out of reach: the first look that reaches it counts
  }
  timer_.setInterval(kLookMs);
  connect(&timer_, &QTimer::timeout, this, [this] { Look(); });
  window.installEventFilter(this);
}

bool BaseFollower::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &window_ && event->type() == QEvent::Show) timer_.start();
  if (watched == &window_ && event->type() == QEvent::Hide) timer_.stop();
  return false;
}

void BaseFollower::Look() {
  if (!window_.isVisible() || !IsFreeMoment(station_)) return;
  const NoLockWait atOnce(station_.base.Waiting());
  try {
    const int64_t now = station_.base.Db().ForeignCounter();
    const std::string beside = sideSign_();
    if ((now == seen_ && beside == sideSeen_) || !takeOver_()) return;
    seen_ = now;
    sideSeen_ = beside;
  } catch (const std::exception&) {
    // Locked, or out of reach for a moment; who has to tell of that is the health line.
  }
}

}  // namespace zemo
