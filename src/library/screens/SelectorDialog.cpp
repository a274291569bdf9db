#include "library/screens/SelectorDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "library/LibraryTexts.h"
#include "platform/Prelisten.h"
#include "station/Station.h"
#include "ui/LevelMeter.h"
#include "ui/Named.h"
#include "ui/Theme.h"
#include "ui/Translation.h"
#include "ui/WhenFree.h"

namespace zemo {

namespace {

constexpr int kListenedMs = 50;
constexpr int kSeekStepMs = 1000, kSeekPageMs = 10000;
constexpr const char* kUp = "..";

}  // namespace

SelectorDialog::SelectorDialog(Station& station) : station_(station) {
  setObjectName(QStringLiteral("FileSelector"));
  setWindowModality(Qt::WindowModal);
  MakeControls();
  MakeBrowsing();
  MakePlayer();
  LayOut();
  poll_.setInterval(kListenedMs);
  connect(&poll_, &QTimer::timeout, this, [this] { Refresh(); });
}

SelectorDialog::~SelectorDialog() = default;

QPushButton* SelectorDialog::Button(const char* name, std::function<void()> pressed) {
  auto* button = Named(new QPushButton(this), name);
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, std::move(pressed));
  return button;
}

void SelectorDialog::MakeControls() {
  FileName = Named(new QLineEdit(this), "FileName");
  SelectAll = Named(new QCheckBox(this), "SelectAll");
  BtnSelectAll = Button("BtnSelectAll", [this] { TakeAll(true); });
  LblOut = Named(new QLabel(this), "LblOut");
  LblOut->setProperty("note", true);
  BtnOk = Button("BtnOk", [this] { accept(); });
  BtnCancel = Button("BtnCancel", [this] { reject(); });
  connect(FileName, &QLineEdit::textEdited, this, [this](const QString& path) {
    Run([&] { Selector::FileName_Change(station_, selector_, path.toStdString()); });
  });
  connect(FileName, &QLineEdit::returnPressed, this, [this] { accept(); });
  connect(SelectAll, &QCheckBox::clicked, this, [this](bool ticked) { TakeAll(ticked); });
}

void SelectorDialog::MakeBrowsing() {
  Drive1 = Named(new QComboBox(this), "Drive1");
  Dir1 = Named(new QLineEdit(this), "Dir1");
  DirList = Named(new QListWidget(this), "DirList");
  File1 = Named(new QListWidget(this), "File1");
  File1->setSelectionMode(QAbstractItemView::ExtendedSelection);
  File1->setUniformItemSizes(true);
  connect(Drive1, &QComboBox::activated, this, [this] {
    Run([&] { Selector::Drive1_Change(station_, selector_, Drive1->currentText().toStdString()); });
  });
  connect(Dir1, &QLineEdit::returnPressed, this, [this] { PutFolder(Dir1->text().toStdString()); });
  connect(DirList, &QListWidget::itemActivated, this,
          [this](const QListWidgetItem* item) { EnterFolder(item->text().toStdString()); });
  connect(File1, &QListWidget::itemSelectionChanged, this, [this] {
    if (!showing_) ChooseRows();
  });
  connect(File1, &QListWidget::itemActivated, this, [this] { accept(); });
}

void SelectorDialog::MakePlayer() {
  const auto player = [this](const char* name, void (*pressed)(Station&, SoundFileSelector&)) {
    return Button(name, [this, pressed] { Run([&] { pressed(station_, selector_); }); });
  };
  btnPlay = player("btnPlay", Selector::btnPlay_Click);
  btnPause = player("btnPause", Selector::btnPause_Click);
  btnRestart = player("btnRestart", Selector::btnRestart_Click);
  BtnStop = player("BtnStop", Selector::BtnStop_Click);
  TrackBar = Named(new QSlider(Qt::Horizontal, this), "TrackBar");
  TrackBar->setSingleStep(kSeekStepMs);
  TrackBar->setPageStep(kSeekPageMs);
  connect(TrackBar, &QSlider::valueChanged, this,
          [this](int ms) { Run([&] { Selector::TrackBar_Change(station_, selector_, ms); }); });
  LblTemp = Named(new QLabel(this), "LblTemp");
  MMLevelX1 = Named(new LevelMeter(this), "MMLevelX1");
  MMLevelX2 = Named(new LevelMeter(this), "MMLevelX2");
}

void SelectorDialog::LayOut() {
  folderLabel_ = new QLabel(this);
  filesLabel_ = new QLabel(this);
  nameLabel_ = new QLabel(this);
  for (QLabel* label : {folderLabel_, filesLabel_, nameLabel_}) label->setProperty("dim", true);
  auto* folder = new QHBoxLayout;
  folder->addWidget(Drive1);
  folder->addWidget(Dir1, 1);
  auto* lists = new QGridLayout;
  lists->addWidget(folderLabel_, 0, 0);
  lists->addLayout(folder, 1, 0, 1, 2);
  lists->addWidget(filesLabel_, 2, 1);
  lists->addWidget(DirList, 3, 0);
  lists->addWidget(File1, 3, 1);
  lists->setColumnStretch(0, 2);
  lists->setColumnStretch(1, 3);
  lists->setRowStretch(3, 1);
  auto* all = new QHBoxLayout;
  all->addWidget(SelectAll);
  all->addWidget(BtnSelectAll);
  all->addWidget(LblOut, 1, Qt::AlignRight);
  auto* name = new QHBoxLayout;
  name->addWidget(nameLabel_);
  name->addWidget(FileName, 1);
  auto* player = new QHBoxLayout;
  for (QPushButton* button : {btnPlay, btnPause, btnRestart, BtnStop}) player->addWidget(button);
  player->addWidget(TrackBar, 1);
  player->addWidget(LblTemp);
  auto* levels = new QVBoxLayout;
  levels->setSpacing(3);
  levels->addWidget(MMLevelX1);
  levels->addWidget(MMLevelX2);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  buttons->addWidget(BtnOk);
  buttons->addWidget(BtnCancel);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(lists, 1);
  layout->addLayout(all);
  layout->addLayout(name);
  layout->addLayout(player);
  layout->addLayout(levels);
  layout->addLayout(buttons);
}

void SelectorDialog::SetTexts(const Translation& texts) {
  setWindowTitle(texts.Word("title"));
  for (QPushButton* button : findChildren<QPushButton*>())
    button->setText(texts.Word(button->objectName().toStdString()));
  SelectAll->setText(texts.Word("SelectAll"));
  folderLabel_->setText(texts.Word("For.Dir1"));
  filesLabel_->setText(texts.Word("For.File1"));
  nameLabel_->setText(texts.Word("For.FileName"));
  const std::pair<QWidget*, const char*> names[] = {
      {Drive1, "For.Drive1"},       {Dir1, "For.Dir1"},           {DirList, "For.Dir1"},
      {File1, "For.File1"},         {FileName, "For.FileName"},   {TrackBar, "For.TrackBar"},
      {MMLevelX1, "For.MMLevelX1"}, {MMLevelX2, "For.MMLevelX2"},
  };
  for (const auto& [control, name] : names) control->setAccessibleName(texts.Word(name));
}

// --- opening and ending ---

// Not its child: it stays when that window goes.
void SelectorDialog::Arrange(const QWidget& over) {
  const double unit = Theme::UnitFor(over.size());
  setStyleSheet(over.styleSheet());
  for (LevelMeter* meter : {MMLevelX1, MMLevelX2}) meter->setFixedHeight(Theme::Px(unit, 7));
  LblTemp->setMinimumWidth(QFontMetrics(Theme::Type(unit, 15)).horizontalAdvance("00:00:00") + 8);
  resize(std::min(Theme::Px(unit, 860), over.width()),
         std::min(Theme::Px(unit, 620), over.height()));
  move(over.geometry().center() - rect().center());
}

void SelectorDialog::Choose(QWidget& over, const std::string& currentFile,
                            const std::vector<std::string>& known, TakeFiles take) {
  if (selector_.open) return raise();
  take_ = std::move(take);
  const auto langue = static_cast<int>(station_.base.CnfInt(Cnf::kLangue));
  SetTexts(Translation({{}, SelectorCaptions()}, langue));
  Arrange(over);
  Selector::Open(station_, selector_, currentFile, known);
  listed_.clear();
  ShowAll();
  winId();
  windowHandle()->setTransientParent(over.window()->windowHandle());
  show();
  File1->setFocus();
  poll_.start();
}

void SelectorDialog::accept() {
  if (!working_) End(true);
}

void SelectorDialog::reject() {
  if (!working_) End(false);
}

void SelectorDialog::End(bool ok) {
  if (!selector_.open) return;
  poll_.stop();
  const std::vector<std::string> chosen = Selector::ChosenFiles(station_, selector_);
  if (ok)
    Selector::BtnOk_Click(station_, selector_);
  else
    Selector::BtnCancel_Click(station_, selector_);
  const TakeFiles take = std::exchange(take_, nullptr);
  done(ok ? Accepted : Rejected);
  if (ok && take) take(chosen);
}

// --- orders ---

void SelectorDialog::Run(const std::function<void()>& order) {
  if (!selector_.open || working_) return;
  order();
  ShowAll();
}

void SelectorDialog::ChooseRows() {
  std::vector<size_t> rows;
  const int current = File1->currentRow();
  for (int row = 0; row < File1->count(); ++row)
    if (row != current && File1->item(row)->isSelected()) rows.push_back(static_cast<size_t>(row));
  if (current >= 0 && File1->item(current)->isSelected())
    rows.push_back(static_cast<size_t>(current));
  Run([&] { Selector::File1_Click(station_, selector_, rows); });
}

void SelectorDialog::EnterFolder(const std::string& name) {
  PutFolder(name == kUp ? Selector::FolderOf(selector_.Dir1)
                        : Selector::PathIn(selector_.Dir1, name));
}

void SelectorDialog::PutFolder(const std::string& path) {
  Run([&] { Selector::Dir1_Change(station_, selector_, path); });
}

// Asks, and goes over all files: its controls are barred meanwhile.
void SelectorDialog::TakeAll(bool ticked) {
  WhenFree(station_, this, [this, ticked] {
    if (!selector_.open || working_) return;
    working_ = true;
    setEnabled(false);
    Selector::SelectAll_Click(station_, selector_, ticked);
    setEnabled(true);
    working_ = false;
    ShowAll();
    File1->setFocus();
  });
}

// --- showing ---

void SelectorDialog::ShowAll() {
  const QSignalBlocker silentDrive(Drive1), silentName(FileName);
  const QString drive = ShownText(selector_.Drive1);
  if (Drive1->findText(QStringLiteral("/")) < 0) Drive1->addItem(QStringLiteral("/"));
  if (Drive1->findText(drive) < 0) Drive1->addItem(drive);
  Drive1->setCurrentText(drive);
  if (!Dir1->hasFocus() || listed_ != selector_.Dir1) Dir1->setText(ShownText(selector_.Dir1));
  if (FileName->text() != ShownText(selector_.FileName))
    FileName->setText(ShownText(selector_.FileName));
  SelectAll->setChecked(selector_.SelectAll);
  btnPlay->setEnabled(selector_.btnPlayEnabled);
  ShowFiles();
  ShowSelection();
  Refresh();
}

void SelectorDialog::ShowFiles() {
  if (listed_ == selector_.Dir1 && File1->count() == static_cast<int>(selector_.File1.size()))
    return;
  listed_ = selector_.Dir1;
  showing_ = true;
  DirList->clear();
  if (!Selector::FolderOf(selector_.Dir1).empty() &&
      Selector::FolderOf(selector_.Dir1) != selector_.Dir1)
    DirList->addItem(QString::fromLatin1(kUp));
  for (const std::string& folder : selector_.folders) DirList->addItem(ShownText(folder));
  File1->clear();
  for (const SoundFileSelector::File& file : selector_.File1) File1->addItem(ShownText(file.name));
  showing_ = false;
}

void SelectorDialog::ShowSelection() {
  showing_ = true;
  int first = -1;
  for (int row = 0; row < File1->count(); ++row) {
    const bool selected = selector_.File1[static_cast<size_t>(row)].selected;
    QListWidgetItem* item = File1->item(row);
    if (item->isSelected() != selected) item->setSelected(selected);
    if (selected && first < 0) first = row;
  }
  if (first >= 0 && File1->currentRow() < 0) {
    File1->setCurrentRow(first, QItemSelectionModel::NoUpdate);
    File1->scrollToItem(File1->item(first));
  }
  showing_ = false;
}

void SelectorDialog::Refresh() {
  const QSignalBlocker silent(TrackBar);
  TrackBar->setRange(0, selector_.TrackBarMax);
  if (!TrackBar->isSliderDown()) TrackBar->setValue(selector_.TrackBar);
  LblTemp->setText(ShownText(selector_.LblTemp));
  LblOut->setText(ShownText(selector_.LblOut));
  const Prelisten* player = station_.platform.prelisten;
  const Prelisten::Levels levels = player ? player->HeardLevels() : Prelisten::Levels();
  const int64_t nowMs = station_.platform.clock.MonotonicMs();
  MMLevelX1->Show(levels.left, nowMs);
  MMLevelX2->Show(levels.right, nowMs);
}

}  // namespace zemo
