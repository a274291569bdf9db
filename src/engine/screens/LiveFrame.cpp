#include "engine/screens/LiveFrame.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <algorithm>
#include <string>
#include <utility>

#include "engine/LiveMode.h"
#include "engine/MainScreenTexts.h"
#include "engine/OperatorControls.h"
#include "engine/screens/OnAirListView.h"
#include "engine/screens/Theme.h"
#include "scheduling/LibrarySearch.h"
#include "settings/GenreList.h"
#include "station/Station.h"

namespace zemo {

namespace {
constexpr int kTwipsAPixel = 15;

template <typename Control>
Control* Named(const char* name, QWidget* parent) {
  auto* control = new Control(parent);
  control->setObjectName(QString::fromLatin1(name));
  return control;
}
}  // namespace

// --- the rows ---

void BrowseModel::Reload() {
  beginResetModel();
  rows_ = static_cast<int>(browsed_.rows.size());
  endResetModel();
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
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
  return QString::fromStdString(
      browsed_.rows[static_cast<size_t>(index.row())].cells[static_cast<size_t>(index.column())]);
}

QVariant BrowseModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return QString::fromStdString(browsed_.titles[static_cast<size_t>(section)]);
}

// --- the list ---

BrowseView::BrowseView(BrowseModel& model, OnAirListView& list, BrowseOrders orders,
                       QWidget* parent)
    : QTableView(parent), list_(list), orders_(std::move(orders)) {
  setObjectName(QStringLiteral("ListRech"));
  setModel(&model);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setAlternatingRowColors(true);
  setShowGrid(false);
  setWordWrap(false);
  setTabKeyNavigation(false);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  verticalHeader()->hide();
  horizontalHeader()->setSectionsClickable(true);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this,
          [this](int column) { orders_.sort(column); });
}

std::vector<int> BrowseView::SelectedRows() const {
  std::vector<int> rows;
  for (const QModelIndex& index : selectionModel()->selectedRows()) rows.push_back(index.row());
  std::sort(rows.begin(), rows.end());
  return rows;
}

void BrowseView::mousePressEvent(QMouseEvent* event) {
  pressed_ = event->pos();
  dragging_ = false;
  const QModelIndex index = indexAt(event->pos());
  pressedOnRow_ = index.isValid();
  // A press on a selected row may begin a drag of all of them.
  const bool plain = event->modifiers() == Qt::NoModifier;
  const bool keepSelection = plain && index.isValid() && selectionModel()->isSelected(index);
  if (!keepSelection) QTableView::mousePressEvent(event);
  if (index.isValid()) orders_.clicked(index.row());
}

// Its own drag over PL: the view keeps the mouse while the button is held.
void BrowseView::mouseMoveEvent(QMouseEvent* event) {
  if (!(event->buttons() & Qt::LeftButton) || !pressedOnRow_) return;
  if (!dragging_ && (event->pos() - pressed_).manhattanLength() < QApplication::startDragDistance())
    return;
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
}

void BrowseView::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->pos());
  if (event->button() == Qt::LeftButton && index.isValid()) orders_.openSelector(index.row());
}

// By keys: Insert and Return put the selected rows before PL's selected row, else at its end.
void BrowseView::keyPressEvent(QKeyEvent* event) {
  const bool insert = event->key() == Qt::Key_Insert || event->key() == Qt::Key_Return ||
                      event->key() == Qt::Key_Enter;
  if (!insert) return QTableView::keyPressEvent(event);
  if (!SelectedRows().empty()) orders_.drop(SelectedRows(), list_.SelectedRow());
}

// --- the frame ---

LiveFrame::LiveFrame(Station& station, OnAirListView& list, BrowseOrders orders, QWidget* parent)
    : QFrame(parent),
      station_(station),
      model_(new BrowseModel(station.screen.ListRech, this)),
      list_(list) {
  setObjectName(QStringLiteral("CadreRech"));
  setProperty("panel", true);
  setMinimumWidth(340);  // what PL leaves it on the smallest screen
  orders.sort = [this](int column) {
    ListRech_ColumnClick(station_, column);
    model_->Reload();
  };
  ListRech = new BrowseView(*model_, list, std::move(orders), this);
  MakeControls();
  LayOut();
  Connect();
}

void LiveFrame::MakeControls() {
  MenuLive = Named<QComboBox>("MenuLive", this);
  for (int item = 0; item <= static_cast<int>(BrowseList::kToday); ++item)
    MenuLive->addItem(QString());
  RechGenre = Named<QComboBox>("RechGenre", this);
  RechGenre->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  RechGenre->setMinimumWidth(60);
  Rech = Named<QLineEdit>("Rech", this);
  Rech->setClearButtonEnabled(true);
  Rech->setMinimumWidth(60);
  LblRech = Named<QLabel>("LblRech", this);
  LblRech->setBuddy(Rech);
  PictureNoJingle = Named<QLabel>("PictureNoJingle", this);
  CheckExtrait = Named<QCheckBox>("CheckExtrait", this);
  OptionDirect = Named<QCheckBox>("OptionDirect", this);
  CheckNoJingle = Named<QCheckBox>("CheckNoJingle", this);
  CmdMarqueurExtrait = Named<QPushButton>("CmdMarqueurExtrait", this);
}

void LiveFrame::LayOut() {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 5, 6, 5);
  layout->setSpacing(4);
  auto* search = new QHBoxLayout;
  search->setSpacing(6);
  search->addWidget(MenuLive);
  search->addWidget(LblRech);
  search->addWidget(Rech, 1);
  auto* choice = new QHBoxLayout;
  choice->setSpacing(6);
  choice->addWidget(RechGenre, 1);
  choice->addWidget(CheckExtrait);
  choice->addWidget(CmdMarqueurExtrait);
  choice->addWidget(PictureNoJingle, 1);
  auto* options = new QHBoxLayout;
  options->setSpacing(10);
  options->addWidget(OptionDirect);
  options->addWidget(CheckNoJingle);
  options->addStretch();
  layout->addLayout(search);
  layout->addLayout(choice);
  layout->addWidget(ListRech, 1);
  layout->addLayout(options);
}

void LiveFrame::Connect() {
  connect(MenuLive, &QComboBox::activated, this,
          [this](int item) { Browse(static_cast<BrowseList>(item)); });
  connect(Rech, &QLineEdit::textEdited, this, [this](const QString& text) {
    station_.screen.Rech = text.toStdString();
    Rech_Change(station_);
    model_->Reload();
  });
  connect(RechGenre, &QComboBox::activated, this, [this](int item) {
    if (item < 1) return;  // the heading
    RechGenre_Click(station_, RechGenre->itemText(item).toStdString());
    model_->Reload();
  });
  for (QCheckBox* check : {CheckExtrait, OptionDirect, CheckNoJingle})
    connect(check, &QCheckBox::clicked, this,
            [this, check](bool on) { SetCheck(station_, check->objectName().toStdString(), on); });
  connect(CmdMarqueurExtrait, &QPushButton::clicked, this,
          [this] { zemo::CmdMarqueurExtrait(station_, list_.SelectedRow()); });
}

void LiveFrame::LoadGenres() {
  std::vector<std::string> genres;
  LoadSaveGenres(station_, "Load", genres);
  RechGenre->clear();
  RechGenre->addItem(QString::fromStdString(TextOf("RechGenre", "0", langue_)));
  for (const std::string& genre : genres) RechGenre->addItem(QString::fromStdString(genre));
}

void LiveFrame::Arrange(double unit) {
  unit_ = unit;
  ListRech->setFont(Theme::Type(unit, 15));
  ListRech->horizontalHeader()->setFont(Theme::Type(unit, 13));
  ListRech->verticalHeader()->setDefaultSectionSize(QFontMetrics(ListRech->font()).height() +
                                                    Theme::Px(unit, 6));
  ArrangeColumns();
}

void LiveFrame::ArrangeColumns() {
  const BrowseRows& browsed = station_.screen.ListRech;
  for (int column = 0; column < kColumns; ++column) {
    const int twips = browsed.widths[static_cast<size_t>(column)];
    ListRech->setColumnHidden(column, twips == 0);
    if (twips > 0)
      ListRech->setColumnWidth(column, Theme::Px(unit_, double{1.0} * twips / kTwipsAPixel));
  }
}

void LiveFrame::Browse(BrowseList list) {
  zemo::MenuLive(station_, list);
  MenuLive->setCurrentIndex(static_cast<int>(list));
  model_->Reload();
  ArrangeColumns();
  Refresh();
  if (list != BrowseList::kMusic) return;
  {
    const QSignalBlocker quiet(Rech);
    Rech->setText(QString::fromStdString(station_.screen.Rech));
  }
  Rech->setFocus();
}

void LiveFrame::Refresh() {
  const MainScreen& screen = station_.screen;
  const bool search = screen.SearchVisible;
  for (QWidget* control : {static_cast<QWidget*>(LblRech), static_cast<QWidget*>(Rech),
                           static_cast<QWidget*>(RechGenre), static_cast<QWidget*>(CheckExtrait),
                           static_cast<QWidget*>(CmdMarqueurExtrait)})
    control->setVisible(search);
  PictureNoJingle->setVisible(screen.PictureNoJingleVisible);
  CheckExtrait->setChecked(station_.engine.CheckExtrait);
  OptionDirect->setChecked(station_.engine.OptionDirect);
  CheckNoJingle->setChecked(station_.engine.CheckNoJingle);
  if (model_->rowCount() != static_cast<int>(screen.ListRech.rows.size())) model_->Reload();
}

}  // namespace zemo
