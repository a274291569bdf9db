// One SQLite connection with its prepared statements and its catalogue; what the database, its
// cursors and its snapshots share.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/LockWait.h"
#include "store/RowNotes.h"
#include "store/TableDefs.h"
#include "store/Value.h"

struct sqlite3;
struct sqlite3_stmt;

namespace zemo {

class Connection;

struct PreparedStatement;

// A prepared statement on loan from its connection for one scope: the destructor resets it, so that
// no read lock outlives the call in which it was taken.
class Statement {
 public:
  Statement(Connection& connection, std::shared_ptr<PreparedStatement> prepared);
  ~Statement();
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  Statement& Bind(int position, const Value& value);  // 1-based; the value is copied
  bool Step();                                        // true: a row stands ready
  void Run();                                         // to the end
  int Columns() const;
  std::string ColumnName(int column) const;  // 0-based, as all columns
  int64_t Int(int column) const;
  std::string Text(int column) const;
  void Read(int column, Value& into) const;
  sqlite3_stmt* Handle() const { return statement_; }

 private:
  Connection& connection_;
  std::shared_ptr<PreparedStatement> prepared_;
  sqlite3_stmt* statement_;
};

// Thread: the logic's, without a lock inside. Operations throw StoreError.
class Connection {
 public:
  // `create` makes the file when it is missing. The file's first page is read, so that what is no
  // database, or cannot be read, fails here. `wait` tells how long operations wait for a lock.
  Connection(std::string path, bool create, std::shared_ptr<LockWait> wait);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  void Close();  // an open transaction is committed; errors there are lost
  bool IsOpen() const { return database_ != nullptr; }
  const std::string& Path() const { return path_; }
  sqlite3* Handle() const { return database_; }

  // Kept prepared, by their text. SQLite's SQL, its values to be bound by the caller; and the
  // station's dialect, with a value for each ? in it.
  Statement Prepare(std::string_view sql);
  Statement PrepareDialect(std::string_view sql, const Values& values = {});
  void ExecuteNow(const char* sql);  // not kept

  void Begin();         // nothing when one is open
  void BeginReading();  // the same; the file is locked for reading by what is read first
  void Commit();        // nothing when none is open; what cannot be committed is rolled back
  void Rollback();      // nothing when none is open; throws nothing
  bool InTransaction() const;

  static bool FileExists(const std::string& path);  // a file that is not empty, or a folder

  // The table's definition, which stays valid while the catalogue changes; null: no such table.
  // The catalogue is read again when the name is unknown. RefreshCatalogue reads it again when the
  // file's structure has changed, whoever changed it.
  std::shared_ptr<const TableDef> FindTable(std::string_view name);
  const std::vector<std::shared_ptr<const TableDef>>& AllTables();  // by name
  void RefreshCatalogue();
  void StructureChanged();  // by this connection: forgets the catalogue and the statements

  // Tables whose columns are not the schema's are read through stand-ins from now on, see
  // StandIns.h; what is to be told of them. Not kept up to date with what others do to the columns:
  // StandInsAreOld tells that they did something.
  std::vector<std::string> PutStandIns();
  bool StandInsAreOld();
  void DropStandIns();
  // The file is a replica of a server's base: its tables are the server's to change, and its new
  // rows get the server's numbers.
  bool IsReplica() const { return isReplica_; }
  // Hears of each transaction just before it is stored.
  void TellStores(std::function<void()> stores);

  // As FindTable; the stand-in where there is one.
  std::shared_ptr<const TableDef> FindReadTable(std::string_view name);

  // Tells the book of each row of the file that this connection writes, ahead of the write.
  void TellRows(std::shared_ptr<RowNoteBook> book);

  // See Database.
  void KeepAlone();
  void LetOthersIn();
  bool IsAlone() const { return alone_; }

  int64_t ChangeCounter();
  // Counts what others stored. As ChangeCounter last saw it; without looking.
  int64_t ForeignSeen() const { return foreignCounter_; }
  int64_t RowsChanged() const;  // by the last writing statement
  int64_t LastInsertCode();

  // The file at the path is no longer the one that was opened (replaced or removed), or the file
  // system failed an operation on it since. Looks at the folder, not into the file.
  bool FileIsLost() const;

  [[noreturn]] void Fail(int result, std::string_view query = {}) const;

 private:
  enum Language { kSqlite, kDialect };
  using KeptList = std::list<std::shared_ptr<PreparedStatement>>;

  void Open(bool create);
  void RegisterFunctions();
  void Check() const;  // throws when closed
  void AfterWaiting(bool writes, int result);
  std::shared_ptr<PreparedStatement> Kept(Language language, std::string_view key);
  void Keep(Language language, const std::shared_ptr<PreparedStatement>& prepared);
  std::shared_ptr<PreparedStatement> Translated(std::string_view sql, const Values& values);
  sqlite3_stmt* Compile(const std::string& sql, std::string_view shown);
  void ForgetStatements();
  int64_t SchemaVersion();  // of the file, which counts its structure's changes
  void LoadCatalogue();
  std::string FileMark() const;
  void GiveLockBack();
  std::string MarkNow() const;  // FileMark, or that nobody else can have stored anything
  int64_t SizeBytes() const;    // of the open file; -1: unknown

  std::string path_;
  std::shared_ptr<LockWait> wait_;
  mutable bool fileFailed_ = false;  // an operation failed in the file system
  sqlite3* database_ = nullptr;
  KeptList kept_;                                                          // the last used first
  std::unordered_map<std::string_view, KeptList::iterator> keptByKey_[2];  // by Language
  sqlite3_stmt* dataVersion_ = nullptr;

  std::vector<std::shared_ptr<const TableDef>> tables_;
  std::vector<std::shared_ptr<const TableDef>> standIns_;
  int64_t catalogueVersion_ = -1;  // schema_version that tables_ shows; -1: none read
  int64_t standInVersion_ = -1;    // that PutStandIns saw; -1: it was not asked
  std::string standInMark_;        // of the file when it still was that version; empty: not known

  std::shared_ptr<RowNoteBook> book_;  // null: nobody asks

  bool isReplica_ = false;
  std::function<void()> stores_;  // empty: nobody asks

  bool alone_ = false;  // the lock is kept between two operations

  int64_t changeCounter_ = 0;
  int64_t foreignCounter_ = 0;  // counts the new values of seenDataVersion_
  int64_t seenDataVersion_ = -1;
  int64_t seenTotalChanges_ = -1;
  std::string seenMark_;  // of the file when SQLite was last asked; empty: to be asked

  friend class Statement;
};

}  // namespace zemo
