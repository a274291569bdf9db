// The card shown on the library screen beside what others store of it meanwhile. Throw StoreError.
// Thread: the logic's.
#pragma once

#include "library/LibraryEditor.h"
#include "station/RecordMerge.h"
#include "store/Recordset.h"

namespace zemo {

struct Station;

// Ahead of storing it: the screen's fields become what is to be stored, asked for where both
// changed one. `row` is the card's, as it is stored now. Plays that others wrote are no change.
RecordMerge::Step MergeShownCard(Station& station, LibraryEditor& editor, const Recordset& row,
                                 RecordMerge& merge);

// What of the card, or of the hour pips, is not the operator's own change becomes as it is stored.
// One that is gone stays on the screen, and the screen says so.
void TakeOverShownCard(Station& station, LibraryEditor& editor);

}  // namespace zemo
