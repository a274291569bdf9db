// The campaign editor without its window: what it shows, under the names of its controls, and what
// its buttons do. The record and its grid: traffic/CampaignGrid.h. Gestures on the grid:
// traffic/CampaignMarking.h.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "traffic/CampaignGrid.h"

namespace zemo {

class Recordset;

// Thread: the logic's. Owner: the screen, a command or a test. Writers: its owner (what was typed)
// and the routines below. None of them throws; faults are logged under the control's name.
struct CampaignEditor : CampaignForm {
  bool open = false;
  bool BtnNewEnabled = true;
  bool BtnAjouterEnabled = false, BtnReplacerEnabled = false, BtnDeleteEnabled = false;
  std::string LblInfoPub;  // "3 /12": position in order of passage, records
  CampaignForm stored;     // as the record was loaded, or begun, with what was taken over since
  int64_t counter = 0;     // ForeignCounter, as of which `stored` is what the base holds
  std::string gridStamp;   // of its grid file then, which no counter of the base tells of
  bool gone = false;       // the record was deleted elsewhere: BtnAjouter makes a new one of it
  std::string place;  // CODE of the record to which paging went last; a new record leaves it there

  std::vector<std::string> CategorieList, ComboPriorityList, GenreAssocieList;  // on offer
  TextGrid GPubReference;  // what BtnCopyGrille took

  struct OverviewLine {
    std::string text;  // advertiser
    // Category, start, end, "Publicité" or "Rubrique", CODE, genre.
    std::array<std::string, 6> subItems;
  };
  std::vector<OverviewLine> PLPub;
  bool PLPubVisible = false;
  std::optional<int> sortedColumn{};  // of PLPub, by its head; none: as it was filled
  bool sortedDown = false;
  bool fromOverview = false;  // a record is being loaded from PLPub: GPub ignores the mouse
};

inline constexpr const char* kNoDate = "- - / - - / - -";  // of a new record
inline constexpr const char* kSpotKind = "Publicité";      // in PLPub; else "Rubrique"

namespace Campaigns {

// --- opening and closing ---
// Opens on the last record in order of passage; nothing while it is open or the menus are locked.
void MnuHPubs_Click(Station& station, CampaignEditor& editor);
// Keeps hours and marks as the template of the next campaign and composes the day's grid, so that
// every change is on air from now on.
void Form_Unload(Station& station, CampaignEditor& editor);

// --- records; all page in order of passage, and those that stand at its end already do nothing ---
// The row on which that cursor of GrillePub stands.
void ShowRecord(Station& station, const Recordset& grillePub, CampaignEditor& editor);
void BtnNew_Click(Station& station, CampaignEditor& editor);
// The three give true when the table was changed; after an alert or a fault it stays as it was. A
// record whose files cannot be written stays on the screen, to be saved again.
bool BtnAjouter_Click(Station& station, CampaignEditor& editor);
bool BtnReplacer_Click(Station& station, CampaignEditor& editor);
bool BtnDelete_Click(Station& station, CampaignEditor& editor);
void BtnDebut_Click(Station& station, CampaignEditor& editor);
void BtnFin_Click(Station& station, CampaignEditor& editor);
void BtnPlus_Click(Station& station, CampaignEditor& editor);
void BtnMoins_Click(Station& station, CampaignEditor& editor);

// Others have stored something: the record shown and the overview as they are now, but for what the
// operator has changed. Throws StoreError, unlike the others.
void TakeOver(Station& station, CampaignEditor& editor);

// --- overview ---
void BtnRecherhe_Click(Station& station, CampaignEditor& editor);
// 0 the text, 1 to 6 the sub-items. Upwards at first, each further click on the same head turns it.
void PLPub_ColumnClick(CampaignEditor& editor, int column);
void PLPub_DblClick(Station& station, CampaignEditor& editor, size_t line);
// Loads the record of that CODE; false when there is none.
bool ShowRecordOfCode(Station& station, CampaignEditor& editor, int64_t code);

// --- fields ---
void Longeur_Change(CampaignEditor& editor, const std::string& text);  // LblTemp follows
void OptPub_Click(CampaignEditor& editor, int option);                 // 0 spot, 1 news
// Sound file for the selector to open on; empty where the campaign's is not there.
std::string FileForSelector(Station& station, const CampaignEditor& editor);
// What was picked in the selector: CmdLoadFile_Click with the first of the files and its length.
void TakeFiles(Station& station, CampaignEditor& editor, const std::vector<std::string>& files);
// Why the base would not take the record: a date that was not chosen, or a text that is too long
// for its column.
struct Hindrance {
  const char* control = "";
  int most = 0;  // characters; 0: a date
};
std::optional<Hindrance> FindHindrance(const CampaignEditor& editor);
// Its last day lies before its first: it is stored with a grid of 366 days, and on none of them it
// works.
bool EndsBeforeItBegins(const CampaignForm& form);
// What the next record would lose: the fields or the grid are others than as they were loaded.
bool IsChanged(const CampaignEditor& editor);
// An hour or a mark that no clock shows: true, which an alert tells.
bool RefuseWrongMark(Station& station, const CampaignEditor& editor);
// Takes over the sound file that the operator chose, of that length (ms, as the sound component
// tells it). False when another campaign has it already, which an alert tells.
bool CmdLoadFile_Click(Station& station, CampaignEditor& editor, const std::string& path,
                       int32_t lengthMs);
void Categorie_KeyEnter(Station& station, CampaignEditor& editor);
void Categorie_KeyDelete(Station& station, CampaignEditor& editor);
// The right button on LblDepartPub: a campaign without dates. This one and the next leave the grid
// as it is where an hour or a mark is wrong.
void LblDepartPub_RightClick(Station& station, CampaignEditor& editor);
// The day picked in the calendar, "dd/mm/yyyy"; mode 1 is the start, 2 the end, which also builds
// the grid.
void PickDay(Station& station, CampaignEditor& editor, int mode, const std::string& date);
// The grid anew, without a cross: what the end date does, for other hours and marks.
void CmdInitGrille_Click(Station& station, CampaignEditor& editor);
void ImgMemo_Click(Station& station);  // the procedure, as a message

}  // namespace Campaigns

}  // namespace zemo
