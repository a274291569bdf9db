// The side files in the folder of a new station and of the demo.
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
// Of a station without a card: its genres, its models and the lists that always stand there.
std::vector<SideFile> NewSideFiles();
// The same and those of the demo's cards.
std::vector<SideFile> DemoSideFiles();

}  // namespace zemo
