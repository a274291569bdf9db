// Composition of the day's grid out of 2,000 campaigns of 30 days with 8 marks in each of 24 hours,
// each with a grid file of 5,760 lines on disk and a sound file of its own: the whole composition,
// the longest stretch between two of its yields (by which a tick can come late), and the cost of a
// tick served in them. Goal: under 1.5 s, with a flat memory.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <vector>

#include "engine/MainTick.h"
#include "settings/SideFiles.h"
#include "station/TextForms.h"
#include "support/Campaigns.h"
#include "support/WatchedLoop.h"
#include "traffic/DayGridComposition.h"

namespace {

using namespace zemo;
using namespace zemo::test;
using Clock = std::chrono::steady_clock;

constexpr int kCampaigns = 2000;

double Ms(Clock::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

// Each campaign has a cross at one of 8 marks of every hour, so that all 192 moments are full.
class ManyCampaigns {
 public:
  ManyCampaigns()
      : loop(on.loop),
        station(Platform{on.loop, loop, on.sound, on.stationFolder, on.machineFolder, on.soundFiles,
                         on.lengths, on.localValues, on.clipboard, on.messages, on.keyboard,
                         on.system, on.automaton, on.joystick}) {
    on.Load();
    on.station.base.Db().Execute("PRAGMA synchronous = OFF");
    std::filesystem::create_directory(on.stationDir.Path() + "/Spots");
    for (int i = 0; i < kCampaigns; ++i) AddCampaign(on, MakeCampaign(i));
    station.base.OpenOrCreateDatabase();
    SetSideFileNames(station);
    station.base.OpenAllTables();
  }

  TestStation on;
  WatchedLoop loop;
  Station station;

 private:
  Campaign MakeCampaign(int i) {
    Campaign campaign{.advertiser = "ADVERTISER" + std::to_string(i),
                      .priority = i % 30 * 10 + 10,
                      .marks = {"00", "07", "15", "22", "30", "37", "45", "52"}};
    campaign.file = on.MakeSound("Spots/" + std::to_string(i) + ".wav", 20000);
    for (int hour = 0; hour < 24; ++hour)
      campaign.crosses.push_back(TwoDigits(hour) + ":" +
                                 campaign.marks[static_cast<size_t>(i % 8)]);
    return campaign;
  }
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
