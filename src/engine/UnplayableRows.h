// Rows of the on-air list that should sound and do not: each leaves a line in the error log with
// its title, its path and why, at most once a minute, and names the command that lists them all.
// Ten in a row are told once as what they are, a folder that is gone; the next line comes only
// after a row has sounded.
#pragma once

#include <string>

namespace zemo {

struct OnAirElement;
struct Station;

// `reason` as the event "skip" has it: missing, empty, unreadable.
void TellUnplayable(Station& station, const OnAirElement& row, const std::string& reason);
void NoteRowSounds(Station& station);

}  // namespace zemo
