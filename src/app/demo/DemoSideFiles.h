// The side files in the folder of the demo station.
#pragma once

#include <string>
#include <vector>

#include "app/demo/DemoCatalogue.h"

namespace zemo {

// Name and bytes of each file of the station's folder.
struct SideFile {
  std::string name;
  std::string bytes;
};
std::vector<SideFile> DemoSideFiles();

}  // namespace zemo
