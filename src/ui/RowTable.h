// What the windows' tables have in common: whole rows are chosen, nothing is typed into a cell, Tab
// leaves the table, columns share its width, a cut text tells itself, and a drag is the view's own,
// so that no nested loop runs.
#pragma once

#include <span>

class QHelpEvent;
class QMouseEvent;
class QPoint;
class QTableView;

namespace zemo {

void MakeRowTable(QTableView& table);
// Rows as high as the type needs, with that room above and below it in pixels, and smaller heads.
void ArrangeRowTable(QTableView& table, double unit, double typePixels, double roomPixels);

// A column shows from its least width on, in pixels, and gets its share of the room that is left.
struct ColumnRoom {
  int least = 0;  // 0: hidden
  int share = 0;  // 0: it does not grow
};
// By logical column. Where there is less room than the columns need, the table scrolls sideways.
void ShareWidth(QTableView& table, std::span<const ColumnRoom> columns);

inline constexpr int kCellMargin = 10;  // pixels around a cell's text
// Shows the whole text of the cell under the mouse where it is cut; false where it is not.
bool ShowCutText(QTableView& table, const QHelpEvent& help);

// The held mouse went far enough from where it was pressed for a drag to begin.
bool DragBegins(const QPoint& pressed, const QMouseEvent& move);

}  // namespace zemo
