// Stored playlists: the panel beside PL that loads, saves, clears and deletes them.
#pragma once

#include <cstdint>

namespace zemo {

struct Station;

void LoadPlaylist(Station& station);                    // refills ComboPLS
void ComboPLS_Click(Station& station);                  // loads the item ComboPLS.index into PL
bool SelectStoredList(Station& station, int32_t code);  // the item of that CODE; false: none
void ComboPLS_KeyDelete(Station& station);              // asks, then deletes the item's list
void BtnSauve_Click(Station& station);                  // saves PL under the panel's fields
void BtnNew_Click(Station& station);

// Appends the rows of the stored list to PL; a row whose record is gone is left out.
void AppendStoredRows(Station& station, int32_t listCode, bool lastPlayed);

}  // namespace zemo
