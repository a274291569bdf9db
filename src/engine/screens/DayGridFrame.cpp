#include "engine/screens/DayGridFrame.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTableView>
#include <algorithm>
#include <array>
#include <utility>

#include "engine/DayGridControls.h"
#include "engine/MainScreenPicture.h"
#include "platform/Folder.h"
#include "station/Station.h"
#include "traffic/DayGridPrint.h"
#include "ui/CalendarWindow.h"
#include "ui/PaperPrint.h"
#include "ui/Questions.h"
#include "ui/RowTable.h"
#include "ui/Theme.h"
#include "ui/WhenFree.h"

namespace zemo {

namespace {
constexpr int kTwipsAPixel = 15;
constexpr std::array kWidths = {700, 700, 1000, 3000};  // in twips; the others ...
constexpr int kElementWidth = 2500;

constexpr int kShownColumns = GridCol::kLastElement + 1;
}  // namespace

void DayGridModel::Sync() {
  if (shown_ == grid_.Rows()) return;
  beginResetModel();
  shown_ = grid_.Rows();
  used_ = GridCol::kFirstElement + 1;
  for (size_t row = 0; row < shown_.size(); ++row)
    for (int column = used_; column < kShownColumns; ++column)
      if (column < static_cast<int>(shown_[row].size()) &&
          !shown_[row][static_cast<size_t>(column)].empty())
        used_ = std::max(used_, column + 1);
  endResetModel();
}

int DayGridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : std::max(0, static_cast<int>(shown_.size()) - 1);
}

int DayGridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kShownColumns;
}

QVariant DayGridModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const auto& row = shown_[static_cast<size_t>(index.row()) + 1];
  const auto column = static_cast<size_t>(index.column());
  if (column >= row.size()) return {};
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
    return index.column() == GridCol::kType ? texts_.OfRoutine(row[column])
                                            : QString::fromStdString(row[column]);
  if (role == Qt::ForegroundRole && index.column() == GridCol::kType)
    return row[column] == "Pubs" ? Theme::kSpot : Theme::kNews;
  return {};
}

QVariant DayGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole || shown_.empty()) return {};
  const auto column = static_cast<size_t>(section);
  const std::string head = column < shown_[0].size() ? shown_[0][column] : std::string();
  return head.empty() ? texts_.Text("GPubJour", std::to_string(section)) : texts_.OfRoutine(head);
}

DayGridFrame::DayGridFrame(Station& station, const Questions& questions, DayGridOrders orders,
                           Translation texts, QWidget* parent)
    : QFrame(parent),
      station_(station),
      questions_(questions),
      orders_(std::move(orders)),
      model_(new DayGridModel(station.GPubJour, texts, this)),
      texts_(texts) {
  setObjectName(QStringLiteral("CadreGrille"));
  MakeControls();
  Connect();
}

void DayGridFrame::MakeControls() {
  GPubJour = new QTableView(this);
  GPubJour->setObjectName(QStringLiteral("GPubJour"));
  GPubJour->setModel(model_);
  MakeRowTable(*GPubJour);
  GPubJour->setShowGrid(true);
  GPubJour->horizontalHeader()->setStretchLastSection(true);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(6);
  const auto button = [&](const char* name) {
    auto* made = new QPushButton(this);
    made->setObjectName(QString::fromLatin1(name));
    buttons->addWidget(made);
    return made;
  };
  BtnCopyPub = button("BtnCopyPub");
  BtnImpressionPub = button("BtnImpressionPub");
  BtnPubJourX = button("BtnPubJourX");
  buttons->addStretch();
  BtnPrevision = button("BtnPrevision");
  BtnPrevision->setProperty("keys", QStringLiteral("F7"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(GPubJour, 1);
  layout->addLayout(buttons);
}

void DayGridFrame::Connect() {
  connect(GPubJour->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& now) {
            if (now.isValid()) OnAir::GPubJour_Click(station_, now.row() + 1);
            Refresh(PictureOf(station_));
          });
  connect(GPubJour, &QTableView::clicked, this, [this](const QModelIndex& index) {
    OnAir::GPubJour_Click(station_, index.row() + 1);
    Refresh(PictureOf(station_));
  });
  connect(GPubJour, &QTableView::doubleClicked, this,
          [this](const QModelIndex& index) { OpenElement(index.row() + 1, index.column()); });
  connect(BtnCopyPub, &QPushButton::clicked, this,
          [this] { WhenFree(station_, this, [this] { CopyBreak(); }); });
  connect(BtnImpressionPub, &QPushButton::clicked, this,
          [this] { WhenFree(station_, this, [this] { Print(); }); });
  connect(BtnPubJourX, &QPushButton::clicked, this,
          [this] { WhenFree(station_, this, [this] { Preview(); }); });
  connect(BtnPrevision, &QPushButton::clicked, this, [this] { orders_.forecast(); });
}

void DayGridFrame::TakeFocus() {
  GPubJour->setFocus();
}

int DayGridFrame::SelectedRow() const {
  const QModelIndex index = GPubJour->currentIndex();
  return index.isValid() ? index.row() + 1 : 0;
}

void DayGridFrame::OpenElement(int row, int column) {
  const std::string file = OnAir::FileOfGridCell(station_, row, column);
  if (!file.empty()) orders_.openSelector(file);
}

// The routines copy every break as spots, which is told where it is one of news.
void DayGridFrame::CopyBreak() {
  const int row = SelectedRow();
  const bool news = row > 0 && !station_.GPubJour.IsSpots(row);
  const bool copied = OnAir::BtnCopyPub_Click(station_, row, orders_.selectedRow());
  if (!copied)
    orders_.tell(texts_.Word("NoBreakChosen"));
  else if (news)
    orders_.tell(texts_.Word("NewsAsSpots"));
}

void DayGridFrame::Preview() {
  if (!OnAir::BtnPubJourX_Click(station_)) return;
  auto* calendar = new CalendarWindow(texts_.Langue(), station_.Now(), this);
  calendar->picked = [this](const LocalDateTime& day) { OnAir::PickPreviewDay(station_, day); };
  calendar->open();
}

void DayGridFrame::Print() {
  const auto answer =
      questions_.askText(this, texts_.Word("PrintTitle"), texts_.OfRoutine(kPrintSizeQuestion),
                         QString::fromUtf8(kPrintSizeDefault));
  if (!answer) return;
  PrintOnPaper(this, questions_, PrintedDayGrid(station_.GPubJour), kPrintFont,
               PrintSize(answer->toStdString()), texts_.Langue());
}

void DayGridFrame::Arrange(double unit) {
  unit_ = unit;
  ArrangeRowTable(*GPubJour, unit, 15, 6);
  for (int column = 0; column < kShownColumns; ++column) {
    const auto known = static_cast<size_t>(column);
    const int twips = known < kWidths.size() ? kWidths[known] : kElementWidth;
    const int heading = GPubJour->horizontalHeader()->sectionSizeHint(column);
    const int least = Theme::Px(unit, 1.25 * twips / kTwipsAPixel);
    // The heading row holds the date and the counts, which are as long as they are.
    GPubJour->setColumnWidth(column, std::max(heading + 4, least));
    GPubJour->setColumnHidden(column, column >= std::max(model_->UsedColumns(), 6));
  }
}

void DayGridFrame::Refresh(const MainScreen& screen) {
  model_->Sync();
  const int shape = model_->UsedColumns() * 1000 + model_->rowCount();
  if (shape != arrangedColumns_) {
    arrangedColumns_ = shape;
    Arrange(unit_);
  }
  const QString caption = screen.BtnCopyPubCaption.empty()
                              ? texts_.Text("BtnCopyPub", "text")
                              : texts_.OfRoutine(screen.BtnCopyPubCaption);
  if (BtnCopyPub->text() != caption) BtnCopyPub->setText(caption);
  BtnCopyPub->setEnabled(screen.BtnCopyPubEnabled);
  BtnImpressionPub->setEnabled(station_.gridFrame.open);
  BtnPubJourX->setEnabled(station_.gridFrame.previewOffered);
}

}  // namespace zemo
