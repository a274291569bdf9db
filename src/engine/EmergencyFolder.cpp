#include "engine/EmergencyFolder.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/Folder.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

bool IsEmergencySound(std::string_view name) {
  constexpr std::array<std::string_view, 4> kEndings{".wav", ".mp3", ".flac", ".ogg"};
  if (name.empty() || name.front() == '.') return false;
  return std::any_of(kEndings.begin(), kEndings.end(), [name](std::string_view ending) {
    return name.size() > ending.size() &&
           EqualNoCase(name.substr(name.size() - ending.size()), ending);
  });
}

// A number from which nothing of the text can be seen: FNV-1a, its bits spread by the finish of
// SplitMix64.
uint64_t Scrambled(std::string_view text) {
  uint64_t hash = 0xcbf29ce484222325U;
  for (const char byte : text) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3U;
  hash = (hash ^ (hash >> 30U)) * 0xbf58476d1ce4e5b9U;
  hash = (hash ^ (hash >> 27U)) * 0x94d049bb133111ebU;
  return hash ^ (hash >> 31U);
}

}  // namespace

std::vector<std::string> EmergencyFiles(Folder& machineFolder) {
  std::vector<std::string> names = machineFolder.Subfolder(kEmergencyFolder).Names();
  std::erase_if(names, [](const std::string& name) { return !IsEmergencySound(name); });
  return names;
}

std::vector<std::string> ShuffledRound(std::vector<std::string> names, const LocalDateTime& begin,
                                       const std::string& last) {
  const std::string chance =
      DateText(begin) + TimeText(begin) + "." + std::to_string(begin.millisecond) + "/";
  std::sort(names.begin(), names.end(), [&](const std::string& a, const std::string& b) {
    const uint64_t first = Scrambled(chance + a);
    const uint64_t second = Scrambled(chance + b);
    return first != second ? first < second : a < b;
  });
  if (names.size() > 1 && names.front() == last)
    std::rotate(names.begin(), names.begin() + 1, names.end());
  return names;
}

}  // namespace zemo
