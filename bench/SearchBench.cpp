// The library search on the live mode's screen with 1,000, 10,000 and 100,000 cards, as an operator
// meets it: real key and mouse events on the main screen, drawn off the screen, while a timer of 1
// ms stands for the tick. For each order
//   first_ms  until the handler has come back, with the first rows in the list,
//   all_ms    until all rows stand there,
//   stall_ms  the longest time for which the loop served nobody,
// as the longest of all rounds. Three states of what is known of the library: "known", "written"
// (the base was written to since, as at each start of an element) and "cold" (the first search).
// Targets with 100,000 cards: first_ms under 100, stall_ms under 30.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <memory>
#include <string>

#include "BigLibrary.h"
#include "engine/LiveMode.h"
#include "engine/screens/LiveFrame.h"
#include "engine/screens/OnAirWindow.h"
#include "scheduling/LibrarySearch.h"
#include "support/TestStation.h"

namespace {

using zemo::BrowseList;
using zemo::BrowseView;
using zemo::LiveFrame;
using zemo::OnAirWindow;
using zemo::test::TestStation;
using Clock = std::chrono::steady_clock;

double MsSince(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

// The screen in live mode. One at a time: a window that is closed draws no more.
class Bench {
 public:
  explicit Bench(int cards) : cards_(cards) {
    on.Load();
    on.Sql(zemo::bench::CardsSql(cards));
    window = std::make_unique<OnAirWindow>(on.station, zemo::ScreenSources{});
    window->resize(1280, 800);
    window->show();
    QApplication::setActiveWindow(window.get());
    QTest::mouseClick(window->findChild<QWidget*>("Toolbar1_2"), Qt::LeftButton);
    frame = static_cast<LiveFrame*>(window->findChild<QWidget*>("CadreRech"));
    list = static_cast<BrowseView*>(window->findChild<QWidget*>("ListRech"));
    rech = window->findChild<QLineEdit*>("Rech");
    window->Begin();
    QObject::connect(&tick_, &QTimer::timeout, [this] { Beat(); });
    tick_.start(1);
    Forget();
  }

  int Cards() const { return cards_; }
  void Forget() {
    on.station.browse.search.reset();
    on.station.knownCards.reset();
  }
  void Know() {
    rech->clear();
    while (zemo::ReadAheadSlice(on.station)) {
    }
  }
  void Write() { on.Sql("UPDATE Cnf SET JingleCode = JingleCode + 1"); }

  // Puts the text in the box but for its last character, and the loop at rest.
  void Prepare(const std::string& text) {
    rech->setText(QString::fromStdString(text.substr(0, text.size() - 1)));
    Settle();
  }
  void Settle() {
    for (int turn = 0; turn < 20 || frame->Searching(); ++turn) QCoreApplication::processEvents();
  }
  template <typename Order>
  void Measure(Order order) {
    lastBeat_ = Clock::now();
    const auto begin = lastBeat_;
    counting_ = true;
    order();
    firstMs = std::max(firstMs, MsSince(begin));
    while (frame->Searching()) QCoreApplication::processEvents();
    window->Refresh();
    allMs = std::max(allMs, MsSince(begin));
    QCoreApplication::processEvents();  // drawn
    Beat();
    counting_ = false;
    rows = list->model()->rowCount();
  }
  void Tell(benchmark::State& state) const {
    state.counters["first_ms"] = firstMs;
    state.counters["all_ms"] = allMs;
    state.counters["stall_ms"] = stallMs;
    state.counters["rows"] = rows;
  }

  TestStation on;
  std::unique_ptr<OnAirWindow> window;
  LiveFrame* frame;
  BrowseView* list;
  QLineEdit* rech;
  double firstMs = 0, allMs = 0, stallMs = 0;
  int rows = 0;

 private:
  void Beat() {
    if (counting_) stallMs = std::max(stallMs, MsSince(lastBeat_));
    lastBeat_ = Clock::now();
  }
  int cards_;
  QTimer tick_;
  Clock::time_point lastBeat_;
  bool counting_ = false;
};

enum Knowledge { kKnown, kWritten, kCold };
constexpr const char* kKnowledgeNames[] = {"known", "written", "cold"};
// Many hits while typing, as many, one, and all of them.
constexpr const char* kTexts[] = {"A", "ARTI", "TITLE 4711", "*"};

void Keystroke(benchmark::State& state, const char* text, Knowledge knowledge) {
  Bench bench(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    bench.Know();
    bench.Prepare(text);
    if (knowledge == kCold) bench.Forget();
    if (knowledge == kWritten) bench.Write();
    state.ResumeTiming();
    bench.Measure([&] { QTest::keyClick(bench.rech, text[std::string(text).size() - 1]); });
  }
  bench.Tell(state);
}

// Every twelfth card is of the genre.
void Genre(benchmark::State& state) {
  Bench bench(static_cast<int>(state.range(0)));
  bench.Know();
  auto* genres = bench.window->findChild<QComboBox*>("RechGenre");
  genres->addItem("GENRE 3");
  for (auto _ : state) {
    state.PauseTiming();
    genres->setCurrentIndex(genres->count() - 2);
    state.ResumeTiming();
    bench.Measure([&] { QTest::keyClick(genres, Qt::Key_Down); });
  }
  bench.Tell(state);
}

void Sort(benchmark::State& state, int column) {
  Bench bench(static_cast<int>(state.range(0)));
  bench.Know();
  bench.Prepare("*");
  QHeaderView* heads = bench.list->horizontalHeader();
  for (auto _ : state) {
    state.PauseTiming();
    bench.rech->clear();
    QTest::keyClick(bench.rech, '*');
    bench.Settle();
    state.ResumeTiming();
    bench.Measure([&] {
      QTest::mouseClick(heads->viewport(), Qt::LeftButton, {},
                        {heads->sectionViewportPosition(column) + 10, heads->height() / 2});
    });
  }
  bench.Tell(state);
}

void SelectAll(benchmark::State& state) {
  Bench bench(static_cast<int>(state.range(0)));
  bench.Know();
  QTest::keyClick(bench.rech, '*');
  bench.Settle();
  for (auto _ : state) {
    bench.list->clearSelection();
    bench.Measure([&] {
      QTest::keyClick(bench.list, Qt::Key_A, Qt::ControlModifier);
      QTest::keyClick(bench.list, Qt::Key_Insert);  // refused above 500 rows
    });
  }
  bench.Tell(state);
}

// 500 rows at the head of a list of as many.
void Drop(benchmark::State& state) {
  Bench bench(static_cast<int>(state.range(0)));
  bench.Know();
  QTest::keyClick(bench.rech, '*');
  bench.Settle();
  std::vector<int> rows;
  for (int row = 0; row < static_cast<int>(zemo::OnAir::kMostDropped); ++row) rows.push_back(row);
  for (auto _ : state) {
    state.PauseTiming();
    bench.on.station.PL.Clear();
    zemo::OnAir::DropBrowseRows(bench.on.station, rows, 0);
    bench.Settle();
    state.ResumeTiming();
    bench.Measure([&] { zemo::OnAir::DropBrowseRows(bench.on.station, rows, 1); });
  }
  bench.Tell(state);
}

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime();
  bench->Iterations(5);
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("TZ", "UTC");
  QApplication application(argc, argv);
  for (const char* text : kTexts)
    for (const Knowledge knowledge : {kKnown, kWritten, kCold})
      benchmark::RegisterBenchmark(
          (std::string("Keystroke/") + text + "/" + kKnowledgeNames[knowledge]).c_str(), Keystroke,
          text, knowledge)
          ->Apply(Sizes);
  benchmark::RegisterBenchmark("Genre", Genre)->Apply(Sizes);
  benchmark::RegisterBenchmark("Sort/artist", Sort, 0)->Apply(Sizes);
  benchmark::RegisterBenchmark("Sort/title", Sort, 1)->Apply(Sizes);
  benchmark::RegisterBenchmark("SelectAll", SelectAll)->Apply(Sizes);
  benchmark::RegisterBenchmark("Drop500", Drop)->Apply(Sizes);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
