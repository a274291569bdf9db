#include "traffic/screens/AffidavitWindow.h"

#include <QCompleter>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>
#include <utility>

#include "library/screens/FreeEntryBox.h"
#include "platform/EventLoop.h"
#include "station/Station.h"
#include "traffic/AffidavitTexts.h"
#include "traffic/screens/AffidavitList.h"
#include "ui/ButtonKeys.h"
#include "ui/CalendarWindow.h"
#include "ui/PaperPrint.h"
#include "ui/RowTable.h"
#include "ui/SaveDialogue.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

constexpr const char* kPrintFont = "Courier";
constexpr int kPrintPoints = 7;  // 61 lines a page of A4 across
constexpr int kHeadRoom = 16;
struct ColumnSample {
  const char* sample;
  int share;
};
constexpr ColumnSample kColumnRooms[DiffCol::kCount] = {{"00/00/0000 00:00:00", 0},
                                                        {"00/00/0000 00:00:00", 0},
                                                        {"+00:00", 0},
                                                        {"to come still", 0},
                                                        {"the break is full, so", 4},
                                                        {"intercalar", 0},
                                                        {"0000", 0},
                                                        {"/spots/bakery.wav", 3}};

// The table whose cut texts tell themselves. Its columns are shared anew in its own size, which
// comes behind the window's.
class CutTextTable : public QTableView {
 public:
  using QTableView::QTableView;
  std::function<void()> resized;

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QTableView::resizeEvent(event);
    if (resized) resized();
  }
  bool viewportEvent(QEvent* event) override {
    if (event->type() == QEvent::ToolTip)
      return ShowCutText(*this, *static_cast<QHelpEvent*>(event));
    return QTableView::viewportEvent(event);
  }
};

}  // namespace

// --- the fields ---

AffidavitBar::AffidavitBar(AffidavitEditor& editor, Orders orders, const Translation& texts,
                           QWidget* parent)
    : FieldPage(texts, parent), orders_(std::move(orders)) {
  auto* advertiser = new FreeEntryBox("Annonceur", this);
  advertiser->setAccessibleName(texts.Word("For.Annonceur"));
  advertiser->typed = [&editor](const std::string& text) { editor.Annonceur = text; };
  advertiser->enter = [this] { orders_.make(); };
  advertiser->erase = [this, &editor] {
    editor.Annonceur.clear();
    ShowCard();
  };
  auto* completer = new QCompleter(advertiser->model(), advertiser);
  completer->setFilterMode(Qt::MatchContains);
  completer->setCaseSensitivity(Qt::CaseInsensitive);
  advertiser->setCompleter(completer);
  Follow([&editor, advertiser] { advertiser->Show(editor.Annonceur, editor.advertisers); });
  auto* label = new QLabel(texts.Word("For.Annonceur"), this);
  label->setProperty("dim", true);
  label->setBuddy(advertiser);
  const auto day = [&](const char* name, const std::function<void()>& pick) {
    return Day(
        name, [this, name] { return texts_.Word(name); }, pick, [] {});
  };
  Row({{label, 0},
       {advertiser, 1},
       {day("CmdCalend", orders_.pickFirst), 0},
       {Label("LblDate", [&editor] { return editor.LblDate; }), 0},
       {day("BtnDateFin", orders_.pickLast), 0},
       {Label("LblDateFin", [&editor] { return editor.LblDateFin; }), 0},
       {Button("BtnEtablir", orders_.make), 0}});
}

// --- the window ---

AffidavitWindow::AffidavitWindow(Station& station, AffidavitSources sources)
    : OfficeWindow(station, "FrmAttestation", "FrmAttestation", {{}, AffidavitCaptions()}),
      sources_(std::move(sources)) {
  sources_.questions = WithSystemDialogues(std::move(sources_.questions), Texts().Langue());
  setWindowTitle(Texts().Word("title"));
  auto* body = new QWidget(this);
  setCentralWidget(body);
  AffidavitBar::Orders orders;
  orders.pickFirst = [this] { PickDay(Attestation::CmdCalend_Click); };
  orders.pickLast = [this] { PickDay(Attestation::BtnDateFin_Click); };
  orders.make = [this] { Work([this] { Attestation::BtnEtablir_Click(station_, editor_); }); };
  bar_ = new AffidavitBar(editor_, std::move(orders), Texts(), body);
  LblTotaux = Named(new QLabel(body), "LblTotaux");
  LblTotaux->setTextFormat(Qt::PlainText);
  LblTotaux->setProperty("head", true);
  MakeList();
  auto* layout = new QVBoxLayout(body);
  layout->setContentsMargins(8, 6, 8, 8);
  layout->addWidget(bar_);
  layout->addWidget(LblTotaux);
  layout->addWidget(ListDiff, 1);
  layout->addWidget(Buttons());
  resize(1024, 700);
  Arrange();
}

void AffidavitWindow::MakeList() {
  auto* table = Named(new CutTextTable(centralWidget()), "ListDiff");
  ListDiff = table;
  ListDiff->setAccessibleName(Texts().Word("For.ListDiff"));
  model_ = new AffidavitListModel(editor_, Texts(), ListDiff);
  ListDiff->setModel(model_);
  MakeRowTable(*ListDiff);
  ListDiff->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  ListDiff->horizontalHeader()->setStretchLastSection(true);
  table->resized = [this] { ArrangeColumns(); };
}

QWidget* AffidavitWindow::Buttons() {
  auto* bar = new QWidget(centralWidget());
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(5);
  const auto add = [&](const char* name, const QKeySequence& keys,
                       const std::function<void()>& pressed) {
    auto* made = Named(new QPushButton(Texts().Word(name), bar), name);
    GiveKeys(*made, keys);
    connect(made, &QPushButton::clicked, this, pressed);
    layout->addWidget(made);
    return made;
  };
  layout->addStretch(1);
  add("BtnImprimer", Qt::CTRL | Qt::Key_P, [this] { Print(); });
  add("BtnPdf", {}, [this] {
    Save("BtnPdf", "PDF", "pdf", [this](const std::string& path) {
      const PrintedPages printed = Attestation::BtnImprimer_Click(station_, editor_);
      PrintIntoPdf(this, path, LinesOfPages(printed.pages), kPrintFont, kPrintPoints,
                   Texts().Langue(), [this] { station_.platform.loop.Yield(); });
    });
  });
  QPushButton* sheet = add("BtnTableur", {}, [this] {
    Save("BtnTableur", "Excel", "xlsx", [this](const std::string& path) {
      Attestation::BtnTableur_Click(station_, editor_, path, *sources_.spreadsheets);
    });
  });
  sheet->setVisible(sources_.spreadsheets != nullptr);
  return bar;
}

// --- opening and closing ---

void AffidavitWindow::Open() {
  WhenFree([this] {
    if (!station_.engine.ScreenLocked && !Barred()) Attestation::Form_Load(station_, editor_);
    ShowSelf();
  });
}

void AffidavitWindow::Left() {
  Attestation::Form_Unload(editor_);
  Window::Left();
}

// --- orders ---

void AffidavitWindow::PickDay(void (*take)(AffidavitEditor&, const LocalDateTime&)) {
  auto* calendar = new CalendarWindow(Texts().Langue(), station_.Now(), this);
  calendar->picked = [this, take](const LocalDateTime& day) {
    Run([this, take, day] { take(editor_, day); });
  };
  calendar->open();
}

void AffidavitWindow::Print() {
  Work([this] {
    const PrintedPages printed = Attestation::BtnImprimer_Click(station_, editor_);
    if (!printed.pages.empty())
      PrintOnPaper(this, sources_.questions, LinesOfPages(printed.pages), kPrintFont, kPrintPoints,
                   Texts().Langue(), [this] { station_.platform.loop.Yield(); });
  });
}

void AffidavitWindow::Save(const char* name, const char* kind, const char* ending,
                           std::function<void(const std::string& path)> write) {
  if (editor_.ListDiff.empty()) return Work([this] { Attestation::AnyListed(station_, editor_); });
  QString title = Texts().Word(name);
  OpenSaveDialogue(*this, "FrmExport", title.remove(u'.'),
                   {{QString::fromLatin1(kind), QString::fromLatin1(ending)}},
                   [this, write = std::move(write)](const std::string& path) {
                     Work([write, path] { write(path); });
                   });
}

// --- showing ---

void AffidavitWindow::ArrangeParts(double unit) {
  bar_->Arrange(unit);
  ArrangeRowTable(*ListDiff, unit, 14, 6);
  centralWidget()->layout()->setSpacing(Theme::Px(unit, 6));
  ArrangeColumns();
}

void AffidavitWindow::ArrangeColumns() {
  const QFontMetrics heads(ListDiff->horizontalHeader()->font()), cells(ListDiff->font());
  std::vector<ColumnRoom> columns;
  for (int column = 0; column < DiffCol::kCount; ++column) {
    const QString head = model_->headerData(column, Qt::Horizontal).toString();
    const int sample = cells.horizontalAdvance(QString::fromUtf8(kColumnRooms[column].sample));
    columns.push_back({std::max(heads.horizontalAdvance(head) + kHeadRoom, sample + kCellMargin),
                       kColumnRooms[column].share});
  }
  ShareWidth(*ListDiff, columns);
}

void AffidavitWindow::ShowAll() {
  bar_->ShowCard();
  LblTotaux->setText(QString::fromStdString(editor_.LblTotaux));
  model_->Renew();
}

}  // namespace zemo
