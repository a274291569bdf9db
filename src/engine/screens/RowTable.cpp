#include "engine/screens/RowTable.h"

#include <QFontMetrics>
#include <QHeaderView>
#include <QTableView>

#include "engine/screens/Theme.h"

namespace zemo {

namespace {
constexpr int kHeadPixels = 13;
}

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
  table.horizontalHeader()->setFont(Theme::Type(unit, kHeadPixels));
  table.verticalHeader()->setDefaultSectionSize(QFontMetrics(type).height() +
                                                Theme::Px(unit, roomPixels));
}

}  // namespace zemo
