#include "reports/screens/ReportWindow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QResizeEvent>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <string>
#include <utility>

#include "platform/EventLoop.h"
#include "reports/ReportTexts.h"
#include "reports/screens/ReportBar.h"
#include "reports/screens/ReportPicturePane.h"
#include "reports/screens/ReportTable.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "ui/ButtonKeys.h"
#include "ui/CalendarWindow.h"
#include "ui/FieldPage.h"
#include "ui/PaperPrint.h"
#include "ui/SaveDialogue.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

constexpr int kListsShare = 8, kPicturesShare = 5;
constexpr int kReportShare = 3, kRotationsShare = 2;
constexpr int kReadingMs = 100;  // from which on a reading is told
constexpr const char* kPrintFont = "Courier";
constexpr int kPrintPoints = 7;  // 62 lines a page of A4 across

QHBoxLayout* BarOf(QWidget& bar) {
  auto* layout = new QHBoxLayout(&bar);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(5);
  return layout;
}

bool EndsIn(const std::string& path, std::string_view ending) {
  return path.size() >= ending.size() &&
         EqualNoCase(std::string_view(path).substr(path.size() - ending.size()), ending);
}

}  // namespace

ReportWindow::ReportWindow(Station& station, ReportSources sources)
    : OfficeWindow(station, "FrmRapport", "VoirRapport", {{}, ReportCaptions()}),
      sources_(std::move(sources)) {
  sources_.questions = WithSystemDialogues(std::move(sources_.questions), Texts().Langue());
  setWindowTitle(Texts().Word("title"));
  editor_.listed = [this] { ShowAll(); };
  auto* body = new QWidget(this);
  setCentralWidget(body);
  MakeBar();
  auto* layout = new QVBoxLayout(body);
  layout->setContentsMargins(8, 6, 8, 8);
  layout->addWidget(bar_);
  layout->addWidget(ReportButtons());
  lists_ = Lists();
  pictures_ = new ReportPicturePane(station_, editor_, Texts(), body);
  auto* below = new QHBoxLayout;
  below->addWidget(lists_, kListsShare);
  below->addWidget(pictures_, kPicturesShare);
  layout->addLayout(below, 1);
  resize(1280, 800);
  Arrange();
  ArrangePictures();
}

// --- parts ---

void ReportWindow::MakeBar() {
  const auto reading = [this](Routine routine) {
    return [this, routine] { Read([this, routine] { routine(station_, editor_); }); };
  };
  ReportBarOrders orders;
  orders.pickFirst = [this] { PickDay(Report::CmdCalend_Click); };
  orders.pickLast = [this] { PickDay(Report::BtnDateFin_Click); };
  orders.firstAlone = reading(Report::BtnDateFin_RightClick);
  orders.read = reading(Report::VoirRapport);
  orders.filter = [this] { TakeFilters(); };
  bar_ = new ReportBar(editor_, std::move(orders), Texts(), centralWidget());
}

QPushButton* ReportWindow::Button(const char* name, std::function<void()> pressed,
                                  QWidget* parent) {
  auto* made = Named(new QPushButton(Texts().Word(name), parent), name);
  connect(made, &QPushButton::clicked, this, std::move(pressed));
  return made;
}

QPushButton* ReportWindow::Working(const char* name, Routine routine, QWidget* parent) {
  return Button(
      name, [this, routine] { Work([this, routine] { routine(station_, editor_); }); }, parent);
}

QWidget* ReportWindow::ReportButtons() {
  auto* bar = new QWidget(centralWidget());
  QHBoxLayout* layout = BarOf(*bar);
  layout->addWidget(Button(
      "BtnExport",
      [this] {
        Export("BtnExport", editor_.ListRap.Count(), Report::BtnExport_Click,
               Report::BtnImprimer_Click);
      },
      bar));
  QPushButton* print = Button(
      "BtnImprimer", [this] { Print(Report::BtnImprimer_Click); }, bar);
  GiveKeys(*print, Qt::CTRL | Qt::Key_P);
  layout->addWidget(print);
  layout->addWidget(Working("BtnIntoPlaylist", Report::BtnIntoPlaylist_Click, bar));
  layout->addStretch(1);
  QPushButton* affidavit = Button(
      "BtnAttestation", [this] { sources_.openAffidavit(); }, bar);
  affidavit->setVisible(sources_.openAffidavit != nullptr);
  layout->addWidget(affidavit);
  BtnVues = Button(
      "BtnVues", [this] { ArrangePictures(); }, bar);
  BtnVues->setCheckable(true);
  layout->addWidget(BtnVues);
  return bar;
}

QWidget* ReportWindow::StatisticsButtons() {
  auto* bar = new QWidget(centralWidget());
  QHBoxLayout* layout = BarOf(*bar);
  layout->addWidget(Working("BtnStats", Report::BtnStats_Click, bar));
  layout->addStretch(1);
  layout->addWidget(Button(
      "ExportStat",
      [this] {
        Export("ExportStat", editor_.ListStat.Count(), Report::ExportStat, Report::ImprimeStat);
      },
      bar));
  layout->addWidget(Button(
      "ImprimeStat", [this] { Print(Report::ImprimeStat); }, bar));
  return bar;
}

QWidget* ReportWindow::Lists() {
  auto* lists = new QWidget(centralWidget());
  ListRap = new ReportTable(
      {"ListRap",
       {{"00/00/0000", 0},
        {"00:00:00 - 00:00:00", 0},
        {"The name of an artist", 3},
        {"The title of some song", 3},
        {"INSTRUMENTAL", 1},
        {"INTERNATIONAL", 1},
        {"A composer", 2},
        {"A label", 1},
        {"REF 000", 1},
        {"46347.123456789", 0}},
       [this] { return editor_.ListRap.Count(); },
       [this](size_t line, int column) { return editor_.ListRap.Cell(line, column); }},
      Texts(), lists);
  ListStat = new ReportTable(
      {"ListStat",
       {{"0000", 0},
        {"The name of an artist", 3},
        {"The title of some song", 3},
        {"INSTRUMENTAL", 1},
        {"INTERNATIONAL", 1},
        {"A label", 1}},
       [this] { return editor_.ListStat.Count(); },
       [this](size_t line, int column) { return editor_.ListStat.Cell(line, column); }},
      Texts(), lists);
  const auto sorts = [this](void (*sort)(Station&, ReportEditor&, int)) {
    return [this, sort](int column) {
      Work([this, sort, column] { sort(station_, editor_, column); });
    };
  };
  ListRap->sorted = sorts(Report::ListRap_ColumnClick);
  ListStat->sorted = sorts(Report::ListStat_ColumnClick);
  ListRap->chosen = [this](size_t line) {
    if (line >= editor_.ListRap.Count()) return;
    editor_.ListRap.chosen = line;
    Choose(editor_.ListRap.order[line]);
  };
  ListStat->chosen = [this](size_t line) {
    if (line >= editor_.ListStat.Count()) return;
    editor_.ListStat.chosen = line;
    Choose(editor_.ListStat.lines[line].row);
    SelectChosen();
  };
  LblStat = Named(new QLabel(lists), "LblStat");
  LblStat->setTextFormat(Qt::PlainText);
  LblStat->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  auto* layout = new QVBoxLayout(lists);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(ListRap, kReportShare);
  layout->addWidget(StatisticsButtons());
  layout->addWidget(LblStat);
  layout->addWidget(ListStat, kRotationsShare);
  return lists;
}

// --- opening and closing ---

// Shown in the reading's first yield already: it may take its time.
void ReportWindow::Open() {
  WhenFree([this] {
    if (Barred()) return ShowSelf();
    QTimer::singleShot(0, this, [this] {
      if (editor_.open) ShowSelf();
    });
    if (!editor_.open) bar_->EmptyFilters();
    Report::MnuRapport_Click(station_, editor_);
    if (editor_.open) ShowSelf();
  });
}

bool ReportWindow::LeaveNow() {
  const bool left = OfficeWindow::LeaveNow();
  return left && editor_.working == 0;
}

void ReportWindow::Left() {
  Report::Form_Unload(editor_);
  Window::Left();
}

// --- orders ---

std::function<void()> ReportWindow::Pause() {
  return [this] { station_.platform.loop.Yield(); };
}

void ReportWindow::Read(std::function<void()> order) {
  QTimer::singleShot(kReadingMs, bar_, [this] { bar_->ShowCard(); });
  WhenFree([this, order = std::move(order)] { Run(order); });
}

// What a routine at work keeps from being taken is taken behind it.
void ReportWindow::TakeFilters() {
  Read([this] {
    const TypedFilters typed = bar_->Typed();
    Report::FiltreArtiste_Change(station_, editor_, typed.artist);
    Report::FiltreGenre_Change(station_, editor_, typed.genre);
    Report::FiltreVariete_Change(station_, editor_, typed.variety);
  });
}

void ReportWindow::PickDay(void (*take)(Station&, ReportEditor&, const LocalDateTime&)) {
  auto* calendar = new CalendarWindow(Texts().Langue(), station_.Now(), this);
  calendar->picked = [this, take](const LocalDateTime& day) {
    Read([this, take, day] { take(station_, editor_, day); });
  };
  calendar->open();
}

void ReportWindow::Export(const char* name, size_t listed, ExportRoutine write,
                          PrintRoutine print) {
  if (!sources_.files.open) return;
  if (listed == 0) return Work([this] { Report::AnyListed(station_, 0); });
  std::vector<SavedKind> kinds = {{QStringLiteral("Excel"), QStringLiteral("xlt")}};
  if (sources_.files.spreadsheets) kinds.push_back(ExcelFile());
  kinds.push_back({QStringLiteral("PDF"), QStringLiteral("pdf")});
  QString title = Texts().Word(name);
  OpenSaveDialogue(*this, "FrmExport", title.remove(u'.'), kinds,
                   [this, write, print](const std::string& path) {
                     Work([this, write, print, path] {
                       if (!EndsIn(path, ".pdf"))
                         return write(station_, editor_, path, sources_.files);
                       PrintIntoPdf(this, path, LinesOfPages(print(station_, editor_).pages),
                                    kPrintFont, kPrintPoints, Texts().Langue(), Pause());
                     });
                   });
}

void ReportWindow::Print(PrintRoutine print) {
  Work([this, print] {
    const PrintedPages printed = print(station_, editor_);
    if (!printed.pages.empty())
      PrintOnPaper(this, sources_.questions, LinesOfPages(printed.pages), kPrintFont, kPrintPoints,
                   Texts().Langue(), Pause());
  });
}

// --- showing ---

void ReportWindow::ArrangeParts(double unit) {
  bar_->Arrange(unit);
  ListRap->Arrange(unit);
  ListStat->Arrange(unit);
  pictures_->Arrange(unit);
  centralWidget()->layout()->setSpacing(Theme::Px(unit, 6));
  lists_->layout()->setSpacing(Theme::Px(unit, 5));
}

void ReportWindow::resizeEvent(QResizeEvent* event) {
  OfficeWindow::resizeEvent(event);
  ArrangePictures();
}

void ReportWindow::ArrangePictures() {
  const bool beside = width() >= kWidthOfPictures;
  BtnVues->setVisible(!beside);
  lists_->setVisible(beside || !BtnVues->isChecked());
  pictures_->setVisible(beside || BtnVues->isChecked());
}

void ReportWindow::ShowAll() {
  bar_->ShowCard();
  LblStat->setText(QString::fromStdString(editor_.LblStat));
  LblStat->setToolTip(LblStat->text());
  ShowLists();
  const TypedFilters taken{editor_.FiltreArtiste, editor_.FiltreGenre, editor_.FiltreVariete};
  if (isVisible() && editor_.open && bar_->Typed() != taken) TakeFilters();
}

// The reading yields: it begins outside of the look for it.
bool ReportWindow::TakeOver() {
  if (editor_.reading || editor_.working > 0) return false;
  QTimer::singleShot(0, this, [this] {
    WhenFree([this] {
      if (!IsOpen() || Barred()) return;
      const std::shared_ptr<const ReportRows> before = editor_.ListRap.rows;
      const int place = ListRap->verticalScrollBar()->value();
      Report::TakeOver(station_, editor_);
      if (editor_.ListRap.rows == before) return;
      ShowAll();
      ListRap->verticalScrollBar()->setValue(place);
    });
  });
  return true;
}

// The row that was chosen stays so in another order of the same rows.
void ReportWindow::ShowLists() {
  const ReportList& list = editor_.ListRap;
  if (chosenOf_ != list.rows) chosen_.reset();
  ListRap->ShowRows(list.generation, list.sorting);
  ListStat->ShowRows(editor_.ListStat.generation, editor_.ListStat.sorting);
  if (!list.chosen)
    SelectChosen();
  else if (!chosen_)
    TakeChosen();
  pictures_->Follow(chosen_);
}

// Of the same row among others.
void ReportWindow::TakeChosen() {
  const size_t line = *editor_.ListRap.chosen;
  ListRap->Select(line);
  Choose(editor_.ListRap.order[line]);
}

void ReportWindow::Choose(uint32_t row) {
  chosenOf_ = editor_.ListRap.rows;
  chosen_ = row;
  pictures_->Follow(chosen_);
}

void ReportWindow::SelectChosen() {
  ReportList& list = editor_.ListRap;
  const auto line =
      chosen_ ? std::find(list.order.begin(), list.order.end(), *chosen_) : list.order.end();
  if (line == list.order.end()) return;
  list.chosen = static_cast<size_t>(line - list.order.begin());
  ListRap->Select(*list.chosen);
}

}  // namespace zemo
