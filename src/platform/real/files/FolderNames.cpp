#include "platform/real/files/FolderNames.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/real/files/NoCaseNames.h"

namespace zemo {

bool IsFolder(const std::string& path) {
  std::error_code failed;
  return std::filesystem::is_directory(path, failed);
}

FolderListing ListFolder(const std::string& path) {
  FolderListing listing;
  std::error_code failed;
  std::filesystem::directory_iterator entry(path, failed);
  for (; !failed && entry != std::filesystem::directory_iterator(); entry.increment(failed)) {
    std::string name = entry->path().filename().string();
    if (name.starts_with('.')) continue;
    std::error_code none;
    if (entry->is_directory(none))
      listing.folders.push_back(std::move(name));
    else if (entry->is_regular_file(none))
      listing.files.push_back(std::move(name));
  }
  if (failed) return {};
  listing.exists = true;
  SortNames(listing.folders);
  SortNames(listing.files);
  return listing;
}

void SortNames(std::vector<std::string>& names) {
  std::vector<std::pair<std::string, std::string>> keyed;
  keyed.reserve(names.size());
  for (std::string& name : names) {
    std::string folded = FoldedName(name);
    keyed.emplace_back(std::move(folded), std::move(name));
  }
  std::sort(keyed.begin(), keyed.end());
  for (size_t i = 0; i < names.size(); ++i) names[i] = std::move(keyed[i].second);
}

}  // namespace zemo
