#include "scheduling/screens/ModelPanels.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "scheduling/GenreSupply.h"
#include "scheduling/ModelGrids.h"
#include "scheduling/screens/BarTable.h"
#include "station/TextForms.h"
#include "ui/Named.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

constexpr double kWholeDay = 100;

QStringList Heads(const Translation& texts, const std::string& table, int columns) {
  QStringList heads;
  for (int column = 0; column < columns; ++column)
    heads << texts.Word(table + "." + std::to_string(column));
  return heads;
}

QString PercentText(double share) {
  return QString::number(std::lround(share)) + QStringLiteral(" %");
}

// "02-05h 09h"
QString HoursText(const std::vector<int>& hours) {
  QStringList spans;
  for (size_t first = 0; first < hours.size();) {
    size_t last = first;
    while (last + 1 < hours.size() && hours[last + 1] == hours[last] + 1) ++last;
    const QString begin = last > first ? ShownText(TwoDigits(hours[first])) + u'-' : QString();
    spans << begin + ShownText(HourLabel(hours[last]));
    first = last + 1;
  }
  return spans.join(u' ');
}

struct PlannedGenre {
  std::string genre;
  int weight = 0;  // per cent, or positions
};

// In the order of the grid.
std::vector<PlannedGenre> PlanOfHour(const ModelEditor& editor, int hour) {
  std::vector<PlannedGenre> plan;
  const auto add = [&](const std::string& genre, int weight) {
    const auto found = std::find_if(plan.begin(), plan.end(),
                                    [&](const PlannedGenre& had) { return had.genre == genre; });
    if (found != plan.end())
      found->weight += weight;
    else
      plan.push_back({genre, weight});
  };
  const auto column = static_cast<size_t>(hour);
  for (const TextGrid::Row& row : StoredRows(editor)) {
    if (!editor.skeleton && ValInt(row[column + 1]) > 0) add(row[0], ValInt(row[column + 1]));
    if (editor.skeleton && !Trim(row[column]).empty()) add(row[column], 1);
  }
  return plan;
}

}  // namespace

// --- what the library can give ---

SupplyPanel::SupplyPanel(const Translation& texts, QWidget* parent)
    : QWidget(parent), texts_(texts) {
  constexpr int kColumns = 4, kMinutes = 3;
  LblSupply = new QLabel(this);
  LblSupply->setObjectName(QStringLiteral("LblSupply"));
  LblSupply->setProperty("dim", true);
  Supply = new BarTable("Supply", texts.Word("For.Stats"), Heads(texts, "Supply", kColumns),
                        kMinutes, this);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(LblSupply);
  layout->addWidget(Supply, 1);
}

void SupplyPanel::Arrange(double unit) {
  layout()->setSpacing(Theme::Px(unit, 4));
  Supply->Arrange(unit);
}

void SupplyPanel::ShowHour(const ModelEditor& editor, int hour) {
  LblSupply->setText(texts_.Word("For.Supply", ShownText(HourLabel(hour))));
  std::vector<BarRow> rows;
  std::vector<double> minutes;
  const auto add = [&](const std::string& genre, const QString& planned) {
    const GenreSupply::Hour given = editor.supply->At(genre, editor.JourSemaine, hour);
    minutes.push_back(static_cast<double>(given.Minutes()));
    rows.push_back({{ShownText(genre), planned, QString::number(given.titles),
                     QString::number(given.Minutes())},
                    0,
                    !planned.isEmpty() && given.titles == 0 ? 0 : BarRow::kNoAlert});
  };
  if (editor.supply && editor.JourSemaine > 0) {
    const std::vector<PlannedGenre> plan = PlanOfHour(editor, hour);
    for (const PlannedGenre& line : plan)
      add(line.genre, editor.skeleton ? QString::number(line.weight) : PercentText(line.weight));
    for (const auto& held : editor.supply->Genres()) {
      const std::string& name = held.first;
      const bool planned = std::any_of(
          plan.begin(), plan.end(), [&](const PlannedGenre& line) { return line.genre == name; });
      if (!planned && editor.supply->At(name, editor.JourSemaine, hour).titles > 0) add(name, {});
    }
  }
  const auto most = std::max_element(minutes.begin(), minutes.end());
  for (size_t row = 0; row < rows.size(); ++row)
    if (*most > 0) rows[row].bar = minutes[row] / *most;
  Supply->ShowRows(rows);
}

// --- how the day would air ---

OutlookPanel::OutlookPanel(const Translation& texts, std::function<void()> wanted, QWidget* parent)
    : QWidget(parent), texts_(texts) {
  constexpr int kColumns = 4, kReached = 2, kRepeatColumns = 2, kTimes = 1;
  BtnForecast = new QPushButton(texts.Word("BtnForecast"), this);
  BtnForecast->setObjectName(QStringLiteral("BtnForecast"));
  SetTip(*BtnForecast, texts.Word("BtnForecastTip"));
  connect(BtnForecast, &QPushButton::clicked, this, std::move(wanted));
  LblOutlook = new QLabel(this);
  LblOutlook->setObjectName(QStringLiteral("LblOutlook"));
  Outlook = new BarTable("Outlook", texts.Word("For.Outlook"), Heads(texts, "Outlook", kColumns),
                         kReached, this);
  Repeats = new BarTable("Repeats", texts.Word("For.Repeats"),
                         Heads(texts, "Repeats", kRepeatColumns), kTimes, this);
  auto* bar = new QHBoxLayout;
  bar->addWidget(BtnForecast);
  bar->addWidget(LblOutlook, 1);
  auto* tables = new QHBoxLayout;
  tables->addWidget(Outlook, 3);
  tables->addWidget(Repeats, 2);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(bar);
  layout->addLayout(tables, 1);
}

void OutlookPanel::Arrange(double unit) {
  layout()->setSpacing(Theme::Px(unit, 4));
  Outlook->Arrange(unit);
  Repeats->Arrange(unit);
}

void OutlookPanel::ShowState(DayForecast::State state, const QString& fault) {
  LblOutlook->setToolTip(fault);
  if (state == DayForecast::State::kRunning) LblOutlook->setText(texts_.Word("OutlookRuns"));
  if (state == DayForecast::State::kFailed) LblOutlook->setText(texts_.Word("OutlookFailed"));
  if (state == DayForecast::State::kIdle) LblOutlook->clear();
}

void OutlookPanel::ShowOutlook(const DayOutlook& outlook) {
  constexpr int kDry = 3;
  LblOutlook->setText(texts_.Word("OutlookDone", QString::number(outlook.titles)));
  std::vector<BarRow> rows;
  for (const GenreOutlook& line : outlook.genres) {
    rows.push_back({{ShownText(line.genre), PercentText(line.planned), PercentText(line.reached),
                     HoursText(line.dryHours)},
                    line.reached / kWholeDay,
                    kDry});
  }
  Outlook->ShowRows(rows);
  rows.clear();
  const int most = outlook.repeats.empty() ? 1 : outlook.repeats.front().times;
  for (const RepeatedTitle& title : outlook.repeats)
    rows.push_back({{ShownText(title.text), QString::number(title.times)},
                    static_cast<double>(title.times) / most});
  Repeats->ShowRows(rows);
}

}  // namespace zemo
