// The controls of the day's grid on the main screen: a break copied into the list by hand, and the
// preview of another day. Each procedure is one event of a control and records the operator's
// activity. Thread: the logic's.
#pragma once

#include <string>

#include "platform/Clock.h"

namespace zemo {

struct Station;

// Rows of the grid count from 1, its heading is row 0.

namespace OnAir {

// A click on a row: BtnCopyPub names the row's moment.
void GPubJour_Click(Station& station, int gridRow);
// Stored path of the element that a cell names, where its file is there; else empty.
std::string FileOfGridCell(const Station& station, int gridRow, int column);
// The grid comes in place of the list so that a break can be put in at the list's selected row.
void OpenGridForInsertion(Station& station);
// Puts the break of that row in the list, at its head; where the grid was opened for insertion, at
// the selected row of PL (0: none), and the list comes back. False when the grid has no such row.
bool BtnCopyPub_Click(Station& station, int gridRow, int selectedRow = 0);

// Warns that the date will have to be set back; the calendar then opens. False when it may not,
// which was said: the end of campaigns would be reckoned by a false date.
bool BtnPubJourX_Click(Station& station);
// The day picked in that calendar: the machine's date is set to it, and stays, and its grid is
// composed. As long as it stays no composition purges anything. A machine that refuses its date to
// be set is logged.
void PickPreviewDay(Station& station, const LocalDateTime& day);

}  // namespace OnAir

}  // namespace zemo
