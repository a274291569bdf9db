#include "scheduling/screens/ModelWindow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "scheduling/GenreSupply.h"
#include "scheduling/ModelEditor.h"
#include "scheduling/ModelGrids.h"
#include "scheduling/ModelMerge.h"
#include "scheduling/ModelScreen.h"
#include "scheduling/ModelTexts.h"
#include "scheduling/screens/BarTable.h"
#include "scheduling/screens/ModelGridView.h"
#include "scheduling/screens/ModelPanels.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "ui/ButtonKeys.h"
#include "ui/Named.h"
#include "ui/SaveDialogue.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

constexpr int kOutlookPollMs = 250;

}  // namespace

ModelWindow::ModelWindow(Station& station, ModelSources sources)
    : OfficeWindow(station, "FrmModels", "FrmModels", {{}, ModelCaptions()}), sources_(sources) {
  auto* body = new QWidget(this);
  setCentralWidget(body);
  auto* layout = new QVBoxLayout(body);
  layout->setContentsMargins(8, 6, 8, 8);
  auto* days = new QHBoxLayout;
  auto* orders = new QHBoxLayout;
  MakeDays(*days);
  MakeOrders(*orders);
  MakeGrids();
  auto* middle = new QHBoxLayout;
  middle->addWidget(Models_, 4);
  middle->addWidget(ModelSquelette, 4);
  middle->addWidget(Beside(), 1);
  supply_ = new SupplyPanel(Texts(), body);
  outlook_ = new OutlookPanel(
      Texts(), [this] { BeginForecast(); }, body);
  auto* below = new QHBoxLayout;
  below->addWidget(supply_, 2);
  below->addWidget(outlook_, 3);
  layout->addLayout(days);
  layout->addLayout(orders);
  layout->addLayout(middle, 3);
  layout->addLayout(below, 2);
  poll_.setInterval(kOutlookPollMs);
  connect(&poll_, &QTimer::timeout, this, [this] { FollowForecast(); });
  outlook_->findChild<QPushButton*>()->setEnabled(sources_.forecast);
  resize(1280, 800);
  Arrange();
}

ModelEditor& ModelWindow::Editor() const {
  return station_.modelEditor;
}

// --- parts ---

QPushButton* ModelWindow::Button(const char* name, std::function<void()> pressed) {
  auto* made = Named(new QPushButton(Word(name), centralWidget()), name);
  connect(made, &QPushButton::clicked, this, std::move(pressed));
  return made;
}

// Which one is down tells the day that is shown, also where it was not left.
void ModelWindow::MakeDays(QHBoxLayout& bar) {
  for (int day = 1; day <= kDaysOfWeek; ++day) {
    const std::string number = std::to_string(day);
    auto* button = new QPushButton(Word("JourSemaine." + number), centralWidget());
    button->setObjectName(QStringLiteral("JourSemaine_") + ShownText(number));
    button->setCheckable(true);
    GiveKeys(*button, QKeySequence(Qt::ALT | static_cast<Qt::Key>(Qt::Key_0 + day)));
    connect(button, &QPushButton::clicked, this, [this, day] {
      ShowAll();
      Work([this, day] { Models::JourSemaine_Click(station_, day); });
    });
    bar.addWidget(button, 1);
    JourSemaine[static_cast<size_t>(day - 1)] = button;
  }
}

void ModelWindow::MakeOrders(QHBoxLayout& bar) {
  auto* save = Button("BtnSave", [this] { Work([this] { Models::BtnSave_Click(station_); }); });
  GiveKeys(*save, QKeySequence(Qt::CTRL | Qt::Key_S));
  bar.addWidget(save);
  bar.addWidget(
      Button("BtnImport", [this] { Work([this] { Models::BtnImport_Click(station_); }); }));
  auto* copy = Named(new QPushButton(Word("MnuCopierJour"), centralWidget()), "MnuCopierJour");
  auto* days = new QMenu(copy);
  for (int day = 1; day <= kDaysOfWeek; ++day)
    Named(days->addAction(
              Word("JourSemaine." + std::to_string(day)), this,
              [this, day] { Work([this, day] { Models::PopJour_Click(station_, day); }); }),
          "PopJour");
  copy->setMenu(days);
  bar.addWidget(copy);
  MnuCompteur =
      Button("MnuCompteur", [this] { Run([this] { Models::MnuCompteur_Click(station_); }); });
  bar.addWidget(MnuCompteur);
  MnuExport = Button("MnuExport", [this] { ChooseFile(); });
  bar.addWidget(MnuExport);
  LblNotSaved = Named(new QLabel(Word("NotSaved"), centralWidget()), "LblNotSaved");
  LblNotSaved->setProperty("note", true);
  bar.addStretch(1);
  bar.addWidget(LblNotSaved);
}

ModelGridView* ModelWindow::Grid(const char* name, ModelGrid kind,
                                 bool (*click)(Station&, GridPlace)) {
  auto* view = Named(new ModelGridView(Editor(), kind, centralWidget()), name);
  view->setAccessibleName(Word(std::string("For.") + name));
  view->setAccessibleDescription(Word("GridTip"));
  view->selected = [this, click](GridPlace place) {
    if (!IsOpen() || Barred()) return;
    click(station_, place);
    supply_->ShowHour(Editor(), SelectedHour());
  };
  view->popUp = [this](const QRect& cell) { OpenPopUp(cell); };
  return view;
}

void ModelWindow::MakeGrids() {
  Models_ = Grid("Models", ModelGrid::kModels, Models::Models_Click);
  ModelSquelette = Grid("ModelSquelette", ModelGrid::kSkeleton, Models::ModelSquelette_Click);
  GVariete = Grid("GVariete", ModelGrid::kVarieties, Models::GVariete_Click);
  MasterGenre = Named(new QMenu(this), "MasterGenre");
  MasterPourCent = Named(new QMenu(this), "MasterPourCent");
  for (ModelGridView* view : {Models_, ModelSquelette}) {
    view->Model().hourTip = [this](int hour) {
      return Word("HourTip").arg(ShownText(HourLabel(hour)), ShownText(HourLabel(hour + 1)));
    };
    view->Model().supplyTip = [this](GridPlace place) { return SupplyTip(place); };
    view->Model().runsDry = [this](GridPlace place) { return RunsDry(place); };
  }
  Models_->pressed = [this](Qt::Key key) {
    Run([this, key] {
      if (key == Qt::Key_Insert)
        Models::Models_KeyInsert(station_);
      else
        Models::Models_KeyDelete(station_);
    });
  };
  ModelSquelette->pressed = [this](Qt::Key key) {
    Run([this, key] {
      if (key == Qt::Key_Insert)
        Models::ModelSquelette_KeyInsert(station_);
      else
        Models::ModelSquelette_KeyDelete(station_);
    });
  };
}

QWidget* ModelWindow::Beside() {
  constexpr int kStatColumns = 3;
  auto* side = new QWidget(centralWidget());
  QStringList heads;
  for (int column = 0; column < kStatColumns; ++column)
    heads << Word("Stats." + std::to_string(column));
  Stats = new BarTable("Stats", Word("For.Stats"), heads, 1, side);
  auto* layout = new QVBoxLayout(side);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(GVariete, 1);
  layout->addWidget(Stats, 3);
  return side;
}

// --- opening and closing ---

bool ModelWindow::IsOpen() const {
  return Editor().open || Barred();
}

void ModelWindow::Open() {
  WhenFree([this] {
    if (Barred()) return;
    if (!IsOpen()) Busy([this] { Models::MnuModel_Click(station_); });
    ShowSelf();
    if (!IsOpen()) return;
    ModelGridView& grid = Editor().skeleton ? *ModelSquelette : *Models_;
    if (!grid.currentIndex().isValid()) grid.setCurrentIndex(grid.model()->index(0, 0));
    grid.setFocus();
  });
}

bool ModelWindow::MayLeave() {
  bool may = false;
  Busy([&] { may = Models::Form_QueryUnload(station_); });
  ShowAll();
  return may;
}

bool ModelWindow::LeaveNow() {
  if (!IsOpen() || Barred()) return OfficeWindow::LeaveNow();
  return MayLeave() && OfficeWindow::LeaveNow();
}

void ModelWindow::Left() {
  poll_.stop();
  Models::Form_Unload(station_);
  Window::Left();
}

// --- the pop-ups ---

void ModelWindow::FillMenu(QMenu& menu, const char* name, const std::vector<std::string>& entries,
                           const std::function<void(const std::string& entry)>& chosen) {
  menu.clear();
  for (const std::string& entry : entries)
    Named(menu.addAction(ShownText(entry), this, [chosen, entry] { chosen(entry); }), name);
}

void ModelWindow::OpenPopUp(const QRect& cell) {
  if (!IsOpen() || Barred()) return;
  switch (Models::OpenedPopUp(Editor())) {
    case Models::PopUp::kGenre:
      FillMenu(*MasterGenre, "PopGenre", Editor().PopGenre, [this](const std::string& genre) {
        Choose([this, genre] { Models::PopGenre_Click(station_, genre); });
      });
      return MasterGenre->popup(cell.bottomLeft());
    case Models::PopUp::kPourCent:
      FillMenu(*MasterPourCent, "PopPourCent", Editor().PopPourCent,
               [this](const std::string& percent) {
                 Choose([this, percent] { Models::PopPourCent_Click(station_, ValInt(percent)); });
               });
      return MasterPourCent->popup(cell.bottomLeft());
    case Models::PopUp::kNone:
      break;
  }
}

// A share of a variety is stored at once, which may wait for the base.
void ModelWindow::Choose(const std::function<void()>& choice) {
  if (Editor().clicked == ModelGrid::kVarieties)
    Work(choice);
  else
    Run(choice);
}

void ModelWindow::ChooseFile() {
  if (!IsOpen() || Barred()) return;
  OpenSaveDialogue(
      *this, "FrmExportWeek", Word("MnuExport").remove(u'.'), {ExcelFile()},
      [this](const std::string& path) {
        Work([this, path] { Models::MnuExport_Click(station_, path, *sources_.spreadsheets); });
      });
}

// --- what the library gives ---

int ModelWindow::SelectedHour() const {
  const int hour =
      Editor().skeleton ? Editor().ModelSquelettePlace.column : Editor().ModelsPlace.column - 1;
  return std::clamp(hour, 0, kHoursOfDay - 1);
}

ModelWindow::Wish ModelWindow::WishOf(GridPlace place) const {
  const ModelEditor& editor = Editor();
  if (editor.skeleton) {
    const std::string& genre = editor.ModelSquelette.Cell(place.row, place.column);
    return {Trim(genre).empty() ? std::string() : genre, place.column, true};
  }
  if (place.column < 1 || place.row >= editor.Models.RowCount() - 1) return {};
  return {editor.Models.Cell(place.row, 0), place.column - 1,
          ValInt(editor.Models.Cell(place.row, place.column)) > 0};
}

QString ModelWindow::SupplyTip(GridPlace place) const {
  const Wish wish = WishOf(place);
  if (wish.genre.empty() || !Editor().supply || Editor().JourSemaine == 0) return {};
  const GenreSupply::Hour given = Editor().supply->At(wish.genre, Editor().JourSemaine, wish.hour);
  return Word("SupplyTip")
      .arg(ShownText(wish.genre), QString::number(given.titles), QString::number(given.Minutes()));
}

bool ModelWindow::RunsDry(GridPlace place) const {
  const Wish wish = WishOf(place);
  if (!wish.planned || wish.genre.empty() || !Editor().supply || Editor().JourSemaine == 0)
    return false;
  return Editor().supply->At(wish.genre, Editor().JourSemaine, wish.hour).titles == 0;
}

// --- how the day would air ---

void ModelWindow::BeginForecast() {
  if (!IsOpen() || Barred() || !sources_.forecast || Editor().JourSemaine == 0) return;
  planned_ = Editor();
  sources_.forecast->Start(PlanOf(planned_, station_.Now()));
  poll_.start();
  FollowForecast();
}

void ModelWindow::FollowForecast() {
  const DayForecast& forecast = *sources_.forecast;
  outlook_->ShowState(forecast.Now(), ShownText(forecast.Fault()));
  if (forecast.Now() == DayForecast::State::kRunning) return;
  poll_.stop();
  if (forecast.Now() == DayForecast::State::kDone)
    outlook_->ShowOutlook(OutlookOf(planned_, forecast.Aired()));
}

// --- showing ---

void ModelWindow::ArrangeParts(double unit) {
  centralWidget()->layout()->setSpacing(Theme::Px(unit, 6));
  for (ModelGridView* view : {Models_, ModelSquelette, GVariete}) view->Arrange(unit);
  Stats->Arrange(unit);
  Stats->parentWidget()->setMinimumWidth(Theme::Px(unit, 250));
  supply_->Arrange(unit);
  outlook_->Arrange(unit);
}

void ModelWindow::ShowAll() {
  const ModelEditor& editor = Editor();
  setWindowTitle(ShownText(editor.Caption));
  for (int day = 1; day <= kDaysOfWeek; ++day)
    JourSemaine[static_cast<size_t>(day - 1)]->setChecked(day == editor.JourSemaine);
  Models_->setVisible(!editor.skeleton);
  ModelSquelette->setVisible(editor.skeleton);
  MnuCompteur->setVisible(editor.skeleton);
  MnuExport->setEnabled(sources_.spreadsheets);
  LblNotSaved->setVisible(Models::IsChanged(station_));
  for (ModelGridView* view : {Models_, ModelSquelette, GVariete}) view->ShowGrid();
  ShowStats();
  supply_->ShowHour(editor, SelectedHour());
}

bool ModelWindow::TakeOver() {
  Models::TakeOver(station_);
  ShowAll();
  return true;
}

void ModelWindow::ShowStats() {
  constexpr int kPositions = 2;
  int most = 1;
  for (const ModelEditor::GenreCount& line : Editor().Stats)
    most = std::max(most, ValInt(line.count));
  std::vector<BarRow> counts;
  for (const ModelEditor::GenreCount& line : Editor().Stats)
    counts.push_back({{ShownText(line.genre), ShownText(line.count), ShownText(line.positions)},
                      static_cast<double>(ValInt(line.count)) / most});
  Stats->ShowRows(counts);
  Stats->ShowColumn(kPositions, Editor().skeleton);
}

}  // namespace zemo
