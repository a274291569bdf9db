// The record sheet of a campaign: the text that the editor prints.
#pragma once

#include <string>
#include <vector>

namespace zemo {

struct Station;
struct CampaignForm;
class TextGrid;

inline constexpr const char* kSheetFont = "Courier New";

// Lines of equal character width; the grid stands behind the record, with "x" for a cross.
std::vector<std::string> SheetLines(const CampaignForm& form);

std::vector<std::string> GridLines(const TextGrid& grid);  // the grid alone

namespace Campaigns {

// The lines to print, which also go into the "Xlt" file beside the sound file. A file that cannot
// be written is logged; a campaign without a sound file has none.
std::vector<std::string> BtnImprimer_Click(Station& station, const CampaignForm& form);

}  // namespace Campaigns

}  // namespace zemo
