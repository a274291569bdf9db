// How new the older part of the broadcast report can be at most, and how old: who looks for the
// newest rows, or for those that are to go, need not read all of a report, which holds hundreds of
// thousands of rows and has no index on its moment.
//
// Rows come with rising CODE, and all but always with rising DATENUM. So it is enough to know, for
// the rows up to some CODE, the highest DATENUM among them: newer rows above that moment are the
// newest of all. Where the clock was set back and that does not hold, the whole report is asked.
// The bound stays true while rows are added and deleted; it is read anew when the base is another
// one. Where another program gives an older row another moment, that counts from the next opening
// on.
#pragma once

#include <cstdint>

namespace zemo {

struct Station;

// Brings RequestState::report up to date, with `rowsAbove` rows above it at least and some hundred
// in any case, where there are as many. The first time in a base it reads the moments of the whole
// report. Throws StoreError.
void KeepReportBound(Station& station, int64_t rowsAbove);

}  // namespace zemo
