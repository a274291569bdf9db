// A request of 30 minutes, by percentages and along a skeleton, on libraries of 1,000, 10,000 and
// 100,000 cards with a report of 200,000 rows: with the library in memory, and with the base asked
// for it, as while another program's write is taken in; each beside the time that SQLite alone
// takes to read all rows of the request's query in its order. The library is played in: eight
// broadcasts a card, genres, varieties and artists as a station has them, and all of it is open at
// this hour.
//   longest_ms  the longest time of a request without a yield, of the processor's time
// ReadLibrary is the reading ahead itself, TakeIn that behind a write of another program to a
// hundredth of the cards, or to another table:
//   slice_ms    its longest slice
//   bytes       of memory a card, text_bytes of which are its title's and its file's
// ReadReport is the first reading of the report, TakeInReportRow what another program's write to
// one of its old rows costs. Targets with 100,000 cards in memory: under 20 ms, longest_ms and
// slice_ms under 5, bytes without text_bytes under 120. Asked: at most 1.3 times SQLite alone.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>

#include "BigLibrary.h"
#include "Figures.h"
#include "library/KnownCards.h"
#include "reports/KnownReport.h"
#include "scheduling/PercentageRequest.h"
#include "settings/SideFiles.h"
#include "support/TestStation.h"
#include "support/WatchedLoop.h"

namespace {

using zemo::bench::kGenres;
using zemo::bench::WorkedMs;
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

// A station on the base of another one, whose yields are watched.
struct WatchedRequests {
  explicit WatchedRequests(TestStation& s)
      : loop(s.loop),
        station(zemo::Platform{s.loop, loop, s.sound, s.stationFolder, s.machineFolder,
                               s.soundFiles, s.lengths, s.localValues, s.clipboard, s.messages,
                               s.keyboard, s.system, s.automaton, s.joystick}) {
    station.base.OpenOrCreateDatabase();
    zemo::SetSideFileNames(station);
    station.base.OpenAllTables();
    loop.onYield = [this] { NoteStretch(); };
  }
  // The longest stretch is kept.
  void NoteStretch() {
    const double now = WorkedMs();
    longestMs = std::max(longestMs, now - lastYieldMs);
    lastYieldMs = now;
  }
  zemo::test::WatchedLoop loop;
  zemo::Station station;
  double lastYieldMs = 0, longestMs = 0;
};

void Request(benchmark::State& state, bool skeleton, bool inMemory) {
  TestStation& s = WithLibrary(static_cast<int>(state.range(0)));
  s.Set("Squelette", skeleton ? "-1" : "0");
  WatchedRequests watched(s);
  zemo::Station& station = watched.station;
  int rows = 0;
  int16_t first = 30;
  RequestMusic(station, first);
  watched.longestMs = 0;
  for (auto _ : state) {
    state.PauseTiming();
    station.PL.Clear();
    if (!inMemory) station.knownCards.reset();
    while (inMemory && zemo::ReadCardsAhead(station)) {
    }
    while (zemo::ReadReportAhead(station)) {
    }
    watched.lastYieldMs = WorkedMs();
    state.ResumeTiming();
    int16_t minutes = 30;
    RequestMusic(station, minutes);
    watched.NoteStretch();
    rows = station.PL.Count();
  }
  if (rows == 0) state.SkipWithError("the request found nothing");
  state.counters["rows"] = rows;
  state.counters["longest_ms"] = watched.longestMs;
}

void PercentageRequest(benchmark::State& state) {
  Request(state, false, true);
}
void SkeletonRequest(benchmark::State& state) {
  Request(state, true, true);
}
void PercentageRequestAsked(benchmark::State& state) {
  Request(state, false, false);
}
void SkeletonRequestAsked(benchmark::State& state) {
  Request(state, true, false);
}

size_t BytesInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

void ReadLibrary(benchmark::State& state) {
  WatchedRequests watched(WithLibrary(static_cast<int>(state.range(0))));
  zemo::Station& station = watched.station;
  double sliceMs = 0, bytes = 0, textBytes = 0;
  while (zemo::ReadCardsAhead(station)) {  // what SQLite keeps for itself is no part of it
  }
  for (auto _ : state) {
    station.knownCards.reset();
    const size_t before = BytesInUse();
    bool more = true;
    while (more) {
      const double begin = WorkedMs();
      more = zemo::ReadCardsAhead(station);
      sliceMs = std::max(sliceMs, WorkedMs() - begin);
    }
    bytes = static_cast<double>(BytesInUse() - before) / static_cast<double>(state.range(0));
    const auto cards = zemo::CardsNow(station);
    if (!cards) return state.SkipWithError("the library is not known");
    textBytes = static_cast<double>(cards->texts->Bytes()) / static_cast<double>(state.range(0));
  }
  state.counters["slice_ms"] = sliceMs;
  state.counters["bytes"] = bytes;
  state.counters["text_bytes"] = textBytes;
}

void TakeIn(benchmark::State& state, const char* foreign) {
  TestStation& s = WithLibrary(static_cast<int>(state.range(0)));
  WatchedRequests watched(s);
  zemo::Station& station = watched.station;
  double sliceMs = 0, slices = 0;
  while (zemo::ReadCardsAhead(station)) {
  }
  for (auto _ : state) {
    state.PauseTiming();
    s.Sql(foreign);
    state.ResumeTiming();
    bool more = true;
    for (slices = 0; more; ++slices) {
      const double begin = WorkedMs();
      more = zemo::ReadCardsAhead(station);
      sliceMs = std::max(sliceMs, WorkedMs() - begin);
    }
    if (!zemo::CardsNow(station)) return state.SkipWithError("the library is not known");
  }
  state.counters["slice_ms"] = sliceMs;
  state.counters["slices"] = slices;
}

void TakeInCards(benchmark::State& state) {
  TakeIn(state, "UPDATE Discotheque SET NBPASSJOUR = NBPASSJOUR + 1 WHERE CODE % 100 = 7");
}
void TakeInOtherTable(benchmark::State& state) {
  TakeIn(state, "UPDATE Cnf SET JingleCode = JingleCode + 1");
}

// Half of the cards keep their artist's rows of the report apart.
void RequestWithGaps(benchmark::State& state) {
  WithLibrary(static_cast<int>(state.range(0)))
      .Sql("UPDATE Discotheque SET ECARTARTISTE = 40 WHERE CODE % 2 = 0");
  Request(state, false, true);
}

// Of kReportRows rows.
void ReadReport(benchmark::State& state) {
  WatchedRequests watched(WithLibrary(static_cast<int>(state.range(0))));
  zemo::Station& station = watched.station;
  double sliceMs = 0;
  for (auto _ : state) {
    station.knownReport.reset();
    bool more = true;
    while (more) {
      const double begin = WorkedMs();
      more = zemo::ReadReportAhead(station);
      sliceMs = std::max(sliceMs, WorkedMs() - begin);
    }
  }
  state.counters["slice_ms"] = sliceMs;
}

// The second time, when its pages have marks.
void TakeInReportRow(benchmark::State& state) {
  TestStation& s = WithLibrary(static_cast<int>(state.range(0)));
  WatchedRequests watched(s);
  zemo::Station& station = watched.station;
  double sliceMs = 0, slices = 0;
  const auto takeIn = [&] {
    bool more = true;
    for (slices = 0; more; ++slices) {
      const double begin = WorkedMs();
      more = zemo::ReadReportAhead(station);
      sliceMs = std::max(sliceMs, WorkedMs() - begin);
    }
  };
  takeIn();
  for (int turn = 0; turn < 2; ++turn) {
    s.Sql("UPDATE Rapport SET LABEL = 'L' WHERE CODE = 77");
    takeIn();
  }
  sliceMs = 0;
  for (auto _ : state) {
    state.PauseTiming();
    s.Sql("UPDATE Rapport SET LABEL = LABEL || 'L' WHERE CODE = 77");
    state.ResumeTiming();
    takeIn();
  }
  state.counters["slice_ms"] = sliceMs;
  state.counters["slices"] = slices;
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
BENCHMARK(PercentageRequestAsked)->Apply(Sizes);
BENCHMARK(PercentageRequest)->Apply(Sizes);
BENCHMARK(SqliteSkeletonQuery)->Apply(Sizes);
BENCHMARK(SkeletonRequestAsked)->Apply(Sizes);
BENCHMARK(SkeletonRequest)->Apply(Sizes);
BENCHMARK(ReadLibrary)->Apply(Sizes);
BENCHMARK(TakeInCards)->Apply(Sizes);
BENCHMARK(TakeInOtherTable)->Apply(Sizes);
BENCHMARK(ReadReport)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(RequestWithGaps)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(TakeInReportRow)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
