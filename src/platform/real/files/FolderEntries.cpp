#include "platform/real/files/FolderEntries.h"

#include <dirent.h>
#include <linux/magic.h>
#include <sys/vfs.h>

#include <algorithm>
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

}  // namespace

std::string FolderEntries::Named(const std::string& folder, std::string_view name) const {
  if (name.empty() || name.find('\0') != std::string_view::npos) return {};
  struct stat status;
  if (lstat((folder + "/" + std::string(name)).c_str(), &status) == 0) return std::string(name);
  if (stat(folder.c_str(), &status) != 0) return {};
  const std::lock_guard lock(mutex_);
  if (!StandFor(status)) {
    if (MayChangeUnseen(status) || !TimesAreTrue(folder)) return FoldedEntry(folder, name);
    Read(folder, status);
  }
  const auto found = names_.find(FoldedName(name));
  return found == names_.end() ? std::string() : found->second;
}

bool FolderEntries::StandFor(const struct stat& now) const {
  return known_ && now.st_dev == read_.st_dev && now.st_ino == read_.st_ino &&
         now.st_mtim.tv_sec == read_.st_mtim.tv_sec && now.st_mtim.tv_nsec == read_.st_mtim.tv_nsec;
}

// What comes while it is read moves the time behind that of `now`: it is read again then.
void FolderEntries::Read(const std::string& folder, const struct stat& now) const {
  known_ = false;
  names_.clear();
  const std::unique_ptr<DIR, decltype([](DIR* open) { closedir(open); })> entries(
      opendir(folder.c_str()));
  if (!entries) return;
  while (const dirent* entry = readdir(entries.get())) {
    const std::string name = entry->d_name;
    std::string& kept = names_[FoldedName(name)];
    if (kept.empty() || name < kept) kept = name;
  }
  read_ = now;
  known_ = true;
}

}  // namespace zemo
