// The report screen on a report of 2,000,000 rows, ten years of a station: a month in the list and
// in its statistics, sorting, the whole report, a title's way into the on-air list. "slice_ms" is
// the longest time between two yields, in which a screen stands still. The base is made once a run,
// which takes half a minute.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <memory>

#include "BigLibrary.h"
#include "platform/sim/SimMover.h"
#include "reports/ReportScreen.h"
#include "support/TestStation.h"

namespace {

using zemo::ReportEditor;
using Clock = std::chrono::steady_clock;
namespace Report = zemo::Report;

constexpr int kRows = 2000000;
constexpr int kRowsADay = 500;
constexpr int kFirstDay = 42000;  // 27 December 2014
constexpr int kTitles = 20000;
constexpr int kCards = 100000;

std::string TenYearsSql() {
  const std::string title = "(i * 7919 % " + std::to_string(kTitles) + ")";
  return zemo::bench::NumbersTo(kRows) +
         "INSERT INTO Rapport (LADATE, HEURE, AUTEURCOMPOSITEUR, AUTEUR, TITRE, GENRE, VARIETE, "
         "LABEL, REFERENCE, DATENUM) SELECT strftime('%d/%m/%Y', '2014-12-27', '+' || (i / 500) || "
         "' days'), printf('%02d:%02d:%02d', i % 500 * 172 / 3600, i % 500 * 172 / 60 % 60, i % "
         "500 "
         "* 172 % 60), 'Composer ' || " +
         title + ", 'Artist ' || (" + title + " / 12), 'Title ' || " + title +
         ", 'GENRE ' || (i % 12), CASE i % 5 WHEN 0 THEN 'INTERNATIONAL' ELSE 'NATIONAL' END, "
         "'Label ' || (i % 90), 'REF ' || " +
         title + ", " + std::to_string(kFirstDay) + " + i / " + std::to_string(kRowsADay) +
         " + i % 500 * 172 / 86400.0 FROM n";
}

// 20 December 2014, whose titles no index finds.
std::string AccentsSql() {
  return zemo::bench::NumbersTo(kRowsADay) +
         "INSERT INTO Rapport (AUTEUR, TITRE, DATENUM) SELECT 'Éva ' || i, 'Été ' || i, " +
         std::to_string(kFirstDay - 7) + " + i / 1000.0 FROM n";
}

class LongReport {
 public:
  LongReport() {
    on.Load();
    on.Sql(zemo::bench::CardsSql(kCards));
    on.Sql(TenYearsSql());
    on.Sql(AccentsSql());
    Report::MnuRapport_Click(on.station, editor);
  }
  void Show(const char* first, const char* last) {
    editor.LblDate = first;
    editor.LblDateFin = last;
    Report::VoirRapport(on.station, editor);
  }

  zemo::test::TestStation on;
  ReportEditor editor;
};

LongReport& TheReport() {
  static LongReport report;
  return report;
}

// Looks at the time at each yield of some work, where the loop moves the sound on.
class YieldWatch : public zemo::SimMover {
 public:
  explicit YieldWatch(LongReport& report) : report_(report) { report.on.loop.SetSound(this); }
  ~YieldWatch() override { report_.on.loop.SetSound(&report_.on.sound); }
  YieldWatch(const YieldWatch&) = delete;

  void AdvanceTo(int64_t) override { Look(); }
  int64_t NextDueMs() const override { return kNever; }

  void Begin() {
    report_.editor.ListRap = {};
    last_ = begin_ = Clock::now();
    listedMs_ = 0;
  }
  void Look() {
    const auto now = Clock::now();
    longestMs_ = std::max(longestMs_, Ms(now - last_));
    if (listedMs_ == 0 && report_.editor.ListRap.Count() > 0) listedMs_ = Ms(now - begin_);
    last_ = now;
  }
  double LongestMs() const { return longestMs_; }
  double ListedMs() const { return listedMs_; }  // since Begin

 private:
  static double Ms(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
  }

  LongReport& report_;
  Clock::time_point begin_ = Clock::now(), last_ = begin_;
  double longestMs_ = 0, listedMs_ = 0;
};

template <typename Work>
void Measure(benchmark::State& state, Work work) {
  LongReport& report = TheReport();
  work(report);  // what is about it is in memory
  YieldWatch watch(report);
  for (auto _ : state) {
    work(report);
    watch.Look();
  }
  state.counters["slice_ms"] = watch.LongestMs();
  state.counters["rows"] = static_cast<double>(report.editor.ListRap.Count());
}

// "listed_ms" is when the month stood in the list; the rest of the time all other rows are searched
// for some of that month.
void AMonth(benchmark::State& state) {
  LongReport& report = TheReport();
  YieldWatch watch(report);
  double listedMs = 0;
  for (auto _ : state) {
    watch.Begin();
    report.Show("01/10/2020", "31/10/2020");
    watch.Look();
    listedMs = std::max(listedMs, watch.ListedMs());
  }
  state.counters["listed_ms"] = listedMs;
  state.counters["slice_ms"] = watch.LongestMs();
  state.counters["rows"] = static_cast<double>(report.editor.ListRap.Count());
}

void AMonthOfAnArtist(benchmark::State& state) {
  TheReport().editor.FiltreArtiste = "artist 12";
  Measure(state, [](LongReport& report) { report.Show("01/10/2020", "31/10/2020"); });
  TheReport().editor.FiltreArtiste.clear();
}

void StatisticsOfAMonth(benchmark::State& state) {
  TheReport().Show("01/10/2020", "31/10/2020");
  Measure(state,
          [](LongReport& report) { Report::BtnStats_Click(report.on.station, report.editor); });
}

void ADayIntoThePlaylist(benchmark::State& state) {
  TheReport().Show("01/10/2020", "01/10/2020");
  Measure(state, [](LongReport& report) {
    Report::BtnIntoPlaylist_Click(report.on.station, report.editor);
  });
}

void ADayOfAccentsIntoThePlaylist(benchmark::State& state) {
  TheReport().Show("20/12/2014", "20/12/2014");
  Measure(state, [](LongReport& report) {
    Report::BtnIntoPlaylist_Click(report.on.station, report.editor);
  });
}

void AllOfIt(benchmark::State& state) {
  Measure(state, [](LongReport& report) { report.Show("01/01/2014", "31/12/2030"); });
}

void StatisticsOfAllOfIt(benchmark::State& state) {
  Measure(state,
          [](LongReport& report) { Report::BtnStats_Click(report.on.station, report.editor); });
}

void SortAllOfItByTime(benchmark::State& state) {
  Measure(state, [](LongReport& report) {
    Report::ListRap_ColumnClick(report.on.station, report.editor, zemo::RapCol::kTime);
  });
}

BENCHMARK(AMonth)->Unit(benchmark::kMillisecond);
BENCHMARK(AMonthOfAnArtist)->Unit(benchmark::kMillisecond);
BENCHMARK(StatisticsOfAMonth)->Unit(benchmark::kMillisecond);
BENCHMARK(ADayIntoThePlaylist)->Unit(benchmark::kMillisecond);
BENCHMARK(ADayOfAccentsIntoThePlaylist)->Unit(benchmark::kMillisecond);
BENCHMARK(AllOfIt)->Unit(benchmark::kMillisecond);
BENCHMARK(StatisticsOfAllOfIt)->Unit(benchmark::kMillisecond);
BENCHMARK(SortAllOfItByTime)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
