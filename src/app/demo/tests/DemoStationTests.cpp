// The demo station as it stands on disk, and what it refuses to do.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>

#include "app/Commands.h"
#include "app/check/Check.h"
#include "app/demo/Demo.h"
#include "platform/real/desktop/RealClock.h"
#include "platform/real/files/tests/TemporaryFolder.h"

namespace zemo {
namespace {

constexpr DemoSize kTiny{3, 0.05};  // three titles of about 4 s

std::string Make(const std::string& dir) {
  return FileErrorOf([&] { MakeDemoStation(dir, kTiny, [](const std::string&) {}); });
}

int64_t Number(const std::string& base, const std::string& sql) {
  sqlite3* database = nullptr;
  EXPECT_EQ(sqlite3_open_v2(base.c_str(), &database, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
  int64_t number = -1;
  const auto take = [](void* to, int, char** values, char**) {
    *static_cast<int64_t*>(to) = values[0] ? std::atoll(values[0]) : -1;
    return 0;
  };
  EXPECT_EQ(sqlite3_exec(database, sql.c_str(), take, &number, nullptr), SQLITE_OK) << sql;
  sqlite3_close(database);
  return number;
}

TEST(DemoStation, HoldsAllThatAStationPlays) {
  const TemporaryFolder folder;
  ASSERT_EQ(Make(folder / "station"), "(no error)");
  const std::string base = folder / "station/Triskin.MDB";
  EXPECT_EQ(Number(base, "SELECT COUNT(*) FROM Discotheque"), 3);
  EXPECT_EQ(Number(base, "SELECT COUNT(*) FROM DiscothequeJingle"), 7);
  EXPECT_EQ(Number(base, "SELECT COUNT(*) FROM DiscothequeJingle WHERE SURIMPRESSION = 1"), 2);
  EXPECT_EQ(Number(base, "SELECT COUNT(*) FROM DiscothequeVirgule"), 4);
  EXPECT_EQ(Number(base, "SELECT COUNT(*) FROM DiscothequeVirgule WHERE JingleRacro = 1"), 1);
  EXPECT_EQ(Number(base, "SELECT COUNT(*) FROM GrillePub WHERE PUB <> 0"), 4);
  EXPECT_EQ(Number(base, "SELECT COUNT(*) FROM GrillePub WHERE PUB = 0"), 2);
  EXPECT_EQ(Number(base, "SELECT COUNT(*) FROM Toph WHERE FICHIER <> ''"), 24);
  EXPECT_EQ(Number(base, "SELECT COUNT(*) FROM Models"), 49);  // 7 days of 7 genres
  EXPECT_EQ(Number(base, "SELECT COUNT(*) FROM Cnf"), 1);
  EXPECT_EQ(Number(base, "SELECT CODE FROM Playlist WHERE LIBELLE = 'Demo'"), 1);
  EXPECT_EQ(Number(base, "SELECT COUNT(*) FROM Pls WHERE NUMPLS = 1 AND DISCOTHEQUE > 0"), 3);
}

// What the check finds, but for what a library of three short titles cannot give its models.
std::string FindingsButOfSize(const TemporaryFolder& folder) {
  std::ostringstream out;
  CheckOptions options;
  options.station = folder / "station";
  options.machine = folder / "machine";
  RunCheck(options, out);
  std::istringstream lines(out.str());
  std::string rest;
  for (std::string line; std::getline(lines, line);) {
    const bool ofSize = line.starts_with("check: model: ") || line.starts_with("check: library: ");
    const bool total = line.starts_with("check: 0 errors") || line == "check: nothing found";
    if (!ofSize && !total) rest += line + "\n";
  }
  return rest;
}

TEST(DemoStation, PassesTheCheckWithoutAFinding) {
  const TemporaryFolder folder;
  ASSERT_EQ(Make(folder / "station"), "(no error)");
  EXPECT_EQ(FindingsButOfSize(folder), "");
}

// From the first second on, in the morning as well as late: no title waits for a stored list.
TEST(DemoStation, GoesOnAirByItselfAtAnyHour) {
  const TemporaryFolder folder;
  ASSERT_EQ(Make(folder / "station"), "(no error)");
  for (const int hour : {0, 9, 23}) {
    SimulateOptions options;
    options.station = folder / "station";
    options.from = LocalDateTime{2026, 11, 20, hour, 5, 0, 0};
    options.forMs = 3000;
    options.trace = folder / "trace";
    ASSERT_EQ(RunSimulate(options), 0);
    const std::string trace = folder.Get("trace");
    EXPECT_NE(trace.find("\"event\":\"onair\""), std::string::npos) << hour << " h:\n" << trace;
  }
}

TEST(DemoStation, CampaignGridsHaveTheShapeOfTheirRecords) {
  const TemporaryFolder folder;
  ASSERT_EQ(Make(folder / "station"), "(no error)");
  // 07 to 20 h are 14 hours of 2 marks; 06 to 21 h are 16 of one. Seven days each, "X" CR LF a
  // cell.
  EXPECT_EQ(folder.Get("station/Pubs/Librairie Onze.GPB").size(), 14 * 2 * 7 * 3U);
  EXPECT_EQ(folder.Get("station/Rubriques/Flash infos.GPB").size(), 16 * 1 * 7 * 3U);
  EXPECT_EQ(folder.Get("station/Rubriques/Flash infos.prg"),
            "JOURNALIER\r\nJOURNALIER\r\n06\r\n21\r\n30\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n"
            "Flash infos\r\nINFORMATIONS\r\n50\r\nFalse\r\n\r\n");
  // Every other spot runs over the days of the year of making: 28 moments of 365 or 366 days.
  const std::string base = folder / "station/Triskin.MDB";
  EXPECT_EQ(Number(base,
                   "SELECT COUNT(*) FROM GrillePub WHERE CAMPAGNEDEPART LIKE '01/01/%' AND "
                   "CAMPAGNEFIN LIKE '31/12/%' AND PUB <> 0"),
            2);
  const int64_t year = Number(base, "SELECT substr(CAMPAGNEFIN, 7) FROM GrillePub WHERE CODE = 2");
  const size_t days = year % 4 == 0 ? 366 : 365;
  EXPECT_EQ(folder.Get("station/Pubs/Boulangerie du Port.GPB").size(), 14 * 2 * days * 3U);
}

// Spots at 15 and 45 from 7 to 20 h, news at 30 from 6 to 21 h; four spots and two news a break.
TEST(DemoStation, HasBreaksInEveryHourOfTheDay) {
  const TemporaryFolder folder;
  ASSERT_EQ(Make(folder / "station"), "(no error)");
  SimulateOptions options;
  options.station = folder / "station";
  options.from = RealClock().LocalNow();
  options.from->hour = 12;
  options.noStart = true;
  options.forMs = 1000;
  options.trace = folder / "trace";
  ASSERT_EQ(RunSimulate(options), 0);
  const std::string trace = folder.Get("trace");
  EXPECT_NE(trace.find("\"event\":\"grid\",\"rows\":44,\"spots\":112,\"news\":32"),
            std::string::npos)
      << trace;
}

TEST(DemoStation, ListsAreLinesInCapitals) {
  const TemporaryFolder folder;
  ASSERT_EQ(Make(folder / "station"), "(no error)");
  EXPECT_EQ(
      folder.Get("station/Genre.Txt"),
      "INSTRUMENTAL\r\nSTARTER\r\nPLAYLIST\r\nGOLD N-1\r\nGOLD N-2\r\nGOLD N-3\r\nGOLD N-4\r\n");
  EXPECT_EQ(folder.Get("station/Categori.Ini"),
            "AUTOMOBILE\r\nALIMENTATION\r\nCULTURE\r\nINFORMATIONS\r\nMETEO\r\n");
}

TEST(DemoStation, LeavesAStationAsItIs) {
  const TemporaryFolder folder;
  folder.Put("triskin.mdb", "mine");
  EXPECT_EQ(Make(folder.Path()), folder.Path() + "/ already holds a station; nothing was changed");
  EXPECT_EQ(folder.Names(), Names{"triskin.mdb"});
  EXPECT_EQ(folder.Get("triskin.mdb"), "mine");
}

TEST(DemoStation, OverwritesNoFileOfTheOperator) {
  const TemporaryFolder folder;
  folder.Put("genre.txt", "MINE\r\n");
  EXPECT_EQ(Make(folder.Path()), folder / "genre.txt exists already; nothing was changed");
  EXPECT_EQ(folder.Names(), Names{"genre.txt"});
}

TEST(DemoStation, TakesUpARunThatWasInterrupted) {
  const TemporaryFolder folder;
  folder.Put("station/Demo.part", "half a base");
  folder.Put("station/Demo.part-journal", "of an old one");
  folder.Put("station/Musique/Trio du Phare - Aube claire.mp3", "half a title");
  EXPECT_EQ(Make(folder / "station"), "(no error)");
  EXPECT_EQ(FindingsButOfSize(folder), "");
  EXPECT_EQ(folder.Get("station/Demo.part"), "(no file)");
  EXPECT_EQ(folder.Get("station/Demo.part-journal"), "(no file)");
}

TEST(DemoStation, AFolderThatCannotBeMadeGivesOneLineAndStatus1) {
  const TemporaryFolder folder;
  folder.Put("file", "no folder");
  std::ostringstream out, err;
  EXPECT_EQ(RunDemo(folder / "file/station", out, err), 1);
  EXPECT_EQ(err.str(), "zemoradio: " + folder / "file/station: Not a directory\n");
}

// A limit on the size of files stands for the full disk: a write stops half-way.
TEST(DemoStation, AFullDiskGivesOneLineAndStatus1AndNoStation) {
  const TemporaryFolder folder;
  const auto fillUp = [&] {
    const rlimit limit{50000, 50000};
    std::signal(SIGXFSZ, SIG_IGN);
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) std::exit(3);
    std::ostringstream err;
    const std::string why = Make(folder / "station");
    const bool oneLine =
        why.find("File too large") != std::string::npos && why.find('\n') == std::string::npos;
    std::exit(oneLine ? 0 : 2);
  };
  EXPECT_EXIT(fillUp(), testing::ExitedWithCode(0), "");
  EXPECT_EQ(folder.Get("station/Triskin.MDB"), "(no file)");
}

}  // namespace
}  // namespace zemo
