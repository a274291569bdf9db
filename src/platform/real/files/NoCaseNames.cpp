#include "platform/real/files/NoCaseNames.h"

#include <dirent.h>
#include <sys/stat.h>

#include <memory>

namespace zemo {

namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

bool EntryExists(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0;
}

}  // namespace

std::string FoldedName(std::string_view name) {
  std::string folded(name);
  for (size_t i = 0; i < folded.size(); ++i) {
    const auto byte = static_cast<unsigned char>(folded[i]);
    if (byte >= 'A' && byte <= 'Z') {
      folded[i] = static_cast<char>(byte + 0x20);
    } else if (byte == 0xC3 && i + 1 < folded.size()) {
      // Second bytes of the accented capitals; 0x97 is the sign of multiplication.
      const auto second = static_cast<unsigned char>(folded[++i]);
      if (second >= 0x80 && second <= 0x9E && second != 0x97)
        folded[i] = static_cast<char>(second + 0x20);
    }
  }
  return folded;
}

std::string FoldedEntry(const std::string& folder, std::string_view name) {
  const std::unique_ptr<DIR, CloseFolder> entries(opendir(folder.c_str()));
  if (!entries) return {};
  const std::string folded = FoldedName(name);
  std::string found;
  while (const dirent* entry = readdir(entries.get())) {
    const std::string_view candidate = entry->d_name;
    // Folding keeps the length in bytes, so that most entries fall out before it.
    if (candidate.size() != folded.size() || FoldedName(candidate) != folded) continue;
    if (found.empty() || candidate < found) found = candidate;
  }
  return found;
}

std::string EntryNamed(const std::string& folder, std::string_view name) {
  if (name.empty() || name.find('\0') != std::string_view::npos) return {};
  if (EntryExists(folder + "/" + std::string(name))) return std::string(name);
  return FoldedEntry(folder, name);
}

}  // namespace zemo
