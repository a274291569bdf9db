#include "engine/PlaylistWatcher.h"

#include <optional>
#include <string>
#include <vector>

#include "engine/StoredPlaylists.h"
#include "library/OnAirRows.h"
#include "station/Station.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr const char* kWatchRoutine = "SurveillePlaylist";
constexpr const char* kDaily = "JOURNALIER";  // LADATE of a list of every day

// What the list's option asks, the index of OptPls: ON, ON-P, OFF, OFF-P.
enum Option { kJingles = 0, kJinglesCutIn = 1, kNoJingles = 2, kNoJinglesCutIn = 3 };

using DatedList = DatedLists::List;

// Columns of the look at the lists.
enum Column { kCode, kLabel, kDate, kMinute, kOption };

DatedList ListOf(const RowView& playlist) {
  const std::string date(playlist.Text(kDate));
  return {static_cast<int32_t>(playlist.Int(kCode)), std::string(playlist.Text(kLabel)),
          date == kDaily ? date : DateKeyOfText(date), std::string(playlist.Text(kMinute)),
          static_cast<int32_t>(playlist.Int(kOption))};
}

// Most ticks of every fifth second look for a list: the table is read again when something in the
// base has changed.
const std::vector<DatedList>& ListsNow(Station& station) {
  DatedLists& dated = station.engine.datedLists;
  Database& db = station.base.Db();
  const int64_t counter = db.ChangeCounter();
  if (dated.known && dated.changeCounter == counter) return dated.lists;
  dated.known = false;
  dated.lists.clear();
  db.ReadRows("SELECT CODE, LIBELLE, LADATE, LHEURE, NOJINGLE FROM Playlist ORDER BY CODE",
              [&](const RowView& playlist) { dated.lists.push_back(ListOf(playlist)); });
  dated.changeCounter = counter;
  dated.known = true;
  return dated.lists;
}

// Of two lists at the same minute the one stored first is taken.
std::optional<DatedList> FindDueList(Station& station) {
  const std::vector<DatedList>& lists = ListsNow(station);
  if (lists.empty()) return std::nullopt;
  const LocalDateTime now = station.Now();
  const std::string today = DateKey(now);
  const std::string hourMinute = TimeText(now).substr(0, 5);
  for (const DatedList& list : lists)
    if ((list.day == kDaily || list.day == today) && list.minute == hourMinute) return list;
  return std::nullopt;
}

void LoadBetweenMarkers(Station& station, const DatedList& due) {
  const std::vector<OnAirElement> rows =
      OnAir::StoredRows(station, due.code, false);  // before the list goes
  ForgetListOrder(station);
  station.PL.Clear();
  station.PL.Add(PlaylistMarkerRow(Element::kStartPlaylist, due.label));
  for (const OnAirElement& row : rows) station.PL.Add(row);
  station.PL.Add(PlaylistMarkerRow(Element::kEndPlaylist, due.label));
}

// Options out of the four leave everything as it is.
void ObeyOption(EngineState& engine, int32_t option) {
  if (option < kJingles || option > kNoJinglesCutIn) return;
  const bool silent = option == kNoJingles || option == kNoJinglesCutIn;
  engine.NoJingleActive = silent;
  engine.HourBlockHandled = silent;
  engine.PipSuppressed = silent;
  if (option == kJinglesCutIn || option == kNoJinglesCutIn) engine.NextRequested = true;
}

}  // namespace

void WatchDueList(Station& station) {
  const MainTimerHold hold(station);
  try {
    const std::optional<DatedList> due = FindDueList(station);
    if (!due) return;
    LoadBetweenMarkers(station, *due);
    ObeyOption(station.engine, due->option);
    station.engine.PlaylistRunning = true;
    station.engine.LastPlaylistWatchTimer = station.Timer();
    station.events.List(due->code, due->label, due->option);
  } catch (const std::exception&) {
    LogCurrentException(station, kWatchRoutine);
  }
}

}  // namespace zemo
