#include "engine/screens/OnAirWindow.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QToolButton>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "engine/DayGridControls.h"
#include "engine/Forecast.h"
#include "engine/FreeMoment.h"
#include "engine/HourPip.h"
#include "engine/LiveMode.h"
#include "engine/MainScreenPicture.h"
#include "engine/NextUp.h"
#include "engine/OperatorControls.h"
#include "engine/OverlayButton.h"
#include "engine/ScreenSaver.h"
#include "engine/Startup.h"
#include "engine/StoredListMerge.h"
#include "engine/StoredPlaylists.h"
#include "engine/screens/BottomStrip.h"
#include "engine/screens/ControlBar.h"
#include "engine/screens/DayGridFrame.h"
#include "engine/screens/ForecastWindow.h"
#include "engine/screens/LiveFrame.h"
#include "engine/screens/LockDialog.h"
#include "engine/screens/OnAirListModel.h"
#include "engine/screens/OnAirListView.h"
#include "engine/screens/OnAirWindowTexts.h"
#include "engine/screens/SaverWindow.h"
#include "engine/screens/ScreenMenus.h"
#include "engine/screens/SkeletonWindow.h"
#include "engine/screens/StatusHeader.h"
#include "engine/screens/StoredListFrame.h"
#include "library/OnAirRows.h"
#include "platform/Desktop.h"
#include "platform/Waveforms.h"
#include "settings/LockDialogue.h"
#include "station/Station.h"
#include "traffic/DayGridComposition.h"
#include "ui/Named.h"
#include "ui/PaperPrint.h"
#include "ui/QtWords.h"
#include "ui/Theme.h"
#include "voicetrack/VoiceTrackTexts.h"

namespace zemo {

namespace {
constexpr int kDrawMs = 40;
constexpr int kObserveMs = 1000;
constexpr int kSmallScreen = 1024;  // up to this width PL has the first of its two fixed widths
constexpr int kSmallListWidth = 430;
constexpr double kListShare = 620.0 / 1280;
constexpr int kPrintPoints = 10;
}  // namespace

OnAirWindow::OnAirWindow(Station& station, ScreenSources sources)
    : Window(station, "FrmZemo", OnAirWindowTexts(), PlaceOfWindow::kGiven),
      sources_(std::move(sources)),
      follower_(station, *this, [this] { return TakeOver(); }) {
  sources_.questions = WithSystemDialogues(std::move(sources_.questions), Texts().Langue());
  setMinimumSize(800, 600 - 40);  // a full screen of the smallest size, less what a panel takes
  MakeParts();
  MakeMenus();
  LayOut();
  Translate();
  for (auto* button : findChildren<QAbstractButton*>()) button->installEventFilter(this);
  for (const char* box : {"Rech", "ChHeure"})
    findChild<QLineEdit*>(QString::fromLatin1(box))->installEventFilter(this);
  // The line in a combo box hands its focus to the box.
  findChild<QWidget*>(QStringLiteral("ComboPLS"))->installEventFilter(this);
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
    if (station_.browse.open) live_->SearchMusic();
  });
  // A text box takes its own typing back.
  auto* takeBack = new QShortcut(QKeySequence::Undo, this);
  takeBack->setAutoRepeat(false);
  connect(takeBack, &QShortcut::activated, this, [this] {
    const int64_t meant = station_.listOrders;
    WhenFree([this, meant] { TakeBack(meant); });
  });
  connect(&draw_, &QTimer::timeout, this, [this] { Refresh(); });
  connect(&observe_, &QTimer::timeout, this, [this] { Observe(); });
  Arrange();
  Refresh();
}

OnAirWindow::~OnAirWindow() = default;

void OnAirWindow::MakeParts() {
  auto* centre = new QWidget(this);
  setCentralWidget(centre);
  header_ = new StatusHeader(Texts(), centre);
  bar_ = new ControlBar(
      station_,
      {.toolbar = [this](Toolbar button) { PressToolbar(button); },
       .next = [this] { OnAir::CmdStop_Click(station_); },
       .request = [this] { WhenFree([this] { OnAir::CmdRequette_Click(station_); }); },
       .overlay = [this] { PlayOverlay(); },
       .info = [this] { ShowShortcuts(); },
       .voiceTrack =
           sources_.openVoiceTrack ? [this] { OpenVoiceTrack(); } : std::function<void()>()},
      Texts(), centre);
  MakeBody();
  bottom_ = new BottomStrip(Texts(), centre);
}

void OnAirWindow::MakeBody() {
  left_ = new QWidget(centralWidget());
  model_ = new OnAirListModel(this);
  list_ = new OnAirListView(*model_, ListOrders(), left_);
  const auto tell = [this](const QString& text) { Tell(text); };
  stored_ = new StoredListFrame(station_, tell, Texts(), left_);
  grid_ = new DayGridFrame(station_, sources_.questions,
                           {.selectedRow = [this] { return list_->SelectedRow(); },
                            .openSelector = [this](const std::string& f) { OpenSelector(f); },
                            .forecast = [this] { OpenForecast(); },
                            .tell = tell},
                           Texts(), left_);
  BrowseOrders browse;
  browse.drop = [this](const std::vector<int>& rows, int row) { DropBrowseRows(rows, row); };
  browse.clicked = [this](int) {
    OnAir::ListRech_MouseDown(station_);
    AdaptOverlay();
  };
  browse.selected = [this] { AdaptOverlay(); };
  browse.openCard = [this](int row) {
    const bool music = station_.browse.ListRech.list == BrowseList::kMusic;
    OpenCardOrTell(OnAir::CardOfBrowseRow(station_, row), music);
  };
  browse.tell = tell;
  browse.openSelector = [this](int row) {
    OpenSelector(OnAir::FileOfBrowseRow(station_.browse.ListRech, row));
  };
  live_ = new LiveFrame(station_, *list_, std::move(browse), Texts(), centralWidget());
}

// A row is named by its key: the tick may have taken rows off since the list was drawn.
OnAirListOrders OnAirWindow::ListOrders() {
  OnAirListOrders orders;
  orders.deleteRow = [this](int64_t key) { DeleteListRow(key); };
  orders.rightClick = [this](int64_t key) {
    OnAir::PL_RightClick(station_, station_.PL.RowOfKey(key));
    SyncList();
  };
  orders.drag = [this](int64_t key, int to) {
    OnAir::PL_DragDrop(station_, station_.PL.RowOfKey(key), to);
    SyncList();
  };
  orders.openCard = [this](int64_t key) {
    const int row = station_.PL.RowOfKey(key);
    OpenCardOrTell(OnAir::CardOfRow(station_, row), row > 0 && station_.PL.Row(row).code > 0);
  };
  orders.openSelector = [this](int64_t key) {
    if (const int row = station_.PL.RowOfKey(key); row > 0) OpenSelector(station_.PL.Row(row).file);
  };
  orders.touched = [this] { OnAir::PL_MouseDown(station_); };
  return orders;
}

void OnAirWindow::DropBrowseRows(const std::vector<int>& rows, int row) {
  const int before = station_.PL.Count();
  OnAir::DropBrowseRows(station_, rows, row);
  SyncList();
  const int added = station_.PL.Count() - before;
  if (added <= 0) return;
  list_->ShowRow(row > 0 ? std::min(row, station_.PL.Count()) : station_.PL.Count());
  Tell(Texts().Word("Added", QString::number(added)));
}

void OnAirWindow::DeleteListRow(int64_t key) {
  const auto takeOut = [this, key] {
    OnAir::PL_KeyDelete(station_, station_.PL.RowOfKey(key));
    SyncList();
  };
  if (OnAir::DeletingAsks(station_, station_.PL.RowOfKey(key)))
    WhenFree(takeOut);
  else
    takeOut();
}

void OnAirWindow::MakeMenus() {
  menus_ = std::make_unique<ScreenMenus>(
      station_, *menuBar(),
      MenuOrders{.library = sources_.openLibrary,
                 .campaigns = sources_.openCampaigns,
                 .models = sources_.openModels,
                 .report = sources_.openReport,
                 .settings = sources_.openSettings,
                 .storedLists = [this] { PressToolbar(Toolbar::kLive); },
                 .insertBreak = [this] { ShowGridForInsertion(); },
                 .composeGrid = [this] { WhenFree([this] { ComposeGrid(); }); },
                 .printList = [this] { WhenFree([this] { PrintList(); }); },
                 .forecast = [this] { OpenForecast(); },
                 .password = [this] { WhenFree([this] { AskPassword(); }); },
                 .quit = [this] { close(); }});
}

void OnAirWindow::LayOut() {
  auto* left = new QVBoxLayout(left_);
  left->setContentsMargins(0, 0, 0, 0);
  left->setSpacing(4);
  left->addWidget(stored_);
  left->addWidget(list_, 1);
  left->addWidget(grid_, 1);
  LblVerrou = new QLabel(this);
  LblVerrou->setObjectName(QStringLiteral("LblVerrou"));
  LblVerrou->setProperty("note", true);
  LblVerrou->hide();
  menuBar()->setCornerWidget(LblVerrou);
  auto* body = new QHBoxLayout;
  body->setSpacing(6);
  body->addWidget(left_, 1);
  body->addWidget(live_, 1);
  auto* layout = new QVBoxLayout(centralWidget());
  layout->setContentsMargins(6, 4, 6, 4);
  layout->setSpacing(5);
  layout->addWidget(bar_);
  layout->addWidget(header_);
  layout->addLayout(body, 1);
  layout->addWidget(bottom_);
}

void OnAirWindow::Translate() {
  setWindowTitle(QStringLiteral("Zemo Radio Pro"));
  Texts().Apply(*this);
  bar_->SetTexts();
  menus_->SetTexts(Texts());
  std::array<QString, kColumns> heads;
  for (int column = 0; column < kColumns; ++column)
    heads[static_cast<size_t>(column)] = Texts().Text("PL", std::to_string(column));
  OnAirListModel::FaultTexts faults;
  for (size_t fault = 0; fault < faults.size(); ++fault)
    faults[fault] = ShownText(ShownFault(static_cast<NeighbourFault>(fault), Texts().Langue()));
  model_->SetTexts(std::move(heads), faults, Texts().Langue());
  findChild<QLabel*>(QStringLiteral("PictureNoJingle"))->setText(Texts().Word("NoJingleOnAir"));
}

// --- measures ---

void OnAirWindow::ArrangeParts(double unit) {
  bar_->Arrange(unit);
  header_->Arrange(unit);
  bottom_->Arrange(unit);
  live_->Arrange(unit);
  stored_->Arrange(unit);
  grid_->Arrange(unit);
  list_->Arrange(unit);
  ArrangeBody();
}

void OnAirWindow::ArrangeBody() {
  const bool shared = station_.browse.open;
  if (!shared) {
    left_->setMinimumWidth(0);
    left_->setMaximumWidth(QWIDGETSIZE_MAX);
    return;
  }
  left_->setFixedWidth(width() <= kSmallScreen ? kSmallListWidth
                                               : static_cast<int>(width() * kListShare));
}

void OnAirWindow::resizeEvent(QResizeEvent* event) {
  ArrangeBody();
  Window::resizeEvent(event);
}

// --- drawing ---

int64_t OnAirWindow::NowMs() const {
  return station_.platform.clock.MonotonicMs();
}

// Nobody sees the meters of a minimized one.
int OnAirWindow::DrawMs() const {
  return isMinimized() ? kObserveMs : kDrawMs;
}

void OnAirWindow::Begin() {
  Observe();
  draw_.start(DrawMs());
  observe_.start(kObserveMs);
}

void OnAirWindow::Refresh() {
  const LocalDateTime now = station_.Now();
  const int64_t nowMs = NowMs();
  if (sources_.output) output_ = sources_.output();
  NotePeaks(health_, output_, nowMs);
  const MainScreen screen = PictureOf(station_);
  header_->ShowStation(station_, screen, now, output_, SilentOnAir(health_));
  planShiftMs_ = PlanShiftMs(station_, now, planShiftMs_);
  header_->ShowNext(LookAhead(station_, now, pip_, planShiftMs_));
  const std::string& file = station_.platform.sound.FileName(station_.engine.CurrentChannel);
  header_->ShowWave(
      station_, screen,
      sources_.waveforms && !file.empty() ? sources_.waveforms->PeaksOf(file) : nullptr);
  header_->ShowLevels(output_, nowMs);
  // While a request works on the list it stands as it was. One that failed leaves it told as
  // hidden, but no longer works: what airs is shown.
  if (!station_.requests.PLHidden || station_.engine.mainTimerHolds == 0) SyncList();
  bottom_->ShowStation(screen, station_.notices, nowMs);
  bar_->Refresh(screen);
  menus_->Refresh(screen);
  RefreshFrames(screen);
  LblVerrou->setVisible(station_.lists.Locked);
  RefreshSaver();
  RefreshSkeleton();
}

void OnAirWindow::RefreshFrames(const MainScreen& screen) {
  const bool browses = station_.browse.open, edits = station_.storedList.open,
             grid = station_.gridFrame.open;
  const int frames = browses * 4 + edits * 2 + (grid ? 1 : 0);
  if (frames != shownFrames_) {
    shownFrames_ = frames;
    live_->setVisible(browses);
    stored_->setVisible(edits);
    grid_->setVisible(grid);
    list_->setVisible(!grid);
    ArrangeBody();
    if (browses) live_->Opened();
  }
  const int row = list_->SelectedRow();
  bar_->ShowVoiceTrack(edits && row > 0);
  if (browses) live_->Refresh(screen);
  AdaptOverlay();
  if (edits) stored_->Refresh();
  if (grid) grid_->Refresh(screen);
  const Qt::CursorShape shape = station_.notices.hourglass ? Qt::WaitCursor : Qt::ArrowCursor;
  if (cursor().shape() != shape) setCursor(shape);
  if (station_.engine.ScreenLocked && isVisible() && !isMaximized()) showMaximized();
}

void OnAirWindow::RefreshSaver() {
  if (station_.saver.open == (saver_ != nullptr)) return;
  if (saver_) {
    saver_.release()->deleteLater();
    return;
  }
  saver_ =
      std::make_unique<SaverWindow>([this] { return QString::fromStdString(SaverText(station_)); },
                                    [this] { CloseScreenSaver(station_); });
  const QScreen* where = screen();
  saver_->setGeometry(where ? where->geometry() : geometry());
  saver_->Move();
  saver_->showFullScreen();
  saver_->activateWindow();
  saver_->setFocus();
}

void OnAirWindow::RefreshSkeleton() {
  if (skeleton_ && skeleton_->isVisible()) return skeleton_->Refresh();
  if (!station_.requests.SkeletonDialog.open) return;
  skeleton_ = new SkeletonWindow(station_, Texts().Langue(), Unit(), this);
  skeleton_->open();
}

void OnAirWindow::Observe() {
  try {
    station_.base.CheckCnf();
    if (station_.base.IsOpen() && NoTickBelow(station_)) {
      const NoLockWait atOnce(station_.base.Waiting());
      pip_ = !FindPip(station_, station_.Now()).file.empty();
      // Nothing of Qt's waits for the next opening of this window.
      SpeakQtWords(static_cast<int>(station_.base.CnfInt(Cnf::kLangue)));
    }
  } catch (const std::exception&) {
    LogCurrentException(station_, "OnAirWindow");
  }
  UpdateHealth(health_, station_, output_, sources_.freeDiskBytes ? sources_.freeDiskBytes() : -1,
               NowMs(), Texts().Langue());
  bottom_->ShowHealth(health_, NowMs());
}

// --- orders ---

void OnAirWindow::PressToolbar(Toolbar button) {
  OnAir::Toolbar_ButtonClick(station_, button);
  if (button == Toolbar::kLive) {
    shownFrames_ = -1;  // opens anew where it stands open
    RefreshFrames(PictureOf(station_));
    live_->TakeFocus();
  }
  Refresh();
  if (button == Toolbar::kAutomatic) {
    list_->setFocus();
    RequestWhereNothingPlays();
  }
  if (button == Toolbar::kDayGrid) grid_->TakeFocus();
}

// The list refills itself while an element plays: where a live list ran dry, nobody else asks.
void OnAirWindow::RequestWhereNothingPlays() {
  const bool silent = !station_.platform.sound.ElementSounds();
  if (!station_.engine.IsRunning || !station_.PL.Empty() || !silent) return;
  WhenFree([this] { OnAir::CmdRequette_Click(station_); });
}

void OnAirWindow::AskPassword() {
  Lock::MnuPasseWord_Click(station_);
  auto* dialog = new LockDialog(station_, Texts().Langue(), this);
  dialog->refused = [this] { Tell(Texts().Word("WrongPassword")); };
  dialog->open();
}

// The row is named by its key, as the tick may take rows off before the window opens.
void OnAirWindow::OpenVoiceTrack() {
  OnAir::RecordActivity(station_);
  const int row = list_->SelectedRow();
  if (row > 0 && row <= station_.PL.Count()) sources_.openVoiceTrack(station_.PL.Row(row).key);
}

void OnAirWindow::SyncList() {
  model_->Sync(station_.PL, planShiftMs_);
}

bool OnAirWindow::TakeOver() {
  if (!station_.storedList.open) return true;
  if (station_.storedList.saving) return false;
  if (!OnAir::TakeOverLists(station_)) Tell(Texts().Word("ListGone"));
  stored_->Refresh();
  return true;
}

void OnAirWindow::Tell(const QString& text) {
  bottom_->Tell(text, NowMs());
}

// Nothing where another order was given since: that one was not meant.
void OnAirWindow::TakeBack(int64_t orderMeant) {
  if (station_.listOrders != orderMeant) return;
  const bool again = station_.listUndo && station_.listUndo->tookBack;
  const bool done = UndoListOrder(station_);
  Tell(Texts().Word(!done ? "NothingToTakeBack" : again ? "GivenAgain" : "TakenBack"));
  if (station_.storedList.open) OnAir::LoadPlaylist(station_);
  SyncList();
}

void OnAirWindow::ComposeGrid() {
  if (station_.engine.composing) {  // begins anew, and says so itself
    ComposeTodaysGrid(station_);
    return;
  }
  const bool composed = ComposeTodaysGrid(station_);
  const QString breaks = QString::number(std::max(0, station_.GPubJour.RowCount() - 1));
  Tell(composed ? Texts().Word("GridComposed", breaks) : Texts().Word("GridNotComposed"));
}

void OnAirWindow::ShowGridForInsertion() {
  OnAir::OpenGridForInsertion(station_);
  Refresh();
  grid_->TakeFocus();
}

// The row that is chosen at this moment: numbers of rows do not outlive a search.
void OnAirWindow::PlayOverlay() {
  OnAir::BtnSurImpression_Click(station_, live_->ChosenRow());
}

void OnAirWindow::AdaptOverlay() {
  if (!live_) return;
  const BrowseRows& browsed = station_.browse.ListRech;
  const int row = live_->ChosenRow();
  const bool playable = !OnAir::FileOfBrowseRow(browsed, row).empty();
  if (!playable) return bar_->ShowOverlay(false, Texts().Text("BtnSurImpression", "tip"));
  const std::string title = browsed.rows.Cell(static_cast<size_t>(row), Col::kTitle);
  bar_->ShowOverlay(true, Texts().Word("OverlayOf", QString::fromStdString(title)));
}

void OnAirWindow::ShowLater() {
  QToolTip::showText(QCursor::pos(), Texts().Word("ComesLater"), this);
}

void OnAirWindow::OpenCardOrTell(int32_t code, bool hasCard) {
  if (code > 0) return OpenCard(code);
  if (hasCard && station_.lists.Locked) Tell(Texts().Word("CardsLocked"));
}

void OnAirWindow::OpenCard(int32_t code) {
  if (sources_.openMusicCard)
    sources_.openMusicCard(code);
  else
    ShowLater();
}

void OnAirWindow::OpenSelector(const std::string& storedPath) {
  if (sources_.openSelector)
    sources_.openSelector(storedPath);
  else
    ShowLater();
}

void OnAirWindow::PrintList() {
  PrintOnPaper(this, sources_.questions, OnAir::PrintedList(station_), "Courier", kPrintPoints,
               Texts().Langue());
}

void OnAirWindow::ShowShortcuts() {
  station_.platform.messages.Show(Texts().Word("Shortcuts").toStdString(),
                                  Texts().Word("ShortcutText").toStdString(), Buttons::kOk);
}

void OnAirWindow::OpenForecast() {
  if (!sources_.forecast) return;
  if (!forecast_) {
    forecast_ = new ForecastWindow(station_, *sources_.forecast, Texts().Langue(), this);
    forecast_->setAttribute(Qt::WA_DeleteOnClose);
  }
  forecast_->show();
  forecast_->raise();
  forecast_->Compute();
}

// --- events of the window ---

bool OnAirWindow::MayLeave() {
  if (!station_.engine.MainTimer) return false;
  // They work on the base, which is closed with the station.
  if (!station_.engine.IsRunning && sources_.leaveOthers && !sources_.leaveOthers()) {
    Tell(Texts().Word("LibraryWorks"));
    return false;
  }
  const bool may = OnAir::Form_QueryUnload(station_);
  if (!may) Tell(Texts().Word("StopFirst"));
  return may;
}

// It stands until the program goes.
void OnAirWindow::Left() {
  draw_.stop();
  observe_.stop();
  if (sources_.closed) sources_.closed();
}

void OnAirWindow::changeEvent(QEvent* event) {
  Window::changeEvent(event);
  const bool locked = station_.engine.ScreenLocked;
  if (event->type() != QEvent::WindowStateChange) return;
  if (locked && !isMaximized()) showMaximized();
  if (draw_.isActive()) draw_.setInterval(DrawMs());
}

bool OnAirWindow::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate && station_.base.IsOpen())
    OnAir::Form_Activate(station_, false);
  return Window::event(event);
}

bool OnAirWindow::eventFilter(QObject* watched, QEvent* event) {
  if (qobject_cast<QLineEdit*>(watched) || qobject_cast<QComboBox*>(watched)) {
    if (event->type() == QEvent::FocusIn) OnAir::TextBox_GotFocus(station_);
    if (event->type() == QEvent::FocusOut) OnAir::TextBox_LostFocus(station_);
    return false;
  }
  // Return works every button, since space is the engine's.
  auto* button = qobject_cast<QAbstractButton*>(watched);
  if (!button || event->type() != QEvent::KeyPress) return false;
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (key != Qt::Key_Return && key != Qt::Key_Enter) return false;
  button->click();
  return true;
}

}  // namespace zemo
