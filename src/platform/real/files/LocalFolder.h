// A folder of this system as the logic sees it: the station's or the machine's.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/Folder.h"
#include "platform/real/files/FolderEntries.h"
#include "platform/real/files/WholeFiles.h"

namespace zemo {

// Looks at the disk at each call: what another program or machine changes is seen at once. The
// folder need not exist: nothing is in it then, and the first write makes it. A name that is no
// plain file name ("", "..", one with a slash) is in no folder, and writing under it is a
// FileError. Thread: any, but Subfolder one at a time.
class LocalFolder : public Folder {
 public:
  // `path` may be relative to the current folder of this moment. `disk` is not owned.
  explicit LocalFolder(const std::string& path, const DiskSync& disk = kDiskSync);

  const std::string& Path() const override { return path_; }
  std::string PathOf(std::string_view name) const override;
  bool Exists(std::string_view name) const override;  // a regular file
  std::optional<std::string> Read(std::string_view name) const override;
  void Write(std::string_view name, std::string_view bytes) override;
  void Append(std::string_view name, std::string_view bytes) override;
  void WriteDurably(std::string_view name, std::string_view bytes) override;
  void AppendDurably(std::string_view name, std::string_view bytes) override;
  void WriteSecret(std::string_view name, std::string_view bytes) override;
  void PutBytes(std::string_view name, int64_t offset, std::string_view bytes) override;
  void Remove(std::string_view name) override;
  void Rename(std::string_view from, std::string_view to) override;
  int64_t SizeBytes(std::string_view name) const override;
  std::string Stamp(std::string_view name) const override;
  Folder& Subfolder(std::string_view name) override;
  std::vector<std::string> Names() const override;

 private:
  std::string ToWrite(std::string_view name) const;  // its path; makes the folder

  std::string path_;  // ends in '/'
  const DiskSync& disk_;
  FolderEntries entries_;
  std::map<std::string, std::unique_ptr<LocalFolder>, std::less<>> subfolders_;  // asked for so far
};

}  // namespace zemo
