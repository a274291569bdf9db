#include "library/screens/HourPipPage.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>
#include <string>
#include <vector>

#include "library/HourPips.h"
#include "library/LibraryEditor.h"
#include "ui/RowTable.h"
#include "ui/Theme.h"

namespace zemo {

namespace {
constexpr int kHourColumn = 0, kFileColumn = 1, kOverlayColumn = 2, kDaysColumn = 3,
              kPipColumns = 4;
constexpr int kHeadRoom = 16;
}  // namespace

HourPipPage::HourPipPage(LibraryEditor& editor, const LibraryOrders& orders,
                         const Translation& texts, QWidget* parent)
    : QWidget(parent), editor_(editor), orders_(orders), texts_(texts) {
  MakeTable(texts);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(GTopH, 1);
  layout->addWidget(DayBoxes(texts));
}

void HourPipPage::MakeTable(const Translation& texts) {
  GTopH = new QTableWidget(HourMasks::kHours, kPipColumns, this);
  GTopH->setObjectName(QStringLiteral("GTopH"));
  GTopH->setAccessibleName(texts.Word("TabStrip1.4"));
  QStringList heads;
  for (int column = 0; column < kPipColumns; ++column)
    heads << texts.Word("GTopH." + std::to_string(column));
  GTopH->setHorizontalHeaderLabels(heads);
  for (int column = kFileColumn; column < kPipColumns; ++column)
    GTopH->horizontalHeaderItem(column)->setToolTip(ColumnTip(column));
  initials_ = texts.Word("DayLetters");
  MakeRowTable(*GTopH);
  for (int row = 0; row < HourMasks::kHours; ++row)
    for (int column = 0; column < kPipColumns; ++column) {
      auto* item = new QTableWidgetItem;
      if (column >= kOverlayColumn) item->setTextAlignment(Qt::AlignCenter);
      if (column >= kFileColumn) item->setToolTip(ColumnTip(column));
      GTopH->setItem(row, column, item);
    }
  GTopH->installEventFilter(this);
  connect(GTopH, &QTableWidget::cellClicked, this,
          [this](int row, int column) { Click(row, column); });
  connect(GTopH, &QTableWidget::currentCellChanged, this, [this](int row) {
    if (row >= 0) Click(row, kHourColumn);
  });
  connect(GTopH, &QTableWidget::cellDoubleClicked, this, [this](int, int column) {
    if (column == kFileColumn) orders_.chooseFiles();
  });
}

QWidget* HourPipPage::DayBoxes(const Translation& texts) {
  auto* days = new QWidget(this);
  auto* layout = new QHBoxLayout(days);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(10);
  hour_ = new QLabel(days);
  layout->addWidget(hour_);
  for (int day = 1; day <= HourMasks::kDays; ++day) {
    auto* box = new QCheckBox(texts.Word("JourSem." + std::to_string(day)), days);
    box->setObjectName(QStringLiteral("JourTop_%1").arg(day));
    JourTop[static_cast<size_t>(day - 1)] = box;
    layout->addWidget(box);
    connect(box, &QCheckBox::clicked, this, [this, day](bool on) { PutDay(day, on); });
  }
  layout->addStretch(1);
  return days;
}

void HourPipPage::PutDay(int day, bool on) {
  const auto hour = static_cast<size_t>(editor_.pipHour);
  std::string days = editor_.GTopH[hour].days;
  days.resize(HourMasks::kDays, ' ');
  days[static_cast<size_t>(day - 1)] = on ? 'X' : ' ';
  orders_.run([this, hour, days] { Library::GTopH_Change(editor_, hour, kDaysColumn, days); });
}

void HourPipPage::Click(int row, int column) {
  const auto hour = static_cast<size_t>(row);
  orders_.run([this, hour, column] { Library::GTopH_Click(editor_, hour, column); });
}

QString HourPipPage::ColumnTip(int column) const {
  return texts_.Word("GTopH." + std::to_string(column) + ".Tip");
}

// The initial of each day on which the pip plays, a dash for each other one.
QString HourPipPage::DayLetters(const std::string& days) const {
  QString letters = initials_;
  for (qsizetype day = 0; day < letters.size(); ++day) {
    const auto place = static_cast<size_t>(day);
    if (place >= days.size() || days[place] != 'X') letters[day] = u'-';
  }
  return letters;
}

void HourPipPage::ShowPips() {
  const QSignalBlocker silent(GTopH);
  for (int row = 0; row < HourMasks::kHours; ++row) {
    const HourPipRow& pip = editor_.GTopH[static_cast<size_t>(row)];
    GTopH->item(row, kHourColumn)
        ->setText(ShownText(HourPipCell(editor_, static_cast<size_t>(row), kHourColumn)));
    GTopH->item(row, kFileColumn)->setText(ShownText(pip.file));
    const QString tip = ColumnTip(kFileColumn);
    GTopH->item(row, kFileColumn)
        ->setToolTip(pip.file.empty() ? tip : ShownText(pip.file) + u'\n' + tip);
    GTopH->item(row, kOverlayColumn)->setText(pip.overlay ? QStringLiteral("X") : QString());
    GTopH->item(row, kDaysColumn)->setText(DayLetters(pip.days));
  }
  // A table that gets the keyboard has a current row, which need not be a selected one.
  if (!GTopH->selectionModel()->isRowSelected(editor_.pipHour, {}))
    GTopH->setCurrentCell(editor_.pipHour, kFileColumn);
  const HourPipRow& pip = editor_.GTopH[static_cast<size_t>(editor_.pipHour)];
  hour_->setText(
      ShownText(HourPipCell(editor_, static_cast<size_t>(editor_.pipHour), kHourColumn)));
  for (size_t day = 0; day < JourTop.size(); ++day)
    JourTop[day]->setChecked(day < pip.days.size() && pip.days[day] == 'X');
}

bool HourPipPage::eventFilter(QObject* watched, QEvent* event) {
  if (watched != GTopH || event->type() != QEvent::KeyPress) return false;
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (key == Qt::Key_Return || key == Qt::Key_Enter) return orders_.chooseFiles(), true;
  if (key == Qt::Key_Space) return Click(editor_.pipHour, kOverlayColumn), true;
  return false;
}

// --- measures ---

void HourPipPage::Arrange(double unit) {
  ArrangeRowTable(*GTopH, unit, 14, 5);
  ArrangeColumns();
}

void HourPipPage::ArrangeColumns() {
  const QFontMetrics heads(GTopH->horizontalHeader()->font()), cells(GTopH->font());
  std::vector<ColumnRoom> columns;
  for (int column = 0; column < kPipColumns; ++column) {
    const int head = heads.horizontalAdvance(GTopH->horizontalHeaderItem(column)->text());
    const int sample = cells.horizontalAdvance(QStringLiteral("MMMMMMM"));
    columns.push_back({std::max(head, sample) + kHeadRoom, column == kFileColumn ? 1 : 0});
  }
  ShareWidth(*GTopH, columns);
}

void HourPipPage::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  ArrangeColumns();
}

}  // namespace zemo
