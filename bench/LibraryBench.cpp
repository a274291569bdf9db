// The library's window with 1,000, 10,000 and 100,000 cards, as an operator meets it: real key and
// mouse events, drawn off the screen, each until the window has come back. Filling the list yields
// to the loop; all else should stay under 100 ms.
#include <benchmark/benchmark.h>

#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QTableView>
#include <QTest>
#include <memory>

#include "BigLibrary.h"
#include "Figures.h"
#include "library/screens/LibraryWindow.h"
#include "support/TestStation.h"
#include "ui/ScreenDesktop.h"

namespace {

using zemo::LibraryWindow;

constexpr int kTitleColumn = 1;

class Bench {
 public:
  explicit Bench(int64_t count) : cards(static_cast<int>(count)) {
    on.Load();
    on.Sql(zemo::bench::CardsSql(cards));
    Open();
  }
  void Open() {
    window = std::make_unique<LibraryWindow>(on.station, zemo::LibrarySources{});
    window->resize(1280, 800);
    window->Open();
    window->resize(1280, 800);  // not as it was left
    QApplication::processEvents();
  }
  // Every card stands in the list.
  void Complete() {
    const QAbstractItemModel& list = *Find<QTableView>("PLDisco")->model();
    while (list.rowCount() < cards) QApplication::processEvents();
  }
  template <typename Control = QWidget>
  Control* Find(const char* name) {
    return window->findChild<Control*>(QString::fromLatin1(name));
  }
  void Click(QWidget* where, const QPoint& place) {
    QTest::mouseClick(where, Qt::LeftButton, Qt::NoModifier, place);
    QApplication::processEvents();
  }

  const int cards;
  zemo::test::TestStation on;
  std::unique_ptr<LibraryWindow> window;
};

// Shown, with a first page of the list.
void Open(benchmark::State& state) {
  Bench bench(state.range(0));
  for (auto _ : state) bench.Open();
}

void OpenAndFillTheList(benchmark::State& state) {
  Bench bench(state.range(0));
  for (auto _ : state) {
    bench.Open();
    bench.Complete();
  }
  state.counters["resident MB"] = zemo::bench::ResidentMb();
}

void TypeALetterOfASearch(benchmark::State& state) {
  Bench bench(state.range(0));
  bench.Complete();
  auto* box = bench.Find<QLineEdit>("RechDisco");
  for (auto _ : state) {
    QTest::keyClick(box, Qt::Key_7);
    QApplication::processEvents();
    state.PauseTiming();
    box->clear();
    state.ResumeTiming();
  }
}

void SortByTitle(benchmark::State& state) {
  Bench bench(state.range(0));
  bench.Complete();
  QHeaderView* heads = bench.Find<QTableView>("PLDisco")->horizontalHeader();
  const QPoint place(heads->sectionViewportPosition(kTitleColumn) + 10, heads->height() / 2);
  for (auto _ : state) bench.Click(heads->viewport(), place);
}

void NextCard(benchmark::State& state) {
  Bench bench(state.range(0));
  bench.Complete();
  auto* button = bench.Find("BtnPlus");
  for (auto _ : state) bench.Click(button, QPoint(8, 8));
}

void ReplaceACard(benchmark::State& state) {
  Bench bench(state.range(0));
  bench.Complete();
  auto* menu = bench.Find<QAction>("Replacer");
  for (auto _ : state) menu->trigger();
}

void Sizes(benchmark::internal::Benchmark* bench) {
  for (const int64_t cards : {1000, 10000, 100000}) bench->Arg(cards);
  bench->Unit(benchmark::kMillisecond);
}
BENCHMARK(Open)->Apply(Sizes);
BENCHMARK(OpenAndFillTheList)->Apply(Sizes);
BENCHMARK(TypeALetterOfASearch)->Apply(Sizes);
BENCHMARK(SortByTitle)->Apply(Sizes);
BENCHMARK(NextCard)->Apply(Sizes);
BENCHMARK(ReplaceACard)->Apply(Sizes);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  zemo::ScreenApplication application(argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
