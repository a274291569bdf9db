// The campaign on the screen beside what others store of it meanwhile. Throw StoreError. Thread:
// the logic's.
#pragma once

#include "traffic/CampaignEditor.h"

namespace zemo {

struct Station;

// Ahead of storing it: the form becomes what is to be stored, asked for where both changed one
// field. Dates, hours, marks and crosses are one: a grid is that of its days. False: nothing is to
// be stored. Where nobody else has stored anything it looks no further.
bool MergeShownCampaign(Station& station, CampaignEditor& editor);

// What of the record is not the operator's own change becomes as it is stored. One that is gone
// stays on the screen, as a new one that can be added.
void TakeOverShownCampaign(Station& station, CampaignEditor& editor);

// As a new record that can be added.
void KeepAsNew(CampaignEditor& editor);

}  // namespace zemo
