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
#include "engine/MainScreenTexts.h"
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
    : QDialog(parent), station_(station), source_(source), langue_(langue) {
  setObjectName(QStringLiteral("FrmPrevision"));
  setWindowTitle(Word("ForecastTitle"));
  MakeControls();
  resize(720, 520);
  poll_.setInterval(kPollMs);
  connect(&poll_, &QTimer::timeout, this, [this] { Refresh(); });
}

QString ForecastWindow::Word(const char* name) const {
  return QString::fromStdString(ScreenWord(name, langue_));
}

void ForecastWindow::MakeControls() {
  ListPrevision = new QTableWidget(0, 4, this);
  ListPrevision->setObjectName(QStringLiteral("ListPrevision"));
  ListPrevision->setHorizontalHeaderLabels(
      {Word("ForecastAt"), Word("ForecastKind"), Word("ForecastWhat"), Word("ForecastLength")});
  MakeRowTable(*ListPrevision);
  ListPrevision->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Stretch);
  ListPrevision->setColumnWidth(0, 90);
  ListPrevision->setColumnWidth(1, 110);
  ListPrevision->setColumnWidth(3, 80);
  ComboHeures = new QComboBox(this);
  ComboHeures->setObjectName(QStringLiteral("ComboHeures"));
  for (const int hours : kHours)
    ComboHeures->addItem(
        QString::fromStdString(ScreenWord("ForecastHours", langue_, std::to_string(hours))), hours);
  ComboHeures->setCurrentIndex(kDefaultHours);
  BtnRecalculer = new QPushButton(Word("ForecastAgain"), this);
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
      return LblEtat->setText(Word("ForecastRunning"));
    case ForecastSource::State::kDone:
      return LblEtat->setText(
          QString::fromStdString(ScreenWord("ForecastDone", langue_, begun_.toStdString())));
    case ForecastSource::State::kFailed:
      return LblEtat->setText(
          QString::fromStdString(ScreenWord("ForecastFailed", langue_, source_.Fault())));
  }
}

QString ForecastWindow::KindOf(const ForecastLine& line) const {
  switch (line.kind) {
    case ForecastKind::kElement:
      return Word(WordOfCode(line.code));
    case ForecastKind::kPip:
      return Word("ForecastPip");
    case ForecastKind::kBreak:
      return Word("ForecastBreak");
    case ForecastKind::kList:
      return Word("ForecastList");
    case ForecastKind::kGap:
      return Word("ForecastGap");
    case ForecastKind::kWarning:
      return Word("ForecastWarning");
  }
  return {};
}

QString ForecastWindow::WhatOf(const ForecastLine& line) const {
  if (line.kind == ForecastKind::kGap) return Word("ForecastGapText");
  if (line.kind == ForecastKind::kBreak)
    return QString::fromStdString(line.text + "  ") +
           Word(line.code == Element::kNews ? "News" : "Spots");
  if (line.kind == ForecastKind::kWarning && line.reason == "missing")
    return QString::fromStdString(ScreenWord("ForecastMissing", langue_, line.text));
  if (line.kind == ForecastKind::kWarning && line.reason == "unreadable")
    return QString::fromStdString(ScreenWord("ForecastUnreadable", langue_, line.text));
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
