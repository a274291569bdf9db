// What the logic asks of a base, on each place where one can stand: a file, a PostgreSQL server on
// this machine, a replica of it. The same base of 100,000 cards, 2,000 campaigns and a report of
// 2,000,000 rows on all three; made on the file and carried over. Told are the time of one action,
// the shortest of some rounds, and what it is of the file's.
//   request        of 30 minutes with the base asked, as while another program's write is taken in
//   library read   all cards into memory, from which requests and searches are served
//   search         a text in the library, with it in memory
//   a page         a month of the report (15,500 rows) in the list
//   artist         a month of one artist
//   composition    the day's breaks out of all campaigns
//   store          a row of the report, stored
// The program on air works on a replica, the commands on the server: nothing of the air is in the
// second column.
// Takes some minutes.
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "BigLibrary.h"
#include "LongReport.h"
#include "ManyCampaigns.h"
#include "app/ServerLink.h"
#include "library/KnownCards.h"
#include "reports/KnownReport.h"
#include "reports/ReportScreen.h"
#include "scheduling/LibrarySearch.h"
#include "scheduling/PercentageRequest.h"
#include "settings/SideFiles.h"
#include "station/EngineEvents.h"
#include "store/CarryOver.h"
#include "store/postgres/PostgresDatabase.h"
#include "support/TestServer.h"
#include "support/TestStation.h"
#include "traffic/DayGridComposition.h"

namespace {

using zemo::Station;
using zemo::test::TestServer;
using zemo::test::TestStation;
using Clock = std::chrono::steady_clock;

constexpr int kPlaces = 3;
constexpr std::array<const char*, kPlaces> kPlaceNames = {"file", "server", "replica"};
constexpr int kRounds = 5;

double MsSince(Clock::time_point begin) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

void Fill(TestStation& on) {
  zemo::bench::AddLongReport(on);
  on.Set("PurgeRapport", "20000");  // a composition leaves the report alone
  for (const std::string& statement : zemo::bench::ModelsSql()) on.Sql(statement);
  zemo::bench::AddManyCampaigns(on);
}

// A station like `on` on its base, wherever that stands.
std::unique_ptr<Station> StationOn(TestStation& on, const zemo::BasePlace& place) {
  auto station = std::make_unique<Station>(
      zemo::Platform{on.loop, on.loop, on.sound, on.stationFolder, on.machineFolder, on.soundFiles,
                     on.lengths, on.localValues, on.clipboard, on.messages, on.keyboard, on.system,
                     on.automaton, on.joystick},
      place);
  station->base.OpenOrCreateDatabase();
  zemo::SetSideFileNames(*station);
  station->base.OpenAllTables();
  return station;
}

struct Action {
  const char* name;
  std::function<void(Station&)> ready;  // ahead of each round, not timed
  std::function<void(Station&)> work;
};

void KnowAll(Station& station) {
  while (zemo::ReadAheadSlice(station)) {
  }
  while (zemo::ReadReportAhead(station)) {
  }
}

void ShowReport(Station& station, zemo::ReportEditor& editor, const std::string& artist) {
  editor.FiltreArtiste = artist;
  editor.LblDate = "01/10/2020";
  editor.LblDateFin = "31/10/2020";
  zemo::Report::VoirRapport(station, editor);
  if (editor.ListRap.Count() > 0) return;
  std::fprintf(stderr, "no row of the report\n");
  std::exit(1);
}

std::vector<Action> Actions(zemo::ReportEditor& editor) {
  return {
      {"request",
       [](Station& station) {
         KnowAll(station);
         station.PL.Clear();
         station.knownCards.reset();
       },
       [](Station& station) {
         int16_t minutes = 30;
         RequestMusic(station, minutes);
         if (station.PL.Count() == 0) std::abort();
       }},
      {"library read", [](Station& station) { station.knownCards.reset(); },
       [](Station& station) {
         while (zemo::ReadCardsAhead(station)) {
         }
       }},
      {"search", KnowAll,
       [](Station& station) {
         station.browse.search.reset();
         station.browse.Rech = "TITLE 4711";
         zemo::OnAir::Rech_Change(station);
       }},
      {"a page of the report", [](Station&) {},
       [&editor](Station& station) { ShowReport(station, editor, ""); }},
      {"a month of an artist", [](Station&) {},
       [&editor](Station& station) { ShowReport(station, editor, "artist 12"); }},
      {"composition", [](Station&) {}, [](Station& station) { zemo::ComposeDayGrid(station); }},
      {"a row stored", [](Station&) {},
       [](Station& station) {
         station.base.Db().Execute("INSERT INTO Rapport(TITRE, DATENUM) VALUES('stored', 46000)");
       }},
  };
}

// What the logic logs is a fault of the run.
struct Faults : zemo::EventSink {
  void OnEvent(const zemo::Event& event) override {
    if (event.name == "error") std::fprintf(stderr, "%s\n", event.Text("text").c_str());
  }
};

using Times = std::map<std::string, double>;

Times Measure(TestStation& on, const zemo::BasePlace& place) {
  Times times;
  const auto station = StationOn(on, place);
  Faults faults;
  station->events.SetSink(&faults);
  zemo::ReportEditor editor;
  zemo::Report::MnuRapport_Click(*station, editor);
  for (const Action& action : Actions(editor)) {
    double least = 1e18;
    for (int round = 0; round < kRounds; ++round) {
      action.ready(*station);
      const auto begin = Clock::now();
      action.work(*station);
      least = std::min(least, MsSince(begin));
    }
    times[action.name] = least;
    std::fprintf(stderr, "%s: %s %.1f ms\n", place.isFile ? "file" : place.name.c_str(),
                 action.name, least);
  }
  station->events.SetSink(nullptr);
  return times;
}

void Tell(const std::array<Times, kPlaces>& times) {
  std::printf("| What | file | server | replica |\n|---|---|---|---|\n");
  for (const auto& [name, onFile] : times[0]) {
    std::printf("| %s | %.2f ms |", name.c_str(), onFile);
    for (int place = 1; place < kPlaces; ++place) {
      const double ms = times[static_cast<size_t>(place)].at(name);
      std::printf(" %.2f ms, %.2f |", ms, ms / onFile);
    }
    std::printf("\n");
  }
}

}  // namespace

int main() {
  setenv("TZ", "UTC", 1);
  TestServer& server = TestServer::Get();
  if (!server.Missing().empty()) {
    std::fprintf(stderr, "%s\n", server.Missing().c_str());
    return 1;
  }
  TestStation on("2026-11-21 10:55:00");
  Fill(on);
  std::array<Times, kPlaces> times;
  const zemo::BasePlace file = zemo::FilePlace(on.station.base.Path());
  times[0] = Measure(on, file);

  const std::string base = server.NewBase();
  const zemo::BasePlace onServer = zemo::ServerPlace(server.Url(base));
  const auto begin = Clock::now();
  {
    const auto from = file.closed(std::make_shared<zemo::LockWait>());
    from->Open(false);
    const auto to = onServer.closed(std::make_shared<zemo::LockWait>());
    to->Open(true);
    zemo::CarryOver(*from, *to, nullptr);
  }
  const double carriedMs = MsSince(begin);
  server.Try(base, "VACUUM ANALYZE");
  times[1] = Measure(on, onServer);

  const auto madeAt = Clock::now();
  zemo::ServerLink link(onServer, on.machineDir.Path());
  const double madeMs = MsSince(madeAt);
  times[2] = Measure(on, link.Place());
  std::printf(
      "%d cards, %d rows, %d campaigns; carried to the server in %.1f s, replica made in "
      "%.1f s\n",
      zemo::bench::kCards, zemo::bench::kRows, zemo::bench::kCampaigns, carriedMs / 1e3,
      madeMs / 1e3);
  Tell(times);
  return 0;
}
