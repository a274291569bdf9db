// What the operator does in the model editor: save, import, copy, the pop-ups, the counters and the
// exports of the week. The grids themselves: scheduling/ModelGrids.h.
#pragma once

#include <string>

namespace zemo {

struct Station;
class SpreadsheetWriter;

namespace Models {

// Title and headings by Squelette and Langue.
void Translate(Station& station);
// Genres and percentages on offer. Throws FileError.
void LoadPopUps(Station& station);

// Saves the grid as the selected day; false when it could not be saved, which is logged.
bool BtnSave_Click(Station& station);
// "Get the last saved model": the rows of the selected day's back-up file. A message where there is
// none; the grid is not saved.
void BtnImport_Click(Station& station);
// Copies the grid of another day (1 to 7) into the current one, which is not saved.
void PopJour_Click(Station& station, int fromDay);

// The delete key in Models at the selected cell.
void Models_KeyDelete(Station& station);
// A choice in the genre pop-up, for the selected cell. In Models a genre that stands in the grid is
// refused without a word. On the total row of Models, and on the row behind the last of the
// skeleton, it begins a new row: an empty day has no other.
void PopGenre_ClickInModels(Station& station, const std::string& genre);
void PopGenre_ClickInSkeleton(Station& station, const std::string& genre);
// A choice in the percentage pop-up. In GVariete it is stored at once; a fault there is logged.
void PopPourCent_ClickInModels(Station& station, int percent);
void PopPourCent_ClickInVarieties(Station& station, int percent);

// Counts the library's titles by genre.
void LoadGenreStats(Station& station);
// Beside each genre of Stats its positions in the skeleton's grid.
void MnuCompteur_Click(Station& station);

// The week as a spreadsheet file in the station's folder: "ModelsSemaine.xlsx" or
// "SqueletteSemaine.xlsx". False when it could not be written, which is logged.
bool MnuExport_Click(Station& station, SpreadsheetWriter& writer);  // by Squelette
bool ExportWeekOfModels(Station& station, SpreadsheetWriter& writer);
bool ExportWeekOfSkeletons(Station& station, SpreadsheetWriter& writer);

}  // namespace Models

}  // namespace zemo
