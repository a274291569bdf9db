// The report's window on a report of 2,000,000 rows, as an operator meets it: real mouse and key
// events, drawn off the screen, each until the window has come back. "shown_ms" is when the rows
// stood in its list, "slice_ms" the longest time between two yields, in which it stands still.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QLineEdit>
#include <QTableView>
#include <QTest>
#include <algorithm>
#include <memory>

#include "LongReport.h"
#include "reports/screens/ReportWindow.h"
#include "ui/CalendarWindow.h"
#include "ui/ScreenDesktop.h"

namespace {

using zemo::ReportWindow;
using zemo::bench::YieldWatch;

class Bench {
 public:
  Bench() { zemo::bench::AddLongReport(on); }
  void Open() {
    window = std::make_unique<ReportWindow>(on.station, zemo::ReportSources{});
    window->Open();
    window->resize(1280, 800);
    QApplication::processEvents();
  }
  template <typename Control = QWidget>
  Control* Find(const char* name) {
    return window->findChild<Control*>(QString::fromLatin1(name));
  }
  void Click(const char* name) {
    QTest::mouseClick(Find(name), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    QApplication::processEvents();
  }
  void Pick(const char* button, int year, int month, int day) {
    Click(button);
    auto* calendar = window->findChild<zemo::CalendarWindow*>();
    zemo::LocalDateTime picked;
    picked.year = year, picked.month = month, picked.day = day;
    const auto take = calendar->picked;
    calendar->reject();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    take(picked);
    QApplication::processEvents();
  }
  int Rows() { return Find<QTableView>("ListRap")->model()->rowCount(); }

  zemo::test::TestStation on;
  std::unique_ptr<ReportWindow> window;
};

Bench& TheBench() {
  static Bench bench;
  return bench;
}

template <typename Work>
void Measure(benchmark::State& state, Work work) {
  Bench& bench = TheBench();
  work(bench);
  uint64_t before = 0;  // the list's generation
  YieldWatch watch(bench.on, [&] { return bench.window->Editor().ListRap.generation != before; });
  double shownMs = 0;
  for (auto _ : state) {
    before = bench.window->Editor().ListRap.generation;
    watch.Begin();
    work(bench);
    watch.Look();
    shownMs = std::max(shownMs, watch.ListedMs());
  }
  if (shownMs > 0) state.counters["shown_ms"] = shownMs;
  state.counters["slice_ms"] = watch.LongestMs();
  state.counters["rows"] = bench.Rows();
}

void Open(benchmark::State& state) {
  Measure(state, [](Bench& bench) { bench.Open(); });
}

void AMonth(benchmark::State& state) {
  TheBench().Open();
  TheBench().Pick("BtnDateFin", 2020, 10, 31);
  Measure(state, [](Bench& bench) { bench.Pick("CmdCalend", 2020, 10, 1); });
}

void TypeALetterOfAFilter(benchmark::State& state) {
  Measure(state, [](Bench& bench) {
    QTest::keyClick(bench.Find("FiltreArtiste"), Qt::Key_A);
    QApplication::processEvents();
    QTest::keyClick(bench.Find("FiltreArtiste"), Qt::Key_Backspace);
    QApplication::processEvents();
  });
}

void StatisticsOfAMonth(benchmark::State& state) {
  Measure(state, [](Bench& bench) { bench.Click("BtnStats"); });
}

void AllOfIt(benchmark::State& state) {
  TheBench().Pick("CmdCalend", 2014, 1, 1);
  Measure(state, [](Bench& bench) { bench.Pick("BtnDateFin", 2030, 12, 31); });
}

// A row of all of it is selected: its title is counted, and drawn.
void SelectARowOfAllOfIt(benchmark::State& state) {
  int row = 0;
  Measure(state, [&row](Bench& bench) {
    auto* list = bench.Find<QTableView>("ListRap");
    list->setCurrentIndex(list->model()->index(row = (row + 1) % 10, 0));
    QApplication::processEvents();
  });
}

BENCHMARK(Open)->Unit(benchmark::kMillisecond);
BENCHMARK(AMonth)->Unit(benchmark::kMillisecond);
BENCHMARK(TypeALetterOfAFilter)->Unit(benchmark::kMillisecond);
BENCHMARK(StatisticsOfAMonth)->Unit(benchmark::kMillisecond);
BENCHMARK(AllOfIt)->Unit(benchmark::kMillisecond);
BENCHMARK(SelectARowOfAllOfIt)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  zemo::ScreenApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  TheBench().window.reset();
  return 0;
}
