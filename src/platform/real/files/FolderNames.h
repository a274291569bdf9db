// Names of what stands in a folder of this system, for people to choose from.
#pragma once

#include <string>
#include <vector>

#include "platform/Folder.h"

namespace zemo {

bool IsFolder(const std::string& path);
// Throws nothing: a folder that is not there or cannot be read to its end does not exist.
FolderListing ListFolder(const std::string& path);
// Without regard to case; names that differ in nothing else by their bytes.
void SortNames(std::vector<std::string>& names);

}  // namespace zemo
