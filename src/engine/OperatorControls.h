// What the operator does at the main on-air screen: modes, forced next, and the hand on PL.
// Each procedure is one event of a control and records the operator's activity.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "station/BrowseList.h"

namespace zemo {

struct Station;
struct VoiceTrackEditor;

enum class Toolbar { kAutomatic = 1, kLive = 2, kDayGrid = 3, kStart = 5, kStop = 6 };

namespace OnAir {

// What every event of a control begins with.
void RecordActivity(Station& station);

// The live mode opens on music, with the stored lists as they are now.
void Toolbar_ButtonClick(Station& station, Toolbar button);
void AskForNext(Station& station);     // the element on air gives way; a fitting that waits ends
void CmdStop_Click(Station& station);  // the same by the button "Next", while running
void CmdRequette_Click(Station& station);
void CmdMarqueurExtrait_Click(Station& station,
                              int selectedRow);  // 0: nothing selected, at the end
// A check box or check menu by its control name, without regard to case; false for an unknown one.
bool SetCheck(Station& station, std::string_view name, bool on);
void ReturnToAutomatic(Station& station);  // the live mode's list ran out

// --- PL; rows from 1 ---
// The record of that CODE as a row of PL; none when the library holds no such CODE, and for today's
// report, which is no library. Faults are logged.
std::optional<OnAirElement> RowFromLibrary(Station& station, BrowseList list, int32_t code);
// A drop from the browse list at `row`, at the end with 0. False where there is no such row.
bool DropFromLibrary(Station& station, BrowseList list, int32_t code, int row);
void PL_MouseDown(Station& station);  // the list got the mouse
// CODE of the card that the row opens, as column 6 has it; 0: there is no such row, or the lists
// are locked.
int32_t CardOfRow(const Station& station, int row);
std::vector<std::string> PrintedList(Station& station);  // a row a line, in the station's language
void PL_DragDrop(Station& station, int fromRow, int toRow);
bool DeletingAsks(const Station& station, int row);  // a voice track's row
void PL_KeyDelete(Station& station, int row);        // the Delete key
void PL_RightClick(Station& station, int row);
// Opens the voice track editor there.
void BntVoiceTrack_Click(Station& station, VoiceTrackEditor& editor, int row);

}  // namespace OnAir

}  // namespace zemo
