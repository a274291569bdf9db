#include "platform/real/files/StoredPaths.h"

#include <algorithm>

#include "platform/BoundedRead.h"
#include "platform/NameValueLines.h"
#include "platform/real/files/FolderNames.h"
#include "platform/real/files/NoCaseNames.h"
#include "platform/real/files/WholeFiles.h"

namespace zemo {

namespace {

constexpr std::string_view kMapFile = "PathMap.Ini";

std::string WithSlashes(std::string_view path) {
  std::string slashed(path);
  std::replace(slashed.begin(), slashed.end(), '\\', '/');
  return slashed;
}

std::string WithoutLastSlashes(std::string path) {
  while (!path.empty() && path.back() == '/') path.pop_back();
  return path;
}

bool HasDrive(std::string_view path) {
  return path.size() >= 2 && path[1] == ':' &&
         ((path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z'));
}

bool IsForeign(std::string_view path) {
  return HasDrive(path) || path.find('\\') != std::string_view::npos;
}

// Follows `rest` ("/a/b") from `folder` on, each step without regard to case. From the first step
// that leads nowhere the names stay as they are.
std::string FollowNoCase(std::string folder, std::string_view rest) {
  if (IsRegularFile(folder + std::string(rest))) return folder + std::string(rest);
  while (!rest.empty()) {
    const size_t begin = rest.find_first_not_of('/');
    if (begin == std::string_view::npos) break;
    const size_t end = std::min(rest.find('/', begin), rest.size());
    const std::string_view step = rest.substr(begin, end - begin);
    const std::string entry = EntryNamed(folder.empty() ? "/" : folder, step);
    if (entry.empty()) return folder + "/" + std::string(rest.substr(begin));
    folder += "/" + entry;
    rest.remove_prefix(end);
  }
  return folder;
}

}  // namespace

std::string StoredPaths::Resolve(std::string_view storedPath) const {
  const std::string asStored(storedPath);
  if (!IsForeign(storedPath)) return asStored;
  // On this system a backslash can stand in a name.
  if (storedPath.front() == '/' && IsRegularFile(asStored)) return asStored;
  const std::string path = WithSlashes(storedPath);
  const std::string folded = FoldedName(path);
  const std::pair<std::string, std::string>* best = nullptr;
  for (const auto& line : CurrentMap()) {
    const std::string& from = line.first;
    const bool matches = folded.compare(0, from.size(), from) == 0 &&
                         (folded.size() == from.size() || folded[from.size()] == '/');
    if (matches && (best == nullptr || from.size() > best->first.size())) best = &line;
  }
  if (best != nullptr)
    return FollowNoCase(best->second, std::string_view(path).substr(best->first.size()));
  return path.front() == '/' ? FollowNoCase({}, path) : asStored;
}

bool StoredPaths::Exists(std::string_view storedPath) const {
  return !storedPath.empty() && IsRegularFile(Resolve(storedPath));
}

int64_t StoredPaths::SizeBytes(std::string_view storedPath) const {
  return storedPath.empty() ? -1 : RegularFileSizeBytes(Resolve(storedPath));
}

std::optional<SoundFileStamp> StoredPaths::Stamp(std::string_view storedPath) const {
  if (storedPath.empty()) return std::nullopt;
  return RegularFileStamp(Resolve(storedPath));
}

std::optional<std::string> StoredPaths::Read(std::string_view storedPath) const {
  if (storedPath.empty()) return std::nullopt;
  return ReadWholeFile(Resolve(storedPath));
}

std::string StoredPaths::ResolveFolder(std::string_view storedFolder) const {
  if (storedFolder.empty()) return {};
  std::string folder(storedFolder);
  if (folder.front() != '/' || !IsFolder(folder)) folder = Resolve(storedFolder);
  folder = WithoutLastSlashes(std::move(folder));
  return folder.empty() ? "/" : folder;
}

FolderListing StoredPaths::List(std::string_view storedFolder) const {
  return ListFolder(ResolveFolder(storedFolder));
}

std::string StoredPaths::ToWrite(std::string_view storedPath) const {
  if (storedPath.empty()) throw FileError("\"\" names no file");
  return Resolve(storedPath);
}

void StoredPaths::ClearReadOnly(std::string_view storedPath) {
  if (!storedPath.empty()) MakeFileWritable(Resolve(storedPath));
}

void StoredPaths::Write(std::string_view storedPath, std::string_view bytes) {
  ReplaceWholeFile(ToWrite(storedPath), bytes);
}

void StoredPaths::WriteDurably(std::string_view storedPath, std::string_view bytes) {
  ReplaceWholeFileDurably(ToWrite(storedPath), bytes);
}

void StoredPaths::Remove(std::string_view storedPath) {
  if (!storedPath.empty()) RemoveFile(Resolve(storedPath));
}

const StoredPaths::Map& StoredPaths::CurrentMap() const {
  std::string bytes;
  try {
    bytes = ReadBounded(machine_, kMapFile).value_or(std::string());
  } catch (const FileError&) {
    // A map that cannot be read maps nothing; the files are then reported as missing.
  }
  if (bytes == mapBytes_) return map_;
  Map map;
  for (const NameValueLine& line : NameValueLines(bytes)) {
    std::string from = WithoutLastSlashes(FoldedName(WithSlashes(line.name)));
    if (!from.empty())
      map.emplace_back(std::move(from), WithoutLastSlashes(std::string(line.value)));
  }
  map_ = std::move(map);
  mapBytes_ = std::move(bytes);
  return map_;
}

}  // namespace zemo
