#include "engine/screens/LiveFrame.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <string>
#include <utility>

#include "engine/LiveMode.h"
#include "engine/MainScreenPicture.h"
#include "engine/OperatorControls.h"
#include "engine/screens/OnAirListView.h"
#include "scheduling/LibrarySearch.h"
#include "settings/GenreList.h"
#include "station/Station.h"
#include "ui/Theme.h"

namespace zemo {

namespace {
constexpr int kReadAheadMs = 20;       // between slices of 7 ms, until the library is known
constexpr int kLookForWritesMs = 200;  // from then on
constexpr int kPageRows = 100;  // so many are shown as they come; the rest at the next drawing

template <typename Control>
Control* Named(const char* name, QWidget* parent) {
  auto* control = new Control(parent);
  control->setObjectName(QString::fromLatin1(name));
  return control;
}
}  // namespace

LiveFrame::LiveFrame(Station& station, OnAirListView& list, BrowseOrders orders, Translation texts,
                     QWidget* parent)
    : QFrame(parent),
      station_(station),
      model_(new BrowseModel(station.browse.ListRech, texts, this)),
      texts_(texts),
      tell_(orders.tell),
      list_(list) {
  setObjectName(QStringLiteral("CadreRech"));
  setProperty("panel", true);
  setMinimumWidth(340);  // what PL leaves it on the smallest screen
  orders.sort = [this](int column) {
    BeginColumnClick(station_, column);
    Work();
  };
  ListRech = new BrowseView(*model_, list, std::move(orders), texts, this);
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
  search->addWidget(PictureNoJingle, 1);
  search->addStretch();
  auto* choice = new QHBoxLayout;
  choice->setSpacing(6);
  choice->addWidget(RechGenre, 1);
  choice->addWidget(CheckExtrait);
  choice->addWidget(CmdMarqueurExtrait);
  auto* options = new QHBoxLayout;
  options->setSpacing(10);
  options->addWidget(OptionDirect);
  options->addWidget(CheckNoJingle);
  options->addStretch();
  layout->addLayout(search);
  layout->addLayout(choice);
  layout->addWidget(ListRech, 1);
  layout->addLayout(options);
  // The list stands where it is when the search gives way to another library.
  MenuLive->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  QSizePolicy keep = RechGenre->sizePolicy();
  keep.setRetainSizeWhenHidden(true);
  RechGenre->setSizePolicy(keep);
  QWidget* before = MenuLive;
  for (QWidget* next : {static_cast<QWidget*>(Rech), static_cast<QWidget*>(RechGenre),
                        static_cast<QWidget*>(CheckExtrait),
                        static_cast<QWidget*>(CmdMarqueurExtrait), static_cast<QWidget*>(ListRech),
                        static_cast<QWidget*>(OptionDirect), static_cast<QWidget*>(CheckNoJingle)})
    QWidget::setTabOrder(std::exchange(before, next), next);
}

void LiveFrame::Connect() {
  connect(MenuLive, &QComboBox::activated, this,
          [this](int item) { Browse(static_cast<BrowseList>(item)); });
  connect(Rech, &QLineEdit::textEdited, this, [this] {
    RechGenre->setCurrentIndex(0);
    SearchText();
  });
  connect(Rech, &QLineEdit::returnPressed, this, [this] { GoToResults(); });
  Rech->installEventFilter(this);
  connect(RechGenre, &QComboBox::activated, this, [this](int item) {
    if (item < 1) return SearchText();  // the heading
    BeginGenreSearch(station_, RechGenre->itemText(item).toStdString());
    Work();
  });
  connect(&work_, &QTimer::timeout, this, [this] { Work(); });
  connect(&readAhead_, &QTimer::timeout, this, [this] {
    const bool music = station_.browse.ListRech.list == BrowseList::kMusic;
    const bool idle = music && !work_.isActive();
    readAhead_.start(idle && ReadAheadSlice(station_) ? kReadAheadMs : kLookForWritesMs);
  });
  for (QCheckBox* check : {CheckExtrait, OptionDirect, CheckNoJingle})
    connect(check, &QCheckBox::clicked, this, [this, check](bool on) {
      OnAir::SetCheck(station_, check->objectName().toStdString(), on);
    });
  connect(CmdMarqueurExtrait, &QPushButton::clicked, this,
          [this] { OnAir::CmdMarqueurExtrait_Click(station_, list_.SelectedRow()); });
}

void LiveFrame::LoadGenres() {
  std::vector<std::string> genres;
  LoadSaveGenres(station_, "Load", genres);
  RechGenre->clear();
  RechGenre->addItem(texts_.Text("RechGenre", "0"));
  for (const std::string& genre : genres) RechGenre->addItem(QString::fromStdString(genre));
}

void LiveFrame::Arrange(double unit) {
  unit_ = unit;
  ListRech->Arrange(unit);
}

void LiveFrame::showEvent(QShowEvent* event) {
  QFrame::showEvent(event);
  readAhead_.start(kReadAheadMs);
}

bool LiveFrame::ReadingAhead() const {
  return readAhead_.isActive() && readAhead_.interval() == kReadAheadMs;
}

void LiveFrame::hideEvent(QHideEvent* event) {
  QFrame::hideEvent(event);
  readAhead_.stop();
}

// --- the search ---

void LiveFrame::SearchText() {
  station_.browse.Rech = Rech->text().toStdString();
  BeginTextSearch(station_);
  Work();
}

void LiveFrame::GoToResults() {
  if (model_->rowCount() == 0) return TellShortText();
  if (ListRech->ChosenRow() < 0) ListRech->selectRow(0);
  ListRech->setFocus(Qt::ShortcutFocusReason);
}

// Down goes on from the text to what it found.
bool LiveFrame::eventFilter(QObject* watched, QEvent* event) {
  const bool down = watched == Rech && event->type() == QEvent::KeyPress &&
                    static_cast<QKeyEvent*>(event)->key() == Qt::Key_Down;
  if (down) GoToResults();
  return down;
}

void LiveFrame::TellShortText() {
  const int wanted = station_.browse.charactersWanted;
  const bool tooShort = wanted > 0 && !Rech->text().trimmed().isEmpty();
  if (tooShort)
    tell_(texts_.Word("MoreCharacters", QString::number(wanted)));
  else if (toldShort_)
    tell_({});
  toldShort_ = tooShort;
}

// A slice now; the rest between the ticks, each in its turn of the event loop.
void LiveFrame::Work() {
  const SearchTurn turn = SearchSlice(station_);
  if (turn == SearchTurn::kDone)
    work_.stop();
  else
    work_.start(turn == SearchTurn::kMore ? 0 : kAskAgainMs);
  if (turn == SearchTurn::kDone) TellShortText();
  if (turn == SearchTurn::kDone || model_->Others() || model_->rowCount() < kPageRows) ShowRows();
}

void LiveFrame::ShowRows() {
  if (model_->Follow()) ListRech->scrollToTop();
  ListRech->ShowSort();
  ListRech->viewport()->update();
}

int LiveFrame::ChosenRow() const {
  const bool shown = station_.browse.open && !model_->Others();
  return shown ? ListRech->ChosenRow() : -1;
}

void LiveFrame::SearchMusic() {
  if (station_.browse.ListRech.list != BrowseList::kMusic) return Browse(BrowseList::kMusic);
  Rech->setFocus(Qt::ShortcutFocusReason);
  Rech->selectAll();
}

void LiveFrame::Browse(BrowseList list) {
  OnAir::MenuLive_Click(station_, list);
  ShowList();
  if (list == BrowseList::kMusic) Rech->setFocus();
}

void LiveFrame::Opened() {
  LoadGenres();
  ShowList();
}

// The list that was chosen, from its first row; a search that was begun with it goes on from here.
void LiveFrame::ShowList() {
  const BrowseList list = station_.browse.ListRech.list;
  work_.stop();
  MenuLive->setCurrentIndex(static_cast<int>(list));
  RechGenre->setCurrentIndex(0);
  ShowRows();
  ListRech->Arrange(unit_);
  Refresh(PictureOf(station_));
  if (list == BrowseList::kMusic && !station_.browse.Rech.empty()) Work();
}

void LiveFrame::TakeFocus() {
  Rech->setFocus();
}

void LiveFrame::Refresh(const MainScreen& screen) {
  const bool search = screen.SearchVisible;
  for (QWidget* control : {static_cast<QWidget*>(LblRech), static_cast<QWidget*>(Rech),
                           static_cast<QWidget*>(RechGenre), static_cast<QWidget*>(CheckExtrait),
                           static_cast<QWidget*>(CmdMarqueurExtrait)})
    control->setVisible(search);
  PictureNoJingle->setVisible(screen.PictureNoJingleVisible);
  CheckExtrait->setChecked(station_.engine.CheckExtrait);
  OptionDirect->setChecked(station_.engine.OptionDirect);
  CheckNoJingle->setChecked(station_.engine.CheckNoJingle);
  if (model_->Follow()) ListRech->scrollToTop();
  ListRech->ShowSort();
}

}  // namespace zemo
