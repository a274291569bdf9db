// Costs of the store: the settings check of every handler, seeks, the queries of a request,
// opening. A library of 100,000 cards in a file of its own, made once a run.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "WholeBase.h"
#include "store/SoundMeasuresTable.h"

namespace {

using zemo::Database;
using zemo::StationBase;
using zemo::bench::OpenWhole;

constexpr int kCards = 100000;
constexpr int kGenres = 40;

std::filesystem::path Folder() {
  static const std::filesystem::path folder = [] {
    std::string pattern = (std::filesystem::temp_directory_path() / "zemo_bench_XXXXXX").string();
    if (!mkdtemp(pattern.data())) std::abort();
    return std::filesystem::path(pattern);
  }();
  return folder;
}

// Path of the base with the library.
const std::string& Library() {
  static const std::string path = [] {
    const std::string made = Folder() / "Triskin.MDB";
    StationBase base(made);
    OpenWhole(base);
    base.Db().Execute(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
        std::to_string(kCards) +
        ") INSERT INTO Discotheque(FILENAME, DUREE, AUTEUR, TITRE, GENRE, NBPASSJOUR, TRANCHE01, "
        "TRANCHE02, TRANCHE03, TRANCHE04, TRANCHE05, TRANCHE06, TRANCHE07, LASTDIFF) SELECT "
        "'/music/artist ' || (i % 5000) || '/title ' || i || '.mp3', 200000 + i % 60000, 'Artist ' "
        "|| "
        "(i % 5000), 'Title ' || i, 'GENRE ' || (i % " +
        std::to_string(kGenres) +
        "), 1, '111111111111111111111111', '111111111111111111111111', '111111111111111111111111', "
        "'111111111111111111111111', '111111111111111111111111', '111111111111111111111111', "
        "'111111111111111111111111', 38000 + i % 997 FROM n");
    return made;
  }();
  return path;
}

StationBase& Opened() {
  static StationBase base(Library());
  if (!base.IsOpen()) OpenWhole(base);
  return base;
}

void SettingsCheck(benchmark::State& state) {
  StationBase& base = Opened();
  for (auto _ : state) {
    base.CheckCnf();
    benchmark::DoNotOptimize(base.CnfInt(zemo::Cnf::kFadeOut));
  }
}
BENCHMARK(SettingsCheck);

void SettingsReadWithoutCheck(benchmark::State& state) {
  StationBase& base = Opened();
  for (auto _ : state) benchmark::DoNotOptimize(base.CnfInt(zemo::Cnf::kFadeOut));
}
BENCHMARK(SettingsReadWithoutCheck);

void SeekByCode(benchmark::State& state) {
  StationBase& base = Opened();
  int64_t code = 0;
  for (auto _ : state) {
    const auto cards = base.Table("Discotheque");
    cards->SetIndex("CODE");
    cards->Seek("=", code = code * 7919 % kCards + 1);
    benchmark::DoNotOptimize(cards->Int("DUREE"));
  }
}
BENCHMARK(SeekByCode);

void SeekByAccentedFileName(benchmark::State& state) {
  const auto cards = Opened().Table("Discotheque");
  cards->SetIndex("FILENAME");
  for (auto _ : state) cards->Seek("=", std::string("/music/été.mp3"));
}
BENCHMARK(SeekByAccentedFileName)->Unit(benchmark::kMillisecond);

// What stands ahead of a start: a file for each card, of a size that a few others have as well.
void MeasuresOfAFile(benchmark::State& state) {
  StationBase& base = Opened();
  static const bool measured = [&base] {
    zemo::StoreMeasures(base, "/music/été.mp3", {1, 1}, {});
    base.Db().Execute("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                      std::to_string(kCards) +
                      ") INSERT INTO Mesures(CHEMIN, TAILLE, MODIFIE, LUFS, DBTP) SELECT "
                      "'/music/été ' || i || '.mp3', i / 5, i, -9.5, -0.3 FROM n");
    return true;
  }();
  benchmark::DoNotOptimize(measured);
  int64_t number = 0;
  for (auto _ : state) {
    number = number * 7919 % kCards + 1;
    const std::string path = "/music/été " + std::to_string(number) + ".mp3";
    benchmark::DoNotOptimize(zemo::FindMeasures(base.Db(), path, {number / 5, number}));
  }
}
BENCHMARK(MeasuresOfAFile);

void CountLibrary(benchmark::State& state) {
  StationBase& base = Opened();
  for (auto _ : state) benchmark::DoNotOptimize(base.CountRecords("Discotheque"));
}
BENCHMARK(CountLibrary);

void PipLookUp(benchmark::State& state) {
  Database& database = Opened().Db();
  for (auto _ : state) {
    benchmark::DoNotOptimize(database.OpenRecordset(
        "SELECT * FROM Toph WHERE Heure = ? AND JourSemaine Like ?", {7, std::string("??X*")}));
  }
}
BENCHMARK(PipLookUp);

void QueryWithNewValue(benchmark::State& state) {
  Database& database = Opened().Db();
  int64_t number = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(database.OpenRecordset(
        "SELECT * FROM DiscothequeJingle WHERE CODEASSOCIE = ? AND SURIMPRESSION = 0 "
        "ORDER BY LASTDIFF ASC;",
        {++number}));
  }
}
BENCHMARK(QueryWithNewValue);

// A query whose text is new each time: translated and prepared anew.
void QueryWithNewText(benchmark::State& state) {
  Database& database = Opened().Db();
  int64_t number = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(database.OpenRecordset(
        "SELECT * FROM DiscothequeJingle WHERE CODEASSOCIE = " + std::to_string(++number) +
        " AND SURIMPRESSION = 0 ORDER BY LASTDIFF ASC;"));
  }
}
BENCHMARK(QueryWithNewText);

void OldestTitlesOfThreeGenres(benchmark::State& state) {
  Database& database = Opened().Db();
  for (auto _ : state) {
    benchmark::DoNotOptimize(database.OpenRecordset(
        "Select * From Discotheque Where Genre In(?, ?, ?) And Tranche03 LIKE ? AND NBPASSJOUR > 0 "
        "ORDER BY Lastdiff ASC;",
        {std::string("GENRE 1"), std::string("GENRE 2"), std::string("GENRE 3"),
         std::string("???????1*")}));
  }
}
BENCHMARK(OldestTitlesOfThreeGenres)->Unit(benchmark::kMillisecond);

void WholeLibraryByArtist(benchmark::State& state) {
  Database& database = Opened().Db();
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        database.OpenRecordset("SELECT Auteur, Titre, CODE FROM Discotheque ORDER BY AUTEUR"));
  }
}
BENCHMARK(WholeLibraryByArtist)->Unit(benchmark::kMillisecond);

void OpenExistingBase(benchmark::State& state) {
  Library();
  for (auto _ : state) {
    StationBase base(Library());
    OpenWhole(base);
    benchmark::DoNotOptimize(base.CnfInt(1));
  }
}
BENCHMARK(OpenExistingBase)->Unit(benchmark::kMillisecond);

void CreateNewBase(benchmark::State& state) {
  const std::string path = Folder() / "New.MDB";
  for (auto _ : state) {
    StationBase base(path);
    OpenWhole(base);
    base.Close();
    state.PauseTiming();
    std::filesystem::remove(path);
    state.ResumeTiming();
  }
}
BENCHMARK(CreateNewBase)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  Opened().Close();
  std::filesystem::remove_all(Folder());
  return 0;
}
