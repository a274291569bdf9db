// How long the base may keep its caller waiting while another process has it locked: the one owner
// of that time, so that no routine can give itself more by accident.
//
// On air the grant is the tick's: whatever it does, however many queries, and whatever orders are
// served up to the next tick, waits `ms` in all. At a start, at the end and in the commands nobody
// else waits, and each operation may take its time.
#pragma once

#include <cstdint>

namespace zemo {

// Of a base on air: between two ticks, in all; and what of it is saved for the time behind the
// start of an element where one is about to start, so that waits on both sides of a tick do not add
// up.
inline constexpr int kTickWaitMs = 100;
inline constexpr int kSavedWaitMs = 60;
// Elsewhere: of each operation.
inline constexpr int kBusyTimeoutMs = 5000;

// Thread: the logic's. Outlives the connections that ask it.
class LockWait {
 public:
  explicit LockWait(int eachMs = kBusyTimeoutMs) { LetEachWait(eachMs); }
  LockWait(const LockWait&) = delete;

  // Every operation from now on, `ms` at most, whatever was waited for in vain before.
  void LetEachWait(int ms);
  // All operations from now to the next grant together; `savedMs` of it only from LetSavedWait on.
  void LetAllWait(int ms, int savedMs = 0);
  void LetSavedWait() { savedMs_ = 0; }
  int LeftMs() const { return forbidden_ > 0 || leftMs_ < savedMs_ ? 0 : leftMs_ - savedMs_; }

  // Around each operation that may meet a lock: what reads and what writes are kept apart. An
  // operation that waited in vain is the last of its kind that waits until one succeeds: a file
  // locked for long must not take its time again and again.
  void Begin(bool writes);
  void End(bool writes, bool locked);

  // The lock stands, asked for the `times`-th time (from 0): waits a little and is true, or false
  // when the operation has to give up.
  bool WaitOnce(int times);

  // Since the beginning.
  struct Waited {
    uint64_t operations = 0;  // that met a lock and waited
    int64_t ms = 0;           // in all
  };
  const Waited& SoFar() const { return soFar_; }

 private:
  friend class NoLockWait;

  int eachMs_ = 0;       // of each operation; 0 while all share a grant
  int leftMs_ = 0;       // of the operation, or of the grant
  int savedMs_ = 0;      // of the grant, for what comes later
  int forbidden_ = 0;    // scopes of NoLockWait
  bool writes_ = false;  // kind of the operation under way
  bool waited_ = false;  // it did
  bool inVain_[2] = {};  // readers, writers
  Waited soFar_;
};

// Within its scope a locked base is told at once.
class NoLockWait {
 public:
  explicit NoLockWait(LockWait& wait) : wait_(wait) { ++wait_.forbidden_; }
  ~NoLockWait() { --wait_.forbidden_; }
  NoLockWait(const NoLockWait&) = delete;

 private:
  LockWait& wait_;
};

}  // namespace zemo
