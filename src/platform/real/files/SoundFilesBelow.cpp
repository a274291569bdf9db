#include "platform/real/files/SoundFilesBelow.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>
#include <vector>

namespace zemo {

namespace {

namespace fs = std::filesystem;

constexpr std::array kSoundEndings = {".wav", ".mp3", ".flac", ".ogg"};

bool IsSound(const fs::path& path) {
  const std::string ending = path.extension().string();
  return std::any_of(kSoundEndings.begin(), kSoundEndings.end(),
                     [&](const char* sound) { return ::strcasecmp(ending.c_str(), sound) == 0; });
}

// Of one folder, whose own order is the disk's.
struct Inside {
  std::vector<fs::path> entries;
  std::error_code error;  // what ended the reading ahead of the last entry
  explicit Inside(const fs::path& folder) {
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
      entries.push_back(entry->path());
  }
};

// False: not to go on.
bool Below(const fs::path& folder, const std::function<bool(std::string)>& found) {
  // A folder's name with the slash behind it, so that the files come in the order of their paths.
  std::vector<std::pair<std::string, bool>> paths;
  const Inside inside(folder);
  for (const fs::path& entry : inside.entries) {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(entry, error);
    if (fs::is_directory(status))
      paths.emplace_back(entry.string() + '/', true);
    else if (IsSound(entry) && fs::is_regular_file(entry, error))
      paths.emplace_back(entry.string(), false);
  }
  std::sort(paths.begin(), paths.end());
  if (inside.error && !found(folder.string())) return false;
  return std::all_of(paths.begin(), paths.end(), [&](const auto& path) {
    const auto& [name, isFolder] = path;
    return isFolder ? Below(name.substr(0, name.size() - 1), found) : found(name);
  });
}

}  // namespace

void FindSoundFiles(const std::string& path, const std::function<bool(std::string file)>& found) {
  std::error_code error;
  fs::path given = fs::absolute(path, error).lexically_normal();
  if (!given.has_filename()) given = given.parent_path();  // "music/"
  if (fs::is_directory(given, error))
    Below(given, found);
  else
    found(given.string());
}

}  // namespace zemo
