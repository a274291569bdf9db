// Ended campaigns leave the table.
#pragma once

namespace zemo {

struct Station;

// Deletes the rows of GrillePub whose CAMPAGNEFIN lies before today; their files stay. Leaves the
// table on index PRIORITY. For the beginning of a composition, while Cnf SuppressionPub is 1. Some
// hundred rows a transaction, with a yield between two. A fault is logged; what was deleted so far
// stays deleted.
void SuppresionPub(Station& station);

}  // namespace zemo
