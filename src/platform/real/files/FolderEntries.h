// What a folder holds, found without regard to case: many of the files that are looked for many
// times a minute are almost never there, and a miss would read the whole folder each time.
#pragma once

#include <sys/stat.h>

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace zemo {

// The entries of one folder. They are read again when the folder's time of change is another one;
// while that time is so fresh that a second change could bear it, the system is asked to tell of
// each change instead. On file systems whose times are not known to tell every change (shares above
// all) they are read at each miss. So no answer is older than the call. Thread: any.
class FolderEntries {
 public:
  // `ours`: nobody puts another folder or file system into the folder's place or that of one above.
  explicit FolderEntries(bool ours = false) : ours_(ours) {}
  // As EntryNamed(folder, name). `folder` may be another one than at the call before.
  std::string Named(const std::string& folder, std::string_view name) const;

 private:
  // What the system tells of the changes in a folder. Closes itself.
  class Watch {
   public:
    Watch() = default;
    ~Watch() { Close(); }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    bool Open(const std::string& folder);  // false: the system tells nothing
    void Close();
    bool IsOpen() const { return number_ >= 0; }
    // The name of each change since the last call, in their order. False: some of them are lost.
    bool Take(const std::function<void(const char* name)>& change) const;

   private:
    int number_ = -1;
  };

  std::string Found(std::string_view name) const;
  bool StandFor(const struct stat& now) const;
  bool TakeChanges() const;
  bool Read(const std::string& folder, const struct stat& now) const;
  void Note(const char* name, bool there) const;

  const bool ours_;
  mutable std::mutex mutex_;
  mutable bool known_ = false;
  mutable bool settled_ = false;   // as they were read nothing could change unseen
  mutable struct stat read_ = {};  // of the folder, before the reading
  mutable std::string path_;       // its path
  mutable Watch watch_;            // of the folder of read_, from before the reading
  // Folded: as they are written, in the order of their bytes.
  mutable std::unordered_map<std::string, std::vector<std::string>> names_;
};

}  // namespace zemo
