#include "platform/BoundedRead.h"

#include "platform/Folder.h"

namespace zemo {

namespace {

template <typename Files>
std::optional<std::string> Read(const Files& files, std::string_view name) {
  if (files.SizeBytes(name) > kMostTextBytes)
    throw FileError(std::string(name) + " is larger than 4 MB: it is not read");
  return files.Read(name);
}

}  // namespace

std::optional<std::string> ReadBounded(const Folder& folder, std::string_view name) {
  return Read(folder, name);
}

std::optional<std::string> ReadBounded(const SoundFiles& files, std::string_view storedPath) {
  return Read(files, storedPath);
}

}  // namespace zemo
