// What went on air today, in the browse list.
#pragma once

namespace zemo {

struct Station;

// Fills ListRech with today's report, newest first: artist, title, genre, variety. A day without
// rows leaves the list as it is. A failure is logged.
void LoadTodaysReport(Station& station);

}  // namespace zemo
