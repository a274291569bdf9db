// The station's base behind the engine operations that the logic knows, whichever engine keeps it.
// Queries come in the station's dialect (LIKE with * and ?, DELETE * FROM, TOP n, WHERE '*', ...)
// and are translated in one place, store/Dialect.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/LockWait.h"
#include "store/Recordset.h"
#include "store/RowNotes.h"

namespace zemo {

class RowView;
class TableDefs;
struct TablePage;

// A table as its columns were when it was asked for.
class StoredTable {
 public:
  virtual ~StoredTable() = default;
  // A live cursor of the caller's own, on the first row in order of insertion.
  virtual std::unique_ptr<Recordset> Cursor() const = 0;
};

// Takes whole rows of a table as they stood in another base, keys and all. What was not finished is
// no row of the base. Thread: the logic's. Operations throw StoreError.
class RowSink {
 public:
  virtual ~RowSink() = default;
  virtual void Add(const RowView& row) = 0;  // all fields, in the table's order
  virtual void Finish() = 0;
};

// Thread: the logic's. Every operation throws StoreError.
class Database {
 public:
  virtual ~Database() = default;

  // A query names its values by a ? each, from left to right, and never holds one in its text: so
  // each place of the program asks with the same text, which is translated once. A value counts as
  // its literal would, behind LIKE with its * and ?.
  using TakeRow = std::function<void(const RowView&)>;
  virtual std::unique_ptr<Recordset> OpenRecordset(std::string_view sql,
                                                   const Values& values = {}) = 0;  // a snapshot
  // Hands the rows of a query to `take` one by one, without a snapshot: for walks over a whole
  // library, of which no more is in memory than a few rows. A file is held for reading meanwhile,
  // so `take` only copies what it needs.
  virtual void ReadRows(std::string_view sql, const Values& values, const TakeRow& take) = 0;
  void ReadRows(std::string_view sql, const TakeRow& take) { ReadRows(sql, {}, take); }
  virtual std::shared_ptr<const StoredTable> FindTable(std::string_view name) = 0;
  std::unique_ptr<Recordset> OpenTable(std::string_view name) { return FindTable(name)->Cursor(); }
  virtual void Execute(std::string_view sql, const Values& values = {}) = 0;  // a query that writes
  virtual void BeginTrans() = 0;     // does nothing when one is open
  virtual void CommitTrans() = 0;    // does nothing when none is open
  virtual void RollbackTrans() = 0;  // takes back the open one; throws nothing
  virtual bool InTransaction() const = 0;
  // As BeginTrans, for who only reads: what is read up to CommitTrans or RollbackTrans is the base
  // of one moment, and others may write meanwhile as far as their engine lets them.
  virtual void BeginReading() = 0;
  virtual TableDefs& Tables() = 0;
  // Columns are looked at: what the schema has and the file has not is read by default, and told, a
  // line each. Without it, and after a change of the structure, a query that names it fails.
  virtual std::vector<std::string> PutStandIns() = 0;
  // False where the file has not the column, be it read by default or not.
  virtual bool HasColumn(std::string_view table, std::string_view column) = 0;
  // The table is read as it stands in the file and its rows are numbered by its key: no stand-in is
  // read in its place, and nobody has changed the structure since that was looked at.
  virtual bool IsReadAsStored(std::string_view table) = 0;
  // For who carries a whole base over. All rows of the table with all fields as they are stored, in
  // the order of their numbers; and a place for such rows, in a transaction and in a table that has
  // none yet. The queries' dialect, stand-ins and notes of rows have no part in either.
  virtual void ReadTable(std::string_view table, const TakeRow& take) = 0;
  virtual std::unique_ptr<RowSink> FillTable(std::string_view table) = 0;
  // Gives back the room of rows that are gone and makes the indexes anew, beside whoever works on
  // the base. False: nothing was done, since this engine does it by a copy (DatabaseFiles.h).
  virtual bool CompactInPlace() = 0;
  // Opens what stands at the path now; `create` makes the file. What was open is closed once the
  // new one is; where that cannot be opened it stays. Cursors of the former one find themselves
  // closed.
  virtual void Open(bool create) = 0;
  virtual void Close() = 0;
  virtual bool IsOpen() const = 0;

  // Counts up whenever the stored data may have changed, by this connection or another process.
  // Costs a few microseconds; asked once a handler and after each yield, not at every read.
  virtual int64_t ChangeCounter() = 0;
  // Counts up whenever others may have stored something, and with each Open. Looks as ChangeCounter
  // does: while somebody has the file to himself it stays as it was.
  virtual int64_t ForeignCounter() = 0;
  // Notes what is written here to the rows of the table, from now on, for as long as the notes are
  // held, over closings and openings. Costs a write next to nothing.
  virtual std::shared_ptr<RowNotes> NoteRows(std::string_view table) = 0;
  // For who keeps a table in memory and wants to know cheaply which of its rows may be others:
  // hands `take` the pages of the file on which the rows with keys above `afterKey` stand, in order
  // of their keys, until it says false or there are no more. The file is held for reading
  // meanwhile. False: the pages cannot be told, as of a file with a write-ahead log. Not inside a
  // transaction.
  using TakePage = std::function<bool(const TablePage&)>;
  virtual bool ReadPages(std::string_view table, int64_t afterKey, const TakePage& take) = 0;
  // CODE of the row that this connection inserted last, for the report's trace; 0 before the first.
  virtual int64_t LastInsertCode() const = 0;

  // How long operations wait for a file that another process has locked before they throw
  // kErrLocked.
  virtual LockWait& Waiting() = 0;

  // For a base that nobody else has, as a private copy: its lock is taken once and kept, so that
  // nothing of others is looked for. Up to LetOthersIn, or the next Close or Open. Throws
  // StoreError where somebody is at work on it.
  virtual void KeepAlone() = 0;
  virtual void LetOthersIn() = 0;
  virtual bool IsAlone() const = 0;

  // The file at the path is no longer the one that is open, or the file system failed an operation
  // on it since: only Open helps. Looks at the folder, not into the file.
  virtual bool FileIsLost() const = 0;
};

// Begins now; what is not committed at the end of the scope is undone. Not inside another
// transaction, which would be undone with it. Keep no yield in its scope: the file is locked for
// writing meanwhile. Thread: the logic's. Throws StoreError.
class Transaction {
 public:
  explicit Transaction(Database& database) : database_(database) { database_.BeginTrans(); }
  ~Transaction() {
    if (!ended_) database_.RollbackTrans();
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void Commit() {
    ended_ = true;  // what cannot be committed is undone there
    database_.CommitTrans();
  }

 private:
  Database& database_;
  bool ended_ = false;
};

// Lets others in for its scope, where the base is kept alone. Throws as KeepAlone at the begin
// only: who cannot be kept off at the end stays in.
class OthersLetIn {
 public:
  explicit OthersLetIn(Database& database) : database_(database), alone_(database.IsAlone()) {
    if (alone_) database_.LetOthersIn();
  }
  ~OthersLetIn();
  OthersLetIn(const OthersLetIn&) = delete;
  OthersLetIn& operator=(const OthersLetIn&) = delete;

 private:
  Database& database_;
  const bool alone_;
};

}  // namespace zemo
