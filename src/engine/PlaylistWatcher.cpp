#include "engine/PlaylistWatcher.h"

#include "station/Station.h"

namespace zemo {

// No list is due by itself yet: the operator loads stored lists.
void SurveillePlaylist(Station&) {}

}  // namespace zemo
