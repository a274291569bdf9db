#include "ui/LevelMeter.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/Theme.h"

namespace zemo {

namespace {
constexpr double kFallPerSec = 24;  // decibels
constexpr int64_t kHoldMs = 1500;
constexpr double kLoud = -6, kHot = -1;
}  // namespace

LevelMeter::LevelMeter(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
}

int LevelMeter::PixelsOf(double decibels) const {
  return static_cast<int>(std::lround((decibels - kFloor) / -kFloor * width()));
}

void LevelMeter::Show(float peak, int64_t nowMs) {
  const double level = peak > 0 ? std::clamp(20 * std::log10(double{peak}), kFloor, 0.0) : kFloor;
  const double fallen =
      decibels_ - kFallPerSec * static_cast<double>(std::max<int64_t>(0, nowMs - lastMs_)) / 1000;
  lastMs_ = nowMs;
  decibels_ = std::max({level, fallen, kFloor});
  if (level >= held_ || nowMs - heldMs_ > kHoldMs) {
    held_ = decibels_;
    heldMs_ = nowMs;
  }
  if (PixelsOf(decibels_) == drawn_ && PixelsOf(held_) == drawnHeld_) return;
  drawn_ = PixelsOf(decibels_);
  drawnHeld_ = PixelsOf(held_);
  update();
}

void LevelMeter::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::kRaised);
  const int filled = PixelsOf(decibels_);
  const std::pair<double, QColor> zones[] = {
      {kFloor, Theme::kGood}, {kLoud, Theme::kNote}, {kHot, Theme::kHeard}};
  for (const auto& [from, colour] : zones) {
    const int begin = PixelsOf(from);
    if (filled > begin) painter.fillRect(begin, 0, filled - begin, height(), colour);
  }
  if (held_ > kFloor) painter.fillRect(PixelsOf(held_) - 2, 0, 2, height(), Theme::kText);
}

}  // namespace zemo
