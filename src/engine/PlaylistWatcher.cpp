#include "engine/PlaylistWatcher.h"

#include <string>
#include <vector>

#include "engine/StoredPlaylists.h"
#include "library/OnAirRows.h"
#include "station/Station.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

constexpr const char* kRoutine = "SurveillePlaylist";
constexpr const char* kDaily = "JOURNALIER";  // LADATE of a list of every day

// What the list's option asks, the index of OptPls: ON, ON-P, OFF, OFF-P.
enum Option { kJingles = 0, kJinglesCutIn = 1, kNoJingles = 2, kNoJinglesCutIn = 3 };

struct DueList {
  int32_t code = 0;
  std::string label;
  int32_t option = 0;
};

bool IsDue(const Recordset& playlist, const std::string& today, const std::string& hourMinute) {
  const std::string date = playlist.Text("LADATE");
  return (date == kDaily || DateKeyOfText(date) == today) && playlist.Text("LHEURE") == hourMinute;
}

// In table order: of two lists at the same minute the one stored first is taken.
bool FindDueList(Station& station, DueList& found) {
  Recordset& playlist = *station.base.Tables().Playlist;
  const LocalDateTime now = station.Now();
  const std::string today = DateKey(now);
  const std::string hourMinute = TimeText(now).substr(0, 5);
  playlist.SetIndex("");
  for (playlist.MoveFirst(); !playlist.Eof(); playlist.MoveNext()) {
    if (!IsDue(playlist, today, hourMinute)) continue;
    found = {static_cast<int32_t>(playlist.Int("CODE")), playlist.Text("LIBELLE"),
             static_cast<int32_t>(playlist.Int("NOJINGLE"))};
    return true;
  }
  return false;
}

void LoadBetweenMarkers(Station& station, const DueList& due) {
  const std::vector<Cells> rows = StoredRows(station, due.code, false);  // before the list goes
  station.PL.Clear();
  station.PL.Add(PlaylistMarkerRow(Element::kStartPlaylist, due.label));
  for (const Cells& row : rows) station.PL.Add(row);
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

void SurveillePlaylist(Station& station) {
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
    LogCurrentException(station, kRoutine);
  }
}

}  // namespace zemo
