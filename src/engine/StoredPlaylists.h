// Stored playlists: the panel beside PL that loads, saves, clears and deletes them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "station/OnAirList.h"
#include "station/OperatorFrames.h"

namespace zemo {

struct Station;

namespace OnAir {

void LoadPlaylist(Station& station);                    // refills ComboPLS
void ComboPLS_Click(Station& station);                  // loads the item ComboPLS.index into PL
bool SelectStoredList(Station& station, int32_t code);  // the item of that CODE; false: none
void ComboPLS_KeyDelete(Station& station);              // asks, then deletes the item's list
// The panel's fields, as the operator types and chooses them.
void ComboPLS_Change(Station& station, const std::string& label);
void ChHeure_Change(Station& station, const std::string& time);  // plans the rows anew
void OptPls_Click(Station& station, int option);                 // "ON", "ON-P", "OFF", "OFF-P"
void PickListDay(Station& station, const LocalDateTime& day);    // in LblDate's calendar
void LblDate_RightClick(Station& station);                       // every day
bool TimeMissing(const StoredListEditor& editor);                // the field is neutral or empty
bool DateMissing(const StoredListEditor& editor);
// What keeps the panel's list from going on air at its moment.
enum class ListDoubt { kNone, kNoTime, kNoDate, kNoMoment };  // kNoMoment: neither stands there
ListDoubt DoubtOf(const StoredListEditor& editor);
// Saves PL under the panel's fields, head and rows in one transaction. A row that the base refuses
// is logged and left out; with a base out of reach the former list stays whole, which is logged:
// false.
bool BtnSauve_Click(Station& station);
void BtnNew_Click(Station& station);

// The rows of a stored list as they go to PL, each rebuilt from its library record; one whose
// record is gone is left out. Throws StoreError.
std::vector<OnAirElement> StoredRows(Station& station, int32_t listCode, bool lastPlayed);

}  // namespace OnAir

}  // namespace zemo
