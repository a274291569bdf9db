#include "traffic/screens/CampaignWindow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <string>
#include <utility>

#include "station/Station.h"
#include "station/TimeForms.h"
#include "traffic/CampaignFiles.h"
#include "traffic/CampaignMarking.h"
#include "traffic/CampaignSheet.h"
#include "traffic/CampaignTexts.h"
#include "traffic/GridDamageTexts.h"
#include "traffic/screens/CampaignGridView.h"
#include "traffic/screens/CampaignLegend.h"
#include "traffic/screens/CampaignOverview.h"
#include "ui/ButtonKeys.h"
#include "ui/CalendarWindow.h"
#include "ui/PaperPrint.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

constexpr int kOverviewShare = 3, kGridShare = 2;

QHBoxLayout* BarOf(QWidget& bar) {
  auto* layout = new QHBoxLayout(&bar);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(5);
  return layout;
}

}  // namespace

CampaignWindow::CampaignWindow(Station& station, CampaignSources sources)
    : OfficeWindow(station, "FrmPub", "GrillePub", {{}, CampaignCaptions()}),
      sources_(std::move(sources)),
      reading_(
          station, "GrillePub", [this] { return loads_.Slice(station_); },
          [this] { ShowLoads(); }) {
  sources_.questions = WithSystemDialogues(std::move(sources_.questions), Texts().Langue());
  setWindowTitle(Texts().Word("title"));
  MakeOrders();
  auto* body = new QWidget(this);
  setCentralWidget(body);
  page_ = new CampaignPage(station_, editor_, orders_, Texts(), body);
  auto* layout = new QVBoxLayout(body);
  layout->setContentsMargins(8, 6, 8, 8);
  layout->addWidget(RecordBar());
  layout->addWidget(page_);
  layout->addWidget(GridBar());
  MakeOverview();
  MakeGrid();
  auto* below = new QHBoxLayout;
  below->addWidget(PLPub, kOverviewShare);
  below->addWidget(GPub, kGridShare);
  layout->addLayout(below, 1);
  legend_ = new CampaignLegend(Texts(), body);
  layout->addWidget(legend_);
  resize(1280, 800);
  Arrange();
}

void CampaignWindow::MakeOrders() {
  orders_.run = [this](const std::function<void()>& order) { Run(order); };
  orders_.work = [this](std::function<void()> order) { Work(std::move(order)); };
  orders_.chooseFile = [this] { ChooseFile(); };
  orders_.pickDay = [this](int mode) { PickDay(mode); };
  orders_.shown = [this] { ShowFields(); };
}

// --- parts ---

QPushButton* CampaignWindow::Button(const char* name, std::function<void()> pressed,
                                    QWidget* parent) {
  auto* made = Named(new QPushButton(Texts().Word(name), parent), name);
  connect(made, &QPushButton::clicked, this, std::move(pressed));
  return made;
}

QPushButton* CampaignWindow::Working(const char* name, Routine routine, const QKeySequence& keys,
                                     QWidget* parent) {
  QPushButton* made = Button(
      name,
      [this, routine = std::move(routine)] {
        Work([this, routine] { routine(station_, editor_); });
      },
      parent);
  GiveKeys(*made, keys);
  return made;
}

QWidget* CampaignWindow::RecordBar() {
  auto* bar = new QWidget(centralWidget());
  QHBoxLayout* layout = BarOf(*bar);
  const auto add = [&](const char* name, const Routine& routine, const QKeySequence& keys,
                       const bool* enabled = nullptr) {
    QPushButton* made = Working(name, routine, keys, bar);
    if (enabled) offAtTimes_.emplace_back(made, enabled);
    layout->addWidget(made);
  };
  add("BtnNew", Campaigns::BtnNew_Click, Qt::CTRL | Qt::Key_N, &editor_.BtnNewEnabled);
  // One of the two is off at any time.
  add("BtnAjouter", Campaigns::BtnAjouter_Click, Qt::CTRL | Qt::Key_S, &editor_.BtnAjouterEnabled);
  add("BtnReplacer", Campaigns::BtnReplacer_Click, Qt::CTRL | Qt::Key_S,
      &editor_.BtnReplacerEnabled);
  add("BtnDelete", Campaigns::BtnDelete_Click, {}, &editor_.BtnDeleteEnabled);
  layout->addStretch(1);
  add("BtnDebut", Campaigns::BtnDebut_Click, Qt::ALT | Qt::Key_Home);
  add("BtnMoins", Campaigns::BtnMoins_Click, Qt::ALT | Qt::Key_PageUp);
  LblInfoPub = Named(new QLabel(bar), "LblInfoPub");
  layout->addWidget(LblInfoPub);
  add("BtnPlus", Campaigns::BtnPlus_Click, Qt::ALT | Qt::Key_PageDown);
  add("BtnFin", Campaigns::BtnFin_Click, Qt::ALT | Qt::Key_End);
  layout->addStretch(1);
  add(
      "BtnRecherhe",
      [this](Station& station, CampaignEditor& editor) {
        Campaigns::BtnRecherhe_Click(station, editor);
        PLPub->ShowRows();
      },
      Qt::CTRL | Qt::Key_F);
  QPushButton* print = Button(
      "BtnImprimer", [this] { Print(); }, bar);
  GiveKeys(*print, Qt::CTRL | Qt::Key_P);
  layout->addWidget(print);
  add(
      "ImgMemo", [](Station& station, CampaignEditor&) { Campaigns::ImgMemo_Click(station); },
      Qt::Key_F1);
  return bar;
}

QWidget* CampaignWindow::GridBar() {
  auto* bar = new QWidget(centralWidget());
  QHBoxLayout* layout = BarOf(*bar);
  layout->addWidget(Working("CmdInitGrille", Campaigns::CmdInitGrille_Click, Qt::Key_F5, bar));
  const auto onGrid = [&](const char* name, GridRoutine routine, const QKeySequence& keys) {
    QPushButton* made = Button(
        name, [this, routine] { RunOnGrid(routine); }, bar);
    GiveKeys(*made, keys);
    layout->addWidget(made);
  };
  onGrid("BtnCopyGrille", Campaigns::BtnCopyGrille_Click, Qt::CTRL | Qt::SHIFT | Qt::Key_C);
  onGrid("BtnCollerGrille", Campaigns::BtnCollerGrille_Click, Qt::CTRL | Qt::SHIFT | Qt::Key_V);
  onGrid("BtnDecalY", Campaigns::BtnDecalY_Click, Qt::CTRL | Qt::Key_D);
  note_ = new QLabel(bar);
  note_->setProperty("note", true);
  layout->addWidget(note_);
  layout->addStretch(1);
  auto* words = new QLabel(Texts().Word("For.LblTotalMsg"), bar);
  words->setProperty("dim", true);
  layout->addWidget(words);
  LblTotalMsg = Named(new QLabel(bar), "LblTotalMsg");
  LblTotalJours = Named(new QLabel(bar), "LblTotalJours");
  layout->addWidget(LblTotalMsg);
  layout->addSpacing(12);
  layout->addWidget(LblTotalJours);
  return bar;
}

void CampaignWindow::MakeOverview() {
  PLPub = new CampaignOverview(editor_, Texts(), centralWidget());
  PLPub->sorted = [this](int column) {
    Run([this, column] {
      Campaigns::PLPub_ColumnClick(editor_, column);
      PLPub->ShowRows();
    });
  };
  PLPub->chosen = [this](size_t line) {
    Work([this, line] { Campaigns::PLPub_DblClick(station_, editor_, line); });
  };
  PLPub->hide();
}

void CampaignWindow::MakeGrid() {
  GPub = Named(new CampaignGridView(editor_, loads_, Texts(), centralWidget()), "GPub");
  GPub->setAccessibleName(Texts().Word("For.GPub"));
  GPub->setToolTip(Texts().Word("GridTip"));
  GPub->setAccessibleDescription(GPub->toolTip());
  GPub->takesMarks = [this] { return Campaigns::TakesMarks(editor_); };
  GPub->marked = [this](MouseButton button, bool shift, bool control, GridPlace place) {
    const auto order = [this, button, shift, control, place] {
      Campaigns::GPub_MouseUp(station_, editor_, button, shift, control, place);
    };
    // Without an open campaign it is told, which asks.
    if (Campaigns::TakesMarks(editor_))
      Run(order);
    else
      Work(order);
  };
  GPub->painted = [this](const std::vector<GridPlace>& places, bool cross) {
    Run([&] { Campaigns::GPub_MouseMove(station_, editor_, places, cross); });
  };
  const auto onKeys = [this](QKeySequence::StandardKey keys, GridRoutine routine) {
    auto* made = new QShortcut(keys, GPub);
    made->setContext(Qt::WidgetShortcut);  // in a field they are the field's
    connect(made, &QShortcut::activated, this, [this, routine] { RunOnGrid(routine); });
  };
  onKeys(QKeySequence::Copy, Campaigns::BtnCopyGrille_Click);
  onKeys(QKeySequence::Paste, Campaigns::BtnCollerGrille_Click);
}

// --- opening and closing ---

void CampaignWindow::Open() {
  if (!Barred()) Campaigns::MnuHPubs_Click(station_, editor_);
  ShowSelf();
}

// The composition of the day yields: until its end the window is not made anew.
void CampaignWindow::Left() {
  Busy([this] { Campaigns::Form_Unload(station_, editor_); });
  Window::Left();
}

// --- orders ---

void CampaignWindow::RunOnGrid(GridRoutine routine) {
  Run([this, routine] { routine(editor_); });
}

void CampaignWindow::ChooseFile() {
  if (!sources_.chooseFiles || !editor_.open || Barred()) return;
  sources_.chooseFiles(this, Campaigns::FileForSelector(station_, editor_), {},
                       [window = QPointer(this)](const std::vector<std::string>& files) {
                         if (!window) return;
                         window->Work([window, files] {
                           Campaigns::TakeFiles(window->station_, window->editor_, files);
                         });
                       });
}

void CampaignWindow::PickDay(int mode) {
  auto* calendar = new CalendarWindow(Texts().Langue(), station_.Now(), this);
  calendar->picked = [this, mode](const LocalDateTime& day) {
    Work([this, mode, day] { Campaigns::PickDay(station_, editor_, mode, DateText(day)); });
  };
  calendar->open();
}

void CampaignWindow::Print() {
  Work([this] {
    const PrintedPages printed = Campaigns::BtnImprimer_Click(station_, editor_);
    PrintOnPaper(this, sources_.questions, LinesOfPages(printed.pages), kSheetFont, kSheetPoints,
                 Texts().Langue());
  });
}

// --- showing ---

void CampaignWindow::ArrangeParts(double unit) {
  page_->Arrange(unit);
  GPub->Arrange(unit);
  PLPub->Arrange(unit);
  legend_->Arrange(unit);
  centralWidget()->layout()->setSpacing(Theme::Px(unit, 6));
}

void CampaignWindow::ShowAll() {
  page_->ShowCard();
  for (const auto& [button, enabled] : offAtTimes_) button->setEnabled(*enabled);
  LblInfoPub->setText(ShownText(editor_.LblInfoPub));
  LblTotalMsg->setText(ShownText(editor_.LblTotalMsg));
  LblTotalJours->setText(ShownText(editor_.LblTotalJours));
  ShowOverview();
  if (!std::exchange(isNew_, editor_.BtnAjouterEnabled && !editor_.gone) && isNew_)
    page_->BeginEntry();
  GPub->ShowGrid();
}

// What the breaks hold is counted anew once it was counted to its end.
// The crosses stand in a file of their own.
std::string CampaignWindow::SideSign() {
  return CampaignFile(editor_.FILENAMEGRILLE).Stamp(station_);
}

bool CampaignWindow::TakeOver() {
  if (reading_.AtWork()) return false;
  const std::string chosen = PLPub->ChosenCode();
  Campaigns::TakeOver(station_, editor_);
  if (editor_.PLPubVisible) PLPub->ShowRowsAnew(chosen);
  loads_.Begin(station_, editor_);
  reading_.Begin();
  ShowAll();
  return true;
}

// What follows the fields: a word about them, and what the others have in their days.
void CampaignWindow::ShowFields() {
  ShowNote();
  if (!loads_.IsOf(station_, editor_)) {
    loads_.Begin(station_, editor_);
    reading_.Begin();
  }
  ShowLoads();
}

void CampaignWindow::ShowLoads() {
  legend_->Show(editor_.OptPub[0], reading_.AtWork());
  GPub->viewport()->update();
}

// What keeps the record from being saved, else what is wrong with its days or its grid, else that
// it is not saved.
void CampaignWindow::ShowNote() {
  const auto hindrance =
      Campaigns::TakesMarks(editor_) ? Campaigns::FindHindrance(editor_) : std::nullopt;
  QString note;
  if (editor_.gone) {
    note = Texts().Word("Gone");
  } else if (hindrance) {
    const QString field = Texts().Word(std::string("For.") + hindrance->control);
    note = hindrance->most == 0
               ? Texts().Word("DateMissing", field)
               : Texts().Word("TooLong").arg(field, QString::number(hindrance->most));
  } else if (Campaigns::TakesMarks(editor_) && Campaigns::EndsBeforeItBegins(editor_)) {
    note = Texts().Word("EndsBefore");
  } else if (!editor_.damage.empty()) {
    note = Texts().Word("GridDamaged");
  } else if (Campaigns::TakesMarks(editor_) && Campaigns::IsChanged(editor_)) {
    note = Texts().Word("NotSaved");
  }
  note_->setText(note);
  note_->setVisible(!note.isEmpty());
  note_->setToolTip(hindrance ? QString()
                              : ShownText(ShownDamage(editor_.damage, Texts().Langue())));
}

void CampaignWindow::ShowOverview() {
  const bool shown = PLPub->isVisible();
  if (shown == editor_.PLPubVisible) return;
  PLPub->setVisible(editor_.PLPubVisible);
  if (editor_.PLPubVisible)
    PLPub->setFocus();
  else
    GPub->setFocus();
}

}  // namespace zemo
