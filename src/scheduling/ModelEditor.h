// What the operator does with the days of the model editor: save, import, copy, what the pop-ups
// choose, the counters and the export of the week. The grids themselves: scheduling/ModelGrids.h.
#pragma once

#include <string>

namespace zemo {

struct Station;
class SpreadsheetWriter;

namespace Models {

// Title and headings by Squelette and the language of the loading.
void Translate(Station& station);
// Genres and percentages on offer. Throws FileError.
void LoadPopUps(Station& station);

// Saves the grid as the selected day; false when it could not be saved, which is logged. A request
// goes by it from its next start on.
bool BtnSave_Click(Station& station);
// "Get the last saved model": the rows of the selected day's back-up file. A message where there is
// none; the grid is not saved.
void BtnImport_Click(Station& station);
// Copies the grid of another day (1 to 7) into the current one, which is not saved.
void PopJour_Click(Station& station, int fromDay);

// A choice in the genre pop-up, for the selected cell. In Models a genre that stands in the grid is
// refused without a word. On the total row of Models, and on the row behind the last of the
// skeleton, it begins a new row: an empty day has no other.
void PopGenre_ClickInModels(Station& station, const std::string& genre);
void PopGenre_ClickInSkeleton(Station& station, const std::string& genre);
// A choice in the percentage pop-up. In GVariete it is stored at once; a fault there is logged.
void PopPourCent_ClickInModels(Station& station, int percent);
void PopPourCent_ClickInVarieties(Station& station, int percent);

// Reads what the library has by genre, and counts it in Stats. Yields.
void LoadGenreStats(Station& station);
// Beside each genre of Stats its positions in the skeleton's grid.
void MnuCompteur_Click(Station& station);

// The week as it is stored as a spreadsheet, of the kind that Squelette tells, into a file of this
// system; ".xlsx" is put behind a name without it. False when it could not be written, which is
// logged and told.
bool MnuExport_Click(Station& station, const std::string& path, SpreadsheetWriter& writer);

}  // namespace Models

}  // namespace zemo
