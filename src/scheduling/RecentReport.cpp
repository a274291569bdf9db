#include "scheduling/RecentReport.h"

#include <utility>

#include "platform/EventLoop.h"
#include "reports/BroadcastReport.h"
#include "reports/KnownReport.h"
#include "scheduling/LastAnswers.h"
#include "station/Station.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr const char* kAired = "Genre NOT In('TOP-H','JINGLE','PUB')";

bool Begin(Station& station) {
  station.requests.reportInMemory = LookAtReport(station) == KnownReport::State::kKnown;
  return station.requests.reportInMemory;
}

// What `ask` asks of the base; where that is out of reach what `known` says of the report as it was
// read last.
template <typename Ask, typename Known>
auto AskOrTakeLast(Station& station, Ask ask, Known known) -> decltype(ask()) {
  try {
    return ask();
  } catch (const StoreError& fault) {
    if (!fault.MayPass() || !station.knownReport || !station.knownReport->WasRead()) throw;
    const auto last = known();
    if (!last) throw;
    station.requests.reportInMemory = true;
    TellLastAnswers(station, fault);
    return *last;
  }
}

// A base that is out of reach leaves the report as it was read last.
void Follow(Station& station, int64_t floor) {
  try {
    if (station.base.IsOpen()) station.knownReport->Follow(station.base.Db(), floor);
  } catch (const StoreError& fault) {
    if (!fault.MayPass()) throw;
  }
}

std::vector<std::string> AskNewestArtists(Station& station, int count) {
  const std::string query =
      std::string("SELECT TOP ? Auteur, DATENUM FROM Rapport Where ") + kAired + " ORDER BY ";
  std::vector<std::string> artists;
  bool ahead = false;
  station.base.Db().ReadRows(query + "DATENUM DESC", {count}, [&](const RowView& row) {
    // The newest rows by their moment are not those that aired last then.
    ahead = ahead || (artists.empty() && AheadOfClock(row.Real(1), DateSerial(station.Now())));
    artists.emplace_back(row.Text(0));
  });
  if (!ahead) return artists;
  artists.clear();
  station.base.Db().ReadRows(query + "CODE DESC", {count},
                             [&](const RowView& row) { artists.emplace_back(row.Text(0)); });
  return artists;
}

// The whole report is asked only for an artist of its newest rows.
int64_t AskNewestRowOf(Station& station, const std::string& artist, int64_t floor) {
  Database& db = station.base.Db();
  bool above = false;
  db.ReadRows("SELECT TOP 1 CODE FROM Rapport Where CODE > ? AND Auteur = ? ORDER BY CODE DESC",
              {floor, artist}, [&](const RowView&) { above = true; });
  int64_t code = 0;
  if (!above) return code;
  db.ReadRows("SELECT TOP 1 CODE, DATENUM FROM Rapport Where Auteur = ? ORDER BY DATENUM DESC",
              {artist}, [&](const RowView& row) { code = row.Int(0); });
  return code > floor ? code : 0;
}

}  // namespace

// As long as others do not write faster than it reads.
void KnowReport(Station& station) {
  constexpr int kMostPasses = 3;
  if (LookAtReport(station) != KnownReport::State::kBeingRead) return;
  const MainTimerHold hold(station);
  int64_t read = KnownReport::kBelowAll;
  for (int passes = 0; passes < kMostPasses;) {
    const int64_t former = std::exchange(read, station.knownReport->ReadUpTo());
    passes += read <= former ? 1 : 0;
    station.platform.loop.Yield();
    if (LookAtReport(station) != KnownReport::State::kBeingRead) return;
  }
}

std::vector<std::string> NewestArtists(Station& station, int count) {
  if (count <= 0) return {};
  const auto known = [&] {
    return station.knownReport->NewestArtists(count, DateSerial(station.Now()));
  };
  if (Begin(station))
    if (auto artists = known()) return *artists;
  return AskOrTakeLast(
      station, [&] { return AskNewestArtists(station, count); }, known);
}

std::optional<int64_t> NewestRow(Station& station) {
  const auto known = [&] { return station.knownReport->NewestCode(); };
  if (Begin(station))
    if (const auto code = known()) return code;
  return AskOrTakeLast(
      station, [&] { return NewestReportCode(station.base.Db()); }, known);
}

int64_t NewestRowOf(Station& station, const std::string& artist, int64_t floor) {
  if (station.requests.reportInMemory) {
    Follow(station, floor);
    if (const auto code = station.knownReport->NewestRowOf(artist, floor)) return *code;
  }
  return AskNewestRowOf(station, artist, floor);
}

}  // namespace zemo
