#include "scheduling/screens/BarTable.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <algorithm>

#include "ui/RowTable.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

constexpr int kBarRole = Qt::UserRole;

class BarPainter : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const double share = std::clamp(index.data(kBarRole).toDouble(), 0.0, 1.0);
    QRect bar = option.rect.adjusted(1, 3, -1, -3);
    bar.setWidth(static_cast<int>(bar.width() * share));
    if (share > 0) painter->fillRect(bar, Theme::kIntro);
    QStyledItemDelegate::paint(painter, option, index);
  }
};

}  // namespace

BarTable::BarTable(const char* name, const QString& caption, const QStringList& heads, int bars,
                   QWidget* parent)
    : QTableWidget(0, static_cast<int>(heads.size()), parent) {
  setObjectName(QString::fromUtf8(name));
  setAccessibleName(caption);
  setHorizontalHeaderLabels(heads);
  MakeRowTable(*this);
  setAlternatingRowColors(false);
  setItemDelegateForColumn(bars, new BarPainter(this));
}

void BarTable::Arrange(double unit) {
  ArrangeRowTable(*this, unit, 13, 5);
  ArrangeColumns();
}

void BarTable::ShowColumn(int column, bool shown) {
  setColumnHidden(column, !shown);
  ArrangeColumns();
}

void BarTable::ArrangeColumns() {
  const QFontMetrics heads(horizontalHeader()->font()), cells(font());
  std::vector<ColumnRoom> columns;
  for (int column = 0; column < columnCount(); ++column) {
    if (isColumnHidden(column)) {
      columns.emplace_back();
      continue;
    }
    const QString sample = column == 0 ? QStringLiteral("INSTRUMENTAL") : QStringLiteral("00000");
    columns.push_back({std::max(heads.horizontalAdvance(horizontalHeaderItem(column)->text()),
                                cells.horizontalAdvance(sample)) +
                           kCellMargin + 4,
                       1});
  }
  ShareWidth(*this, columns);
}

void BarTable::resizeEvent(QResizeEvent* event) {
  QTableWidget::resizeEvent(event);
  ArrangeColumns();
}

void BarTable::ShowRows(const std::vector<BarRow>& rows) {
  setRowCount(static_cast<int>(rows.size()));
  for (int row = 0; row < rowCount(); ++row) {
    const BarRow& given = rows[static_cast<size_t>(row)];
    for (int column = 0; column < columnCount(); ++column) {
      if (!item(row, column)) setItem(row, column, new QTableWidgetItem);
      QTableWidgetItem& cell = *item(row, column);
      cell.setText(given.cells.value(column));
      cell.setData(kBarRole, given.bar);
      cell.setForeground(column >= given.alertFrom ? Theme::kHeard : Theme::kText);
    }
  }
}

bool BarTable::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip && ShowCutText(*this, *static_cast<QHelpEvent*>(event)))
    return true;
  return QTableWidget::viewportEvent(event);
}

}  // namespace zemo
