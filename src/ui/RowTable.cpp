#include "ui/RowTable.h"

#include <QApplication>
#include <QFontMetrics>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QTableView>
#include <QToolTip>
#include <algorithm>
#include <cstdint>

#include "ui/Theme.h"

namespace zemo {

void MakeRowTable(QTableView& table) {
  table.setSelectionBehavior(QAbstractItemView::SelectRows);
  table.setSelectionMode(QAbstractItemView::SingleSelection);
  table.setEditTriggers(QAbstractItemView::NoEditTriggers);
  table.setAlternatingRowColors(true);
  table.setShowGrid(false);
  table.setWordWrap(false);
  table.setTabKeyNavigation(false);
  table.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  table.verticalHeader()->hide();
  table.horizontalHeader()->setHighlightSections(false);
  table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void ArrangeRowTable(QTableView& table, double unit, double typePixels, double roomPixels) {
  const QFont type = Theme::Type(unit, typePixels);
  table.setFont(type);
  table.horizontalHeader()->setFont(Theme::Type(unit, Theme::kTableHeadPixels));
  table.verticalHeader()->setDefaultSectionSize(QFontMetrics(type).height() +
                                                Theme::Px(unit, roomPixels));
}

void ShareWidth(QTableView& table, std::span<const ColumnRoom> columns) {
  int needed = 0, shares = 0;
  // Hidden first: the last column in sight takes no width, but stretches.
  for (size_t place = 0; place < columns.size(); ++place) {
    table.setColumnHidden(static_cast<int>(place), columns[place].least == 0);
    needed += columns[place].least;
    if (columns[place].least > 0) shares += columns[place].share;
  }
  const int room = std::max(0, table.viewport()->width() - needed);
  for (size_t place = 0; place < columns.size(); ++place) {
    const ColumnRoom& column = columns[place];
    const auto logical = static_cast<int>(place);
    if (column.least == 0) continue;
    const int more = shares > 0 ? static_cast<int>(int64_t{room} * column.share / shares) : 0;
    table.setColumnWidth(logical, column.least + more);
  }
}

bool ShowCutText(QTableView& table, const QHelpEvent& help) {
  const QModelIndex index = table.indexAt(help.pos());
  if (!index.isValid()) return false;
  const QString text = index.data().toString();
  if (table.fontMetrics().horizontalAdvance(text) + kCellMargin <=
      table.columnWidth(index.column()))
    return false;
  QToolTip::showText(help.globalPos(), text, table.viewport(), table.visualRect(index));
  return true;
}

bool DragBegins(const QPoint& pressed, const QMouseEvent& move) {
  return (move.pos() - pressed).manhattanLength() >= QApplication::startDragDistance();
}

}  // namespace zemo
