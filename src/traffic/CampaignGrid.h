// A campaign as the editor and the composition of the day load it: its record, the grid built from
// the record, and the crosses that the grid file puts into it.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "station/TextGrid.h"

namespace zemo {

struct Station;
class Recordset;

inline constexpr std::string_view kDailyCampaign = "JOURNALIER";  // in place of both dates
inline constexpr std::string_view kCross = "X";
inline constexpr int kFirstMomentRow = 3;  // of GPub; the moments stand in column 0
inline constexpr int kFirstDayColumn = 1;
inline constexpr int kWeekDays = 7;  // columns of a weekly grid

// The record under the names of the editor's controls, as text, and its grid. Thread: the logic's.
struct CampaignForm {
  std::string LblCode;                      // CODE; empty: not saved yet
  std::string LblDepartPub, LblFinPub;      // "dd/mm/yyyy" or kDailyCampaign
  std::string HDepPub, HFinPub;             // first and last hour
  std::array<std::string, 8> DecoupagePub;  // minute marks of the hour; blank ones do not count
  std::string FichierAudio;                 // stored path
  std::string Longeur = "0";                // ms
  std::string LblTemp;                      // Longeur as "mm:ss"
  std::string ChAnnonceur, Categorie, ComboPriority, ChContact, GenreAssocie;
  std::array<bool, 2> OptPub = {true, false};  // 0 spot, 1 news
  std::string FILENAMEGRILLE;                  // stored path of the grid file; no control shows it

  // Row 0 the months, row 1 the days, row 2 the weekdays' letters, rows from 3 the moments "HH:MM"
  // in column 0 with kCross or nothing in the columns behind. All rows have the same width. A
  // weekly grid has seven columns, Monday first, and rows 0 and 1 empty.
  TextGrid GPub;
  std::vector<LocalDateTime> gridDays;  // of its columns, as it was built; none of a weekly one
  // Why record and grid file do not make a grid; empty: they do, or the file is missing. A grid
  // that is too large has no moments then, and other lines stand as far as they pair with cells.
  std::string damage;
  std::string LblTotalMsg;    // CountCrosses
  std::string LblTotalJours;  // "30 jours"
};

// Whether a routine yields to the event loop once a grid row; the composition of the day, which
// loads campaigns by the thousand, yields once a campaign instead.
enum class RowYields { kEach, kNone };

// An hour or a mark that no clock shows.
struct WrongMark {
  std::string text;
  bool hour = false;  // else a minute mark
};
// The first of hours and marks above 23 or 59, or below 0. Whatever takes them in refuses it.
std::optional<WrongMark> FindWrongMark(const CampaignForm& form);
std::string WrongMarkFault(const WrongMark& wrong);  // for the log

// Columns of the grid, the moments' included; 0 for a grid without rows.
int GridColumns(const TextGrid& grid);

// Larger than any grid file: 100 hours, eight marks, 366 days.
inline constexpr int64_t kMostGridFileBytes = 1 << 20;

// Builds GPub for the dates, hours and marks of the form, without a cross, and sets LblTotalJours.
// Hours of more than two digits, or marks too long for one, are damage and give no moments.
// An end before the start or more than a year behind it gives 366 day columns; a start that is no
// date gives none.
void BuildDatedGrid(Station& station, CampaignForm& form, RowYields yields = RowYields::kEach);
// The weekly grid, whatever the dates.
void BuildWeeklyGrid(Station& station, CampaignForm& form, RowYields yields = RowYields::kEach);
// BuildDatedGrid without a station, in the language `langue`; calls `afterRow` for each moment.
void BuildCampaignGrid(CampaignForm& form, int64_t langue, const std::function<void()>& afterRow);

// "Save" writes the crosses of GPub to the grid file, "Load" reads them; the case of the word does
// not matter. The file holds no shape: a line a cell, row by row, "X" or nothing. A missing file
// leaves the grid empty; one whose lines do not fit the grid, or which is too large to be one, is
// damage. Sets LblTotalMsg. False when the file could not be read or written, which is logged.
bool LoadSaveCampaignGrid(Station& station, CampaignForm& form, std::string_view action,
                          const std::string& path, RowYields yields = RowYields::kEach);

// What the grid file of these crosses holds.
std::string GridFileText(const TextGrid& grid, const std::function<void()>& afterRow);

// The crosses of the whole grid: messages, in spite of the name.
int CountCrosses(const CampaignForm& form);
int CrossesInColumn(const TextGrid& grid, int column);

// The current row of GrillePub with its grid: ReadCampaignRecord, LoadCampaignGrid. All
// fields are read before the first yield, so that the cursor may be moved meanwhile. Throws
// StoreError.
void LoadCampaign(Station& station, const Recordset& grillePub, CampaignForm& form,
                  RowYields yields = RowYields::kEach);
// The same without a yield, for a day's grid: a grid file that is there and cannot be read is no
// campaign without crosses. Throws FileError then, and StoreError.
void LoadCampaignOrFail(Station& station, const Recordset& grillePub, CampaignForm& form);

// The fields of the row, without a grid. Throws StoreError.
void ReadCampaignRecord(const Recordset& grillePub, CampaignForm& form);
// The grid of the fields, with the crosses of the grid file. A fault of it is logged.
void LoadCampaignGrid(Station& station, CampaignForm& form, RowYields yields = RowYields::kEach);

// The damage with the campaign's name; empty without one.
std::string DamageOf(const CampaignForm& form);

// The fields of the form to the row in edit. Throws StoreError.
void WriteCampaign(const CampaignForm& form, Recordset& grillePub);

// A date of a campaign as "yyyymmdd" for comparing as text: characters 7 to 10, 4 and 5, 1 and 2,
// whatever they are ("JOURNALIER" gives "LIERRNJO", which sorts behind every date).
std::string TurnedDate(std::string_view ddmmyyyy);

// Whether a campaign with these two dates works on the day "yyyymmdd".
bool WorksOn(const std::string& campagneDepart, const std::string& campagneFin,
             const std::string& day);
// The column of GPub that holds the crosses of a day; 0 for none. Of a campaign of more than a year
// the first column with the month and the day counts: the grid holds no year.
int ColumnOfDay(const CampaignForm& form, const LocalDateTime& day);

}  // namespace zemo
