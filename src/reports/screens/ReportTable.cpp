#include "reports/screens/ReportTable.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMenu>
#include <algorithm>
#include <utility>

#include "ui/RowTable.h"

namespace zemo {

namespace {
constexpr int kHeadMargins = 18;
}

// --- the rows ---

ReportTableModel::ReportTableModel(const ReportTableSource& source, const Translation& texts,
                                   QObject* parent)
    : QAbstractTableModel(parent), source_(source) {
  for (size_t column = 0; column < source.rooms.size(); ++column)
    heads_.push_back(texts.Word(std::string(source.name) + "." + std::to_string(column)));
}

void ReportTableModel::Renew() {
  beginResetModel();
  rows_ = static_cast<int>(source_.count());
  endResetModel();
}

int ReportTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int ReportTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(heads_.size());
}

// Rows may have gone since the views were told of them.
QVariant ReportTableModel::data(const QModelIndex& index, int role) const {
  const auto line = static_cast<size_t>(index.row());
  if (role != Qt::DisplayRole || line >= source_.count()) return {};
  return QString::fromStdString(source_.cell(line, index.column()));
}

QVariant ReportTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return heads_[static_cast<size_t>(section)];
}

// --- the table ---

ReportTable::ReportTable(ReportTableSource source, const Translation& texts, QWidget* parent)
    : QTableView(parent),
      source_(std::move(source)),
      sortBy_(texts.Word("SortBy")),
      model_(new ReportTableModel(source_, texts, this)) {
  setObjectName(QString::fromLatin1(source_.name));
  setAccessibleName(texts.Word(std::string("For.") + source_.name));
  setModel(model_);
  MakeRowTable(*this);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setSectionsClickable(true);
  horizontalHeader()->setStretchLastSection(true);
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this,
          [this](int column) { sorted(column); });
  connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& current) {
            if (!showing_ && current.isValid()) chosen(static_cast<size_t>(current.row()));
          });
}

void ReportTable::Arrange(double unit) {
  ArrangeRowTable(*this, unit, 14, 6);
  ArrangeColumns();
}

void ReportTable::ShowRows(uint64_t generation, const ListSorting& sorting) {
  if (std::exchange(generation_, generation) == generation) return;
  showing_ = true;
  model_->Renew();
  showing_ = false;
  horizontalHeader()->setSortIndicatorShown(sorting.column.has_value());
  if (sorting.column)
    horizontalHeader()->setSortIndicator(*sorting.column,
                                         sorting.down ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void ReportTable::Select(size_t line) {
  showing_ = true;
  setCurrentIndex(model_->index(static_cast<int>(line), 0));
  showing_ = false;
}

void ReportTable::ArrangeColumns() {
  const QFontMetrics heads(horizontalHeader()->font()), cells(font());
  const int arrow = kHeadMargins + heads.height() * 6 / 5;  // of a sorted column
  std::vector<ColumnRoom> columns;
  for (size_t column = 0; column < source_.rooms.size(); ++column) {
    const ReportColumnRoom& room = source_.rooms[column];
    const QString head = model_->headerData(static_cast<int>(column), Qt::Horizontal).toString();
    const int sample = cells.horizontalAdvance(QString::fromUtf8(room.sample)) + kCellMargin;
    columns.push_back({std::max(heads.horizontalAdvance(head) + arrow, sample), room.share});
  }
  ShareWidth(*this, columns);
}

void ReportTable::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  ArrangeColumns();
}

void ReportTable::contextMenuEvent(QContextMenuEvent* event) {
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addSection(sortBy_);
  for (int column = 0; column < model_->columnCount(); ++column)
    menu->addAction(model_->headerData(column, Qt::Horizontal).toString(),
                    [this, column] { sorted(column); });
  const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
  menu->popup(byMouse ? event->globalPos() : viewport()->mapToGlobal(QPoint(20, 0)));
}

bool ReportTable::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip) return ShowCutText(*this, *static_cast<QHelpEvent*>(event));
  return QTableView::viewportEvent(event);
}

}  // namespace zemo
