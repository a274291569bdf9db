#include "scheduling/screens/ModelGridView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <algorithm>
#include <vector>

#include "scheduling/WeekModel.h"
#include "station/TextForms.h"
#include "ui/Named.h"
#include "ui/RowTable.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

constexpr int kFullShare = 100;
constexpr int kFaintest = 40, kStrongest = 210;  // of a colour behind a share

// The selected cell has a frame; its own colour tells its share.
class CellPainter : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const bool selected = option.state & QStyle::State_Selected;
    QStyleOptionViewItem plain = option;
    plain.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus);
    QStyledItemDelegate::paint(painter, plain, index);
    if (!selected) return;
    const bool keys = option.widget && option.widget->hasFocus();
    painter->setPen(QPen(keys ? Theme::kFocus : Theme::kDim, 2));
    painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
  }
};

}  // namespace

ModelGridModel::ModelGridModel(const ModelEditor& editor, ModelGrid kind, QObject* parent)
    : QAbstractTableModel(parent), editor_(editor), kind_(kind) {}

const TextGrid& ModelGridModel::Grid() const {
  switch (kind_) {
    case ModelGrid::kSkeleton:
      return editor_.ModelSquelette;
    case ModelGrid::kVarieties:
      return editor_.GVariete;
    default:
      return editor_.Models;
  }
}

// A skeleton shows the row behind its last position, where a new one begins.
void ModelGridModel::Renew() {
  const int rows = std::max(0, Grid().RowCount() - 1) + (kind_ == ModelGrid::kSkeleton ? 1 : 0);
  if (rows > rows_) {
    beginInsertRows({}, rows_, rows - 1);
    rows_ = rows;
    endInsertRows();
  } else if (rows < rows_) {
    beginRemoveRows({}, rows, rows_ - 1);
    rows_ = rows;
    endRemoveRows();
  }
  if (rows_ > 0) Q_EMIT dataChanged(index(0, 0), index(rows_ - 1, columnCount() - 1));
  Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

int ModelGridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int ModelGridModel::columnCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  if (kind_ == ModelGrid::kVarieties) return 2;
  return kind_ == ModelGrid::kSkeleton ? kHoursOfDay : kHoursOfDay + 1;
}

bool ModelGridModel::IsTotal(int row) const {
  return kind_ == ModelGrid::kModels && row == Grid().RowCount() - 1;
}

QVariant ModelGridModel::data(const QModelIndex& index, int role) const {
  const GridPlace place{index.row() + 1, index.column()};
  const bool share = kind_ == ModelGrid::kModels && place.column > 0;
  switch (role) {
    case Qt::DisplayRole: {
      const std::string& text = Grid().Cell(place.row, place.column);
      if (!share) return ShownText(text);
      const QString number = ShownText(text).remove(QStringLiteral(" %"));
      return number == QStringLiteral("0") && !IsTotal(place.row) ? QString() : number;
    }
    case Qt::TextAlignmentRole:
      return static_cast<int>(share ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter);
    case Qt::BackgroundRole:
      return ColourBehind(place);
    case Qt::ForegroundRole:
      return ColourOf(place);
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole:
      return supplyTip && !IsTotal(place.row) ? supplyTip(place) : QString();
    default:
      return {};
  }
}

QVariant ModelGridModel::ColourBehind(GridPlace place) const {
  if (IsTotal(place.row)) return Theme::kRaised;
  const std::string& text = Grid().Cell(place.row, place.column);
  if (kind_ == ModelGrid::kSkeleton && !text.empty()) {
    QColor colour = Theme::kMusic;
    colour.setAlpha(kFaintest);
    return colour;
  }
  const bool share = kind_ == ModelGrid::kModels && place.column > 0;
  const int percent = share ? std::clamp(ValInt(text), 0, kFullShare) : 0;
  if (percent == 0) return {};
  QColor colour = Theme::kIntro;
  colour.setAlpha(kFaintest + (kStrongest - kFaintest) * percent / kFullShare);
  return colour;
}

QVariant ModelGridModel::ColourOf(GridPlace place) const {
  const std::string& text = Grid().Cell(place.row, place.column);
  if (IsTotal(place.row)) {
    const bool whole = place.column == 0 || ValInt(text) == kFullShare;
    return whole ? Theme::kText : ValInt(text) == 0 ? Theme::kDim : Theme::kNote;
  }
  return runsDry && runsDry(place) ? Theme::kHeard : Theme::kText;
}

QVariant ModelGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical)
    return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
  if (role == Qt::DisplayRole) {
    const QString head = ShownText(Grid().Cell(0, section));
    const bool hour = kind_ == ModelGrid::kModels && section > 0;
    return hour ? head.left(2) : head;  // its column is narrow, the tip has it whole
  }
  if (role != Qt::ToolTipRole || kind_ == ModelGrid::kVarieties || !hourTip) return {};
  const int hour = kind_ == ModelGrid::kModels ? section - 1 : section;
  return hour < 0 ? QString() : hourTip(hour);
}

// --- the view ---

ModelGridView::ModelGridView(const ModelEditor& editor, ModelGrid kind, QWidget* parent)
    : QTableView(parent), kind_(kind), model_(new ModelGridModel(editor, kind, this)) {
  setModel(model_);
  MakeRowTable(*this);
  setItemDelegate(new CellPainter(this));
  setAlternatingRowColors(false);
  setShowGrid(true);
  setSelectionBehavior(QAbstractItemView::SelectItems);
  setSelectionMode(QAbstractItemView::SingleSelection);
  verticalHeader()->setVisible(kind == ModelGrid::kSkeleton);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  if (kind == ModelGrid::kModels) horizontalHeader()->setDefaultAlignment(Qt::AlignCenter);
}

void ModelGridView::Arrange(double unit) {
  ArrangeRowTable(*this, unit, 13, 7);
  verticalHeader()->setFont(font());
  ArrangeColumns();
}

void ModelGridView::ShowGrid() {
  const QModelIndex at = currentIndex();
  shows_ = true;
  model_->Renew();
  if (at.isValid() && at.row() >= model_->rowCount())
    setCurrentIndex(model_->index(model_->rowCount() - 1, at.column()));
  shows_ = false;
}

QModelIndex ModelGridView::IndexOf(GridPlace place) const {
  return model_->index(place.row - 1, place.column);
}

void ModelGridView::ArrangeColumns() {
  const QFontMetrics cells(font());
  const int genre = cells.horizontalAdvance(QStringLiteral("INSTRUMENTAL")) + kCellMargin;
  const int share = cells.horizontalAdvance(QStringLiteral("100")) + 4;
  std::vector<ColumnRoom> columns;
  for (int column = 0; column < model_->columnCount(); ++column) {
    if (kind_ == ModelGrid::kSkeleton)
      columns.push_back({genre, 1});
    else if (kind_ == ModelGrid::kVarieties)
      columns.push_back({column == 0 ? share + 2 * kCellMargin : genre, column});
    else
      columns.push_back({column == 0 ? genre : share, column == 0 ? 2 : 1});
  }
  ShareWidth(*this, columns);
}

void ModelGridView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  ArrangeColumns();
}

void ModelGridView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  if (current.isValid() && selected && !shows_) selected({current.row() + 1, current.column()});
}

// What is selected is told again: other rows may have moved it unheard.
bool ModelGridView::TellSelected() {
  const QModelIndex at = currentIndex();
  if (at.isValid()) selected({at.row() + 1, at.column()});
  return at.isValid();
}

void ModelGridView::OpenPopUp() {
  if (!TellSelected()) return;
  const QModelIndex at = currentIndex();
  scrollTo(at);
  const QRect cell = visualRect(at);
  popUp({viewport()->mapToGlobal(cell.topLeft()), cell.size()});
}

void ModelGridView::mouseReleaseEvent(QMouseEvent* event) {
  QTableView::mouseReleaseEvent(event);
  if (event->button() == Qt::LeftButton && indexAt(event->pos()) == currentIndex()) OpenPopUp();
}

void ModelGridView::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_F2:
      return OpenPopUp();
    case Qt::Key_Insert:
    case Qt::Key_Delete:
      if (pressed && TellSelected()) pressed(static_cast<Qt::Key>(event->key()));
      return;
    default:
      QTableView::keyPressEvent(event);
  }
}

}  // namespace zemo
