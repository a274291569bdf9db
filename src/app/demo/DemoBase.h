// Makes the base of a new station, and fills it with the demo.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/demo/DemoCatalogue.h"
#include "traffic/CampaignGrid.h"

namespace zemo {

class StationBase;

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

// Creates a base with models and settings at `path` (no such file yet), has it filled in the same
// transaction, and closes it again. Throws StoreError.
void MakeBase(const std::string& path, const std::function<void(StationBase& base)>& fill);

// The same, filled with the demo.
void MakeDemoBase(const std::string& path, const std::vector<MadeTitle>& titles,
                  const std::vector<MadeShort>& shorts, int year);

}  // namespace zemo
