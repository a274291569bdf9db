// The station's week as the editor's grids: the percentage model and the skeleton of a day, and the
// shares of the varieties, loaded from their tables and saved to them. See station/ModelEditor.h
// for the cells; what a request reads of the week: scheduling/WeekModel.h.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "scheduling/WeekModel.h"
#include "station/ModelEditor.h"

namespace zemo {

struct Station;

inline constexpr const char* kTotalText = "Total %";

// The shares of the varieties, as last stored by anybody. Throws StoreError.
void LoadVarieties(Station& station);
// Loads the screen when it is not loaded yet: varieties and pop-ups. Faults are logged.
void LoadModelScreen(Station& station);
// Selects a day, 1 Monday to 7 Sunday, and loads its grid. A fault is logged, and leaves the day
// that was selected with its grid.
void SelectWeekday(Station& station, int day);
// The grid of that day, the skeleton's with Squelette on, else the model's, in the order of CODE;
// the other one is empty then. A fault is logged, and leaves both as they are.
bool LoadGrid(Station& station, int day);
bool LoadModelGrid(Station& station, int16_t day);
bool LoadSkeletonGrid(Station& station, int16_t day);

// Heading and total row only, in both grids.
void EmptyGrids(Station& station);
// What is stored of the grid: a row a genre or position, with all its hours; rows without a genre
// stay out.
std::vector<TextGrid::Row> StoredRows(const ModelEditor& editor);
// The grid as that day, in the table and in the day's back-up file, a line a row that is stored.
// False when it could not be saved: that is logged, and where a row cannot be stored nothing
// changes. A back-up that cannot be written is logged, once until it can be.
bool SaveModelGrid(Station& station, int16_t day);
bool SaveSkeletonGrid(Station& station, int16_t day);

// The totals of the hours in the last row of Models, with " %" behind them.
void SumShares(Station& station);

// Headings in the station's language.
const char* GenresWord(int64_t langue);
const char* VarietyWord(int64_t langue);

std::string HourLabel(int hour);  // "07h"
std::string DayName(int day);     // "Lundi" for 1
bool RowIsEmpty(const TextGrid& grid, int row);

}  // namespace zemo
