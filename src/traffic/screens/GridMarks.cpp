#include "traffic/screens/GridMarks.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "ui/Theme.h"

namespace zemo::GridMarks {

namespace {

constexpr int kLeastLoad = 2;  // pixels

int LoadHeight(const QRect& cell) {
  return std::max(3, cell.height() / 5);
}

QRect CrossIn(const QRect& cell) {
  return cell.adjusted(3, 3, -2, -LoadHeight(cell) - 2);
}

}  // namespace

void PaintCross(QPainter& painter, const QRect& cell, const QColor& colour) {
  painter.fillRect(CrossIn(cell), colour);
}

void PaintOfAdvertiser(QPainter& painter, const QRect& cell) {
  const QRect ring = CrossIn(cell);
  painter.setPen(QPen(Theme::kVoiceTrack, 2));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(ring.adjusted(0, 0, -1, -1));
}

void PaintLoad(QPainter& painter, const QRect& cell, double full) {
  if (full <= 0) return;
  const QRect foot(cell.left() + 3, cell.bottom() - LoadHeight(cell) + 1, cell.width() - 5,
                   LoadHeight(cell));
  const int width = static_cast<int>(std::lround(std::min(1.0, full) * foot.width()));
  painter.fillRect(foot, Theme::kLine);
  painter.fillRect(QRect(foot.topLeft(), QSize(std::max(kLeastLoad, width), foot.height())),
                   full >= 1 ? Theme::kHeard : Theme::kMusic);
}

}  // namespace zemo::GridMarks
