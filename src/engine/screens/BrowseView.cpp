#include "engine/screens/BrowseView.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QToolTip>
#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "engine/screens/OnAirListView.h"
#include "ui/RowTable.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

constexpr int kTwipsACharacter = 170;
constexpr int kOverColumn = 1;  // of jingles: yes or no
constexpr int kGenreOfAired = 2;
constexpr int kArrowRoom = 20;  // of a sorted column, and the head's margins
constexpr const char* kMoment = "2026/12/24  20:08:08";

// Heads that MenuLive does not set, and what must fit into a column; nullptr: its texts may be
// shortened.
struct Column {
  BrowseList list;
  int column;
  const char* control;  // of the texts
  const char* property;
  const char* sample;
};
constexpr Column kColumnsShown[] = {
    {BrowseList::kMusic, 2, "PL", "2", "00:00"},
    {BrowseList::kMusic, 3, "PL", "3", nullptr},
    {BrowseList::kMusic, 4, "PL", "4", nullptr},
    {BrowseList::kMusic, 10, "PL", "11", kMoment},
    {BrowseList::kJingles, 1, "", "", "Non"},
    {BrowseList::kJingles, 2, "PL", "2", "00:00"},
    {BrowseList::kJingles, 4, "PL", "11", kMoment},
    {BrowseList::kSpots, 1, "ListRech", "Category", nullptr},
    {BrowseList::kSpots, 2, "PL", "2", "00:00"},
    {BrowseList::kOthers, 1, "PL", "2", "00:00"},
    {BrowseList::kOthers, 3, "ListRech", "Key", "00"},
    {BrowseList::kToday, 2, "PL", "3", nullptr},
    {BrowseList::kToday, 3, "PL", "4", nullptr},
};

const Column* FindColumn(BrowseList list, int column) {
  const auto* found = std::find_if(
      std::begin(kColumnsShown), std::end(kColumnsShown),
      [&](const Column& shown) { return shown.list == list && shown.column == column; });
  return found == std::end(kColumnsShown) ? nullptr : found;
}

}  // namespace

// --- the rows ---

bool BrowseModel::Follow() {
  const auto rows = static_cast<int>(browsed_.rows.size());
  if (Others() || rows < rows_) {
    beginResetModel();
    rows_ = rows;
    generation_ = browsed_.rows.Generation();
    endResetModel();
    return true;
  }
  if (rows == rows_) return false;
  beginInsertRows({}, rows_, rows - 1);
  rows_ = rows;
  endInsertRows();
  return false;
}

int BrowseModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int BrowseModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant BrowseModel::data(const QModelIndex& index, int role) const {
  // The rows may have been cleared since the views were told of them.
  if (!index.isValid() || index.row() >= static_cast<int>(browsed_.rows.size())) return {};
  if (role != Qt::DisplayRole) return {};
  const std::string text = browsed_.rows.Cell(static_cast<size_t>(index.row()), index.column());
  const bool routines = browsed_.list == BrowseList::kJingles && index.column() == kOverColumn;
  const bool genres = browsed_.list == BrowseList::kToday && index.column() == kGenreOfAired;
  if (routines || genres) return texts_.OfRoutine(text);
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QVariant BrowseModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  const std::string& title = browsed_.titles[static_cast<size_t>(section)];
  if (!title.empty()) return QString::fromStdString(title);
  const Column* shown = FindColumn(browsed_.list, section);
  return shown ? texts_.Text(shown->control, shown->property) : QString();
}

// --- the list ---

BrowseView::BrowseView(BrowseModel& model, OnAirListView& list, BrowseOrders orders,
                       Translation texts, QWidget* parent)
    : QTableView(parent), model_(model), list_(list), orders_(std::move(orders)), texts_(texts) {
  setObjectName(QStringLiteral("ListRech"));
  setModel(&model);
  MakeRowTable(*this);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  horizontalHeader()->setSectionsClickable(true);
  horizontalHeader()->setStretchLastSection(true);
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this,
          [this](int column) { orders_.sort(column); });
}

// By the ranges: with a hundred thousand rows a list of indexes takes too long.
std::vector<int> BrowseView::SelectedRows() const {
  std::vector<int> rows;
  for (const QItemSelectionRange& range : selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

int BrowseView::ChosenRow() const {
  const QModelIndex current = currentIndex();
  if (current.isValid() && selectionModel()->isSelected(current)) return current.row();
  int first = -1;
  for (const QItemSelectionRange& range : selectionModel()->selection())
    if (first < 0 || range.top() < first) first = range.top();
  return first;
}

void BrowseView::ShowSort() {
  QHeaderView& heads = *horizontalHeader();
  const BrowseRows& browsed = model_.Browsed();
  const int column = browsed.sorted ? browsed.sortColumn : -1;
  if (heads.isSortIndicatorShown() != browsed.sorted) heads.setSortIndicatorShown(browsed.sorted);
  if (heads.sortIndicatorSection() != column || heads.sortIndicatorOrder() != Qt::AscendingOrder)
    heads.setSortIndicator(column, Qt::AscendingOrder);
}

// --- measures ---

void BrowseView::Arrange(double unit) {
  unit_ = unit;
  ArrangeRowTable(*this, unit, 15, 6);
  ArrangeColumns();
}

int BrowseView::LeastWidth(int column) const {
  const BrowseRows& browsed = model_.Browsed();
  const int head = QFontMetrics(horizontalHeader()->font())
                       .horizontalAdvance(model_.headerData(column, Qt::Horizontal).toString()) +
                   kArrowRoom;
  const Column* shown = FindColumn(browsed.list, column);
  if (shown && shown->sample)
    return std::max(head, QFontMetrics(font()).horizontalAdvance(QString::fromUtf8(shown->sample)) +
                              kCellMargin);
  const int characters = browsed.widths[static_cast<size_t>(column)] / kTwipsACharacter;
  return std::max(head, QFontMetrics(font()).averageCharWidth() * characters + kCellMargin);
}

// Where the view is narrow, what can be read in it comes before what can be scrolled to: the last
// columns give way. The room that is left goes to the columns whose texts may be long.
void BrowseView::ArrangeColumns() {
  const BrowseRows& browsed = model_.Browsed();
  std::array<ColumnRoom, kColumns> columns;
  int used = 0;
  for (int column = 0; column < kColumns; ++column) {
    const int twips = browsed.widths[static_cast<size_t>(column)];
    if (twips == 0) continue;
    const Column* shown = FindColumn(browsed.list, column);
    const bool grows = !shown || !shown->sample;
    const int least = LeastWidth(column);
    if (column > 1 && used + least > viewport()->width()) break;
    columns[static_cast<size_t>(column)] = {least, grows ? twips : 0};
    used += least;
  }
  ShareWidth(*this, columns);
}

void BrowseView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  ArrangeColumns();
}

// --- the mouse ---

void BrowseView::mousePressEvent(QMouseEvent* event) {
  pressed_ = event->pos();
  dragging_ = false;
  const QModelIndex index = indexAt(event->pos());
  pressedOnRow_ = index.isValid();
  // A press on a selected row may begin a drag of all of them.
  const bool plain = event->modifiers() == Qt::NoModifier;
  reduce_ = plain && index.isValid() && selectionModel()->isSelected(index);
  if (reduce_)
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
  else
    QTableView::mousePressEvent(event);
  if (index.isValid()) orders_.clicked(index.row());
}

// Its own drag over PL: the view keeps the mouse while the button is held.
void BrowseView::mouseMoveEvent(QMouseEvent* event) {
  if (!(event->buttons() & Qt::LeftButton) || !pressedOnRow_) return;
  if (!dragging_ && !DragBegins(pressed_, *event)) return;
  if (!dragging_) setCursor(Qt::DragCopyCursor);
  dragging_ = true;
  list_.ShowDrop(list_.DropRowAt(event->globalPosition().toPoint()));
}

void BrowseView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::RightButton) {
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid()) orders_.openCard(index.row());
    return;
  }
  if (event->button() != Qt::LeftButton) return;
  QTableView::mouseReleaseEvent(event);
  unsetCursor();
  const bool dropped = std::exchange(dragging_, false);
  const int row = dropped ? list_.DropRowAt(event->globalPosition().toPoint()) : 0;
  list_.ShowDrop(0);
  if (row > 0) orders_.drop(SelectedRows(), row);
  // A click alone chooses the one row.
  if (std::exchange(reduce_, false) && !dropped && indexAt(event->pos()) == currentIndex())
    setCurrentIndex(currentIndex());
}

void BrowseView::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->pos());
  if (event->button() == Qt::LeftButton && index.isValid()) orders_.openSelector(index.row());
}

// A text that is cut shows whole; elsewhere the tip tells what the list can do.
bool BrowseView::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QTableView::viewportEvent(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  if (!ShowCutText(*this, *help)) QToolTip::showText(help->globalPos(), toolTip(), viewport());
  return true;
}

// --- the keys ---

// Insert and Return put the selected rows before PL's selected row, else at its end.
void BrowseView::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  const bool insert = key == Qt::Key_Insert || key == Qt::Key_Return || key == Qt::Key_Enter;
  const bool menu =
      key == Qt::Key_Menu || (key == Qt::Key_F10 && event->modifiers() & Qt::ShiftModifier);
  if (menu) return ShowMenu();
  if (!insert) return QTableView::keyPressEvent(event);
  const std::vector<int> rows = SelectedRows();
  if (!rows.empty()) orders_.drop(rows, list_.SelectedRow());
}

void BrowseView::ShowMenu() {
  auto* menu = new QMenu(this);
  menu->setObjectName(QStringLiteral("MenuListRech"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const int row = ChosenRow();
  const auto add = [&](const char* word, std::function<void()> order) {
    QAction* action = menu->addAction(texts_.Word(word), this, std::move(order));
    action->setObjectName(QString::fromLatin1(word));
    action->setEnabled(row >= 0);
  };
  add("BrowseInsert", [this] { orders_.drop(SelectedRows(), list_.SelectedRow()); });
  add("BrowseListen", [this] { orders_.openSelector(ChosenRow()); });
  add("BrowseCard", [this] { orders_.openCard(ChosenRow()); });
  QMenu* sort = menu->addMenu(texts_.Word("BrowseSort"));
  sort->menuAction()->setObjectName(QStringLiteral("BrowseSort"));
  for (int column = 0; column < kColumns; ++column)
    if (model_.Browsed().widths[static_cast<size_t>(column)] != 0)  // also where none has room
      sort->addAction(model_.headerData(column, Qt::Horizontal).toString(), this,
                      [this, column] { orders_.sort(column); });
  const QRect place = row >= 0 ? visualRect(model_.index(row, 0)) : QRect();
  menu->popup(viewport()->mapToGlobal(place.bottomLeft() + QPoint(kCellMargin, 0)));
}

void BrowseView::selectionChanged(const QItemSelection& now, const QItemSelection& before) {
  QTableView::selectionChanged(now, before);
  orders_.selected();
}

}  // namespace zemo
