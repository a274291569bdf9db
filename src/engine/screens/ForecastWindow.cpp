#include "engine/screens/ForecastWindow.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <array>

#include "engine/Forecast.h"
#include "engine/screens/ForecastWindowTexts.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "ui/RowTable.h"
#include "ui/Theme.h"

namespace zemo {

namespace {
constexpr int kPollMs = 250;
constexpr std::array kHours = {1, 3, 6, 12, 24};
constexpr int kDefaultHours = 1;  // index

const char* WordOfCode(int32_t code) {
  if (code > 0) return "ForecastMusic";
  switch (code) {
    case Element::kJingle:
      return "ForecastJingle";
    case Element::kSpot:
      return "ForecastSpot";
    case Element::kNews:
      return "ForecastNews";
    case Element::kHourPip:
      return "ForecastPip";
    case Element::kVoiceTrack:
      return "ForecastVoiceTrack";
    case Element::kOther:
      return "ForecastOther";
    default:
      return "ForecastMarker";
  }
}

QColor ColourOf(const ForecastLine& line) {
  switch (line.kind) {
    case ForecastKind::kElement:
      return Theme::ColourOfElement(line.code);
    case ForecastKind::kPip:
      return Theme::kPip;
    case ForecastKind::kBreak:
      return line.code == Element::kNews ? Theme::kNews : Theme::kSpot;
    case ForecastKind::kList:
      return Theme::kMarker;
    case ForecastKind::kGap:
      return Theme::kHeard;
    case ForecastKind::kWarning:
      return Theme::kNote;
  }
  return Theme::kText;
}
}  // namespace

ForecastWindow::ForecastWindow(Station& station, ForecastSource& source, int langue,
                               QWidget* parent)
    : QDialog(parent), station_(station), source_(source), texts_(ForecastWindowTexts(), langue) {
  setObjectName(QStringLiteral("FrmPrevision"));
  setWindowTitle(texts_.Word("ForecastTitle"));
  MakeControls();
  resize(720, 520);
  poll_.setInterval(kPollMs);
  connect(&poll_, &QTimer::timeout, this, [this] { Refresh(); });
}

void ForecastWindow::MakeControls() {
  ListPrevision = new QTableWidget(0, 4, this);
  ListPrevision->setObjectName(QStringLiteral("ListPrevision"));
  ListPrevision->setHorizontalHeaderLabels({texts_.Word("ForecastAt"), texts_.Word("ForecastKind"),
                                            texts_.Word("ForecastWhat"),
                                            texts_.Word("ForecastLength")});
  MakeRowTable(*ListPrevision);
  ListPrevision->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Stretch);
  ListPrevision->setColumnWidth(0, 90);
  ListPrevision->setColumnWidth(1, 110);
  const int head = ListPrevision->horizontalHeader()->sectionSizeHint(3);
  ListPrevision->setColumnWidth(3, std::max(80, head));
  ComboHeures = new QComboBox(this);
  ComboHeures->setObjectName(QStringLiteral("ComboHeures"));
  for (const int hours : kHours)
    ComboHeures->addItem(texts_.Word("ForecastHours", QString::number(hours)), hours);
  ComboHeures->setCurrentIndex(kDefaultHours);
  BtnRecalculer = new QPushButton(texts_.Word("ForecastAgain"), this);
  BtnRecalculer->setObjectName(QStringLiteral("BtnRecalculer"));
  LblEtat = new QLabel(this);
  LblEtat->setObjectName(QStringLiteral("LblEtat"));
  LblEtat->setWordWrap(true);
  auto* bar = new QHBoxLayout;
  bar->addWidget(LblEtat, 1);
  bar->addWidget(ComboHeures);
  bar->addWidget(BtnRecalculer);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(ListPrevision, 1);
  layout->addLayout(bar);
  connect(BtnRecalculer, &QPushButton::clicked, this, [this] { Compute(); });
  connect(ComboHeures, &QComboBox::activated, this, [this] { Compute(); });
}

void ForecastWindow::Compute() {
  begun_ = QString::fromStdString(TimeText(station_.Now()));
  ListPrevision->setRowCount(0);
  source_.Start(WishOfNow(station_, ComboHeures->currentData().toInt()));
  poll_.start();
  ShowState();
}

void ForecastWindow::ShowState() {
  switch (source_.Now()) {
    case ForecastSource::State::kIdle:
      return LblEtat->clear();
    case ForecastSource::State::kRunning:
      return LblEtat->setText(texts_.Word("ForecastRunning"));
    case ForecastSource::State::kDone:
      return LblEtat->setText(texts_.Word("ForecastDone", begun_));
    case ForecastSource::State::kFailed:
      return LblEtat->setText(
          texts_.Word("ForecastFailed", QString::fromStdString(source_.Fault())));
  }
}

QString ForecastWindow::KindOf(const ForecastLine& line) const {
  switch (line.kind) {
    case ForecastKind::kElement:
      return texts_.Word(WordOfCode(line.code));
    case ForecastKind::kPip:
      return texts_.Word("ForecastPip");
    case ForecastKind::kBreak:
      return texts_.Word("ForecastBreak");
    case ForecastKind::kList:
      return texts_.Word("ForecastList");
    case ForecastKind::kGap:
      return texts_.Word("ForecastGap");
    case ForecastKind::kWarning:
      return texts_.Word("ForecastWarning");
  }
  return {};
}

QString ForecastWindow::WhatOf(const ForecastLine& line) const {
  if (line.kind == ForecastKind::kGap) return texts_.Word("ForecastGapText");
  if (line.kind == ForecastKind::kBreak)
    return QString::fromStdString(line.text + "  ") +
           texts_.Word(line.code == Element::kNews ? "News" : "Spots");
  if (line.kind == ForecastKind::kWarning && line.reason == "missing")
    return texts_.Word("ForecastMissing", QString::fromStdString(line.text));
  if (line.kind == ForecastKind::kWarning && line.reason == "unreadable")
    return texts_.Word("ForecastUnreadable", QString::fromStdString(line.text));
  return QString::fromStdString(line.text);
}

void ForecastWindow::AddLine(const ForecastLine& line) {
  const int row = ListPrevision->rowCount();
  ListPrevision->insertRow(row);
  const bool timed = line.lengthMs > 0;
  const QString texts[] = {QString::fromStdString(line.at), KindOf(line), WhatOf(line),
                           timed ? QString::fromStdString(FormatDuration(line.lengthMs)) : ""};
  for (int column = 0; column < 4; ++column) {
    auto* item = new QTableWidgetItem(texts[column]);
    item->setToolTip(texts[column]);
    if (column == 1 || line.kind != ForecastKind::kElement) item->setForeground(ColourOf(line));
    ListPrevision->setItem(row, column, item);
  }
}

void ForecastWindow::Refresh() {
  const auto& lines = source_.Lines();
  for (size_t row = static_cast<size_t>(ListPrevision->rowCount()); row < lines.size(); ++row)
    AddLine(lines[row]);
  ShowState();
  if (source_.Now() != ForecastSource::State::kRunning) poll_.stop();
}

}  // namespace zemo
