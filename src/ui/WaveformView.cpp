#include "ui/WaveformView.h"

#include <QPainter>
#include <algorithm>
#include <tuple>
#include <utility>

#include "ui/Theme.h"
#include "ui/WaveShape.h"

namespace zemo {

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
  if (!HasShape()) return;
  rest_ = DrawnShape(size(), *peaks_, {}, element_.colour.darker(260));
  played_ = DrawnShape(size(), *peaks_, {}, element_.colour);
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

}  // namespace zemo
