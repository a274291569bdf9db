// SkeletonDialog: fills the list in the stored-list editor along a skeleton of the operator's own,
// without a look at rotation. Its controls stand in station.requests.SkeletonDialog.
#pragma once

#include <string>

namespace zemo {

struct Station;

namespace Skeleton {

// Opens it: the genre list on offer, minutes as TempRequette, an empty skeleton.
void Open(Station& station);
void ListGenre_DblClick(Station& station, const std::string& genre);  // a new position at the end
void SquelettePLS_KeyDelete(
    Station& station);  // the selected position, while there are two at least

// mnuLundi (1) to mnuDimanche (7): that day's skeleton of the hour in ChHeure takes the place of
// this one; false where the day has none, which changes nothing. Faults are logged.
bool MnuDay_Click(Station& station, int day);

// Appends to PL and closes the dialogue. Yields; faults are logged.
void BtnOk_Click(Station& station);
void BtnCancel_Click(Station& station);

}  // namespace Skeleton

}  // namespace zemo
