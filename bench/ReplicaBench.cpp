// What the keeper of a replica costs who works on it. For as long as TakeIn takes a writer of the
// file waits; beside the others one is at work, and writer_ms is what he waited for at the most,
// beside WriterAlone, what he needs himself. And a private copy of a base of 90 MB, by the replica
// and by its server. Where the temporary folder stands counts (TMPDIR).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <thread>

#include "WholeBase.h"
#include "app/BaseBackup.h"
#include "store/CarryOver.h"
#include "store/DatabaseFiles.h"
#include "store/postgres/PostgresDatabase.h"
#include "store/replica/Replica.h"
#include "support/TestServer.h"

namespace {

using namespace zemo;

constexpr int kCards = 20000;
constexpr int kPlays = 1600000;
constexpr int64_t kFirstNumber = 5000000;

std::filesystem::path Folder() {
  static const std::filesystem::path folder = [] {
    std::string pattern = (std::filesystem::temp_directory_path() / "zemo_bench_XXXXXX").string();
    if (!mkdtemp(pattern.data())) std::abort();
    return std::filesystem::path(pattern);
  }();
  return folder;
}

std::string Numbers(int count) {
  return "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
         std::to_string(count) + ") ";
}

// A base as a station's server has it.
Database& Whole() {
  static StationBase base(Folder() / "Triskin.MDB");
  if (base.IsOpen()) return base.Db();
  bench::OpenWhole(base);
  base.Db().Execute(Numbers(kCards) +
                    "INSERT INTO Discotheque(FILENAME, DUREE, AUTEUR, TITRE, GENRE) SELECT "
                    "'/music/artist ' || (i % 5000) || '/title ' || i || '.mp3', 200000, 'Artist ' "
                    "|| (i % 5000), 'Title ' || i, 'GENRE ' || (i % 40) FROM n");
  base.Db().Execute(Numbers(kPlays) +
                    "INSERT INTO Rapport(AUTEUR, TITRE, DATENUM) SELECT 'Artist ' || (i % 5000), "
                    "'Title ' || i, 38000 + i / 400.0 FROM n");
  return base.Db();
}

const std::string& ReplicaPath() {
  static const std::string path = [] {
    const std::string made = Folder() / "Replica.MDB";
    Replica::Make(Whole(), {}, "bench", made);
    Replica(made, kBusyTimeoutMs).AddNumbers("Rapport", kFirstNumber, kFirstNumber + 10000000);
    return made;
  }();
  return path;
}

std::unique_ptr<Database> Opened() {
  auto base = DBEngine::ClosedReplica(ReplicaPath(), std::make_shared<LockWait>(),
                                      {.stores = [] {}, .compact = [] {}});
  base->Open(false);
  return base;
}

void AddPlay(Database& base, int number) {
  base.Execute("INSERT INTO Rapport(AUTEUR, TITRE, DATENUM) VALUES(?, ?, ?)",
               {"Artist", "Title", 40000.0 + number});
}

// As many cards with another title each time.
std::vector<ServerRows> ChangedCards(int64_t count, int turn) {
  ServerRows rows;
  rows.table = "Discotheque";
  rows.fields = {"TITRE", "AUTEUR", "LASTDIFF"};
  for (int64_t i = 1; i <= count; ++i) {
    const int64_t number = 1 + i * 37 % kCards;
    rows.numbers.push_back(number);
    rows.rows.push_back({number,
                         {std::string("Title ") + std::to_string(turn), std::string("Artist"),
                          38000.0 + static_cast<double>(turn)}});
  }
  return {rows};
}

// Somebody who writes all the time, as the air does now and then: what he waited for at the most.
class Writer {
 public:
  Writer() : thread_([this] { Write(); }) {}
  ~Writer() { End(); }
  double LongestMs() {
    End();
    return longestMs_;
  }

 private:
  void Write() {
    const auto base = Opened();
    while (!ends_) {
      const auto began = std::chrono::steady_clock::now();
      AddPlay(*base, 0);
      const std::chrono::duration<double, std::milli> took =
          std::chrono::steady_clock::now() - began;
      longestMs_ = std::max(longestMs_, took.count());
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
  }
  void End() {
    ends_ = true;
    if (thread_.joinable()) thread_.join();
  }

  std::atomic<bool> ends_ = false;
  double longestMs_ = 0;
  std::thread thread_;
};

void TakeIn(benchmark::State& state) {
  Replica replica(ReplicaPath(), kBusyTimeoutMs);
  FeedPlace place = replica.Place();
  int turn = 0;
  for (auto _ : state) {
    state.PauseTiming();
    const auto changes = ChangedCards(state.range(0), ++turn);
    ++place.place;
    state.ResumeTiming();
    if (!replica.TakeIn(changes, place)) std::abort();
  }
}
BENCHMARK(TakeIn)->Arg(1)->Arg(100)->Arg(500)->Unit(benchmark::kMillisecond)->UseRealTime();

void NewRow(benchmark::State& state) {
  Replica replica(ReplicaPath(), kBusyTimeoutMs);
  const auto base = Opened();
  base->BeginTrans();
  for (auto _ : state) AddPlay(*base, 0);
  base->RollbackTrans();
}
BENCHMARK(NewRow)->Unit(benchmark::kMicrosecond)->UseRealTime();

// An outage's rows of the report.
void Queued(benchmark::State& state) {
  Replica replica(ReplicaPath(), kBusyTimeoutMs);
  const auto base = Opened();
  {
    Transaction all(*base);
    for (int i = 0; i < state.range(0); ++i) AddPlay(*base, i);
    all.Commit();
  }
  Writer writer;
  for (auto _ : state) {
    const auto queued = replica.Queued(state.range(0));
    benchmark::DoNotOptimize(queued->changes.data());
  }
  state.counters["writer_ms"] = writer.LongestMs();
  replica.Sent(std::numeric_limits<int64_t>::max());
}
BENCHMARK(Queued)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(5000)
    ->Arg(20000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

void CopyByTheReplica(benchmark::State& state) {
  const std::string to = Folder() / "Copy.MDB";
  ReplicaPath();
  Writer writer;
  for (auto _ : state) {
    if (!BackUpBase(ReplicaPath(), to)) std::abort();
    Replica::MakePlain(to);
    state.PauseTiming();
    state.counters["MB"] = static_cast<double>(std::filesystem::file_size(to)) / 1e6;
    std::filesystem::remove(to);
    state.ResumeTiming();
  }
  state.counters["writer_ms"] = writer.LongestMs();
}
// Nobody else at work.
void WriterAlone(benchmark::State& state) {
  ReplicaPath();
  Writer writer;
  for (auto _ : state) std::this_thread::sleep_for(std::chrono::seconds(2));
  state.counters["writer_ms"] = writer.LongestMs();
}
BENCHMARK(WriterAlone)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();

BENCHMARK(CopyByTheReplica)->Unit(benchmark::kMillisecond)->UseRealTime();

void CopyByTheServer(benchmark::State& state) {
  auto& server = test::TestServer::Get();
  if (!server.Missing().empty()) return state.SkipWithError(server.Missing().c_str());
  const auto base =
      ClosedPostgresDatabase(server.Url(server.NewBase()), std::make_shared<LockWait>());
  base->Open(true);
  CarryOver(Whole(), *base, nullptr);
  const std::string to = Folder() / "Copy.MDB";
  for (auto _ : state) {
    ReadOverToFile(*base, to);
    state.PauseTiming();
    std::filesystem::remove(to);
    state.ResumeTiming();
  }
}
BENCHMARK(CopyByTheServer)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();

}  // namespace

int main(int count, char** values) {
  benchmark::Initialize(&count, values);
  benchmark::RunSpecifiedBenchmarks();
  std::error_code ignored;
  std::filesystem::remove_all(Folder(), ignored);
  return 0;
}
