#include "engine/screens/WaveformView.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "engine/screens/Theme.h"

namespace zemo {

namespace {
constexpr double kFallPerSec = 24;  // decibels
constexpr int64_t kHoldMs = 1500;
constexpr double kLoud = -6, kHot = -1;
}  // namespace

WaveformView::WaveformView(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void WaveformView::Show(const Element& element, int percent,
                        std::shared_ptr<const WavePeaks> peaks) {
  const bool newShape = peaks != peaks_ || element.colour != element_.colour;
  peaks_ = std::move(peaks);
  element_ = element;
  percent_ = percent;
  if (newShape) DrawShape();
  const auto before = std::tuple(playedX_, introX_, exitX_);
  Place();
  if (newShape || before != std::tuple(playedX_, introX_, exitX_)) update();
}

int WaveformView::XOf(int64_t ms) const {
  return static_cast<int>(std::clamp<int64_t>(ms * width() / element_.lengthMs, 0, width()));
}

void WaveformView::Place() {
  if (element_.lengthMs <= 0) {
    playedX_ = introX_ = exitX_ = -1;
    return;
  }
  // The bar is cleared over the first five seconds and then goes by whole percents; with a shape
  // the position itself is drawn.
  playedX_ = HasShape() ? XOf(element_.positionMs) : percent_ * width() / 100;
  introX_ = element_.introMs > 0 ? XOf(element_.introMs) : -1;
  exitX_ = element_.exitMs > 0 ? XOf(element_.lengthMs - element_.exitMs) : -1;
}

void WaveformView::DrawShape() {
  rest_ = played_ = QPixmap();
  if (!HasShape() || width() < 1 || height() < 4) return;
  for (const bool played : {false, true}) {
    QPixmap map(size());
    map.fill(Theme::kPanel);
    QPainter painter(&map);
    QColor colour = element_.colour;
    if (!played) colour = colour.darker(260);
    const int middle = height() / 2;
    for (int x = 0; x < width(); ++x) {
      const size_t count = peaks_->size();
      const size_t first = static_cast<size_t>(x) * count / static_cast<size_t>(width());
      const size_t last =
          std::max(first + 1, static_cast<size_t>(x + 1) * count / static_cast<size_t>(width()));
      const int peak = *std::max_element(peaks_->begin() + static_cast<std::ptrdiff_t>(first),
                                         peaks_->begin() + static_cast<std::ptrdiff_t>(last));
      const int half = std::max(1, peak * (middle - 1) / 255);
      painter.fillRect(x, middle - half, 1, 2 * half, colour);
    }
    (played ? played_ : rest_) = map;
  }
}

void WaveformView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::kPanel);
  if (!rest_.isNull()) painter.drawPixmap(0, 0, rest_);
  if (playedX_ > 0) {
    if (played_.isNull())
      painter.fillRect(0, 0, playedX_, height(), element_.colour.darker(160));
    else
      painter.drawPixmap(0, 0, played_, 0, 0, playedX_, height());
  }
  if (introX_ >= 0) painter.fillRect(introX_, 0, 2, height(), Theme::kVoiceTrack);
  if (exitX_ >= 0) {
    painter.fillRect(exitX_, 0, 2, height(), Theme::kExit);
    painter.fillRect(exitX_, 0, width() - exitX_, 3, Theme::kExit);
  }
  if (playedX_ >= 0 && !rest_.isNull()) painter.fillRect(playedX_, 0, 2, height(), Theme::kText);
  painter.setPen(Theme::kLine);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void WaveformView::resizeEvent(QResizeEvent*) {
  DrawShape();
  Place();
}

IntroBar::IntroBar(QWidget* parent) : QWidget(parent) {
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  policy.setRetainSizeWhenHidden(true);
  setSizePolicy(policy);
}

void IntroBar::Show(bool visible, int elapsedSec, int lengthSec) {
  setVisible(visible);
  if (!visible || (elapsedSec == elapsedSec_ && lengthSec == lengthSec_)) return;
  elapsedSec_ = elapsedSec;
  lengthSec_ = lengthSec;
  text_ = QStringLiteral("%1 / %2").arg(elapsedSec).arg(lengthSec);
  update();
}

int IntroBar::FilledPercent() const {
  return lengthSec_ > 0 ? std::min(100, elapsedSec_ * 100 / lengthSec_) : 0;
}

void IntroBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Theme::kRaised);
  // Colour 255, as 0xBBGGRR.
  painter.fillRect(0, 0, width() * FilledPercent() / 100, height(),
                   Theme::FromBgr(255).darker(130));
  painter.setFont(font());
  painter.setPen(Theme::kText);
  painter.drawText(rect(), Qt::AlignCenter, text_);
}

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
