// Both questions are asked of a window of newest rows first.
#include "scheduling/RecentReport.h"

#include <algorithm>
#include <limits>

#include "platform/EventLoop.h"
#include "reports/BroadcastReport.h"
#include "station/Station.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr const char* kAired = "Genre NOT In('TOP-H','JINGLE','PUB')";
constexpr int64_t kWindowRows = 512;      // kept above the bound at least, where there are as many
constexpr int64_t kWidestWindow = 16384;  // above this the bound moves up

double HighestMoment(Database& db, int64_t above, int64_t upTo) {
  double highest = -std::numeric_limits<double>::infinity();
  db.ReadRows("SELECT MAX(DATENUM) FROM Rapport WHERE CODE > ? AND CODE <= ?", {above, upTo},
              [&](const RowView& row) {
                if (!row.IsNull(0)) highest = row.Real(0);
              });
  return highest;
}

// Reads the bound anew, or moves it up behind the growing report.
void KeepBound(Station& station, int64_t rowsAbove) {
  Database& db = station.base.Db();
  ReportBound& bound = station.requests.report;
  const int64_t head = NewestReportCode(db).value_or(0);
  const int64_t counter = db.ChangeCounter();
  if (!bound.known || counter < bound.changeCounter || head < bound.code) {
    bound.code = std::max<int64_t>(0, head - rowsAbove);
    bound.dateNum = HighestMoment(db, std::numeric_limits<int64_t>::min(), bound.code);
    bound.known = true;
  } else if (head - bound.code > std::max(kWidestWindow, 4 * rowsAbove)) {
    const int64_t code = head - rowsAbove;
    bound.dateNum = std::max(bound.dateNum, HighestMoment(db, bound.code, code));
    bound.code = code;
  }
  bound.changeCounter = counter;
}

// Reads the rows above `floor` by artist, each with its newest.
void ReadArtists(Station& station, int64_t floor) {
  ReportArtists& artists = station.requests.reportArtists;
  artists.newest.clear();
  station.base.Db().ReadRows(
      "SELECT Auteur, CODE, DATENUM FROM Rapport WHERE CODE > ?", {floor}, [&](const RowView& row) {
        if (row.IsNull(0)) return;
        const ReportArtists::Row found{row.Real(2), row.Int(1)};
        auto [at, fresh] = artists.newest.try_emplace(std::string(row.Text(0)), found);
        if (!fresh) at->second = std::max(at->second, found);
      });
  artists.floor = floor;
  artists.known = true;
}

// The clock went back: the newest rows by their moment are not those that aired last.
bool AheadOfTheClock(Station& station, double moment) {
  constexpr double kMinute = 1.0 / (24 * 60);
  return moment - DateSerial(station.Now()) >= kMinute;
}

int64_t AskWholeReport(Station& station, const std::string& artist) {
  const auto newest = station.base.Db().OpenRecordset(
      "SELECT TOP 1 Auteur, CODE FROM Rapport Where Auteur = ? ORDER BY DATENUM DESC", {artist});
  return newest->Eof() ? 0 : newest->Int("CODE");
}

}  // namespace

std::vector<std::string> NewestArtists(Station& station, int count) {
  std::vector<std::string> artists;
  if (count <= 0) return artists;
  KeepBound(station, std::max(kWindowRows, int64_t{count} * 4));
  const ReportBound& bound = station.requests.report;
  Database& db = station.base.Db();
  const std::string top = "SELECT TOP ? Auteur, DATENUM FROM Rapport ";
  double oldest = 0;
  bool ahead = false;
  const auto take = [&](const RowView& row) {
    oldest = row.Real(1);
    ahead = ahead || (artists.empty() && AheadOfTheClock(station, oldest));
    artists.emplace_back(row.Text(0));
  };
  db.ReadRows(top + "Where CODE > ? AND " + kAired + " ORDER BY DATENUM DESC", {count, bound.code},
              take);
  const bool all = bound.code <= 0;
  if (ahead) {
    artists.clear();
    db.ReadRows(top + "Where " + kAired + " ORDER BY CODE DESC", {count}, take);
    return artists;
  }
  if (all || (static_cast<int>(artists.size()) == count && oldest > bound.dateNum)) return artists;
  artists.clear();
  db.ReadRows(top + "Where " + kAired + " ORDER BY DATENUM DESC", {count}, take);
  return artists;
}

int64_t NewestRowOf(Station& station, const std::string& artist, int64_t floor) {
  RequestState& requests = station.requests;
  ReportArtists& artists = requests.reportArtists;
  const uint64_t served = station.platform.loop.EventsServed();
  if (!artists.known || artists.eventsServed != served ||
      artists.dernierCode != requests.DernierCodeRapport) {
    artists.known = false;
    KeepBound(station, kWindowRows);
    artists.eventsServed = served;
    artists.dernierCode = requests.DernierCodeRapport;
  }
  const int64_t wanted = std::min(floor, requests.report.code);
  if (!artists.known || wanted < artists.floor) ReadArtists(station, wanted);
  const auto found = artists.newest.find(artist);
  if (found == artists.newest.end()) return 0;
  const bool all = artists.floor <= 0;
  if (all || found->second.first > requests.report.dateNum) return found->second.second;
  return AskWholeReport(station, artist);
}

}  // namespace zemo
