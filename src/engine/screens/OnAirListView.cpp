#include "engine/screens/OnAirListView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <algorithm>
#include <array>
#include <utility>

#include "engine/screens/OnAirListModel.h"
#include "ui/RowTable.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

// Columns as they stand from left to right, with their widths at unit 1 and the least width of the
// list at which they show.
struct Shown {
  int column;
  int width;
  int fromWidth;
};
constexpr std::array<Shown, 9> kShown = {{{Col::kPlanned, 104, 0},
                                          {Col::kTitle, 200, 0},
                                          {Col::kSecond, 200, 0},
                                          {Col::kLength, 62, 0},
                                          {Col::kGenre, 110, 560},  // kWideGenre where it has room
                                          {Col::kIntro, 56, 700},
                                          {Col::kVariety, 130, 860},
                                          {Col::kLastPlayed, 176, 1000},
                                          {Col::kExitMs, 84, 1200}}};
constexpr int kWideGenre = 150, kWideGenreFrom = 1100;
constexpr int kBarPixels = 4;
constexpr int kFigurePadding = 8;  // keeps figures off the text in the next column

// A bar in the colour of the kind at the left end of each row.
class KindBar : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyleOptionViewItem moved(option);
    moved.state &= ~QStyle::State_HasFocus;  // the row is marked, not the cell
    if (index.column() == Col::kPlanned) moved.rect.adjust(kBarPixels + 2, 0, 0, 0);
    if (OnAirListModel::IsFigure(index.column())) moved.rect.adjust(0, 0, -kFigurePadding, 0);
    QStyledItemDelegate::paint(painter, moved, index);
    if (index.column() != Col::kPlanned) return;
    QRect bar = option.rect.adjusted(1, 2, 0, -2);
    bar.setWidth(kBarPixels);
    painter->fillRect(bar, Theme::ColourOfElement(index.data(OnAirListModel::kCodeRole).toInt()));
  }
};

QLabel* HiddenLabel(const char* name, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(QString::fromLatin1(name));
  label->hide();
  return label;
}

}  // namespace

OnAirListView::OnAirListView(OnAirListModel& model, OnAirListOrders orders, QWidget* parent)
    : QTableView(parent),
      LblDepart(HiddenLabel("LblDepart", this)),
      LblArrivee(HiddenLabel("LblArrivee", this)),
      Bloc(HiddenLabel("Bloc", this)),
      model_(model),
      orders_(std::move(orders)) {
  setObjectName(QStringLiteral("PL"));
  setModel(&model);
  setItemDelegate(new KindBar(this));
  MakeRowTable(*this);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  horizontalHeader()->setMinimumSectionSize(20);
  for (size_t place = 0; place < kShown.size(); ++place)
    horizontalHeader()->moveSection(horizontalHeader()->visualIndex(kShown[place].column),
                                    static_cast<int>(place));
  Bloc->setText(QStringLiteral("False"));
}

int OnAirListView::SelectedRow() const {
  const QModelIndexList rows = selectionModel()->selectedRows();
  return rows.isEmpty() ? 0 : rows.first().row() + 1;
}

int64_t OnAirListView::SelectedKey() const {
  return model_.KeyOf(SelectedRow() - 1);
}

void OnAirListView::ShowRow(int row) {
  scrollTo(model_.index(row - 1, 0));
}

void OnAirListView::SelectRow(int row) {
  if (row < 1 || row > model_.rowCount()) {
    clearSelection();
    setCurrentIndex({});
    return;
  }
  setCurrentIndex(model_.index(row - 1, 0));
}

void OnAirListView::Arrange(double unit) {
  unit_ = unit;
  ArrangeRowTable(*this, unit, 16, 7);
  const QFontMetrics heads(horizontalHeader()->font());
  const auto widthOf = [&](const Shown& shown) {
    const QString head =
        model_.headerData(shown.column, Qt::Horizontal, Qt::DisplayRole).toString();
    const bool wide = shown.column == Col::kGenre && width() >= kWideGenreFrom * unit;
    return std::max(Theme::Px(unit, wide ? kWideGenre : shown.width),
                    heads.horizontalAdvance(head) + 14);
  };
  std::array<bool, kColumns> visible{};
  int fixed = 0;
  for (const Shown& shown : kShown) {
    if (width() < shown.fromWidth * unit) continue;
    visible[static_cast<size_t>(shown.column)] = true;
    if (shown.column != Col::kTitle && shown.column != Col::kSecond) fixed += widthOf(shown);
  }
  for (int column = 0; column < kColumns; ++column)
    setColumnHidden(column, !visible[static_cast<size_t>(column)]);
  for (const Shown& shown : kShown) setColumnWidth(shown.column, widthOf(shown));
  const int rest = viewport()->width() - fixed;
  setColumnWidth(Col::kTitle, rest / 2);
  setColumnWidth(Col::kSecond, rest - rest / 2);
}

int OnAirListView::RowAt(const QPoint& viewportPoint) const {
  return rowAt(viewportPoint.y()) + 1;
}

int OnAirListView::DropRowAt(const QPoint& global) const {
  if (!isVisible()) return 0;
  const QPoint point = viewport()->mapFromGlobal(global);
  if (!viewport()->rect().contains(point)) return 0;
  const int row = RowAt(point);
  return row > 0 ? row : model_.rowCount() + 1;
}

void OnAirListView::ShowDrop(int row) {
  if (row == dropRow_) return;
  dropRow_ = row;
  LblArrivee->setText(row > 0 ? QString::number(row) : QString());
  viewport()->update();
}

void OnAirListView::mousePressEvent(QMouseEvent* event) {
  orders_.touched();
  setFocus(Qt::MouseFocusReason);
  const int row = RowAt(event->pos());
  SelectRow(row);
  dragging_ = false;
  pressed_ = event->pos();
  pressedKey_ = model_.KeyOf(row - 1);
  if (event->button() != Qt::LeftButton) return;
  if (model_.rowCount() > 0 && row > 0) {
    Bloc->setText(QStringLiteral("True"));
    LblDepart->setText(QString::number(row));
  } else {
    ShowDrop(0);
  }
}

void OnAirListView::mouseMoveEvent(QMouseEvent* event) {
  if (!(event->buttons() & Qt::LeftButton) || LblDepart->text().isEmpty()) return;
  if (!dragging_ && !DragBegins(pressed_, *event)) return;
  if (!dragging_) setCursor(Qt::DragMoveCursor);
  dragging_ = true;
  const int row = DropRowAt(event->globalPosition().toPoint());
  if (row > 0) Bloc->setText(QStringLiteral("False"));
  ShowDrop(row);
}

void OnAirListView::Drop(int row) {
  if (row < 1 || pressedKey_ == 0) return;
  orders_.drag(pressedKey_, row);
  SelectRow(std::min(row, model_.rowCount()));
}

void OnAirListView::mouseReleaseEvent(QMouseEvent* event) {
  orders_.touched();
  if (event->button() == Qt::RightButton) {
    const int64_t key = SelectedKey();
    if (key != 0 && viewport()->rect().contains(event->pos())) orders_.rightClick(key);
    return;
  }
  if (event->button() != Qt::LeftButton) return;
  const bool dropped = std::exchange(dragging_, false);
  unsetCursor();
  if (dropped) Drop(DropRowAt(event->globalPosition().toPoint()));
  ShowDrop(0);
  LblDepart->clear();
  if (!dropped && event->modifiers() & Qt::ControlModifier && SelectedKey() != 0)
    orders_.openCard(SelectedKey());
}

void OnAirListView::mouseDoubleClickEvent(QMouseEvent* event) {
  const int64_t key = model_.KeyOf(RowAt(event->pos()) - 1);
  if (event->button() == Qt::LeftButton && key != 0) orders_.openSelector(key);
}

void OnAirListView::MoveSelected(int by) {
  const int from = SelectedRow();
  const int to = from + by;
  if (from < 1 || to < 1 || to > model_.rowCount()) return;
  orders_.drag(SelectedKey(), to);
  SelectRow(to);
}

// Return opens the selector and Ctrl+Return the card, as the double click and the click with Ctrl
// do.
void OnAirListView::keyPressEvent(QKeyEvent* event) {
  const bool alt = event->modifiers() & Qt::AltModifier;
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (event->key() == Qt::Key_Delete) {
    if (SelectedKey() != 0) orders_.deleteRow(SelectedKey());
  } else if (alt && event->key() == Qt::Key_Up) {
    MoveSelected(-1);
  } else if (alt && event->key() == Qt::Key_Down) {
    MoveSelected(1);
  } else if (enter && SelectedKey() != 0) {
    (event->modifiers() & Qt::ControlModifier ? orders_.openCard
                                              : orders_.openSelector)(SelectedKey());
  } else {
    QTableView::keyPressEvent(event);
  }
}

void OnAirListView::paintEvent(QPaintEvent* event) {
  QTableView::paintEvent(event);
  if (dropRow_ < 1) return;
  QPainter painter(viewport());
  const int count = model_.rowCount();
  const int height = verticalHeader()->defaultSectionSize();
  const int y = dropRow_ <= count ? rowViewportPosition(dropRow_ - 1)
                                  : (count > 0 ? rowViewportPosition(count - 1) + height : 0);
  painter.fillRect(0, std::max(0, y - 1), viewport()->width(), 3, Theme::kFocus);
}

void OnAirListView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  Arrange(unit_);
}

}  // namespace zemo
