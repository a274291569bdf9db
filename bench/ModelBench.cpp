// The model editor over a library of 100,000 cards: its opening, and what it reads of the library.
// "slice_ms" is the longest time for which a screen stands still meanwhile.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>

#include "BigLibrary.h"
#include "library/KnownCards.h"
#include "scheduling/GenreSupply.h"
#include "scheduling/ModelScreen.h"
#include "support/TestStation.h"

namespace {

using Clock = std::chrono::steady_clock;
namespace Models = zemo::Models;

constexpr int kCards = 100000;

zemo::test::TestStation& BigStation() {
  static zemo::test::TestStation on;
  if (!on.station.base.IsOpen()) {
    on.Load();
    on.Sql(zemo::bench::CardsSql(kCards));
    for (const std::string& statement : zemo::bench::ModelsSql()) on.Sql(statement);
  }
  return on;
}

void TheLibraryByGenreAndHour(benchmark::State& state) {
  zemo::test::TestStation& on = BigStation();
  double longestMs = 0;
  for (auto _ : state) {
    zemo::GenreSupply supply(on.station.Now());
    while (!supply.Complete()) {
      const auto begin = Clock::now();
      supply.ReadSlice(on.station.base.Db(), zemo::CardsListedAlready(on.station));
      const std::chrono::duration<double, std::milli> time = Clock::now() - begin;
      longestMs = std::max(longestMs, time.count());
    }
  }
  state.counters["slice_ms"] = longestMs;
}
BENCHMARK(TheLibraryByGenreAndHour)->Unit(benchmark::kMillisecond);

void Opening(benchmark::State& state) {
  zemo::test::TestStation& on = BigStation();
  for (auto _ : state) {
    Models::MnuModel_Click(on.station);
    Models::Form_Unload(on.station);
  }
}
BENCHMARK(Opening)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
