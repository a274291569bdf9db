// The parts of the library window: menus, pages, lists, and what it shows of the editor on them.
#include <QAction>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSlider>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>
#include <algorithm>

#include "library/LibraryScreen.h"
#include "library/SelectedCards.h"
#include "library/screens/CardListPane.h"
#include "library/screens/CardState.h"
#include "library/screens/HourPipPage.h"
#include "library/screens/HoursFrame.h"
#include "library/screens/JinglePage.h"
#include "library/screens/LibraryWindow.h"
#include "library/screens/MarkerPane.h"
#include "library/screens/MusicPage.h"
#include "library/screens/ShortElementPage.h"
#include "platform/Desktop.h"
#include "station/Station.h"
#include "ui/MenuLetters.h"

namespace zemo {

namespace {

constexpr int kCardShare = 56, kListShare = 44;
constexpr const char* kMoment = "2026/12/24 20:08:08";

struct ListParts {
  CardColumns columns;
  std::vector<CardColumnRoom> rooms;
};

ListParts MusicList() {
  return {{"PLDisco", DiscoCol::kCount, {DiscoCol::kArtist, DiscoCol::kTitle}, {DiscoCol::kCode}},
          {{"An artist of the air", 4},
           {"A title of some words", 4},
           {"00:00", 0},
           {"INSTRUMENTAL", 1},
           {"INTERNATIONAL", 0},
           {"00000", 0},
           {kMoment, 0}}};
}

ListParts JingleList() {
  return {{"PLJingles", Library::kJingleListColumns, {0}, {6}},
          {{"A jingle of some words", 4},
           {"An artist", 2},
           {"00:00", 0},
           {"INSTRUMENTAL", 1},
           {"X", 0},
           {"A file somewhere", 2},
           {"00000", 0}}};
}

ListParts ShortElementList() {
  return {{"PLAutre", Library::kShortElementListColumns, {0}, {4}},
          {{"An element of some words", 4},
           {"00:00", 0},
           {"X", 0},
           {"A file somewhere", 3},
           {"00000", 0}}};
}

// The card shown is one of several that are selected.
bool ShownWithOthers(const LibraryEditor& editor) {
  const std::vector<int32_t> codes = Library::SelectedCards(editor);
  return codes.size() > 1 && std::find(codes.begin(), codes.end(), editor.Code()) != codes.end();
}

}  // namespace

// --- menus ---

QAction* LibraryWindow::AddMenu(QWidget* menu, const char* name, std::function<void()> order) {
  auto* entry = new QAction(Texts().Word(name), this);
  entry->setObjectName(QString::fromLatin1(name));
  connect(entry, &QAction::triggered, this, std::move(order));
  menu->addAction(entry);
  return entry;
}

void LibraryWindow::MakeMenus() {
  QMenuBar* bar = menuBar();
  bar->setNativeMenuBar(false);
  Nouveau_ = AddMenu(bar, "Nouveau", [this] { Run(Doing(Library::Nouveau_Click)); });
  Ajouter_ = AddMenu(bar, "Ajouter", [this] { ChangeCards(Library::Ajouter_Click); });
  Replacer_ = AddMenu(bar, "Replacer", [this] { ReplaceCard(); });
  MnuDelete_ = AddMenu(bar, "MnuDelete", [this] { DeleteCards(); });
  MnuListe_ = AddMenu(bar, "MnuListe", [this] { Run([this] { FillListOfMusic(); }); });
  MnuImp_ = AddMenu(bar, "MnuImp", [this] { Print(); });
  QMenu* options = bar->addMenu(Texts().Word("MnuOptions"));
  options->setObjectName(QStringLiteral("MnuOptions"));
  MnuExporter_ = AddMenu(options, "MnuExporter", [this] { Export(); });
  MnuTxt_ = AddMenu(options, "MnuTxt", [this] { Work(Doing(Library::MnuTxt_Click)); });
  MnuGive_ = AddMenu(options, "MnuGive", [this] { GiveToSelected(); });
  MnuImport_ = AddMenu(options, "MnuImport", [this] { ChooseFolder(); });
  options->addSeparator();
  MnuInitDate_ = AddMenu(options, "MnuInitDate", [this] { ResetDates(); });
  AddMenu(bar, "MnuAide", [this] {
    station_.platform.messages.Show(Texts().Word("MnuAide").toStdString(),
                                    Texts().Word("HelpText").toStdString(), Buttons::kOk);
  });
  Nouveau_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_N));
  Replacer_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_S));
  MnuListe_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_L));
  MnuGive_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_G));
  MnuImp_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_P));
  GiveMenuLetters(*bar);
  GiveMenuLetters(*options);
}

// --- pages ---

void LibraryWindow::MakePages() {
  body_ = new QWidget(this);
  setCentralWidget(body_);
  card_ = new QWidget(body_);
  TabStrip1 = new QTabBar(body_);
  TabStrip1->setObjectName(QStringLiteral("TabStrip1"));
  TabStrip1->setDrawBase(false);
  TabStrip1->setExpanding(false);
  for (const char* tab : {"TabStrip1.1", "TabStrip1.2", "TabStrip1.3", "TabStrip1.4"})
    TabStrip1->addTab(Texts().Word(tab));
  connect(TabStrip1, &QTabBar::currentChanged, this, [this](int tab) {
    Run([this, tab] {
      if (tab > 0 && tab < static_cast<int>(kCardTabs)) fresh_[static_cast<size_t>(tab)] = false;
      Library::TabStrip1_Click(station_, editor_, static_cast<LibraryTab>(tab + 1));
    });
  });
  LblEtat = new CardState(editor_, Texts(), body_);
  pages_ = new QStackedWidget(card_);
  cardPages_ = {new MusicPage(station_, editor_, orders_, Texts(), pages_),
                new JinglePage(station_, editor_, orders_, Texts(), pages_),
                new ShortElementPage(station_, editor_, orders_, Texts(), pages_)};
  for (CardPage* page : cardPages_) pages_->addWidget(page);
  pips_ = new HourPipPage(editor_, orders_, Texts(), pages_);
  pages_->addWidget(pips_);
  hours_ = new HoursFrame(station_, editor_, orders_, Texts(), card_);
  navigation_ = Navigation();
  sort_ = SortOptions();
}

QWidget* LibraryWindow::Navigation() {
  auto* bar = new QWidget(card_);
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(0, 0, 0, 0);
  const auto button = [&](const char* name, std::function<void()> pressed) {
    auto* made = new QPushButton(Texts().Word(name), bar);
    made->setObjectName(QString::fromLatin1(name));
    connect(made, &QPushButton::clicked, this, std::move(pressed));
    return made;
  };
  Slider1 = new QSlider(Qt::Horizontal, bar);
  Slider1->setObjectName(QStringLiteral("Slider1"));
  Slider1->setAccessibleName(Texts().Word("title"));
  connect(Slider1, &QSlider::valueChanged, this, [this](int value) {
    Run([this, value] { Library::Slider1_Change(station_, editor_, value); });
  });
  QPushButton* back = button("BtnMoins", [this] { Run(Doing(Library::BtnMoins_Click)); });
  QPushButton* on = button("BtnPlus", [this] { Run(Doing(Library::BtnPlus_Click)); });
  back->setShortcut(QKeySequence(Qt::ALT | Qt::Key_PageUp));
  on->setShortcut(QKeySequence(Qt::ALT | Qt::Key_PageDown));
  layout->addWidget(back);
  layout->addWidget(Slider1, 1);
  layout->addWidget(on);
  const char* names[kCardTabs] = {"LblInfoMus", "LblInfoJingle", "LblInfoVirgule"};
  for (size_t tab = 0; tab < kCardTabs; ++tab) {
    info_[tab] = new QLabel(bar);
    info_[tab]->setObjectName(QString::fromLatin1(names[tab]));
    layout->addWidget(info_[tab]);
  }
  layout->addWidget(
      button("BtnClear", [this] { Run([this] { Library::BtnClear_Click(editor_); }); }));
  return bar;
}

QWidget* LibraryWindow::SortOptions() {
  auto* options = new QWidget(body_);
  auto* layout = new QHBoxLayout(options);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(10);
  auto* label = new QLabel(Texts().Word("For.OptionTri"), options);
  label->setProperty("dim", true);
  layout->addWidget(label);
  for (int option = 0; option < static_cast<int>(OptionTri.size()); ++option) {
    auto* made = new QRadioButton(Texts().Word("OptionTri." + std::to_string(option)), options);
    made->setObjectName(QStringLiteral("OptionTri_%1").arg(option));
    OptionTri[static_cast<size_t>(option)] = made;
    layout->addWidget(made);
    connect(made, &QRadioButton::clicked, this, [this, option] {
      Run([this, option] { Library::OptionTri_Click(station_, editor_, option); });
    });
  }
  return options;
}

// --- lists ---

CardListPane* LibraryWindow::AddList(const char* name, const char* search) {
  const size_t tab = static_cast<size_t>(lists_->count());
  CardList& list = tab == 0 ? editor_.PLDisco : tab == 1 ? editor_.PLJingles : editor_.PLAutre;
  ListParts parts = tab == 0 ? MusicList() : tab == 1 ? JingleList() : ShortElementList();
  CardListOrders orders{[this, tab](const std::vector<size_t>& rows) { ChooseRows(tab, rows); },
                        [this] { ShowCardInPlaceOfList(); }};
  auto* pane = new CardListPane(list, parts.columns, std::move(parts.rooms), search,
                                std::move(orders), Texts(), lists_);
  pane->setObjectName(QString::fromLatin1(name));
  lists_->addWidget(pane);
  return pane;
}

void LibraryWindow::MakeLists() {
  column_ = new QWidget(body_);
  lists_ = new QStackedWidget(column_);
  cardLists_[0] = AddList("CadreDisco", "RechDisco");
  cardLists_[1] = AddList("CadreJingles", "RechJingles");
  cardLists_[2] = AddList("CadreAutre", "RechAutre");
  connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_F), this), &QShortcut::activated, this,
          [this] {
            if (lists_->isVisible()) lists_->currentWidget()->findChild<QLineEdit*>()->setFocus();
          });
}

void LibraryWindow::MakeFrame() {
  markers_ = new MarkerPane(
      station_, editor_, sources_.waveforms, Texts(), [this] { cardPages_[0]->ShowCard(); },
      column_);
  auto* column = new QVBoxLayout(column_);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(lists_, 1);
  column->addWidget(markers_);
  auto* card = new QVBoxLayout(card_);
  card->setContentsMargins(0, 0, 0, 0);
  card->addWidget(pages_, 1);
  card->addWidget(hours_);
  card->addWidget(navigation_);
  auto* top = new QHBoxLayout;
  top->addWidget(TabStrip1);
  top->addSpacing(10);
  top->addWidget(LblEtat, 0, Qt::AlignVCenter);
  top->addStretch(1);
  top->addWidget(sort_);
  auto* both = new QHBoxLayout;
  both->setSpacing(10);
  for (QWidget* part : {card_, column_})
    part->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  both->addWidget(card_, kCardShare);
  both->addWidget(column_, kListShare);
  auto* layout = new QVBoxLayout(body_);
  layout->setContentsMargins(8, 4, 8, 8);
  layout->addLayout(top);
  layout->addLayout(both, 1);
  import_ = new ImportPane(station_, sources_.import, Texts(),
                           {[this] { return editor_.open && !Barred(); },
                            [this](LibraryTab kind) { ShowImported(kind); }},
                           body_);
  layout->addWidget(import_);
  setAcceptDrops(true);
  // Over a box, too, files are dropped on the window: its text they are not.
  for (QLineEdit* box : findChildren<QLineEdit*>()) box->setAcceptDrops(false);
}

// --- showing ---

void LibraryWindow::ShowAll() {
  const auto tab = static_cast<int>(editor_.Tab());
  {
    const QSignalBlocker silent(TabStrip1);
    TabStrip1->setCurrentIndex(tab);
  }
  pages_->setCurrentIndex(tab);
  // Beside the card the list of the music counts as seen, as its selection can be deleted; those of
  // jingles and short elements do not, which would bar the hours.
  if (CardList* list = ListOfTab(); list && wide_)
    list->visible = editor_.TabStrip1 == LibraryTab::kMusic;
  if (editor_.OnCards())
    cardPages_[editor_.Tab()]->ShowCard();
  else
    pips_->ShowPips();
  ShowMenus();
  ShowNavigation();
  ShowLists();
  ShowMarkers();
  FillList();
}

void LibraryWindow::ShowMenus() {
  const bool cards = editor_.OnCards(), music = editor_.TabStrip1 == LibraryTab::kMusic;
  for (QAction* entry : {Nouveau_, Ajouter_}) entry->setEnabled(cards);
  for (QAction* entry : {MnuListe_, MnuImp_, MnuExporter_, MnuTxt_, MnuInitDate_})
    entry->setEnabled(music);
  MnuGive_->setEnabled(music && ShownWithOthers(editor_));
  MnuImport_->setEnabled(cards && import_->CanBegin());
  Replacer_->setEnabled(editor_.ReplacerEnabled);
  MnuDelete_->setEnabled(editor_.MnuDeleteEnabled);
  sort_->setVisible(music);
  OptionTri[static_cast<size_t>(std::clamp(editor_.OptionTri, 0, 5))]->setChecked(true);
}

void LibraryWindow::ShowNavigation() {
  navigation_->setVisible(editor_.OnCards());
  LblEtat->ShowState();
  const bool masks = editor_.OnCards() && editor_.TabStrip1 != LibraryTab::kShortElements;
  hours_->setVisible(masks);
  if (masks) hours_->ShowHours();
  {
    const QSignalBlocker silent(Slider1);
    Slider1->setRange(std::min(1, editor_.Slider1Max), editor_.Slider1Max);
    Slider1->setValue(editor_.Slider1);
    Slider1->setEnabled(editor_.Slider1Max > 0);
  }
  for (size_t tab = 0; tab < kCardTabs; ++tab) {
    info_[tab]->setText(
        Texts().Word("Info").arg(editor_.cardPosition[tab]).arg(editor_.cardCount[tab]));
    info_[tab]->setVisible(tab == editor_.Tab());
  }
}

void LibraryWindow::ShowLists() {
  const CardList* list = ListOfTab();
  const bool shown = list && (wide_ || list->visible);
  if (list) lists_->setCurrentIndex(static_cast<int>(editor_.Tab()));
  column_->setVisible(shown);
  card_->setVisible(wide_ || !shown);
  if (!shown) return;
  cardLists_[editor_.Tab()]->ShowBack(!wide_);
  cardLists_[editor_.Tab()]->ShowRows(editor_.Code());
}

// The sound of the card stands below the list, or where that is in the card's place below the card.
void LibraryWindow::ShowMarkers() {
  QWidget& room = wide_ ? *column_ : *card_;
  if (markers_->parentWidget() != &room) {
    auto* rows = static_cast<QVBoxLayout*>(room.layout());
    rows->insertWidget(1, markers_);
    Arrange();
  }
  markers_->setVisible(editor_.TabStrip1 == LibraryTab::kMusic);
}

}  // namespace zemo
