// The report screen on a report of 2,000,000 rows, ten years of a station: a month in the list and
// in its statistics, sorting, the whole report and its export, a title's way into the on-air list.
// "slice_ms" is the longest time between two yields, in which a screen stands still. The base is
// made once a run, which takes half a minute.
#include <benchmark/benchmark.h>

#include <algorithm>

#include "LongReport.h"
#include "platform/real/files/WholeFiles.h"
#include "reports/ReportScreen.h"

namespace {

using zemo::ReportEditor;
using zemo::bench::YieldWatch;
namespace Report = zemo::Report;

class LongReport {
 public:
  LongReport() {
    zemo::bench::AddLongReport(on);
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

template <typename Work>
void Measure(benchmark::State& state, Work work) {
  LongReport& report = TheReport();
  work(report);  // what is about it is in memory
  YieldWatch watch(report.on, [&report] { return report.editor.ListRap.Count() > 0; });
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
  YieldWatch watch(report.on, [&report] { return report.editor.ListRap.Count() > 0; });
  double listedMs = 0;
  for (auto _ : state) {
    report.editor.ListRap = {};
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

void ExportAllOfIt(benchmark::State& state) {
  TheReport().Show("01/01/2014", "31/12/2030");
  const Report::ExportFiles files{zemo::ReplaceFileInParts};
  Measure(state, [&](LongReport& report) {
    Report::BtnExport_Click(report.on.station, report.editor,
                            report.on.machineDir.Path() + "/report.xlt", files);
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
BENCHMARK(ExportAllOfIt)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
