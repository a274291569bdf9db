// Fills the tables of a new base with the demo station.
#pragma once

#include <string>
#include <vector>

#include "app/demo/DemoCatalogue.h"
#include "traffic/CampaignGrid.h"

namespace zemo {

// A sound file that was made, with what its card says of it.
struct MadeTitle {
  const DemoTitle* title = nullptr;
  std::string path;
  int64_t lengthMs = 0;
  int introSec = 0;
  int exitPointMs = 0;
};

struct MadeShort {
  const DemoShort* element = nullptr;
  std::string path;
  int64_t lengthMs = 0;
};

// The campaign of a spot or a news element, all of whose moments are crossed: every other spot for
// the days of the year `year`, the rest every week.
CampaignForm DemoCampaign(const MadeShort& made, int priority, int year);

// Creates the base at `path` (no such file yet) and closes it again. Throws StoreError.
void MakeDemoBase(const std::string& path, const std::vector<MadeTitle>& titles,
                  const std::vector<MadeShort>& shorts, int year);

}  // namespace zemo
