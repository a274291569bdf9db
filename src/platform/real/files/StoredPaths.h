// Sound files under the paths that cards and settings store, which may come from another system:
// the machine's path map, "PathMap.Ini", tells where its folders lie here.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/Folder.h"

namespace zemo {

// PathMap.Ini holds FROM = TO a line in UTF-8, as `D:\Music = /srv/music`. FROM matches whole
// folder names at the beginning of a path, without regard to case or to the slant of its slashes;
// the longest match counts. The rest of the path is then looked for without regard to case. A path
// without a drive and backslashes is one of this system and stays as it is. The map is read at each
// use.
class StoredPaths : public SoundFiles {
 public:
  explicit StoredPaths(Folder& machine) : machine_(machine) {}  // not owned

  // A path that no line matches stays as it is, but that "\a\b" is looked for as "/a/b".
  std::string Resolve(std::string_view storedPath) const override;
  bool Exists(std::string_view storedPath) const override;
  int64_t SizeBytes(std::string_view storedPath) const override;
  std::optional<SoundFileStamp> Stamp(std::string_view storedPath) const override;
  std::optional<std::string> Read(std::string_view storedPath) const override;
  FolderListing List(std::string_view storedFolder) const override;
  // The path of a folder, without a slash behind it but for the root's; empty for the empty path.
  std::string ResolveFolder(std::string_view storedFolder) const;
  void ClearReadOnly(std::string_view storedPath) override;
  void Write(std::string_view storedPath, std::string_view bytes) override;
  void WriteDurably(std::string_view storedPath, std::string_view bytes) override;
  void Remove(std::string_view storedPath) override;

 private:
  using Map = std::vector<std::pair<std::string, std::string>>;  // from (folded, '/'), to
  std::string ToWrite(std::string_view storedPath) const;
  const Map& CurrentMap() const;

  Folder& machine_;
  mutable std::string mapBytes_;  // what map_ was made of
  mutable Map map_;
};

}  // namespace zemo
