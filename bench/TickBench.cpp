// What a tick costs while a title plays, with a library of 100,000 cards: median and 99th
// percentile of ten minutes of air, and the time that the simulation of an hour takes.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "engine/MainTick.h"
#include "support/TestStation.h"

namespace {

using zemo::test::TestStation;
using Clock = std::chrono::steady_clock;

void FillLibrary(TestStation& on, int cards) {
  on.Sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
         std::to_string(cards) +
         ") INSERT INTO Discotheque (FILENAME, DUREE, AUTEUR, TITRE, GENRE, VARIETE) "
         "SELECT '/music/' || i || '.mp3', 180000, 'ARTIST ' || i, 'TITLE ' || i, 'POP', "
         "'NATIONAL' FROM n");
}

// Titles for an hour; each keeps its card among the 100,000.
void FillList(TestStation& on, int titles, int64_t lengthMs) {
  for (int code = 1; code <= titles; ++code) {
    const std::string file = on.MakeSound("t" + std::to_string(code) + ".wav", lengthMs);
    on.Sql("UPDATE Discotheque SET FILENAME = '" + file + "', DUREE = " + std::to_string(lengthMs) +
           " WHERE CODE = " + std::to_string(code));
    on.AppendCard(code);
  }
}

void Tick(benchmark::State& state) {
  TestStation on("2026-11-21 12:05:00");
  on.Load();
  FillLibrary(on, 100000);
  FillList(on, 10, 3600000);  // one long title and a list that needs no refill
  on.Start();
  on.RunUntil(1050);
  std::vector<double> microseconds;
  int64_t nowMs = 1050;
  for (auto _ : state) {
    on.loop.RunUntil(nowMs += 100);  // the loop's own tick is not measured; the clock moves on
    const auto begin = Clock::now();
    zemo::OnAir::MainTimer_Timer(on.station);
    const auto end = Clock::now();
    microseconds.push_back(std::chrono::duration<double, std::micro>(end - begin).count());
    state.SetIterationTime(microseconds.back() / 1e6);
  }
  std::sort(microseconds.begin(), microseconds.end());
  state.counters["median_us"] = microseconds[microseconds.size() / 2];
  state.counters["p99_us"] = microseconds[microseconds.size() * 99 / 100];
}
BENCHMARK(Tick)->UseManualTime()->Iterations(6000);

void SimulatedHour(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    {
      TestStation on("2026-11-21 12:00:30");
      on.Load();
      FillLibrary(on, 100000);
      FillList(on, 24, 180000);
      on.Start();
      state.ResumeTiming();
      on.RunUntil(3600000);
      state.PauseTiming();
      state.counters["elements"] = static_cast<double>(on.Starts().size());
    }
    state.ResumeTiming();
  }
}
BENCHMARK(SimulatedHour)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

BENCHMARK_MAIN();
