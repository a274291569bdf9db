// The record sheet of a campaign: the text that the editor prints.
#pragma once

#include <string>
#include <vector>

#include "library/LibraryPrint.h"

namespace zemo {

struct Station;
struct CampaignForm;
class TextGrid;

inline constexpr const char* kSheetFont = "Courier New";
inline constexpr int kSheetPoints = 7;  // a page of A4 across takes what SheetPages puts on it
inline constexpr size_t kSheetLines = 62, kSheetDays = 56;  // of a page; eight weeks beside another

// The grid stands behind the record, with "x" for a cross, eight weeks after eight weeks. Each page
// has the heading with its number, and above the moments the days.
PrintedPages SheetPages(const CampaignForm& form);

std::vector<std::string> GridLines(const TextGrid& grid);  // the grid alone

namespace Campaigns {

// The pages to print, whose lines also go into the "Xlt" file beside the sound file. A file that
// cannot be written is logged; a campaign without a sound file has none.
PrintedPages BtnImprimer_Click(Station& station, const CampaignForm& form);

}  // namespace Campaigns

}  // namespace zemo
