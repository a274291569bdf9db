// The window of the campaigns over those of bench/ManyCampaigns.h, as an operator meets it: real
// key and mouse events, drawn off the screen, each until the window has come back. `Loads` reads
// how full the breaks are, in slices of which `longest_ms` is the longest hold of the tick; `again`
// of campaigns that were read before. The grid of a year has 366 days and 192 moments, all 2,000
// campaigns beside it. Goal: no hold above 20 ms, a frame of the grid within 16 ms.
#include <benchmark/benchmark.h>

#include <QAbstractButton>
#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QTest>
#include <algorithm>
#include <chrono>
#include <memory>

#include "ManyCampaigns.h"
#include "traffic/CampaignEditor.h"
#include "traffic/screens/CampaignGridView.h"
#include "traffic/screens/CampaignOverview.h"
#include "traffic/screens/CampaignWindow.h"
#include "ui/ScreenDesktop.h"

namespace {

using namespace zemo;
using Clock = std::chrono::steady_clock;

double MsSince(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

// Made once: the files take their time.
test::TestStation& Station() {
  static test::TestStation on;
  static const bool made = [] {
    on.Load();
    bench::AddManyCampaigns(on);
    on.Sql("UPDATE GrillePub SET PRIORITY = 305 WHERE CODE = " + std::to_string(bench::kCampaigns));
    return true;
  }();
  benchmark::DoNotOptimize(made);
  return on;
}

class Bench {
 public:
  Bench() { Open(); }
  void Open() {
    window = std::make_unique<CampaignWindow>(on.station, CampaignSources{});
    window->resize(1920, 1080);
    window->Open();
    window->resize(1920, 1080);  // not as it was left
    QApplication::processEvents();
  }
  // The grid of the last campaign over a year and all moments.
  void ShowAYear() {
    on.Sql("UPDATE GrillePub SET CAMPAGNEFIN = '01/01/2030' WHERE PRIORITY = 305");
    Press("BtnFin");
    while (!window->Loads().Known()) QApplication::processEvents();
  }
  ~Bench() { on.Sql("UPDATE GrillePub SET CAMPAGNEFIN = '30/11/2026' WHERE PRIORITY = 305"); }
  void Press(const char* name) {
    Find<QAbstractButton>(name)->click();
    QApplication::processEvents();
  }
  template <typename Control = QWidget>
  Control* Find(const char* name) {
    return window->findChild<Control*>(QString::fromLatin1(name));
  }
  CampaignGridView& Grid() { return *Find<CampaignGridView>("GPub"); }

  test::TestStation& on = Station();
  std::unique_ptr<CampaignWindow> window;
};

void Open(benchmark::State& state) {
  Bench bench;
  for (auto _ : state) bench.Open();
}

void NextRecord(benchmark::State& state) {
  Bench bench;
  bench.Press("BtnDebut");
  for (auto _ : state) bench.Press("BtnPlus");
}

void Overview(benchmark::State& state) {
  Bench bench;
  for (auto _ : state) bench.Press("BtnRecherhe");
}

void SortTheOverview(benchmark::State& state) {
  Bench bench;
  bench.Press("BtnRecherhe");
  QHeaderView& heads = *bench.Find<CampaignOverview>("PLPub")->horizontalHeader();
  for (auto _ : state) {
    QTest::mouseClick(heads.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 8));
    QApplication::processEvents();
  }
}

void Loads(benchmark::State& state) {
  Bench bench;
  if (state.range(0)) bench.ShowAYear();
  CampaignForm shown = bench.window->Editor();
  const bool again = state.range(1);
  auto loads = std::make_unique<BreakLoads>();
  double longestMs = 0;
  for (auto _ : state) {
    if (!again) loads = std::make_unique<BreakLoads>();
    auto begin = Clock::now();
    loads->Begin(bench.on.station, shown);
    for (bool ended = false; !ended; begin = Clock::now()) {
      ended = loads->Slice(bench.on.station);
      longestMs = std::max(longestMs, MsSince(begin));
    }
  }
  state.counters["longest_ms"] = longestMs;
}

void ScrollAYear(benchmark::State& state) {
  Bench bench;
  bench.ShowAYear();
  QScrollBar& across = *bench.Grid().horizontalScrollBar();
  QScrollBar& down = *bench.Grid().verticalScrollBar();
  int step = 0;
  for (auto _ : state) {
    ++step;
    across.setValue(step * 7 % (across.maximum() + 1));
    down.setValue(step * 3 % (down.maximum() + 1));
    QApplication::processEvents();
    benchmark::DoNotOptimize(bench.Grid().viewport()->grab());
  }
}

void MarkACellOfAYear(benchmark::State& state) {
  Bench bench;
  bench.ShowAYear();
  CampaignGridView& grid = bench.Grid();
  for (auto _ : state) {
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::NoModifier, grid.Cell({4, 4}).center());
    QApplication::processEvents();
  }
}

// A row of 366 days by Shift and End, to and fro.
void PaintARowOfAYear(benchmark::State& state) {
  Bench bench;
  bench.ShowAYear();
  CampaignGridView& grid = bench.Grid();
  grid.setFocus();
  for (auto _ : state) {
    QTest::keyClick(&grid, Qt::Key_Home);
    QTest::keyClick(&grid, Qt::Key_Space);
    QTest::keyClick(&grid, Qt::Key_End, Qt::ShiftModifier);
    QApplication::processEvents();
  }
}

BENCHMARK(Open)->Unit(benchmark::kMillisecond);
BENCHMARK(NextRecord)->Unit(benchmark::kMillisecond);
BENCHMARK(Overview)->Unit(benchmark::kMillisecond);
BENCHMARK(SortTheOverview)->Unit(benchmark::kMillisecond);
BENCHMARK(Loads)
    ->ArgNames({"year", "again"})
    ->ArgsProduct({{0, 1}, {0, 1}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(ScrollAYear)->Unit(benchmark::kMillisecond);
BENCHMARK(MarkACellOfAYear)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintARowOfAYear)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  zemo::ScreenApplication application(argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
