// Composition of the day's grid of spot and news breaks out of all campaigns.
#pragma once

namespace zemo {

struct Station;

// Composes GPubJour for the clock's day: the moments that any campaign of today crosses, in their
// order, and at each the campaigns in the order of PRIORITY, at most 47; with the lengths, the
// heading and the date stamp. Ended campaigns leave the table first when the settings say so, old
// report rows at the end. Tells the event `grid`.
//
// Yields for each campaign. The grid is made aside and takes the place of GPubJour when it is
// whole; a composition asked for from a yield runs behind this one, and gives false where it was
// asked for.
//
// A grid file that does not fit its campaign is logged; its crosses air as far as they pair with
// cells. False after a fault, which is logged: a base that is locked, a grid file that cannot be
// read, more than 401 moments. The grid of today that stood before stands on, without a stamp, so
// that the tick tries again; that of another day leaves no rows. Thread: the logic's.
bool ComposeDayGrid(Station& station);

// Called before the machine's date is set for the preview of another day: until the date is back no
// composition purges campaigns or report rows, which would be old by a false date.
void BeginPreview(Station& station);

// The menu's order: composes at once. False when the former grid stands, which is logged, or when
// one is being composed, which then begins anew.
bool ComposeTodaysGrid(Station& station);

}  // namespace zemo
