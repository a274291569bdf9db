// Composition of the day's grid out of the campaigns of bench/ManyCampaigns.h: the whole
// composition, the longest stretch between two of its yields (by which a tick can come late), and
// the cost of a tick served in them. Goal: under 1.5 s, with a flat memory.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "ManyCampaigns.h"
#include "engine/MainTick.h"
#include "settings/SideFiles.h"
#include "support/WatchedLoop.h"
#include "traffic/DayGridComposition.h"

namespace {

using namespace zemo;
using namespace zemo::test;
using Clock = std::chrono::steady_clock;

double Ms(Clock::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

class ManyCampaigns {
 public:
  ManyCampaigns()
      : loop(on.loop),
        station(Platform{on.loop, loop, on.sound, on.stationFolder, on.machineFolder, on.soundFiles,
                         on.lengths, on.localValues, on.clipboard, on.messages, on.keyboard,
                         on.system, on.automaton, on.joystick}) {
    on.Load();
    bench::AddManyCampaigns(on);
    station.base.OpenOrCreateDatabase();
    SetSideFileNames(station);
    station.base.OpenAllTables();
  }

  TestStation on;
  WatchedLoop loop;
  Station station;
};

void Composition(benchmark::State& state) {
  ManyCampaigns many;
  ComposeDayGrid(many.station);  // the lengths are known from here on
  const auto inUse = mallinfo2().uordblks;
  std::vector<double> stretches, ticks;
  for (auto _ : state) {
    auto last = Clock::now();
    many.loop.onYield = [&] {
      const auto yield = Clock::now();
      stretches.push_back(Ms(yield - last));
      OnAir::MainTimer_Timer(many.station);
      last = Clock::now();
      ticks.push_back(Ms(last - yield));
    };
    ComposeDayGrid(many.station);
    many.loop.onYield = nullptr;
  }
  if (many.station.GPubJour.RowCount() != 193) state.SkipWithError("the grid is not full");
  std::ranges::sort(ticks);
  state.counters["longest_stretch_ms"] = *std::ranges::max_element(stretches);
  state.counters["tick_p99_ms"] = ticks[ticks.size() * 99 / 100];
  state.counters["grown_bytes"] =
      static_cast<double>(mallinfo2().uordblks) - static_cast<double>(inUse);
}
BENCHMARK(Composition)->Unit(benchmark::kMillisecond)->Iterations(5);

// The first composition of a run also opens each sound file for its length.
void FirstComposition(benchmark::State& state) {
  ManyCampaigns many;
  for (auto _ : state) {
    state.PauseTiming();
    SoundFileLengths fresh(many.on.opener, many.on.soundFiles);
    Station station(Platform{many.on.loop, many.loop, many.on.sound, many.on.stationFolder,
                             many.on.machineFolder, many.on.soundFiles, fresh, many.on.localValues,
                             many.on.clipboard, many.on.messages, many.on.keyboard, many.on.system,
                             many.on.automaton, many.on.joystick});
    station.base.OpenOrCreateDatabase();
    SetSideFileNames(station);
    station.base.OpenAllTables();
    state.ResumeTiming();
    ComposeDayGrid(station);
  }
}
BENCHMARK(FirstComposition)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
