#include "engine/PlaylistWatcher.h"

#include <string>
#include <string_view>
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

struct DueList {
  int32_t code = 0;
  std::string label;
  int32_t option = 0;
};

// Columns of the look at the lists.
enum Column { kCode, kLabel, kDate, kMinute, kOption };

bool IsDue(const RowView& playlist, const std::string& today, const std::string& hourMinute) {
  const std::string_view date = playlist.Text(kDate);
  return (date == kDaily || DateKeyOfText(std::string(date)) == today) &&
         playlist.Text(kMinute) == hourMinute;
}

// In table order: of two lists at the same minute the one stored first is taken. One reading of the
// table: most ticks of every fifth second look for a list.
bool FindDueList(Station& station, DueList& due) {
  const LocalDateTime now = station.Now();
  const std::string today = DateKey(now);
  const std::string hourMinute = TimeText(now).substr(0, 5);
  bool found = false;
  station.base.Db().ReadRows(
      "SELECT CODE, LIBELLE, LADATE, LHEURE, NOJINGLE FROM Playlist ORDER BY CODE",
      [&](const RowView& playlist) {
        if (found || !IsDue(playlist, today, hourMinute)) return;
        found = true;
        due = {static_cast<int32_t>(playlist.Int(kCode)), std::string(playlist.Text(kLabel)),
               static_cast<int32_t>(playlist.Int(kOption))};
      });
  return found;
}

void LoadBetweenMarkers(Station& station, const DueList& due) {
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
    DueList due;
    if (!FindDueList(station, due)) return;
    LoadBetweenMarkers(station, due);
    ObeyOption(station.engine, due.option);
    station.engine.PlaylistRunning = true;
    station.engine.LastPlaylistWatchTimer = station.Timer();
    station.events.List(due.code, due.label, due.option);
  } catch (const std::exception&) {
    LogCurrentException(station, kWatchRoutine);
  }
}

}  // namespace zemo
