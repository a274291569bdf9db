#include "settings/screens/SettingsWindow.h"

#include <QApplication>
#include <QGridLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QStackedWidget>
#include <QTabBar>
#include <QTableWidget>
#include <QVBoxLayout>
#include <utility>

#include "platform/Clock.h"
#include "platform/SettingsDevices.h"
#include "settings/SettingsControls.h"
#include "settings/SettingsScreen.h"
#include "settings/SettingsTexts.h"
#include "station/Station.h"
#include "ui/ButtonKeys.h"
#include "ui/ColourDialogue.h"
#include "ui/LevelMeter.h"
#include "ui/RowTable.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

// What the program reads at its start alone; an output is changed at once while it is closed.
constexpr const char* kWaiting[] = {"Buffers", "NbrBuffers", "Langue", "PlayCombo",
                                    "PlayPréecoute"};
constexpr int kBgrByte = 8;
constexpr int kLeastWidth = 800, kLeastHeight = 600;

}  // namespace

SettingsWindow::SettingsWindow(Station& station, SettingsSources sources)
    : OfficeWindow(station, "FrmConfig", "FrmConfig", {{}, SettingsCaptions()}),
      sources_(std::move(sources)),
      trial_(station) {
  setWindowTitle(Word("title"));
  body_ = new QWidget(this);
  setCentralWidget(body_);
  Config = new QTabBar(body_);
  Config->setObjectName(QStringLiteral("Config"));
  Config->setDrawBase(false);
  Config->setUsesScrollButtons(false);
  Config->setExpanding(false);
  pages_ = new QStackedWidget(body_);
  auto* layout = new QVBoxLayout(body_);
  layout->addWidget(Config);
  layout->addWidget(pages_, 1);
  MakePreferences();
  MakeMixPoints();
  MakeLevels();
  MakeSoundCard();
  MakeSpots();
  MakeStart();
  MakeOthers();
  MakeCommunication();
  MakeOptimisation();
  connect(Config, &QTabBar::currentChanged, pages_, &QStackedWidget::setCurrentIndex);
  GiveTabKeys(*Config);
  setMinimumSize(kLeastWidth, kLeastHeight);  // not that of the type of a larger window
  resize(1280, 800);
  Arrange();
}

SettingsScreen& SettingsWindow::Screen() const {
  return station_.settings;
}

bool SettingsWindow::IsOpen() const {
  return Screen().open;
}

// --- opening and closing ---

// The sound systems are asked for their devices, which may take them a while.
void SettingsWindow::Open() {
  WhenFree([this] { OpenNow(); });
}

void SettingsWindow::OpenNow() {
  const bool wasOpen = IsOpen();
  Settings::MnuParametrage_Click(station_, *sources_.devices);
  if (!IsOpen()) return;
  if (!wasOpen) {
    for (const char* name : kWaiting)
      atOpening_[name] = ControlText(Screen(), *FindSettingsControl(name));
    airOutput_ = Screen().PlayCombo;
  }
  ShowSelf();
  if (!wasOpen) Config->setFocus();
}

void SettingsWindow::Left() {
  if (QWidget* typed = focusWidget()) typed->clearFocus();  // its number is typed to its end
  EnterTypedTimes();
  trial_.End();
  Busy([this] { Settings::Form_Unload(station_); });  // it may ask
  if (!IsOpen()) Window::Left();
}

bool SettingsWindow::LeaveNow() {
  return OfficeWindow::LeaveNow() && !IsOpen();
}

// --- what is done ---

void SettingsWindow::Give(const SettingsControl& control, const std::string& value) {
  if (!IsOpen()) return;
  const bool taken = !SetControl(station_, *sources_.devices, control, value);
  ShowNote(control.name, taken ? QString() : WhyRefused(control, value));
  if (taken) {
    TakeOutput(control);
    ShowAll();
  }
}

// What was changed at once waits for nothing.
void SettingsWindow::TakeOutput(const SettingsControl& control) {
  if (control.in != StoredIn::kAudio) return;
  const bool air = control.name == std::string_view("PlayCombo");
  const bool open = air ? station_.Sound().State() == OutputState::kStarted
                        : !sources_.devices->PrelistenClosed();
  if (open) return;
  atOpening_[control.name] = ControlText(Screen(), control);
  if (air) airOutput_ = Screen().PlayCombo;
}

QString SettingsWindow::WhyRefused(const SettingsControl& control, const std::string&) const {
  if (control.kind == ControlKind::kText)
    return Texts().Word("RefusedLong", QString::number(control.most));
  if (control.refused && control.most > 0 &&
      control.refused(Screen(), std::to_string(control.most)))
    return Word("RefusedBuffers");
  const QString range =
      QStringLiteral("%1 %2 %3")
          .arg(QString::number(control.lowest), Word("RangeTo"), QString::number(control.most));
  return Texts().Word("RefusedRange", range);
}

QString SettingsWindow::WhyNoTime(Settings::TimeList list) const {
  const bool held = list == Settings::TimeList::kTopage ? Screen().topageHeld : Screen().timesHeld;
  return Word(held ? "RefusedTime" : "RefusedUnread");
}

void SettingsWindow::ShowNote(const char* control, const QString& why) {
  const auto note = notes_.find(control);
  if (note == notes_.end()) return;
  note->second->setText(why);
  note->second->setVisible(!why.isEmpty());
}

void SettingsWindow::PickColour(const SettingsControl& control) {
  const auto shown = static_cast<uint32_t>(ControlNumber(Screen(), control));
  OpenColourDialogue(*this, Word(control.name).remove(u'.'), Theme::FromBgr(shown),
                     [this, &control](const QColor& colour) {
                       const int bgr = colour.blue() << 2 * kBgrByte | colour.green() << kBgrByte |
                                       colour.red();
                       Give(control, std::to_string(bgr));
                     });
}

void SettingsWindow::EnterTime(Settings::TimeList list, QLineEdit& box) {
  if (!IsOpen()) return;
  const bool refused = Settings::EnterTime(station_, list, box.text().toStdString()).has_value();
  ShowNote(box.objectName().toUtf8().constData(), refused ? WhyNoTime(list) : QString());
  if (refused) return;
  box.clear();
  ShowAll();
}

void SettingsWindow::EnterMarker() {
  if (Screen().Topage.size() < Settings::kMostTopage)
    EnterTime(Settings::TimeList::kTopage, *ChEdit);
  else if (IsOpen())
    ShowNote("ChEdit", Word("RefusedFull"));
}

// Without Enter, before their day or the window is left.
void SettingsWindow::EnterTypedTimes() {
  for (const auto& [box, enter] : typedTimes_)
    if (!box->text().isEmpty()) enter();
}

void SettingsWindow::DeleteChosen(Settings::TimeList list, QListWidget& shown) {
  const int row = shown.currentRow();
  if (row < 0 || !IsOpen()) return;
  Settings::DeleteTime(station_, list, static_cast<size_t>(row));
  ShowAll();
}

void SettingsWindow::TickHour(const QListWidgetItem* entry) {
  const auto hour = static_cast<size_t>(entry->listWidget()->row(entry));
  std::vector<size_t> ticked;
  for (size_t at = 0; at < Screen().Instru.size(); ++at)
    if (at == hour ? entry->checkState() == Qt::Checked : Screen().Instru[at]) ticked.push_back(at);
  Settings::TickHours(station_, ticked);
}

void SettingsWindow::WriteFilter() {
  const bool refused =
      Settings::ChFiltre_KeyEnter(station_, ChFiltre->text().toStdString()).has_value();
  ShowNote("ChFiltre",
           refused ? Word(Screen().filtreHeld ? "RefusedTime" : "RefusedUnread") : QString());
  if (!refused) ShowAll();
}

void SettingsWindow::Try(const char* combo) {
  const SettingsControl& control = *FindSettingsControl(combo);
  const TrialResult result =
      trial_.Begin(static_cast<int>(ControlNumber(Screen(), control)), airOutput_);
  QString note;
  if (result == TrialResult::kNone) note = Word("TestNone");
  if (result == TrialResult::kInUse) note = Word("TestInUse");
  if (result == TrialResult::kRefused) note = Word("TestRefused");
  trial_.ended = [this, combo](bool refused) {
    if (refused) ShowNote(combo, Word("TestRefused"));
  };
  ShowNote(combo, note);
}

// --- what is shown ---

void SettingsWindow::ShowAll() {
  for (const auto& show : show_) show();
  ShowWaiting();
}

bool SettingsWindow::TakeOver() {
  Settings::TakeOver(station_);
  takingOver_ = true;
  ShowAll();
  takingOver_ = false;
  return true;
}

// A note that says why a value was not taken stays until the next value.
void SettingsWindow::ShowWaiting() {
  const QString words = Word("LblNextStart").trimmed();
  const auto mark = [&](const char* name, bool waits) {
    QLabel* note = notes_.at(name);
    if (waits)
      ShowNote(name, words);
    else if (note->text() == words)
      ShowNote(name, QString());
  };
  for (const auto& [name, before] : atOpening_)
    mark(name.c_str(), ControlText(Screen(), *FindSettingsControl(name)) != before);
}

void SettingsWindow::ArrangeParts(double unit) {
  for (QGridLayout* grid : grids_) {
    grid->setVerticalSpacing(Theme::Px(unit, 9));
    grid->setHorizontalSpacing(Theme::Px(unit, 10));
    const int room = Theme::Px(unit, 12);
    grid->setContentsMargins(room, room, room, room);
  }
  for (LevelMeter* meter : {levelLeft_, levelRight_}) meter->setFixedHeight(Theme::Px(unit, 9));
  Filtre->setFont(Theme::Type(unit, 15));
  Filtre->verticalHeader()->setDefaultSectionSize(Theme::Px(unit, 26));
  for (QLineEdit* box : {ChFiltre, ChEdit}) box->setFixedWidth(Theme::Px(unit, 110));
}

}  // namespace zemo
