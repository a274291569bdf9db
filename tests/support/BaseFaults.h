// Faults of a station's base at named points, and waits for its lock that take no time: a layer
// between SQLite and the file system, for as long as it lives. What SQLite and the store make of a
// fault is their own.
#pragma once

#include <sqlite3.h>

#include <array>
#include <climits>
#include <cstdint>

namespace zemo::test {

enum class BasePoint {
  kOpen,          // of the base or of its journal
  kLockToRead,    // the first lock of every operation
  kLockToWrite,   // asked for when a transaction begins
  kLockToCommit,  // asked for before the base's own pages are written
  kRead,          // of a page, as the ones below
  kWrite,
  kSync,
  kCommit,  // the journal goes: from then on all is stored
};
inline constexpr int kBasePoints = 8;

enum class BaseFault {
  kLocked = SQLITE_BUSY,    // somebody else has the lock; locks and kOpen only
  kDiskFull = SQLITE_FULL,  // kWrite
  kBroken = SQLITE_IOERR,   // the disk fails
  kAway = SQLITE_CANTOPEN,  // kOpen
};

// One at a time. Works on what is opened and closed while it lives, by whatever connection of this
// process, so it is declared ahead of what opens bases. A wait for a lock, of this process or of
// another one, is over at once and counts as waited.
class BaseFaults {
 public:
  BaseFaults();
  ~BaseFaults();
  BaseFaults(const BaseFaults&) = delete;
  BaseFaults& operator=(const BaseFaults&) = delete;

  // From now on the `nth` passage of the point and those behind it fail, `times` in all.
  void Arm(BasePoint point, BaseFault fault, int nth = 1, int times = INT_MAX);
  void Disarm();                        // every point is as it should be
  int Passages(BasePoint point) const;  // since it was armed last, or from the beginning
  int64_t WaitedMs() const { return waitedUs_ / 1000; }

 private:
  struct Point {
    int passages = 0;
    int first = 0;  // of the passages that fail; 0: none does
    int last = 0;
    BaseFault fault = BaseFault::kBroken;
  };
  struct File;   // SQLite's, ours in front of the one of the system
  struct Calls;  // what SQLite calls

  int Pass(BasePoint point);  // SQLITE_OK, or the fault

  std::array<Point, kBasePoints> points_;
  int64_t waitedUs_ = 0;
  sqlite3_vfs* system_;
  sqlite3_vfs layer_{};
};

}  // namespace zemo::test
