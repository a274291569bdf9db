// The watcher: takes a stored list on air at its date and time.
#pragma once

namespace zemo {

struct Station;

// Loads the first list that is due this minute, dated or daily, in place of PL and between its two
// marker rows. A list whose minute has passed is not taken later. Logs as "SurveillePlaylist".
void WatchDueList(Station& station);

}  // namespace zemo
