// Campaigns that come and go in numbers while the station airs: 2,000 lines of "ExportPubs.Txt"
// taken in as a title starts, and 2,000 ended campaigns purged as a composition begins, each with
// the disk waited for as on air. The whole, and the longest stretch between two yields, by which a
// tick can come late. Goal: no stretch above 20 ms but for the disk's own time, which `commit_ms`
// shows: one synced change of one row.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <string>

#include "engine/BaseMaintenance.h"
#include "settings/SideFiles.h"
#include "support/TestStation.h"
#include "support/WatchedLoop.h"
#include "traffic/CampaignPurge.h"

namespace {

using namespace zemo;
using namespace zemo::test;
using Clock = std::chrono::steady_clock;

constexpr int kCampaigns = 2000;

double Ms(Clock::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

std::string ExportLines() {
  std::string text;
  for (int i = 0; i < kCampaigns; ++i) {
    const std::string spot = "D:\\Publicite\\Campagnes\\Spot" + std::to_string(i);
    text += "01/11/2026\t20/11/2026\t07\t20\t00\t15\t30\t45\t\t\t\t\t" + spot +
            ".wav\t20000\tADVERTISER" + std::to_string(i) + "\tFOOD\t" + spot + ".GPB\t" +
            std::to_string(i % 30 * 10 + 10) + "\tcontact\tTrue\r\n";
  }
  return text;
}

// A station on air's disk, with a look at its yields.
class WatchedStation {
 public:
  WatchedStation()
      : loop(on.loop),
        station(Platform{on.loop, loop, on.sound, on.stationFolder, on.machineFolder, on.soundFiles,
                         on.lengths, on.localValues, on.clipboard, on.messages, on.keyboard,
                         on.system, on.automaton, on.joystick}) {
    on.Load();
    station.base.OpenOrCreateDatabase();
    SetSideFileNames(station);
    station.base.OpenAllTables();
    loop.onYield = [this] { EndStretch(); };
  }

  // Runs `work` and gives its longest stretch without a yield.
  template <typename Work>
  double LongestStretchMs(Work work) {
    longestMs_ = 0;
    last_ = Clock::now();
    work();
    EndStretch();
    return longestMs_;
  }
  double CommitMs() {
    const auto begin = Clock::now();
    on.station.base.Db().Execute("UPDATE Cnf SET PmixDef = PmixDef + 1");
    return Ms(Clock::now() - begin);
  }
  std::string Campaigns() { return on.SqlText("SELECT COUNT(*) FROM GrillePub"); }

  TestStation on;
  WatchedLoop loop;
  Station station;

 private:
  void EndStretch() {
    const auto now = Clock::now();
    longestMs_ = std::max(longestMs_, Ms(now - last_));
    last_ = now;
  }

  Clock::time_point last_;
  double longestMs_ = 0;
};

void Import(benchmark::State& state) {
  WatchedStation watched;
  const std::string lines = ExportLines();
  double longestMs = 0;
  double commitMs = 0;
  for (auto _ : state) {
    state.PauseTiming();
    watched.on.Sql("DELETE FROM GrillePub");
    watched.on.MakeFile("ExportPubs.Txt", lines);
    commitMs = std::max(commitMs, watched.CommitMs());
    state.ResumeTiming();
    longestMs =
        std::max(longestMs, watched.LongestStretchMs([&] { TakeDroppedBase(watched.station); }));
    if (watched.Campaigns() != std::to_string(kCampaigns)) state.SkipWithError("lines are lost");
  }
  state.counters["longest_stretch_ms"] = longestMs;
  state.counters["commit_ms"] = commitMs;
}
BENCHMARK(Import)->Unit(benchmark::kMillisecond)->Iterations(5);

void Purge(benchmark::State& state) {
  WatchedStation watched;
  const std::string lines = ExportLines();
  double longestMs = 0;
  double commitMs = 0;
  for (auto _ : state) {
    state.PauseTiming();
    watched.on.MakeFile("ExportPubs.Txt", lines);
    TakeDroppedBase(watched.station);
    commitMs = std::max(commitMs, watched.CommitMs());
    state.ResumeTiming();
    longestMs = std::max(longestMs,
                         watched.LongestStretchMs([&] { PurgeEndedCampaigns(watched.station); }));
    if (watched.Campaigns() != "0") state.SkipWithError("ended campaigns stay");
  }
  state.counters["longest_stretch_ms"] = longestMs;
  state.counters["commit_ms"] = commitMs;
}
BENCHMARK(Purge)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
