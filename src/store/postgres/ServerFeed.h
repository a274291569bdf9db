// What the keeper of a replica asks of the server: which rows were written since a place in the
// order of its changes, and that what was written in the replica is taken.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/LockWait.h"
#include "store/TableRows.h"

namespace zemo {

class LineKeeper;
class PostgresConnection;

// Up to where the server's changes are known.
struct FeedPlace {
  std::string base;    // which base of which server; another one after a restore or a move
  int64_t place = 0;   // of its last change; 0: none
  std::string mark;    // of that change
  std::string tables;  // of the structure of its tables

  // Else what came between the two cannot be told.
  bool IsOfSameBase(const FeedPlace& other) const {
    return base == other.base && tables == other.tables;
  }
  bool operator==(const FeedPlace&) const = default;
};

// Rows of a table as the server has them.
struct ServerRows {
  std::string table;
  std::vector<std::string> fields;  // of each row's values; without what numbers the rows
  std::vector<int64_t> numbers;     // of the rows that were asked for, ascending
  std::vector<StoredRow> rows;      // those that are there, in the order of their numbers
  bool all = false;                 // they are all of the table
};

struct ServerChanges {
  std::vector<ServerRows> tables;
  FeedPlace place;    // behind them
  bool more = false;  // there are others behind that
};

// Its own connection. Thread: one, whichever. Operations wait for the server; they throw
// StoreError, kErrLocked when others write for longer than `wait` allows.
class ServerFeed {
 public:
  // `keeper` may give up its line; null: nobody does. Not owned.
  ServerFeed(const std::string& url, std::shared_ptr<LockWait> wait, LineKeeper* keeper = nullptr);
  ~ServerFeed();
  ServerFeed(const ServerFeed&) = delete;

  FeedPlace Now();
  // What came behind that place can be told: the base is the same, and its changes are still known.
  bool GoesOnFrom(const FeedPlace& place);
  // A table of the station is there. Without any it was moved away, or is just being restored.
  bool HoldsStation();
  // Throws kErrNoSuchFile where it does not.
  void RequireStation();
  bool IsOfThisVersion();  // the base; one of a newer version is only read
  bool MayWrite();         // this role, a table of the station at least
  // Tables in which it may not store whatever it likes, or that the base does not watch.
  std::vector<std::string> ClosedTables();

  // The rows that about so many changes behind the place were of, as they are now.
  ServerChanges Behind(const FeedPlace& place, int64_t mostChanges);

  // Those of these rows of the table that are there.
  ServerRows RowsOf(const std::string& table, const std::vector<int64_t>& numbers);

  // The base is not just being restored, or dropped, under the feed.
  bool HasItsFunctions();
  // Place in the machine's queue up to which it was taken; 0: nothing yet.
  int64_t TakenFrom(const std::string& machine);
  // The writes of the machine's queue up to this place, all of them or none (the error tells why);
  // nothing where they were taken before. Form of `changes`: a list of
  //   {"table": name, "key": column that numbers its rows, "gone": [number, ...],
  //    "changed": [{"fields": [name, ...], "rows": [{name: value, ...}, ...]}, ...],
  //    "new": [{name: value, ...}, ...]}.
  void Take(const std::string& machine, int64_t upTo, const std::string& changes);
  // The first of so many numbers that no other new row of the table gets.
  int64_t Reserve(const std::string& table, int64_t count);
  // Changes that are older than this are forgotten; who has not taken them in by then reads the
  // whole base again.
  void ForgetChanges(int days);
  void Compact();  // minutes, maybe

  void Listen();       // for changes, from now on
  int Socket();        // readable when the server has said something; -1: lost
  bool TakeNotices();  // it said that something changed, since the last asking

 private:
  void ReadTable(ServerRows& rows);

  std::unique_ptr<PostgresConnection> connection_;
};

}  // namespace zemo
