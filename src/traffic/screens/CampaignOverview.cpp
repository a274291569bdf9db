#include "traffic/screens/CampaignOverview.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <string>
#include <vector>

#include "ui/RowTable.h"

namespace zemo {

namespace {

constexpr int kFromColumn = 2, kToColumn = 3, kKindColumn = 4;
constexpr const char* kNoDates = "JOURNALIER";
constexpr int kArrowRoom = 24;  // of a head, in pixels
struct Room {
  const char* sample;
  int share;
};
constexpr Room kRooms[CampaignOverviewModel::kColumns] = {
    {"An advertiser", 4}, {"CATEGORY", 2},    {"", 0}, {"", 0}, {"", 0},
    {"00000", 0},         {"INSTRUMENTAL", 1}};

}  // namespace

CampaignOverviewModel::CampaignOverviewModel(const CampaignEditor& editor, const Translation& texts,
                                             QObject* parent)
    : QAbstractTableModel(parent), editor_(editor), texts_(texts) {}

void CampaignOverviewModel::Renew() {
  beginResetModel();
  rows_ = static_cast<int>(editor_.PLPub.size());
  endResetModel();
}

int CampaignOverviewModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int CampaignOverviewModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant CampaignOverviewModel::data(const QModelIndex& index, int role) const {
  const auto row = static_cast<size_t>(index.row());
  if (role != Qt::DisplayRole || row >= editor_.PLPub.size()) return {};
  const CampaignEditor::OverviewLine& line = editor_.PLPub[row];
  const std::string& text =
      index.column() == 0 ? line.text : line.subItems[static_cast<size_t>(index.column() - 1)];
  if (index.column() == kKindColumn)
    return texts_.Word(text == kSpotKind ? "OptPub.0" : "OptPub.1");
  if (index.column() == kFromColumn || index.column() == kToColumn) return texts_.OfRoutine(text);
  return QString::fromStdString(text);
}

QVariant CampaignOverviewModel::headerData(int section, Qt::Orientation orientation,
                                           int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return texts_.Word("PLPub." + std::to_string(section));
}

CampaignOverview::CampaignOverview(const CampaignEditor& editor, const Translation& texts,
                                   QWidget* parent)
    : QTableView(parent),
      editor_(editor),
      texts_(texts),
      model_(new CampaignOverviewModel(editor, texts, this)) {
  setObjectName(QStringLiteral("PLPub"));
  setAccessibleName(texts.Word("For.PLPub"));
  setModel(model_);
  MakeRowTable(*this);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  horizontalHeader()->setSectionsClickable(true);
  horizontalHeader()->setStretchLastSection(true);
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this,
          [this](int column) { sorted(column); });
  connect(this, &QTableView::doubleClicked, this,
          [this](const QModelIndex& index) { chosen(static_cast<size_t>(index.row())); });
}

void CampaignOverview::Arrange(double unit) {
  ArrangeRowTable(*this, unit, 14, 6);
  ArrangeColumns();
}

void CampaignOverview::ShowRows() {
  model_->Renew();
  horizontalHeader()->setSortIndicatorShown(editor_.sortedColumn.has_value());
  if (editor_.sortedColumn)
    horizontalHeader()->setSortIndicator(
        *editor_.sortedColumn, editor_.sortedDown ? Qt::DescendingOrder : Qt::AscendingOrder);
  if (model_->rowCount() > 0) setCurrentIndex(model_->index(0, 0));
}

std::string CampaignOverview::ChosenCode() const {
  const auto line = static_cast<size_t>(currentIndex().row());
  return currentIndex().isValid() && line < editor_.PLPub.size() ? editor_.PLPub[line].subItems[4]
                                                                 : std::string();
}

void CampaignOverview::ShowRowsAnew(const std::string& chosen) {
  const int place = verticalScrollBar()->value();
  const int row = currentIndex().row();
  model_->Renew();
  int line = std::clamp(row, 0, std::max(0, model_->rowCount() - 1));
  for (size_t at = 0; at < editor_.PLPub.size(); ++at)
    if (editor_.PLPub[at].subItems[4] == chosen) line = static_cast<int>(at);
  if (model_->rowCount() > 0) setCurrentIndex(model_->index(line, 0));
  verticalScrollBar()->setValue(place);
}

void CampaignOverview::ArrangeColumns() {
  const QFontMetrics heads(horizontalHeader()->font()), cells(font());
  std::vector<ColumnRoom> columns;
  for (int column = 0; column < CampaignOverviewModel::kColumns; ++column) {
    const Room& room = kRooms[column];
    int sample = cells.horizontalAdvance(QString::fromUtf8(room.sample));
    if (column == kKindColumn)
      sample = std::max(cells.horizontalAdvance(texts_.Word("OptPub.0")),
                        cells.horizontalAdvance(texts_.Word("OptPub.1")));
    if (column == kFromColumn || column == kToColumn)
      sample = cells.horizontalAdvance(texts_.OfRoutine(kNoDates));
    const QString head = model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    columns.push_back(
        {std::max(heads.horizontalAdvance(head) + kArrowRoom, sample + kCellMargin), room.share});
  }
  ShareWidth(*this, columns);
}

void CampaignOverview::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && currentIndex().isValid()) return chosen(static_cast<size_t>(currentIndex().row()));
  const int head = event->key() - Qt::Key_1;
  if (event->modifiers() & Qt::ControlModifier && head >= 0 &&
      head < CampaignOverviewModel::kColumns)
    return sorted(head);
  QTableView::keyPressEvent(event);
}

void CampaignOverview::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  ArrangeColumns();
}

bool CampaignOverview::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip && ShowCutText(*this, *static_cast<QHelpEvent*>(event)))
    return true;
  return QTableView::viewportEvent(event);
}

}  // namespace zemo
