// Operations on whole base files, which only the engine over SQLite has: to hold one against
// everybody, to copy, compact and repair it.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "store/Database.h"

namespace zemo {

class Connection;

// A base file from which every other connection is kept off, for reading and for writing, while it
// is copied, renamed or replaced. What an interrupted writer left beside it is taken back first,
// so that no journal is left to be played into the file that takes its place. Thread: the logic's.
class HeldDatabase {
 public:
  // Throws StoreError: kErrLocked when others are at work on it for longer than `waitMs`.
  HeldDatabase(const std::string& path, int waitMs);
  ~HeldDatabase();
  HeldDatabase(const HeldDatabase&) = delete;

  // A copy without gaps, whose indexes are made anew; numbers once given stay given. All of it is
  // on the disk when this comes back. `to` must not exist. Throws StoreError.
  void CopyTo(const std::string& to);

 private:
  std::unique_ptr<Connection> connection_;
};

// Who keeps the file a replica of a server's base. Thread: the logic's.
struct ReplicaKeeper {
  std::function<void()> stores;   // just before something written to the replica is stored
  std::function<void()> compact;  // the base is to be compacted: on the server, by and by
};

// File operations on whole databases. `path` is a path of this system. Throw StoreError.
struct DBEngine {
  // One that is not open yet.
  static std::unique_ptr<Database> ClosedDatabase(const std::string& path,
                                                  std::shared_ptr<LockWait> wait);
  // The same of a replica (store/replica): it is never created, nor compacted as a file is.
  static std::unique_ptr<Database> ClosedReplica(const std::string& path,
                                                 std::shared_ptr<LockWait> wait,
                                                 ReplicaKeeper keeper);
  // Fails when the file exists; an empty file does not count. Each operation waits `busyTimeoutMs`
  // for a lock.
  static std::unique_ptr<Database> CreateDatabase(const std::string& path,
                                                  int busyTimeoutMs = kBusyTimeoutMs);
  // Shared, read-write; where the file or its folder cannot be written, writes fail with
  // kErrReadOnly.
  static std::unique_ptr<Database> OpenDatabase(const std::string& path,
                                                int busyTimeoutMs = kBusyTimeoutMs);
  static bool DatabaseExists(const std::string& path);  // a file that is not empty, or a folder
  // HeldDatabase::CopyTo with the base held only as long as it takes.
  static void CompactDatabase(const std::string& from, const std::string& to);
  // Makes damaged indexes anew; kErrBadDatabase where more than an index is damaged.
  static void RepairDatabase(const std::string& path);
  // SQLite's own SQL, one or more statements, on a connection of its own, as another program would.
  static void ExecuteNative(const std::string& path, const std::string& sql);
};

}  // namespace zemo
