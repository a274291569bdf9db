// What a folder holds, found without regard to case: many of the files that are looked for many
// times a minute are almost never there, and a miss would read the whole folder each time.
#pragma once

#include <sys/stat.h>

#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace zemo {

// The entries of one folder. They are read again when the folder's time of change is another one;
// while that time is so fresh that a second change could bear it, and on file systems whose times
// are not known to tell every change (shares above all), they are read at each miss. So no answer
// is older than the call. Thread: any.
class FolderEntries {
 public:
  // As EntryNamed(folder, name). `folder` may be another one than at the call before.
  std::string Named(const std::string& folder, std::string_view name) const;

 private:
  bool StandFor(const struct stat& now) const;
  void Read(const std::string& folder, const struct stat& now) const;

  mutable std::mutex mutex_;
  mutable bool known_ = false;
  mutable struct stat read_ = {};                               // of the folder, before the reading
  mutable std::unordered_map<std::string, std::string> names_;  // folded, as it is written
};

}  // namespace zemo
