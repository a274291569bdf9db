// Fills the tables of a new base with the demo station.
#pragma once

#include <string>
#include <vector>

#include "app/demo/DemoCatalogue.h"

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

// The hours and minutes at which campaigns are on air, every day.
struct CampaignTimes {
  int firstHour = 0;
  int lastHour = 23;
  std::vector<std::string> marks;  // of the hour, two digits
};
CampaignTimes TimesOf(const DemoShort& campaign);

// Creates the base at `path` (no such file yet) and closes it again. Throws StoreError.
void MakeDemoBase(const std::string& path, const std::vector<MadeTitle>& titles,
                  const std::vector<MadeShort>& shorts);

}  // namespace zemo
