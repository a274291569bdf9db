// Composition of the day's grid of spot and news breaks out of all campaigns.
#pragma once

namespace zemo {

struct Station;

// Composes GPubJour for the clock's day: the moments that any campaign of today crosses, in their
// order, and at each the campaigns in the order of PRIORITY, at most 47; with the lengths, the
// heading and the date stamp. Ended campaigns leave the table first when the settings say so, old
// report rows at the end. Tells the event `grid`.
//
// Yields for each campaign. The grid is composed in place, and whoever looks at it from a yield may
// see it half filled; a composition asked for from there runs behind this one. A fault is logged,
// leaves the rows composed so far and no stamp of today, so that the tick tries again.
// Thread: the logic's.
void MakeGrillePubGeneral(Station& station);

// The menu's order: composes at once.
void MakePubduJour(Station& station);

}  // namespace zemo
