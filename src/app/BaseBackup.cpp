#include "app/BaseBackup.h"

#include <sqlite3.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <utility>

namespace zemo {

namespace {

constexpr int kLockWaitMs = 5000;
constexpr int kPagesAtATime = 1000;  // 4 MB

struct CloseBase {
  void operator()(sqlite3* base) const { sqlite3_close(base); }
};
using Base = std::unique_ptr<sqlite3, CloseBase>;

Base OpenBase(const std::string& path, int flags) {
  sqlite3* base = nullptr;
  const int result = sqlite3_open_v2(path.c_str(), &base, flags, nullptr);
  Base owned(base);
  if (result != SQLITE_OK) owned.reset();
  return owned;
}

// What others write meanwhile begins the copy anew, with twice as much at a time.
void CopyPages(sqlite3* source, sqlite3_backup* backup) {
  int pages = kPagesAtATime;
  int left = std::numeric_limits<int>::max();
  // Set again, the time counts from here: SQLite counts that of all steps together.
  while (sqlite3_busy_timeout(source, kLockWaitMs) == SQLITE_OK &&
         sqlite3_backup_step(backup, pages) == SQLITE_OK) {
    const int before = std::exchange(left, sqlite3_backup_remaining(backup));
    if (left >= before && pages < left) pages *= 2;
  }
}

}  // namespace

bool BackUpBase(const std::string& from, const std::string& to) {
  const Base source = OpenBase(from, SQLITE_OPEN_READONLY);
  const Base target = OpenBase(to, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  if (!source || !target) return false;
  sqlite3_exec(target.get(), "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
  sqlite3_backup* backup = sqlite3_backup_init(target.get(), "main", source.get(), "main");
  if (!backup) return false;
  CopyPages(source.get(), backup);
  const int result = sqlite3_backup_finish(backup);
  if (result == SQLITE_BUSY || result == SQLITE_LOCKED)
    throw std::runtime_error(from + " is locked by another program");
  return result == SQLITE_OK;
}

}  // namespace zemo
