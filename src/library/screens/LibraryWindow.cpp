#include "library/screens/LibraryWindow.h"

#include <QApplication>
#include <QDropEvent>
#include <QFileDialog>
#include <QMimeData>
#include <QPointer>
#include <QResizeEvent>
#include <QSlider>
#include <QStackedWidget>
#include <QUrl>
#include <utility>

#include "library/LibraryPrint.h"
#include "library/LibraryScreen.h"
#include "library/LibraryTexts.h"
#include "library/screens/CardListPane.h"
#include "library/screens/CardState.h"
#include "library/screens/HourPipPage.h"
#include "library/screens/HoursFrame.h"
#include "library/screens/MarkerPane.h"
#include "library/screens/SelectedCardsDialog.h"
#include "platform/Desktop.h"
#include "station/Station.h"
#include "ui/CalendarWindow.h"
#include "ui/FileDialogue.h"
#include "ui/PaperPrint.h"
#include "ui/SaveDialogue.h"

namespace zemo {

namespace {
constexpr int kPrintPoints = 7;  // 62 lines a page
}

LibraryWindow::LibraryWindow(Station& station, LibrarySources sources)
    : OfficeWindow(station, "FrmDiscotheque", "Discotheque", {{}, LibraryCaptions()}),
      sources_(std::move(sources)),
      musicList_(station, editor_.PLDisco, [this] { ShowLists(); }) {
  sources_.questions = WithSystemDialogues(std::move(sources_.questions), Texts().Langue());
  setWindowTitle(Texts().Word("title"));
  MakeOrders();
  MakeMenus();
  MakePages();
  MakeLists();
  MakeFrame();
  resize(1280, 800);
  Arrange();
}

void LibraryWindow::MakeOrders() {
  orders_.run = [this](const std::function<void()>& order) { Run(order); };
  orders_.work = [this](std::function<void()> order) { Work(std::move(order)); };
  orders_.chooseFiles = [this] { ChooseFiles(); };
  orders_.pickDay = [this](int mode) { PickDay(mode); };
  orders_.shown = [this] { LblEtat->ShowState(); };
}

// --- opening and closing ---

void LibraryWindow::Open() {
  if (!editor_.open) fresh_.fill(false);
  Library::Discotheque_Click(station_, editor_);
  ShowSelf();
}

void LibraryWindow::OpenOnCard(int32_t code) {
  if (!editor_.open) fresh_.fill(false);
  if (!Barred()) Library::OpenOnCard(station_, editor_, code);
  ShowSelf();
}

bool LibraryWindow::LeaveNow() {
  import_->Stop();
  return OfficeWindow::LeaveNow();
}

bool LibraryWindow::MayLeave() {
  if (!OfficeWindow::MayLeave()) return false;
  if (!import_->AtWork()) return true;
  const std::string question = Texts().Word("ImportLeave").toStdString();
  // It waits for the answer: the question is none any more when it has ended.
  import_->Wait(true);
  const bool leaves =
      station_.platform.messages.Show("Alerte", question, Buttons::kYesNo) == Answer::kYes;
  import_->Wait(false);
  if (leaves) import_->Stop();
  return leaves;
}

void LibraryWindow::Left() {
  Library::Form_Unload(station_, editor_);
  Window::Left();
}

// --- orders ---

std::function<void()> LibraryWindow::Doing(Routine routine) {
  return [this, routine] { routine(station_, editor_); };
}

void LibraryWindow::ChangeCards(Routine routine) {
  Work([this, routine] {
    if (editor_.OnCards()) fresh_[editor_.Tab()] = false;
    routine(station_, editor_);
  });
}

// Of the music, which may be many, the one row is read again.
void LibraryWindow::ReplaceCard() {
  if (editor_.TabStrip1 != LibraryTab::kMusic) return ChangeCards(Library::Replacer_Click);
  Work([this] {
    Library::Replacer_Click(station_, editor_);
    Library::RenewRow(station_, editor_);
    if (musicList_.AtWork()) fresh_[editor_.Tab()] = false;  // it may have been read before
  });
}

// The rows selected leave the list with their cards.
void LibraryWindow::DeleteCards() {
  Work([this] {
    const CardList* list = ListOfTab();
    const auto rowsTooMany = [&] {
      return static_cast<int64_t>(list->Count()) - editor_.cardCount[editor_.Tab()];
    };
    const int64_t before = list ? rowsTooMany() : 0;
    Library::MnuDelete_Click(station_, editor_);
    const bool filling = editor_.TabStrip1 == LibraryTab::kMusic && musicList_.AtWork();
    if (list && (filling || rowsTooMany() != before)) fresh_[editor_.Tab()] = false;
  });
}

void LibraryWindow::ChooseFiles() {
  if (!sources_.chooseFiles || !editor_.open || Barred()) return;
  sources_.chooseFiles(this, Library::FileForSelector(station_, editor_), editor_.List1Tmp,
                       [window = QPointer(this)](const std::vector<std::string>& files) {
                         if (!window) return;
                         window->Run([window, files] {
                           Library::TakeFiles(window->station_, window->editor_, files);
                         });
                       });
}

void LibraryWindow::PickDay(int mode) {
  auto* calendar = new CalendarWindow(Texts().Langue(), station_.Now(), this);
  calendar->picked = [this, mode](const LocalDateTime& day) {
    Run([this, mode, day] { Library::PickDay(editor_, mode, day.month, day.day); });
  };
  calendar->open();
}

void LibraryWindow::Print() {
  Work([this] {
    musicList_.ToTheEnd();
    const PrintedPages printed = Library::MnuImp_Click(station_, editor_);
    if (!printed.pages.empty())
      PrintOnPaper(this, sources_.questions, LinesOfPages(printed.pages), kLibraryPrintFont,
                   kPrintPoints, Texts().Langue());
  });
}

void LibraryWindow::Export() {
  if (!sources_.spreadsheets) return;
  QString title = Texts().Word("MnuExporter");
  OpenSaveDialogue(*this, "FrmExporter", title.remove(u'.'), {ExcelFile()},
                   [this](const std::string& path) {
                     Work([this, path] {
                       Library::MnuExporter_Click(station_, editor_, path, *sources_.spreadsheets);
                     });
                   });
}

// All of it at once: asked first.
void LibraryWindow::ResetDates() {
  ChangeCards([](Station& station, LibraryEditor& editor) {
    const auto langue = static_cast<int>(station.base.CnfInt(Cnf::kLangue));
    const std::string question = Caption(LibraryCaptions(), "ConfirmInitDate", langue);
    if (station.platform.messages.Show("Alerte", question, Buttons::kYesNo) == Answer::kYes)
      Library::MnuInitDate_Click(station, editor);
  });
}

// Of what was typed meanwhile nothing is given: the dialogue stands before the window.
void LibraryWindow::GiveToSelected() {
  Run([this] {
    const std::vector<int32_t> codes = Library::SelectedCards(editor_);
    auto* dialog = new SelectedCardsDialog(
        editor_, codes.size(), Library::ChangedFields(station_, editor_), Texts(), this);
    dialog->give = [this, codes](const SharedFields& fields) {
      Work([this, codes, fields] {
        if (Library::GiveFields(station_, editor_, codes, fields) > 0) fresh_[0] = false;
      });
    };
    dialog->open();
  });
}

// --- import ---

bool LibraryWindow::TakesDrops() const {
  return editor_.open && !Barred() && editor_.OnCards() && import_->CanBegin();
}

namespace {

// Their bytes as they are, which need not be UTF-8.
std::vector<std::string> LocalPaths(const QMimeData& data) {
  std::vector<std::string> paths;
  for (const QUrl& url : data.urls()) {
    if (!url.isLocalFile()) continue;
    const QByteArray encoded = url.path(QUrl::FullyEncoded).toLatin1();
    paths.push_back(QByteArray::fromPercentEncoding(encoded).toStdString());
  }
  return paths;
}

// Whoever drags a file may offer to move it, which would be its end where it lay.
void TakeAsCopy(QDropEvent& event) {
  event.setDropAction(Qt::CopyAction);
  event.accept();
}

}  // namespace

void LibraryWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (TakesDrops() && !LocalPaths(*event->mimeData()).empty())
    TakeAsCopy(*event);
  else
    event->ignore();
}

void LibraryWindow::dragMoveEvent(QDragMoveEvent* event) {
  if (TakesDrops())
    TakeAsCopy(*event);
  else
    event->ignore();
}

void LibraryWindow::dropEvent(QDropEvent* event) {
  const std::vector<std::string> paths = LocalPaths(*event->mimeData());
  if (!TakesDrops() || paths.empty()) return event->ignore();
  TakeAsCopy(*event);
  import_->Begin(editor_.TabStrip1, paths);
  ShowMenus();
}

void LibraryWindow::ChooseFolder() {
  QString title = Texts().Word("MnuImport");
  QFileDialog* dialog = MakeFileDialogue(*this, "FrmImportFolder", title.remove(u'.'));
  dialog->setFileMode(QFileDialog::Directory);
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& path) {
    if (!TakesDrops()) return;
    import_->Begin(editor_.TabStrip1, {path.toStdString()});
    ShowMenus();
  });
  dialog->open();
}

void LibraryWindow::ShowImported(LibraryTab kind) {
  fresh_[static_cast<size_t>(kind) - 1] = false;
  if (!editor_.open || Barred()) return;  // shown at the end of what works
  Library::ShowImported(station_, editor_, kind);
  ShowAll();
}

// --- what others stored ---

// A list that is being read is read to its end first: a base into which others write all the time
// would never have one.
bool LibraryWindow::TakeOver() {
  if (musicList_.AtWork()) return false;
  fresh_.fill(false);
  Library::TakeOver(station_, editor_);
  RefillSmallList();
  ShowAll();
  return true;
}

// Few rows are read at once: no control is barred below the operator's hand.
void LibraryWindow::RefillSmallList() {
  CardList* list = ListOfTab();
  if (!list || editor_.TabStrip1 == LibraryTab::kMusic || (!wide_ && !list->visible)) return;
  const bool seen = list->visible;
  fresh_[editor_.Tab()] = true;
  if (editor_.TabStrip1 == LibraryTab::kJingles)
    Library::BtnRechJingles_Click(station_, editor_);
  else
    Library::BtnFindAutre_Click(station_, editor_);
  list->visible = seen;
}

// --- the lists ---

CardList* LibraryWindow::ListOfTab() {
  switch (editor_.TabStrip1) {
    case LibraryTab::kMusic:
      return &editor_.PLDisco;
    case LibraryTab::kJingles:
      return &editor_.PLJingles;
    case LibraryTab::kShortElements:
      return &editor_.PLAutre;
    default:
      return nullptr;
  }
}

void LibraryWindow::ChooseRows(size_t tab, const std::vector<size_t>& rows) {
  if (rows.empty()) return;
  Run([this, tab, rows] {
    if (tab != editor_.Tab()) return;
    if (editor_.TabStrip1 == LibraryTab::kMusic)
      return Library::PLDisco_Click(station_, editor_, rows);
    // A single one of them is shown; several can be chosen of the music alone.
    const bool seen = ListOfTab()->visible;
    if (editor_.TabStrip1 == LibraryTab::kJingles)
      Library::PLJingles_Click(station_, editor_, rows.back());
    else
      Library::PLAutre_Click(station_, editor_, rows.back());
    // Arrows go on through the list; Return and a double click leave it.
    ListOfTab()->visible = seen;
  });
}

void LibraryWindow::ShowCardInPlaceOfList() {
  if (wide_ || !ListOfTab()) return;
  ListOfTab()->visible = false;
  ShowAll();
  pages_->currentWidget()->setFocus();
}

void LibraryWindow::FillList() {
  CardList* list = ListOfTab();
  if (!list || fresh_[editor_.Tab()] || Barred() || (!wide_ && !list->visible)) return;
  fresh_[editor_.Tab()] = true;  // not asked for again where it cannot be read
  if (editor_.TabStrip1 == LibraryTab::kMusic) return musicList_.Begin();
  if (editor_.TabStrip1 == LibraryTab::kJingles) return Work(Doing(Library::BtnRechJingles_Click));
  Work(Doing(Library::BtnFindAutre_Click));
}

void LibraryWindow::FillListOfMusic() {
  editor_.PLDisco.visible = true;
  fresh_[0] = false;
}

// --- measures ---

void LibraryWindow::resizeEvent(QResizeEvent* event) {
  const bool wide = event->size().width() >= kWidthOfBoth;
  if (wide != wide_ && body_) {
    wide_ = wide;
    if (CardList* list = ListOfTab(); list && !wide) list->visible = false;
    if (editor_.open) ShowAll();
  }
  Window::resizeEvent(event);
}

void LibraryWindow::ArrangeParts(double unit) {
  for (CardPage* page : cardPages_) page->Arrange(unit);
  for (CardListPane* list : cardLists_) list->Arrange(unit);
  pips_->Arrange(unit);
  hours_->Arrange(unit);
  markers_->Arrange(unit, !wide_);
}

}  // namespace zemo
