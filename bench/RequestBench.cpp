// A request of 30 minutes, by percentages and along a skeleton, on libraries of 1,000, 10,000 and
// 100,000 cards with a report of 200,000 rows, each beside the time that SQLite alone takes to read
// all rows of the request's query in its order. The library is played in: eight broadcasts a card,
// genres, varieties and artists as a station has them, and all of it is open at this hour. Targets:
// at most 1.3 times SQLite alone, and under 200 ms with 100,000 cards.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <string>

#include "BigLibrary.h"
#include "scheduling/PercentageRequest.h"
#include "support/TestStation.h"

namespace {

using zemo::bench::kGenres;
using zemo::test::TestStation;

constexpr int kReportRows = 200000;

std::string GenreList() {
  std::string list;
  for (int i = 0; i < kGenres; ++i) list += (i ? ", 'GENRE " : "'GENRE ") + std::to_string(i) + "'";
  return list;
}

TestStation& WithLibrary(int cards) {
  static std::map<int, std::unique_ptr<TestStation>> stations;
  auto& station = stations[cards];
  if (station) return *station;
  setenv("TZ", "UTC", 1);
  station = std::make_unique<TestStation>("2026-11-21 10:55:00");
  station->Load();
  station->Sql(zemo::bench::CardsSql(cards));
  for (const std::string& statement : zemo::bench::ModelsSql()) station->Sql(statement);
  station->Sql(zemo::bench::ReportSql(kReportRows));
  return *station;
}

void Request(benchmark::State& state, bool skeleton) {
  TestStation& s = WithLibrary(static_cast<int>(state.range(0)));
  s.Set("Squelette", skeleton ? "-1" : "0");
  int rows = 0;
  for (auto _ : state) {
    state.PauseTiming();
    s.station.PL.Clear();
    s.seen.clear();
    state.ResumeTiming();
    int16_t minutes = 30;
    RequestMusic(s.station, minutes);
    rows = s.station.PL.Count();
  }
  if (!s.Events("error").empty() || rows == 0) state.SkipWithError("the request found nothing");
  state.counters["rows"] = rows;
}

void PercentageRequest(benchmark::State& state) {
  Request(state, false);
}
void SkeletonRequest(benchmark::State& state) {
  Request(state, true);
}

// Reads every column of every row in its own type, as a program does that uses them.
int64_t ReadAll(sqlite3* db, const std::string& query) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(db, query.c_str(), -1, &statement, nullptr) != SQLITE_OK) std::abort();
  int64_t rows = 0;
  const int columns = sqlite3_column_count(statement);
  for (; sqlite3_step(statement) == SQLITE_ROW; ++rows) {
    for (int i = 0; i < columns; ++i) {
      switch (sqlite3_column_type(statement, i)) {
        case SQLITE_INTEGER:
          benchmark::DoNotOptimize(sqlite3_column_int64(statement, i));
          break;
        case SQLITE_FLOAT:
          benchmark::DoNotOptimize(sqlite3_column_double(statement, i));
          break;
        default:
          benchmark::DoNotOptimize(sqlite3_column_text(statement, i));
      }
    }
  }
  sqlite3_finalize(statement);
  return rows;
}

void SqliteAlone(benchmark::State& state, const char* order) {
  TestStation& s = WithLibrary(static_cast<int>(state.range(0)));
  sqlite3* db = nullptr;
  if (sqlite3_open(s.station.base.Path().c_str(), &db) != SQLITE_OK) std::abort();
  const std::string query = "SELECT * FROM Discotheque WHERE GENRE IN (" + GenreList() +
                            ") AND TRANCHE06 LIKE '__________1%' ORDER BY " + order;
  int64_t rows = 0;
  for (auto _ : state) rows = ReadAll(db, query);
  state.counters["rows"] = static_cast<double>(rows);
  sqlite3_close(db);
}

void SqlitePercentageQuery(benchmark::State& state) {
  SqliteAlone(state, "LASTDIFF, CODE");
}
void SqliteSkeletonQuery(benchmark::State& state) {
  SqliteAlone(state, "NBPASSJOUR DESC, LASTDIFF, CODE");
}

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(SqlitePercentageQuery)->Apply(Sizes);
BENCHMARK(PercentageRequest)->Apply(Sizes);
BENCHMARK(SqliteSkeletonQuery)->Apply(Sizes);
BENCHMARK(SkeletonRequest)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
