#include "platform/real/files/FolderEntries.h"

#include <dirent.h>
#include <linux/magic.h>
#include <sys/inotify.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <iterator>
#include <memory>

#include "platform/real/files/NoCaseNames.h"

namespace zemo {

namespace {

constexpr decltype(statfs::f_type) kXfs = 0x58465342, kZfs = 0x2fc12fc1;

// Every change of the entries moves the folder's time there.
bool TimesAreTrue(const std::string& folder) {
  constexpr decltype(statfs::f_type) kTypes[] = {EXT4_SUPER_MAGIC,
                                                 TMPFS_MAGIC,
                                                 BTRFS_SUPER_MAGIC,
                                                 OVERLAYFS_SUPER_MAGIC,
                                                 F2FS_SUPER_MAGIC,
                                                 kXfs,
                                                 kZfs};
  struct statfs system;
  return statfs(folder.c_str(), &system) == 0 &&
         std::find(std::begin(kTypes), std::end(kTypes), system.f_type) != std::end(kTypes);
}

// Times of change are told in turns of the system's clock, some milliseconds long.
bool MayChangeUnseen(const struct stat& folder) {
  constexpr int64_t kSecond = 1'000'000'000, kMargin = kSecond / 10;
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  const int64_t age =
      (now.tv_sec - folder.st_mtim.tv_sec) * kSecond + now.tv_nsec - folder.st_mtim.tv_nsec;
  return age < kMargin;
}

bool SameFolder(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

bool SameTime(const struct stat& a, const struct stat& b) {
  return a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

}  // namespace

// --- Watch ---

bool FolderEntries::Watch::Open(const std::string& folder) {
  Close();
  number_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  constexpr uint32_t kChanges = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                                IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
  if (number_ >= 0 && inotify_add_watch(number_, folder.c_str(), kChanges) < 0) Close();
  return IsOpen();
}

void FolderEntries::Watch::Close() {
  if (number_ >= 0) close(number_);
  number_ = -1;
}

bool FolderEntries::Watch::Take(const std::function<void(const char* name)>& change) const {
  constexpr uint32_t kLost =
      IN_Q_OVERFLOW | IN_IGNORED | IN_UNMOUNT | IN_DELETE_SELF | IN_MOVE_SELF;
  alignas(inotify_event) char bytes[4096];
  for (;;) {
    const ssize_t got = read(number_, bytes, sizeof bytes);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got < 0 && errno == EAGAIN;
    for (ssize_t at = 0; at < got;) {
      inotify_event event;
      std::memcpy(&event, bytes + at, sizeof event);
      if ((event.mask & kLost) != 0) return false;
      if (event.len > 0) change(bytes + at + sizeof event);
      at += static_cast<ssize_t>(sizeof event + event.len);
    }
  }
}

// --- the entries ---

std::string FolderEntries::Named(const std::string& folder, std::string_view name) const {
  if (name.empty() || name.find('\0') != std::string_view::npos) return {};
  const std::lock_guard lock(mutex_);
  if (ours_ && known_ && folder == path_ && TakeChanges()) return Found(name);
  struct stat status;
  if (known_ && stat(folder.c_str(), &status) == 0 && StandFor(status)) return Found(name);
  if (lstat((folder + "/" + std::string(name)).c_str(), &status) == 0) return std::string(name);
  if (stat(folder.c_str(), &status) != 0) return {};
  return Read(folder, status) ? Found(name) : FoldedEntry(folder, name);
}

std::string FolderEntries::Found(std::string_view name) const {
  const auto found = names_.find(FoldedName(name));
  if (found == names_.end()) return {};
  const auto itself = std::find(found->second.begin(), found->second.end(), name);
  return itself != found->second.end() ? *itself : found->second.front();
}

bool FolderEntries::StandFor(const struct stat& now) const {
  if (!known_ || !SameFolder(now, read_)) return false;
  if (settled_ && !watch_.IsOpen() && SameTime(now, read_)) return true;
  if (!TakeChanges()) return false;
  read_ = now;
  settled_ = !MayChangeUnseen(now);
  return true;
}

// True when what is known is what the folder holds now.
bool FolderEntries::TakeChanges() const {
  if (!watch_.IsOpen()) return false;
  // Whether it came or went is looked at: of two names that were exchanged each comes and goes.
  known_ = watch_.Take([this](const char* name) {
    struct stat status;
    Note(name, lstat((path_ + "/" + name).c_str(), &status) == 0);
  });
  if (!known_) watch_.Close();
  return known_;
}

// What comes while it is read is told by the watch, or moves the time behind that of `now`: it is
// read again then. False where one cannot know.
bool FolderEntries::Read(const std::string& folder, const struct stat& now) const {
  known_ = false;
  names_.clear();
  if (!TimesAreTrue(folder)) return false;
  settled_ = !MayChangeUnseen(now);
  if (!SameFolder(now, read_)) watch_.Close();
  if (!settled_ && !watch_.Open(folder)) return false;
  const std::unique_ptr<DIR, decltype([](DIR* open) { closedir(open); })> entries(
      opendir(folder.c_str()));
  if (!entries) return false;
  while (const dirent* entry = readdir(entries.get())) Note(entry->d_name, true);
  read_ = now;
  path_ = folder;
  known_ = true;
  return true;
}

void FolderEntries::Note(const char* name, bool there) const {
  std::vector<std::string>& same = names_[FoldedName(name)];
  const auto place = std::lower_bound(same.begin(), same.end(), name);
  const bool known = place != same.end() && *place == name;
  if (there && !known) same.insert(place, name);
  if (!there && known) same.erase(place);
  if (same.empty()) names_.erase(FoldedName(name));
}

}  // namespace zemo
