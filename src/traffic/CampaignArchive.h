// The campaigns that have ended, as they were when the purge took them out of the table: what they
// had crosses at is still asked for, by the affidavit.
#pragma once

#include <string>
#include <vector>

#include "traffic/CampaignGrid.h"

namespace zemo {

// Folder in the station's folder. A campaign is "CODE.Txt", the record as a field's name and its
// text a line, and "CODE.GPB", its grid file as it stood. A number that another campaign had before
// it, in a base of other numbers, has "-2", "-3", ... behind it.
inline constexpr const char* kEndedCampaigns = "EndedCampaigns";

// The fields of the record as they are kept, for comparing too.
std::string CampaignRecordText(const CampaignForm& form);

// Keeps the campaign, on the disk when it comes back; one that is kept already is kept anew. Only
// the fields of `form` count. Throws FileError.
void ArchiveCampaign(Station& station, const CampaignForm& form);

// The campaigns kept, without their grids, which LoadCampaignGrid reads. Throws FileError.
std::vector<CampaignForm> ArchivedCampaigns(Station& station);

}  // namespace zemo
