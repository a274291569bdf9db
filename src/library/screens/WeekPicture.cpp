#include "library/screens/WeekPicture.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cstdlib>
#include <string>

#include "ui/Theme.h"

namespace zemo {

namespace {
constexpr int kRowPixels = 18;
const QColor kAllowed{0x2f, 0x7d, 0x5b};
}  // namespace

WeekPicture::WeekPicture(HourMasks& masks, QWidget* parent) : QWidget(parent), masks_(masks) {
  setObjectName(QStringLiteral("WeekPicture"));
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void WeekPicture::Arrange(double unit) {
  head_ = Theme::Px(unit, kHeadPixels);
  row_ = Theme::Px(unit, kRowPixels);
  setFont(Theme::Type(unit, 11));
  setFixedHeight(sizeHint().height());
  update();
}

QSize WeekPicture::sizeHint() const {
  return {HourMasks::kHours * 18, head_ + HourMasks::kDays * row_};
}

QRect WeekPicture::Cell(int day, int hour) const {
  const int left = width() * hour / HourMasks::kHours;
  const int right = width() * (hour + 1) / HourMasks::kHours;
  return {left, head_ + (day - 1) * row_, right - left, row_};
}

WeekPicture::Hour WeekPicture::HourAt(const QPoint& point) const {
  if (point.y() < head_ || point.x() < 0 || point.x() >= width()) return {};
  const int day = (point.y() - head_) / row_ + 1;
  for (int hour = 0; day <= HourMasks::kDays && hour < HourMasks::kHours; ++hour)
    if (Cell(day, hour).contains(point)) return {day, hour};
  return {};
}

bool WeekPicture::Allowed(Hour at) const {
  return masks_.Mask(at.day)[static_cast<size_t>(at.hour)] == '1';
}

void WeekPicture::Put(Hour at, bool allowed) {
  if (at.day == 0) return;
  frame_ = at;
  std::string mask = masks_.Mask(at.day);
  mask[static_cast<size_t>(at.hour)] = allowed ? '1' : '0';
  masks_.Take(at.day, mask);
  update();
  if (changed) changed();
}

void WeekPicture::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(Theme::kDim);
  for (int hour = 0; hour < HourMasks::kHours; ++hour) {
    const QRect cell = Cell(1, hour);
    painter.drawText(QRect(cell.left(), 0, cell.width(), head_), Qt::AlignCenter,
                     QStringLiteral("%1").arg(hour, 2, 10, QLatin1Char('0')));
  }
  for (int day = 1; day <= HourMasks::kDays; ++day) {
    const std::string mask = masks_.Mask(day);
    for (int hour = 0; hour < HourMasks::kHours; ++hour) {
      const bool allowed = mask[static_cast<size_t>(hour)] == '1';
      const QRect inside = Cell(day, hour).adjusted(1, 1, -1, -1);
      painter.fillRect(inside, allowed && isEnabled() ? kAllowed
                               : allowed              ? Theme::kLine
                                                      : QColor(0x0d, 0x10, 0x14));
    }
  }
  if (!hasFocus()) return;
  painter.setPen(Theme::kFocus);
  painter.drawRect(Cell(frame_.day, frame_.hour).adjusted(0, 0, -1, -1));
}

void WeekPicture::mousePressEvent(QMouseEvent* event) {
  const Hour at = HourAt(event->pos());
  if (event->button() != Qt::LeftButton || at.day == 0) return;
  paints_ = !Allowed(at);
  passed_ = event->pos();
  Put(at, paints_);
}

// Also what lies between two places, as a quick mouse tells few of them.
void WeekPicture::PaintTo(const QPoint& point) {
  const QPoint way = point - passed_;
  const int steps = std::max({std::abs(way.x()), std::abs(way.y()), 1});
  for (int step = 1; step <= steps; ++step) {
    const Hour at = HourAt(passed_ + way * step / steps);
    if (at.day != 0 && Allowed(at) != paints_) Put(at, paints_);
  }
  passed_ = point;
}

void WeekPicture::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() & Qt::LeftButton) PaintTo(event->pos());
}

void WeekPicture::keyPressEvent(QKeyEvent* event) {
  const auto move = [this](int days, int hours) {
    frame_.day = std::clamp(frame_.day + days, 1, HourMasks::kDays);
    frame_.hour = std::clamp(frame_.hour + hours, 0, HourMasks::kHours - 1);
    update();
  };
  switch (event->key()) {
    case Qt::Key_Up:
      return move(-1, 0);
    case Qt::Key_Down:
      return move(1, 0);
    case Qt::Key_Left:
      return move(0, -1);
    case Qt::Key_Right:
      return move(0, 1);
    case Qt::Key_Space:
      return Put(frame_, !Allowed(frame_));
    default:
      QWidget::keyPressEvent(event);
  }
}

void WeekPicture::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  update();
}

}  // namespace zemo
