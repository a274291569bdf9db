// A replica of a server's base in a file of this machine: what the program works on while its base
// stands on a server, so that nothing that it reads or writes waits for the network. This is the
// side of whoever keeps the replica and the server alike; the program itself has the file open as
// any base (DBEngine::ClosedReplica).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "store/LockWait.h"
#include "store/postgres/ServerFeed.h"
#include "store/replica/ReplicaSchema.h"

namespace zemo {

class Connection;
class Database;

// What was written here and not sent yet, or a part of it that ends where a write ends.
struct QueuedWrites {
  int64_t last = 0;  // place in the queue up to which it goes
  int64_t rows = 0;  // that it is about
  std::vector<std::string> tables{};
  std::string changes;  // as zemo.take takes them
};

// A row that was written here and that the server does not take.
struct RefusedRow {
  std::string table;
  int64_t number = 0;
  std::string values;  // in one line
};

// Thread: its owner's alone; the program's own connection is another one. Operations throw
// StoreError.
class Replica {
 public:
  // Whether the file holds a replica of a form that is known, or may: what is locked just now, or
  // fails to be read, is to be asked again and never to be replaced. False where it is missing,
  // damaged or another one. Throws nothing.
  static bool IsThere(const std::string& path);
  // The whole base that `server` has open, of one moment, into a new file, as a replica that knows
  // the changes up to `place`, of the machine of this name. `path` must not exist.
  static void Make(Database& server, const FeedPlace& place, const std::string& machine,
                   const std::string& path);

  // The replica in this file, a copy that nobody else has, becomes a base file as any other:
  // nothing of the replica's own is left, and new rows get numbers above all that were given.
  static void MakePlain(const std::string& path);

  // Each operation waits `waitMs` for the program's own. A replica of an older form gets this one.
  Replica(const std::string& path, int waitMs);
  ~Replica();
  Replica(const Replica&) = delete;

  const std::string& Machine() const { return machine_; }
  // Of a fresh replica that takes the place of another one, whose queue is empty and stays so: the
  // queue goes on at the same place, since the server passes over places that it has had. It has
  // numbers of its own: a server that was restored gives those of the former one to others.
  void TakeOver(Replica& former);
  FeedPlace Place();
  // What is written from now on is stored, or refused with a line that says why; of these tables
  // it is refused in any case. Where something waits that could not be sent up to now the replica
  // is to be made anew once it is: rows may have been passed over (TakeInBesideQueue).
  void SetWriting(Writing writing, const std::vector<std::string>& closedTables);
  bool OnlyReads();
  // Which program last saw to the base on the server (ProgramMark).
  std::string SeenToBy();
  void SetSeenToBy(const std::string& program);
  // Nobody else works on the file from now on, for as long as this lives: for who puts another one
  // in its place. Throws kErrLocked.
  void KeepAlone();
  void LetOthersIn();

  // --- to the server ---
  int64_t Waiting();  // writes in the queue
  // None: nothing waits. At most so many writes.
  std::optional<QueuedWrites> Queued(int64_t mostWrites);
  void Sent(int64_t last);  // up to this place
  // The queue has had this place. False: it was put back to an older state since, and what is in
  // it was never taken.
  bool HasHad(int64_t place);
  // Its places are above this one from now on, those of the writes in it too.
  void GoOnBehind(int64_t place);
  // By tables, the numbers of rows in the queue that the server has not had under them.
  std::vector<std::pair<std::string, std::vector<int64_t>>> NewRows();
  // Rows of the queue have numbers that the server has given to others, which are `there`: they get
  // those from `first` on. What is alike is the server's already, and no new row.
  void GiveOtherNumbers(const ServerRows& there, int64_t first);
  RefusedRow FirstRow();  // of the queue's first write
  // A row that the server does not take: its writes leave the queue, and the replica is to be made
  // anew, since nothing tells what the server has in its place.
  void Drop(const RefusedRow& row);

  // --- from the server ---
  // False, and nothing is changed, where something waits in the queue: it is to be sent first, so
  // that what was written here is not lost under an older row.
  bool TakeIn(const std::vector<ServerRows>& changes, const FeedPlace& place);
  // Where nothing is sent (a copy, a machine that only reads): rows that wait in the queue stay as
  // they are.
  void TakeInBesideQueue(const std::vector<ServerRows>& changes, const FeedPlace& place);

  // --- numbers of new rows ---
  std::vector<std::string> Tables();
  int64_t NumbersLeft(std::string_view table);
  void AddNumbers(std::string_view table, int64_t first, int64_t last);
  void DropNumbers(std::string_view table);       // they are given to nobody
  bool NumbersAreBehind(std::string_view table);  // a row has a higher one than the next would get

 private:
  void Renew();
  void Put(const ServerRows& changes, const std::set<int64_t>& untouched);
  void SetPlace(const FeedPlace& place);
  void DropPlace();

  std::unique_ptr<Connection> connection_;
  std::string machine_;
};

}  // namespace zemo
