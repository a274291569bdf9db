// Whole small files by their path on this system: read, replaced at one blow, written in part.
// Every fault but absence is a FileError: one line with the path and the system's reason.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/FileInParts.h"
#include "platform/Folder.h"

namespace zemo {

// Brings what was written to an open file or folder onto the disk itself. Tests put one of their
// own in its place. Thread: any.
class DiskSync {
 public:
  virtual ~DiskSync() = default;
  virtual int Sync(int descriptor) const;  // 0, or the system's reason (errno)
  // What is written is to be found after a power cut, and by others at any moment.
  virtual bool IsForGood() const { return true; }
};

// For files that need not outlive the machine, and that nobody else reads: waits for no disk.
class NoDiskSync : public DiskSync {
 public:
  int Sync(int) const override { return 0; }
  bool IsForGood() const override { return false; }
};

extern const DiskSync kDiskSync;
extern const NoDiskSync kNoDiskSync;

bool IsRegularFile(const std::string& path);
int64_t RegularFileSizeBytes(const std::string& path);                    // -1 when absent
std::optional<SoundFileStamp> RegularFileStamp(const std::string& path);  // nullopt when absent

// nullopt when there is no such file, or no such folder.
std::optional<std::string> ReadWholeFile(const std::string& path);

// Writes beside the file and renames over it, so that a reader sees the old bytes or the new ones
// and a full disk leaves the old ones. The file keeps its permissions; a link stays and its target
// is replaced. Makes no folder. One that is not for good has no name for a moment.
void ReplaceWholeFile(const std::string& path, std::string_view bytes,
                      const DiskSync& disk = kDiskSync);
// The same of a file that comes in parts.
std::unique_ptr<FileInParts> ReplaceFileInParts(const std::string& path);
// The same, so that a power cut at any moment leaves the old bytes or the new ones, and the new
// ones once it has come back. May wait for the disk, tenths of a second on a busy one. Bytes that
// cannot be brought onto the disk are an error and leave the old ones; where only the new name
// cannot, the error comes with the new bytes in place.
void ReplaceWholeFileDurably(const std::string& path, std::string_view bytes,
                             const DiskSync& disk = kDiskSync);

// The same, and nobody but its owner may read it.
void ReplaceSecretFile(const std::string& path, std::string_view bytes,
                       const DiskSync& disk = kDiskSync);

void AppendToFile(const std::string& path, std::string_view bytes);
// The same, on the disk once it has come back; after an error they may be there all the same.
void AppendToFileDurably(const std::string& path, std::string_view bytes,
                         const DiskSync& disk = kDiskSync);
// In place: bytes from `offset` on, all others as they were.
void PutIntoFile(const std::string& path, int64_t offset, std::string_view bytes);
// Its owner may write it from then on; nothing when absent or not ours.
void MakeFileWritable(const std::string& path);
void RemoveFile(const std::string& path);  // nothing when absent
// The new name is on the disk when this comes back; the file's bytes are the writer's to sync.
void RenameFile(const std::string& from, const std::string& to, const DiskSync& disk = kDiskSync);
// Which file stands there, how long it is and when it was changed last; empty when absent.
std::string FileStamp(const std::string& path);

}  // namespace zemo
