// How costs grow: a station of 1,000, 10,000, 100,000 and 1,000,000 cards with a year of report,
// and one of 10,000 cards with 1, 2, 5 and 10 years of it; all cards in the model. Of each, in
// milliseconds of the processor:
//   start     from the opening of the base to the first element, no compaction being due
//   request   of 30 minutes by percentages, with library and report in memory; the median of five
//   search    of a text in all cards, as much as a screen does until its list is whole
//   tick      the median of an hour's, in microseconds
//   element   the second from the start of one on; the median of that hour
//   hour      simulated
// The last line of each table is the exponent of the growth, fitted to all of its rows: 0 does not
// grow, 1 grows as the cards (the years) do. Usage: GrowthBench [MOST_CARDS]
// The bases stand in the folder for temporary files: 1 GB for a million cards; TMPDIR=/dev/shm
// keeps the disk out of it.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "BigLibrary.h"
#include "Figures.h"
#include "WholeBase.h"
#include "engine/MainTick.h"
#include "library/KnownCards.h"
#include "reports/KnownReport.h"
#include "scheduling/LibrarySearch.h"
#include "scheduling/PercentageRequest.h"
#include "support/TestStation.h"

namespace {

using zemo::bench::WorkedMs;
using zemo::bench::WorkedMsOf;
using zemo::test::TestStation;

constexpr int kRowsADay = 500, kDaysAYear = 365;
constexpr int kSounds = 10;
constexpr int kTicksOfAStart = 10;
constexpr int64_t kTitleMs = 180000, kHourMs = 3600000, kTickMs = 100;
constexpr const char* kCosts[] = {"start", "request", "search", "tick us", "element", "hour"};
constexpr size_t kCostCount = std::size(kCosts);
using Costs = std::vector<double>;

double Median(std::vector<double> times) {
  if (times.empty()) return 0;
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

// Rows up to the day before, in the order of their moments.
std::string ReportSql(int rows) {
  constexpr int kToday = 46347;  // 21 November 2026
  return zemo::bench::NumbersTo(rows) +
         "INSERT INTO Rapport (LADATE, HEURE, AUTEUR, TITRE, GENRE, VARIETE, DATENUM) SELECT "
         "'20/11/2026', '10:00:00', 'Artist ' || (i % 4000), 'Title ' || i, CASE i % 4 WHEN 0 THEN "
         "'JINGLE' ELSE 'GENRE 1' END, 'NATIONAL', " +
         std::to_string(kToday) + " - (" + std::to_string(rows) + " + 1 - i) / " +
         std::to_string(kRowsADay) + ".0 FROM n";
}

std::unique_ptr<TestStation> MakeStation(int cards, int years) {
  auto on = std::make_unique<TestStation>("2026-11-21 12:00:30");
  on->localValues.Set("LastCompactage", "21/11/2026 04:00:00");
  zemo::bench::OpenWhole(on->station.base);
  on->station.base.Close();
  on->Sql(zemo::bench::CardsSql(cards));
  for (const std::string& statement : zemo::bench::ModelsSql()) on->Sql(statement);
  std::string first;
  for (int i = 0; i < kSounds; ++i) {
    const std::string path = on->MakeSound("t" + std::to_string(i) + ".wav", kTitleMs);
    if (i == 0) first = path.substr(0, path.size() - 5);
  }
  on->Sql("UPDATE Discotheque SET FILENAME = '" + first + "' || (CODE % " +
          std::to_string(kSounds) + ") || '.wav', DUREE = " + std::to_string(kTitleMs));
  on->Sql(ReportSql(years * kDaysAYear * kRowsADay));
  on->Sql("UPDATE Cnf SET PurgeRapport = 10000");  // days
  return on;
}

double StartMs(TestStation& on) {
  return WorkedMsOf([&] {
    on.Load();
    on.Start();
    for (int64_t ms = 0; ms < 1000 && on.Starts().empty(); ms += kTickMs) on.RunUntil(ms);
  });
}

double RequestMs(zemo::Station& station) {
  std::vector<double> times;
  for (int turn = 0; turn < 5; ++turn) {
    station.PL.Clear();
    while (zemo::ReadCardsAhead(station) || zemo::ReadReportAhead(station)) {
    }
    int16_t minutes = 30;
    times.push_back(WorkedMsOf([&] { zemo::RequestMusic(station, minutes); }));
    if (station.PL.Empty()) std::fprintf(stderr, "the request found nothing\n");
  }
  return Median(times);
}

double SearchMs(zemo::Station& station) {
  while (zemo::ReadAheadSlice(station)) {
  }
  station.browse.Rech = "title 77";
  return WorkedMsOf([&] { zemo::OnAir::Rech_Change(station); });
}

// Between two ticks each time: what lies between two looks is one tick.
void AnHour(TestStation& on, Costs& costs) {
  std::vector<double> ticks, starts;
  const int64_t begin = on.loop.MonotonicMs();
  double last = 0;
  size_t seen = on.seen.size();
  int left = 0;  // ticks of the start under way
  const auto look = [&] {
    const double now = WorkedMs();
    const bool started =
        std::any_of(on.seen.begin() + static_cast<std::ptrdiff_t>(seen), on.seen.end(),
                    [](const auto& e) { return e.name == "start"; });
    if (started) {
      starts.push_back(0);
      left = kTicksOfAStart;
    }
    if (left > 0)
      starts.back() += now - last;
    else
      ticks.push_back(now - last);
    left -= left > 0;
    seen = on.seen.size();
    last = WorkedMs();
  };
  for (int64_t ms = kTickMs / 2; ms < kHourMs; ms += kTickMs) on.At(begin + ms, look);
  last = WorkedMs();
  costs.resize(costs.size() + 3);
  costs.back() = WorkedMsOf([&] { on.RunUntil(begin + kHourMs); });
  costs.rbegin()[1] = Median(starts);
  costs.rbegin()[2] = 1000 * Median(ticks);
}

Costs CostsOf(int cards, int years) {
  const auto on = MakeStation(cards, years);
  Costs costs;
  costs.push_back(StartMs(*on));
  costs.push_back(RequestMs(on->station));
  costs.push_back(SearchMs(on->station));
  AnHour(*on, costs);
  return costs;
}

// Least squares of the logarithms.
double Exponent(const std::vector<double>& sizes, const std::vector<double>& costs) {
  double x = 0, y = 0, xx = 0, xy = 0;
  const auto count = static_cast<double>(sizes.size());
  for (size_t i = 0; i < sizes.size(); ++i) {
    const double a = std::log(sizes[i]), b = std::log(std::max(costs[i], 1e-6));
    x += a, y += b, xx += a * a, xy += a * b;
  }
  return (count * xy - x * y) / (count * xx - x * x);
}

void Table(const char* what, const std::vector<double>& sizes, Costs (*cost)(int)) {
  std::printf("%12s", what);
  for (const char* name : kCosts) std::printf("%11s", name);
  std::printf("\n");
  std::vector<Costs> rows;
  for (const double size : sizes) {
    rows.push_back(cost(static_cast<int>(size)));
    std::printf("%12.0f", size);
    for (const double value : rows.back()) std::printf("%11.2f", value);
    std::printf("\n");
    std::fflush(stdout);
  }
  std::printf("%12s", "exponent");
  for (size_t column = 0; column < kCostCount; ++column) {
    std::vector<double> costs;
    for (const Costs& row : rows) costs.push_back(row[column]);
    std::printf("%11.2f", Exponent(sizes, costs));
  }
  std::printf("\n\n");
}

}  // namespace

int main(int argc, char** argv) {
  setenv("TZ", "UTC", 1);
  const double most = argc > 1 ? std::atof(argv[1]) : 1e6;
  std::vector<double> cards;
  for (double count = 1000; count <= most; count *= 10) cards.push_back(count);
  Table("cards", cards, [](int count) { return CostsOf(count, 1); });
  Table("years", {1, 2, 5, 10}, [](int years) { return CostsOf(10000, years); });
  return 0;
}
