// The watcher: takes a stored list on air at its date and time.
#pragma once

namespace zemo {

struct Station;

void SurveillePlaylist(Station& station);

}  // namespace zemo
