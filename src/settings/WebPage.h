// The station's web page: a page made by somebody else, in which the announcement of what plays and
// two pictures are replaced as music starts.
#pragma once

#include <string_view>

namespace zemo {

struct Station;

// Writes the announcement into the page, and the pictures that lie beside the sound file (a stored
// path). Nothing when the page is not there; faults are logged. Thread: the logic's.
void SaveInfoRealAudio(Station& station, std::string_view announcement, std::string_view soundFile);

}  // namespace zemo
