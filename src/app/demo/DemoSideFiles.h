// The side files of the demo station: its lists, and the grids beside the campaigns' sound files.
#pragma once

#include <string>
#include <vector>

#include "app/demo/DemoBase.h"

namespace zemo {

// Name and bytes of each file of the station's folder.
struct SideFile {
  std::string name;
  std::string bytes;
};
std::vector<SideFile> DemoSideFiles();

// The grid of a campaign, all of whose moments are crossed on all seven days.
std::string CampaignGrid(const CampaignTimes& times);
// The outside export of a campaign.
std::string CampaignProgram(const DemoShort& campaign, int priority);

}  // namespace zemo
