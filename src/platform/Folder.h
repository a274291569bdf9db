// Files as the logic sees them: whole small files in a folder of ours (the station's, the
// machine's), found without regard to case, and sound files with what lies beside them, under their
// stored paths.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zemo {

// An operation on a file that failed for another reason than its absence; what() is one line with
// the file's name and the system's reason.
struct FileError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// One folder. `name` is a plain file name, matched without regard to case. Contents are raw bytes.
// Thread: the logic's.
class Folder {
 public:
  virtual ~Folder() = default;
  virtual const std::string& Path() const = 0;  // ends in '/'
  virtual std::string PathOf(
      std::string_view name) const = 0;  // the existing file's, else as given
  virtual bool Exists(std::string_view name) const = 0;
  virtual std::optional<std::string> Read(
      std::string_view name) const = 0;                        // nullopt: no such file
  virtual int64_t SizeBytes(std::string_view name) const = 0;  // -1: no such file
  // Whole, or left as it was. Waits for no disk: after a power cut the file may be the old one.
  virtual void Write(std::string_view name, std::string_view bytes) = 0;
  virtual void Append(std::string_view name, std::string_view bytes) = 0;
  // The same for what must outlive a power cut: on the disk when they come back. They wait for the
  // disk, tenths of a second on a busy one, so nothing that is written element after element goes
  // this way.
  virtual void WriteDurably(std::string_view name, std::string_view bytes) = 0;
  virtual void AppendDurably(std::string_view name, std::string_view bytes) = 0;
  // As WriteDurably, and nobody but the file's owner may read it.
  virtual void WriteSecret(std::string_view name, std::string_view bytes) = 0;
  // Overwrites bytes from `offset` on (0 is the first) and leaves all others; makes the file.
  virtual void PutBytes(std::string_view name, int64_t offset, std::string_view bytes) = 0;
  virtual void Remove(std::string_view name) = 0;  // nothing when absent
  // At one blow, over a file of that name; it survives a loss of power.
  virtual void Rename(std::string_view from, std::string_view to) = 0;
  // Another one when the file was changed or replaced; empty when absent.
  virtual std::string Stamp(std::string_view name) const = 0;
  // A folder inside this one, owned by it; the first file written there makes it.
  virtual Folder& Subfolder(std::string_view name) = 0;
  // Of the files in it, as they are written, in the order of their bytes; none without the folder.
  virtual std::vector<std::string> Names() const = 0;
};

// What a folder holds: plain names, sorted without regard to case, without the hidden ones (a dot
// ahead).
struct FolderListing {
  bool exists = false;  // the folder is there and can be read
  std::vector<std::string> folders, files;
};

// By which a sound file is known again: another one of its name differs in one of them.
struct SoundFileStamp {
  int64_t sizeBytes = 0;
  int64_t changedMs = 0;  // its time of change, since 1970
  bool operator==(const SoundFileStamp&) const = default;
};

// Files outside our folders, named by the paths that cards and settings store. A path with a drive
// or backslashes goes through the machine's path map. Thread: the logic's.
class SoundFiles {
 public:
  virtual ~SoundFiles() = default;
  virtual std::string Resolve(std::string_view storedPath) const = 0;  // a path of this system
  virtual bool Exists(std::string_view storedPath) const = 0;          // a regular file
  virtual int64_t SizeBytes(std::string_view storedPath) const = 0;    // -1 when absent
  // Of a regular file, which is not opened for it; nullopt when absent.
  virtual std::optional<SoundFileStamp> Stamp(std::string_view storedPath) const = 0;
  virtual std::optional<std::string> Read(std::string_view storedPath) const = 0;
  // Of the folder under that stored path. Links count as what they lead to. Throws nothing.
  virtual FolderListing List(std::string_view storedFolder) const = 0;
  // Takes the read-only mark off a file of ours; nothing when absent. Throws nothing: what cannot
  // be written says so when it is.
  virtual void ClearReadOnly(std::string_view storedPath) = 0;
  // Both as those of Folder.
  virtual void Write(std::string_view storedPath, std::string_view bytes) = 0;
  virtual void WriteDurably(std::string_view storedPath, std::string_view bytes) = 0;
  virtual void Remove(std::string_view storedPath) = 0;
};

}  // namespace zemo
