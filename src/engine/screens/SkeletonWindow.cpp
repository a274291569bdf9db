#include "engine/screens/SkeletonWindow.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <algorithm>
#include <utility>

#include "engine/screens/SkeletonWindowTexts.h"
#include "scheduling/SkeletonDialogue.h"
#include "station/Station.h"
#include "ui/Theme.h"
#include "ui/WhenFree.h"

namespace zemo {

namespace {
constexpr const char* kDays[] = {"mnuLundi",    "mnuMardi",  "mnuMercredi", "mnuJeudi",
                                 "mnuVendredi", "mnuSamedi", "mnuDimanche"};
constexpr int kLongest = 32767;  // minutes: a request counts them in 16 bits

bool IsReturn(int key) {
  return key == Qt::Key_Return || key == Qt::Key_Enter;
}

std::vector<std::string> PositionsOf(const TextGrid& skeleton) {
  std::vector<std::string> genres;
  for (int row = 0; row < skeleton.RowCount(); ++row) genres.push_back(skeleton.Cell(row, 0));
  return genres;
}
}  // namespace

SkeletonWindow::SkeletonWindow(Station& station, int langue, double unit, QWidget* parent)
    : QDialog(parent), station_(station), texts_(SkeletonWindowTexts(), langue) {
  setObjectName(QStringLiteral("SkeletonDialog"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowModality(Qt::WindowModal);
  setWindowTitle(texts_.Word("SkeletonTitle"));
  MakeControls();
  MakeMenu();
  LayOut();
  Connect();
  texts_.Apply(*this);
  LblEtat->setText(texts_.Word("SkeletonHint"));
  Arrange(unit);
  ShowSkeleton();
  ListGenre->setFocus();
}

void SkeletonWindow::MakeControls() {
  const auto& dialog = station_.requests.SkeletonDialog;
  const auto named = [](auto* control, const char* name) {
    control->setObjectName(QString::fromLatin1(name));
    return control;
  };
  ListGenre = named(new QListWidget(this), "ListGenre");
  for (const std::string& genre : dialog.ListGenre)
    ListGenre->addItem(QString::fromStdString(genre));
  ListGenre->setCurrentRow(0);
  ListGenre->installEventFilter(this);
  SquelettePLS = named(new QTableWidget(0, 1, this), "SquelettePLS");
  SquelettePLS->horizontalHeader()->hide();
  SquelettePLS->horizontalHeader()->setStretchLastSection(true);
  SquelettePLS->verticalHeader()->setHighlightSections(false);
  SquelettePLS->verticalHeader()->setDefaultAlignment(Qt::AlignRight | Qt::AlignVCenter);
  SquelettePLS->setEditTriggers(QAbstractItemView::NoEditTriggers);
  SquelettePLS->setSelectionMode(QAbstractItemView::SingleSelection);
  SquelettePLS->setAlternatingRowColors(true);
  SquelettePLS->setShowGrid(false);
  SquelettePLS->setTabKeyNavigation(false);
  SquelettePLS->installEventFilter(this);
  LblGenre = named(new QLabel(this), "LblGenresOfferts");
  LblGenre->setBuddy(ListGenre);
  LblSquelette = named(new QLabel(this), "LblSquelette");
  LblSquelette->setBuddy(SquelettePLS);
  SpinMinutes = named(new QSpinBox(this), "SpinMinutes");
  SpinMinutes->setButtonSymbols(QAbstractSpinBox::NoButtons);
  SpinMinutes->setAlignment(Qt::AlignRight);
  SpinMinutes->setRange(0, kLongest);
  SpinMinutes->setValue(dialog.SpinMinutes);
  LblMinutes = named(new QLabel(this), "LblMinutes");
  LblMinutes->setBuddy(SpinMinutes);
  Redondance = named(new QCheckBox(this), "Redondance");
  Redondance->setChecked(dialog.Redondance);
  LblEtat = named(new QLabel(this), "LblEtatSquelette");
  LblEtat->setProperty("dim", true);
  LblEtat->setWordWrap(true);
  BtnOk = named(new QPushButton(this), "BtnOk");
  BtnOk->setDefault(true);
  BtnCancel = named(new QPushButton(this), "BtnCancel");
  BtnCancel->setAutoDefault(false);
}

void SkeletonWindow::MakeMenu() {
  auto* bar = new QMenuBar(this);
  bar->setNativeMenuBar(false);
  bar->setFont(font());
  auto* menu = bar->addMenu(QString());
  menu->setObjectName(QStringLiteral("mnuCopieSquelette"));
  for (int day = 1; day <= 7; ++day) {
    auto* entry = new QAction(this);
    entry->setObjectName(QString::fromLatin1(kDays[day - 1]));
    entry->setShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + day)));
    menu->addAction(entry);
    connect(entry, &QAction::triggered, this, [this, day] { CopyDay(day); });
  }
}

void SkeletonWindow::LayOut() {
  auto* lists = new QGridLayout;
  lists->setHorizontalSpacing(10);
  lists->setVerticalSpacing(3);
  lists->addWidget(LblGenre, 0, 0);
  lists->addWidget(LblSquelette, 0, 1);
  lists->addWidget(ListGenre, 1, 0);
  lists->addWidget(SquelettePLS, 1, 1);
  lists->setColumnStretch(0, 1);
  lists->setColumnStretch(1, 1);
  lists->setRowStretch(1, 1);
  auto* wish = new QHBoxLayout;
  wish->setSpacing(6);
  wish->addWidget(LblMinutes);
  wish->addWidget(SpinMinutes);
  wish->addSpacing(12);
  wish->addWidget(Redondance);
  wish->addStretch();
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(6);
  buttons->addStretch();
  buttons->addWidget(BtnOk);
  buttons->addWidget(BtnCancel);
  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(8);
  layout->setMenuBar(findChild<QMenuBar*>());
  layout->addLayout(lists, 1);
  layout->addWidget(LblEtat);
  layout->addLayout(wish);
  layout->addLayout(buttons);
}

void SkeletonWindow::Connect() {
  connect(ListGenre, &QListWidget::itemDoubleClicked, this, [this] { AppendGenre(); });
  connect(SquelettePLS, &QTableWidget::currentCellChanged, this,
          [this](int row) { station_.requests.SkeletonDialog.selectedRow = row; });
  connect(SpinMinutes, &QSpinBox::valueChanged, this,
          [this](int minutes) { station_.requests.SkeletonDialog.SpinMinutes = minutes; });
  connect(Redondance, &QCheckBox::toggled, this,
          [this](bool on) { station_.requests.SkeletonDialog.Redondance = on; });
  connect(BtnOk, &QPushButton::clicked, this, [this] { Ok(); });
  connect(BtnCancel, &QPushButton::clicked, this, [this] { reject(); });
}

void SkeletonWindow::Arrange(double unit) {
  const QFontMetrics metrics(Theme::Type(unit, 15));
  const int row = metrics.height() + Theme::Px(unit, 6);
  for (int genre = 0; genre < ListGenre->count(); ++genre)
    ListGenre->item(genre)->setSizeHint({0, row});
  SquelettePLS->verticalHeader()->setMinimumSectionSize(row);
  SquelettePLS->verticalHeader()->setDefaultSectionSize(row);
  SquelettePLS->verticalHeader()->setFixedWidth(metrics.horizontalAdvance(QStringLiteral("000")) +
                                                Theme::Px(unit, 14));
  resize(sizeHint().expandedTo({Theme::Px(unit, 600), Theme::Px(unit, 520)}));
}

// --- showing ---

void SkeletonWindow::Refresh() {
  if (!station_.requests.SkeletonDialog.open) return QDialog::reject();
  ShowSkeleton();
}

void SkeletonWindow::ShowSkeleton() {
  std::vector<std::string> genres = PositionsOf(station_.requests.SkeletonDialog.SquelettePLS);
  if (genres == shown_) return;
  shown_ = std::move(genres);
  const QSignalBlocker silent(SquelettePLS);  // the selected row is the dialogue's
  SquelettePLS->setRowCount(static_cast<int>(shown_.size()));
  for (int row = 0; row < SquelettePLS->rowCount(); ++row) {
    const QString genre = QString::fromStdString(shown_[static_cast<size_t>(row)]);
    SquelettePLS->setItem(row, 0, new QTableWidgetItem(genre));
  }
  station_.requests.SkeletonDialog.selectedRow = SquelettePLS->currentRow();
}

void SkeletonWindow::SelectRow(int row) {
  const int last = SquelettePLS->rowCount() - 1;
  SquelettePLS->setCurrentCell(std::min(row, last), 0);
  station_.requests.SkeletonDialog.selectedRow = SquelettePLS->currentRow();
}

// --- orders ---

void SkeletonWindow::AppendGenre() {
  const QListWidgetItem* genre = ListGenre->currentItem();
  if (!genre) return;
  Skeleton::ListGenre_DblClick(station_, genre->text().toStdString());
  ShowSkeleton();
  SelectRow(SquelettePLS->rowCount() - 1);
}

void SkeletonWindow::DeletePosition() {
  const int row = SquelettePLS->currentRow();
  Skeleton::SquelettePLS_KeyDelete(station_);
  ShowSkeleton();
  SelectRow(row);
}

void SkeletonWindow::CopyDay(int day) {
  const bool copied = Skeleton::MnuDay_Click(station_, day);
  QString name = findChild<QAction*>(QString::fromLatin1(kDays[day - 1]))->text();
  name.remove(u'&');
  const QString hour = QString::fromStdString(station_.storedList.ChHeure.substr(0, 2));
  const QString which = QStringLiteral("%1, %2 h").arg(name, hour);
  LblEtat->setText(texts_.Word(copied ? "SkeletonCopied" : "SkeletonNone", which));
  if (!copied) return;
  ShowSkeleton();
  SelectRow(0);
}

void SkeletonWindow::Ok() {
  SpinMinutes->interpretText();
  BtnOk->setEnabled(false);
  WhenFree(station_, this, [this] {
    if (station_.requests.SkeletonDialog.open) Work();
  });
}

void SkeletonWindow::Work() {
  working_ = true;
  setEnabled(false);
  const QPointer<SkeletonWindow> window(this);
  Skeleton::BtnOk_Click(station_);
  if (!window) return;
  working_ = false;
  Refresh();
}

void SkeletonWindow::reject() {
  if (working_) return;
  Skeleton::BtnCancel_Click(station_);
  QDialog::reject();
}

bool SkeletonWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (watched == ListGenre && IsReturn(key)) return AppendGenre(), true;
  if (watched == SquelettePLS && key == Qt::Key_Delete) return DeletePosition(), true;
  return false;
}

}  // namespace zemo
