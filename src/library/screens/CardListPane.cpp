#include "library/screens/CardListPane.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QHelpEvent>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <string>
#include <utility>

#include "ui/Theme.h"
#include "ui/Translation.h"

namespace zemo {

namespace {

constexpr int kFilledBy = 0;       // the column by which every list is filled
constexpr int kCardHeadRoom = 22;  // around its text

std::vector<QString> HeadsOf(const CardColumns& columns, const Translation& texts) {
  std::vector<QString> heads;
  for (int column = 0; column < columns.count; ++column)
    heads.push_back(texts.Word(std::string(columns.list) + "." + std::to_string(column)));
  return heads;
}

}  // namespace

// --- the table ---

void CardTable::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && currentIndex().isValid() && showCard) return showCard();
  QTableView::keyPressEvent(event);
}

void CardTable::mouseDoubleClickEvent(QMouseEvent* event) {
  QTableView::mouseDoubleClickEvent(event);
  if (event->button() == Qt::LeftButton && indexAt(event->pos()).isValid() && showCard) showCard();
}

bool CardTable::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::Resize && resized) resized();
  if (event->type() == QEvent::ToolTip) return ShowCutText(*this, *static_cast<QHelpEvent*>(event));
  return QTableView::viewportEvent(event);
}

// --- the pane ---

CardListPane::CardListPane(CardList& list, const CardColumns& columns,
                           std::vector<CardColumnRoom> rooms, const char* search,
                           CardListOrders orders, const Translation& texts, QWidget* parent)
    : QWidget(parent), list_(list), rooms_(std::move(rooms)), orders_(std::move(orders)) {
  model_ = new CardListModel(list, columns, HeadsOf(columns, texts), this);
  search_ = new QLineEdit(this);
  search_->setObjectName(QString::fromLatin1(search));
  search_->setPlaceholderText(texts.Word("SearchCards"));
  search_->setAccessibleName(texts.Word("SearchCards"));
  search_->setClearButtonEnabled(true);
  BtnFiche = new QPushButton(texts.Word("BtnFiche"), this);
  BtnFiche->setObjectName(QStringLiteral("BtnFiche%1").arg(QString::fromLatin1(columns.list + 2)));
  table_ = new CardTable(this);
  table_->setObjectName(QString::fromLatin1(columns.list));
  table_->setAccessibleName(texts.Word("CardList"));
  table_->setModel(model_);
  table_->showCard = orders_.showCard;
  table_->resized = [this] { ArrangeRows(); };
  MakeRowTable(*table_);
  table_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  table_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  table_->horizontalHeader()->setSectionsClickable(true);
  table_->horizontalHeader()->setToolTip(texts.Word("CardList.Tip"));
  table_->horizontalHeader()->setSortIndicator(kFilledBy, Qt::AscendingOrder);
  table_->horizontalHeader()->setSortIndicatorShown(true);
  table_->horizontalHeader()->setStretchLastSection(true);
  auto* top = new QHBoxLayout;
  top->addWidget(search_, 1);
  top->addWidget(BtnFiche);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addLayout(top);
  layout->addWidget(table_, 1);
  connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) { Search(text); });
  connect(BtnFiche, &QPushButton::clicked, this, [this] { orders_.showCard(); });
  connect(table_->horizontalHeader(), &QHeaderView::sectionClicked, this,
          [this](int column) { Sort(column); });
  connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
    if (!showing_) Choose();
  });
}

void CardListPane::ShowBack(bool shown) {
  BtnFiche->setVisible(shown);
}

void CardListPane::TakeFocus() {
  table_->setFocus();
}

// By the ranges: with a hundred thousand rows a list of indexes takes too long.
void CardListPane::Choose() {
  std::vector<size_t> rows;
  const int current = table_->currentIndex().row();
  bool chosen = false;
  for (const QItemSelectionRange& range : table_->selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row)
      if (row == current)
        chosen = true;
      else
        rows.push_back(model_->ListRow(row));
  if (chosen) rows.push_back(model_->ListRow(current));
  orders_.choose(rows);
}

void CardListPane::KeepCodes() {
  selected_.clear();
  for (size_t row = 0; row < list_.Count(); ++row)
    if (list_.selected[row]) selected_.insert(list_.Code(row));
}

void CardListPane::ShowRows(int32_t code) {
  const int place = table_->verticalScrollBar()->value();
  showing_ = true;
  if (!model_->Follow()) {
    KeepCodes();
    table_->viewport()->update();  // a row may read otherwise
  } else {
    table_->verticalScrollBar()->setValue(place);
    ArrangeColumns();
  }
  SelectKept(code);
  showing_ = false;
}

// What cannot be seen is not selected: nothing is deleted that was searched away.
void CardListPane::SelectKept(int32_t code) {
  if (!selected_.contains(code)) selected_ = {code};
  for (size_t row = 0; row < list_.Count(); ++row)
    list_.selected[row] = selected_.contains(list_.Code(row)) && model_->IsShown(row);
  ShowSelection(model_->RowOfCode(code));
  KeepCodes();
}

void CardListPane::ShowSelection(int currentRow) {
  QItemSelection rows;
  const int count = model_->rowCount();
  const int last = model_->columnCount() - 1;
  for (int row = 0; row < count; ++row) {
    if (!list_.selected[model_->ListRow(row)]) continue;
    const int first = row;
    while (row + 1 < count && list_.selected[model_->ListRow(row + 1)]) ++row;
    rows.select(model_->index(first, 0), model_->index(row, last));
  }
  QItemSelectionModel& selection = *table_->selectionModel();
  selection.select(rows, QItemSelectionModel::ClearAndSelect);
  const QModelIndex current = model_->index(currentRow, 0);
  if (currentRow < 0 || current == table_->currentIndex().siblingAtColumn(0)) return;
  selection.setCurrentIndex(current, QItemSelectionModel::NoUpdate);
  table_->scrollTo(current);
}

void CardListPane::Sort(int column) {
  const int sorted = model_->SortColumn() < 0 ? kFilledBy : model_->SortColumn();
  const bool again = sorted == column && model_->Order() == Qt::AscendingOrder;
  const Qt::SortOrder order = again ? Qt::DescendingOrder : Qt::AscendingOrder;
  const QModelIndex current = table_->currentIndex();
  const int32_t code = current.isValid() ? list_.Code(model_->ListRow(current.row())) : 0;
  showing_ = true;
  model_->SortBy(column, order);
  table_->horizontalHeader()->setSortIndicator(column, order);
  ArrangeColumns();
  ShowSelection(model_->RowOfCode(code));
  showing_ = false;
}

void CardListPane::Search(const QString& text) {
  const QModelIndex current = table_->currentIndex();
  const int32_t code = current.isValid() ? list_.Code(model_->ListRow(current.row())) : 0;
  showing_ = true;
  KeepCodes();
  model_->Search(text);
  for (size_t row = 0; row < list_.Count(); ++row)
    if (!model_->IsShown(row)) list_.selected[row] = false;
  ShowSelection(model_->RowOfCode(code));
  showing_ = false;
}

// --- measures ---

void CardListPane::Arrange(double unit) {
  ArrangeRowTable(*table_, unit, 14, 6);
  ArrangeColumns();
  ArrangeRows();
}

// The table is as high as whole rows are.
void CardListPane::ArrangeRows() {
  const int around = table_->height() - table_->viewport()->height();
  const int rows = height() - table_->y() - around;
  const int left = std::max(0, rows) % table_->verticalHeader()->defaultSectionSize();
  layout()->setContentsMargins(0, 0, 0, left);
}

void CardListPane::ArrangeColumns() {
  std::vector<ColumnRoom> columns;
  const QHeaderView& header = *table_->horizontalHeader();
  const QFontMetrics heads(header.font());
  const QFontMetrics cells(table_->font());
  int used = 0;
  for (size_t column = 0; column < rooms_.size(); ++column) {
    const QString head =
        model_->headerData(static_cast<int>(column), Qt::Horizontal, Qt::DisplayRole).toString();
    const int sample = cells.horizontalAdvance(QString::fromUtf8(rooms_[column].sample));
    const bool sorted = header.sortIndicatorSection() == static_cast<int>(column);
    const int headRoom = sorted ? header.sectionSizeHint(static_cast<int>(column))
                                : heads.horizontalAdvance(head) + kCardHeadRoom;
    const int least = std::max(headRoom, sample + kCellMargin);
    // Where the pane is narrow the last columns give way.
    const bool fits = columns.size() < 2 || used + least <= table_->viewport()->width();
    columns.push_back({fits ? least : 0, rooms_[column].share});
    if (fits) used += least;
  }
  ShareWidth(*table_, columns);
}

void CardListPane::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  ArrangeColumns();
}

}  // namespace zemo
