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

#include "scheduling/PercentageRequest.h"
#include "station/TextForms.h"
#include "support/TestStation.h"

namespace {

using zemo::TwoDigits;
using zemo::test::TestStation;

constexpr int kReportRows = 200000;
constexpr int kGenres = 12;
constexpr int kSaturday = 6;

std::string GenreList() {
  std::string list;
  for (int i = 0; i < kGenres; ++i) list += (i ? ", 'GENRE " : "'GENRE ") + std::to_string(i) + "'";
  return list;
}

std::string Numbers(int count) {
  return "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
         std::to_string(count) + ") ";
}

void FillLibrary(TestStation& s, int cards) {
  std::string fields, values;
  for (int day = 1; day <= 7; ++day) {
    fields += ", TRANCHE" + TwoDigits(day);
    values += ", '111111111111111111111111'";
  }
  for (int last = 1; last <= 8; ++last) {
    fields += ", DIFFUSION" + TwoDigits(last);
    values += ", printf('%02d/%02d/2026 à %02d:%02d', 1 + i % 28, " + std::to_string(11 - last) +
              ", i % 24, i % 60)";
  }
  const std::string artists = std::to_string(cards / 12 + 1);
  s.Sql(Numbers(cards) +
        "INSERT INTO Discotheque (FILENAME, DUREE, INTRO, AUTEUR, TITRE, GENRE, VARIETE, ANNEE, "
        "NBPASSJOUR, ECARTMINUTES, ECARTJOURS, ECARTARTISTE, POINTSORTIE, LABEL, LASTDIFF" +
        fields + ") SELECT '/music/artist ' || (i * 7919 % " + artists + ") || '/title ' || i || " +
        "'.mp3', 150000 + i * 31 % 120000, i % 20, 'Artist ' || (i * 7919 % " + artists +
        "), 'Title ' || i, 'GENRE ' || (i % " + std::to_string(kGenres) +
        "), CASE i % 5 WHEN 0 THEN 'INTERNATIONAL' ELSE 'NATIONAL' END, '1999', 1 + i % 3, 120, i "
        "% 4, "
        "0, 0, 'Label ' || (i % 90), 46300 + (i * 104729 % 40000) / 1000.0" +
        values + " FROM n");
}

void FillModels(TestStation& s) {
  std::string fields, shares, genres;
  for (int hour = 0; hour < 24; ++hour) {
    fields += ", TRANCHE" + TwoDigits(hour);
    shares += ", 8";
    genres += ", 'GENRE ' || (i % " + std::to_string(kGenres) + ")";
  }
  s.Sql(Numbers(kGenres) + "INSERT INTO Models (JOUR, GENRE" + fields + ") SELECT " +
        std::to_string(kSaturday) + ", 'GENRE ' || (i % " + std::to_string(kGenres) + ")" + shares +
        " FROM n");
  s.Sql(Numbers(kGenres) + "INSERT INTO ModelSquelette (JOUR" + fields + ") SELECT " +
        std::to_string(kSaturday) + genres + " FROM n");
  s.Sql("UPDATE Variete SET POURCENT = 60 WHERE VARIETE = 'NATIONAL'");
  s.Sql("UPDATE Variete SET POURCENT = 40 WHERE VARIETE = 'INTERNATIONAL'");
  s.Sql("UPDATE Cnf SET CheckNational = 0");
}

TestStation& WithLibrary(int cards) {
  static std::map<int, std::unique_ptr<TestStation>> stations;
  auto& station = stations[cards];
  if (station) return *station;
  setenv("TZ", "UTC", 1);
  station = std::make_unique<TestStation>("2026-11-21 10:55:00");
  station->Load();
  FillLibrary(*station, cards);
  FillModels(*station);
  station->Sql(
      Numbers(kReportRows) +
      "INSERT INTO Rapport (LADATE, HEURE, AUTEUR, TITRE, GENRE, VARIETE, DATENUM) SELECT "
      "'21/11/2026', '10:00:00', 'Artist ' || (i % 4000), 'Title ' || i, CASE i % 4 WHEN 0 THEN "
      "'JINGLE' ELSE 'GENRE 1' END, 'NATIONAL', 45700 + i / 400.0 FROM n");
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
    RequetePlaylist(s.station, minutes);
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
