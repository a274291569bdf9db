#include "reports/ReportFigures.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace zemo {

namespace {

constexpr size_t kRowsBetweenPauses = 200000;
constexpr int64_t kHourSec = 3600, kDaySec = 24 * kHourSec, kWeekSec = 7 * kDaySec;
constexpr int64_t kMondaySec = 2 * kDaySec;  // day 2 of the serials, 1 January 1900, was one
constexpr int64_t kDaysInHours = 3, kDaysInDays = 100;

// Whole times down, also ahead of the first serial.
int64_t TimesIn(int64_t second, int64_t stepSec) {
  const int64_t times = second / stepSec;
  return times * stepSec > second ? times - 1 : times;
}

int64_t StepOf(int64_t days) {
  return days <= kDaysInHours ? kHourSec : days <= kDaysInDays ? kDaySec : kWeekSec;
}

template <typename Take>
void ForEachRow(const ReportRows& rows, const Pause& pause, Take take) {
  for (size_t row = 0; row < rows.Count(); ++row) {
    if (row % kRowsBetweenPauses == kRowsBetweenPauses - 1) pause();
    take(row);
  }
}

// To the second, so that 10:00:00 is no 9:59:59.999.
int64_t SecondsOf(double moment) {
  return std::llround(moment * static_cast<double>(kDaySec));
}

// The texts of a column that ran, in the order of PlaysBy.
std::vector<uint32_t> Ranked(const ReportRows& rows, int column, const std::vector<uint32_t>& plays,
                             const Pause& pause) {
  const TextNumbers& texts = rows.Numbers(column);
  const std::vector<uint32_t> places = DictionaryPlaces(texts, pause);
  std::vector<uint32_t> ranked;
  for (uint32_t number = 0; number < texts.Count(); ++number)
    if (!texts.Text(number).empty()) ranked.push_back(number);
  std::sort(ranked.begin(), ranked.end(), [&](uint32_t a, uint32_t b) {
    return plays[a] != plays[b] ? plays[a] > plays[b] : places[a] < places[b];
  });
  return ranked;
}

// Of each text of a column, by its number.
std::vector<uint32_t> PlaysOf(const ReportRows& rows, int column, const Pause& pause) {
  std::vector<uint32_t> plays(rows.Numbers(column).Count());
  ForEachRow(rows, pause, [&](size_t row) { ++plays[rows.Number(row, column)]; });
  return plays;
}

}  // namespace

uint64_t WholePercent(uint64_t part, uint64_t whole) {
  if (whole == 0) return 0;
  const uint64_t percent = part * 100 / whole, rest = part * 100 % whole;
  const bool up = rest * 2 > whole || (rest * 2 == whole && percent % 2 == 1);
  return percent + (up ? 1 : 0);
}

std::vector<NamedPlays> PlaysBy(const ReportRows& rows, int column, const Pause& pause) {
  const std::vector<uint32_t> plays = PlaysOf(rows, column, pause);
  std::vector<NamedPlays> named;
  for (const uint32_t number : Ranked(rows, column, plays, pause))
    named.push_back({std::string(rows.Numbers(column).Text(number)), plays[number]});
  return named;
}

HourFigures PlaysByHourAndGenre(const ReportRows& rows, const Pause& pause) {
  const std::vector<uint32_t> ranked =
      Ranked(rows, RapCol::kGenre, PlaysOf(rows, RapCol::kGenre, pause), pause);
  HourFigures figures;
  constexpr auto kNone = static_cast<size_t>(-1);
  std::vector<size_t> places(rows.Numbers(RapCol::kGenre).Count(), kNone);
  for (const uint32_t number : ranked) {
    places[number] = figures.genres.size();
    figures.genres.emplace_back(rows.Numbers(RapCol::kGenre).Text(number));
  }
  for (std::vector<uint32_t>& hour : figures.plays) hour.resize(ranked.size());
  ForEachRow(rows, pause, [&](size_t row) {
    const size_t place = places[rows.Number(row, RapCol::kGenre)];
    const int64_t second = SecondsOf(rows.Moment(row));
    const int64_t hour = (second - TimesIn(second, kDaySec) * kDaySec) / kHourSec;
    if (place != kNone) ++figures.plays[static_cast<size_t>(hour)][place];
  });
  return figures;
}

TitleFigures PlaysOverTime(const ReportRows& rows, size_t ofRow, const Pause& pause) {
  TitleFigures figures;
  if (rows.Count() == 0) return figures;
  const int64_t first = SecondsOf(rows.Moment(0)), last = SecondsOf(rows.Moment(rows.Count() - 1));
  figures.stepSec = StepOf(TimesIn(last, kDaySec) - TimesIn(first, kDaySec) + 1);
  const int64_t offset = figures.stepSec == kWeekSec ? kMondaySec : 0;
  const auto stepAt = [&](int64_t second) { return TimesIn(second - offset, figures.stepSec); };
  figures.firstSec = stepAt(first) * figures.stepSec + offset;
  figures.plays.resize(static_cast<size_t>(stepAt(last) - stepAt(first) + 1));
  const uint32_t title = rows.Number(ofRow, RapCol::kTitle);
  ForEachRow(rows, pause, [&](size_t row) {
    if (rows.Number(row, RapCol::kTitle) == title)
      ++figures.plays[static_cast<size_t>(stepAt(SecondsOf(rows.Moment(row))) - stepAt(first))];
  });
  return figures;
}

uint64_t TitleFigures::Total() const {
  return std::accumulate(plays.begin(), plays.end(), uint64_t{0});
}

}  // namespace zemo
