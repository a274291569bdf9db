// The frame of the model editor: opening and leaving it, its days, and what its grids and pop-ups
// do with the mouse and the keys. None of the routines throws: faults are logged. Thread: the
// logic's.
#pragma once

#include <string>

#include "station/ModelEditor.h"

namespace zemo {

struct Station;

namespace Models {

// In the routines' words, as station/OperatorWords.h has them.
inline constexpr const char* kSaveQuestion = "Voulez-vous sauvegarder les modifications ?";

// --- opening and leaving ---
// The menu entry MnuModel; nothing while the menus are locked. Opens on today, and reads what the
// library has while the loop turns.
void MnuModel_Click(Station& station);
// The grid differs from what is stored of its day.
bool IsChanged(const Station& station);
// Asks about changes that were not saved: whether the day or the window may be left.
bool Form_QueryUnload(Station& station);
void Form_Unload(Station& station);
// A day's button, 1 to 7: that day, once the one that is shown may be left.
void JourSemaine_Click(Station& station, int day);

// --- the grids ---
// A cell clicked is the selected one. Where the grid has no such cell: false, and nothing happens.
// The skeleton has a row more than it shows: the one behind the last position.
bool Models_Click(Station& station, GridPlace place);
bool ModelSquelette_Click(Station& station, GridPlace place);
bool GVariete_Click(Station& station, GridPlace place);
// Insert: an empty row above the selected cell. Delete: the row of Models, or the cell of the
// skeleton, whose row may hold other hours.
void Models_KeyInsert(Station& station);
void Models_KeyDelete(Station& station);
void ModelSquelette_KeyInsert(Station& station);
void ModelSquelette_KeyDelete(Station& station);

// --- the pop-ups ---
// Which one the cell that was clicked last opens.
enum class PopUp { kNone, kGenre, kPourCent };
PopUp OpenedPopUp(const ModelEditor& editor);
// A choice in the one that is open, for that cell.
void PopGenre_Click(Station& station, const std::string& genre);
void PopPourCent_Click(Station& station, int percent);

}  // namespace Models

}  // namespace zemo
