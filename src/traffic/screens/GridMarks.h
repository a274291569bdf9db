// The marks of the grid of a campaign, as its cells and its legend draw them.
#pragma once

#include <QColor>

class QPainter;
class QRect;

namespace zemo::GridMarks {

// Of the campaign that is shown.
void PaintCross(QPainter& painter, const QRect& cell, const QColor& colour);
// The advertiser has another campaign there; around a cross where there is one.
void PaintOfAdvertiser(QPainter& painter, const QRect& cell);
// How full the break is already, along the foot of the cell: 1 and above it is full.
void PaintLoad(QPainter& painter, const QRect& cell, double full);

}  // namespace zemo::GridMarks
