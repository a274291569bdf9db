// Files of lines that people and other programs put beside the station: none of them is long, and
// one that is would take the air's time and memory.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zemo {

class Folder;
class SoundFiles;

inline constexpr int64_t kMostTextBytes = 4 << 20;

// nullopt: no such file. Throws FileError for one that is larger than kMostTextBytes, which is not
// read, and as Read does.
std::optional<std::string> ReadBounded(const Folder& folder, std::string_view name);
std::optional<std::string> ReadBounded(const SoundFiles& files, std::string_view storedPath);

}  // namespace zemo
