// A station that waits for its music.
#pragma once

#include <string>

namespace zemo {

// Makes the station in the folder `dir`, which is missing or empty, and gives its whole path: the
// genres, models of a week that share every hour out among them, and settings; no card, no
// campaign and no pip. "Triskin.MDB" appears last, when all is there. Throws std::exception with
// one line; what was made is taken away again then.
std::string MakeNewStation(const std::string& dir);

}  // namespace zemo
