// Gestures on the grid of the campaign editor: crosses by mouse, copying between campaigns,
// turning.
#pragma once

#include <vector>

#include "station/TextGrid.h"

namespace zemo {

struct Station;
struct CampaignEditor;

enum class MouseButton { kLeft, kRight };

namespace Campaigns {

// The button was let go over that cell. With Shift the whole row, with Control the whole column:
// crosses by the left button, none by the right one. Without a key the cell alone, to and fro. Then
// the crosses of the cursor's column stand in its row 0, in place of the month, until the grid is
// built again. An alert when no campaign is open.
void GPub_MouseUp(Station& station, CampaignEditor& editor, MouseButton button, bool shift,
                  bool control, GridPlace place);

// Whether a mark goes onto the grid as it stands; GPub_MouseUp tells why not.
bool TakesMarks(const CampaignEditor& editor);
// The held mouse passes over these cells, which become what the first one became. Nothing where no
// mark is taken.
void GPub_MouseMove(Station& station, CampaignEditor& editor, const std::vector<GridPlace>& places,
                    bool cross);

void BtnCopyGrille_Click(CampaignEditor& editor);
// The crosses of the copy onto the grid as it stands, which keeps its size, its days and moments.
void BtnCollerGrille_Click(CampaignEditor& editor);
// All crosses one row down, the last row's to the first.
void BtnDecalY_Click(CampaignEditor& editor);

}  // namespace Campaigns

}  // namespace zemo
