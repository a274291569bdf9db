// One connection to a PostgreSQL server with its prepared statements and its catalogue; what the
// database, its cursors and its snapshots share.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/LockWait.h"
#include "store/RowNotes.h"
#include "store/RowView.h"
#include "store/TableDefs.h"
#include "store/Value.h"
#include "store/postgres/PostgresQuery.h"

struct pg_conn;
struct pg_result;

namespace zemo {

// By which the server knows programs of ours.
inline constexpr char kProgramName[] = "zemoradio";

// What a statement gave, all of it.
class PostgresResult {
 public:
  explicit PostgresResult(pg_result* result) : result_(result) {}
  PostgresResult(PostgresResult&& other) noexcept : result_(other.result_) {
    other.result_ = nullptr;
  }
  PostgresResult& operator=(PostgresResult&& other) noexcept {
    std::swap(result_, other.result_);
    return *this;
  }
  ~PostgresResult();

  int Rows() const;
  int Columns() const;
  std::string ColumnName(int column) const;  // 0-based, as all columns and rows
  bool IsNull(int row, int column) const;
  std::string_view Text(int row, int column) const;
  int64_t Int(int row, int column) const;
  RowView::Kind Kind(int row, int column) const;
  Value Read(int row, int column) const;
  int64_t RowsChanged() const;
  const pg_result* Handle() const { return result_; }

 private:
  pg_result* result_;
};

// Thread: the logic's, without a lock inside. Operations throw StoreError: kErrLocked when others
// write for longer than `wait` allows, kErrOther when the server is out of reach. No message holds
// more of the URL than its host and the base's name.
class PostgresConnection {
 public:
  using Parameters = PostgresParameters;

  // A server that does not answer is given up after kConnectSeconds.
  PostgresConnection(const std::string& url, bool create, std::shared_ptr<LockWait> wait);
  ~PostgresConnection();
  PostgresConnection(const PostgresConnection&) = delete;
  PostgresConnection& operator=(const PostgresConnection&) = delete;

  // Why nothing can be written, one line; empty: it can, as far as the server lets this role.
  const std::string& WhyReadOnly() const { return whyReadOnly_; }

  void Close();  // an open transaction is committed; errors there are lost
  bool IsOpen() const { return connection_ != nullptr; }
  bool IsLost() const;  // the server went away since
  const std::string& Name() const { return name_; }

  // PostgreSQL's SQL, kept prepared by its text. `shown` is what a message tells of it.
  PostgresResult Run(const std::string& sql, const Parameters& parameters, bool writes,
                     std::string_view shown = {});
  PostgresResult RunDialect(std::string_view sql, const Values& values, bool forRows);
  // Hands over the rows of a query of the dialect one by one as the server sends them. Each result
  // holds one row, and only while it is taken; what `take` asks meanwhile waits for the rest.
  using TakeResult = std::function<void(const PostgresResult&)>;
  void ReadDialect(std::string_view sql, const Values& values, const TakeResult& take);
  // One statement or several without parameters, not kept; stored at once outside a transaction.
  void Change(const std::string& sql);

  // Inside a transaction: rows in the server's form of COPY, from now on up to EndCopy. A row that
  // is refused is told there, and nothing of the copy is stored then.
  void BeginCopy(const std::string& sql);
  void PutCopy(const std::string& rows);
  void EndCopy();
  void GiveUpCopy();  // throws nothing

  // Beside whoever works on the base; not in a transaction. Locks are waited for, seconds.
  void Compact();

  void Begin();         // nothing when one is open
  void BeginReading();  // the same of one moment, without the writers' lock
  void Commit();        // nothing when none is open; what cannot be committed is rolled back
  void Rollback();      // nothing when none is open; throws nothing
  bool InTransaction() const { return inTransaction_; }

  // As those of the file's connection.
  std::shared_ptr<const TableDef> FindTable(std::string_view name);
  const std::vector<std::shared_ptr<const TableDef>>& AllTables();
  bool StructureIsOld();  // somebody changed it since the catalogue was read
  void StructureChanged();
  // Stand-ins, as those of the file. They are gone after a change of the structure that this
  // connection made or met.
  std::vector<std::string> PutStandIns();
  bool StandInsAreOld();  // somebody changed the structure since
  // The stand-in of the table, else the table itself.
  std::shared_ptr<const TableDef> FindReadTable(std::string_view name);

  void TellRows(std::shared_ptr<RowNoteBook> book) { book_ = std::move(book); }
  void Note(const std::string& table, int64_t row);
  void NoteAll();

  int64_t ChangeCounter();
  int64_t ForeignSeen() const { return foreignCounter_; }
  int64_t LastInsertCode() const { return lastInsertCode_; }
  void Inserted(int64_t code) { lastInsertCode_ = code; }

 private:
  struct Prepared {
    std::string sql;
    std::string name;
  };
  struct Translation {
    std::string key;
    PostgresQuery query;
  };

  // Rows that are on their way, and those of them that had to be kept.
  struct Stream {
    std::deque<PostgresResult> kept;
    pg_result* end = nullptr;  // of the statement, once it is known
  };

  template <typename Work>
  auto WithStructure(Work work);
  PostgresResult RunTranslated(std::string_view sql, const Values& values, bool forRows);
  void ReadTranslated(std::string_view sql, const Values& values, const TakeResult& take);
  void SetUp(bool create);
  void RenewFunctions();
  void KeepRestOfStream();
  void EndStream(Stream& stream);
  bool SendForRows(const PostgresQuery& query, const Parameters& parameters, pg_result*& failed);
  void Forget(const std::string& sql);
  void Check() const;
  void RequireWritable() const;
  pg_result* Execute(const std::string& sql, const Parameters& parameters);
  pg_result* ExecuteNow(const std::string& sql);
  void ForgetPrepared();
  std::string NameOf(const std::string& sql, pg_result*& failed);
  std::shared_ptr<const PostgresQuery> Translated(std::string_view sql, const Values& values);
  [[noreturn]] void Fail(const pg_result* result, std::string_view shown);
  [[noreturn]] void FailConnection(const std::string& what);
  void ThrowRule(const std::string& table, const std::string& rule, const std::string& message);
  std::string StructureMark();
  void LoadCatalogue();

  std::string name_;
  std::shared_ptr<LockWait> wait_;
  pg_conn* connection_ = nullptr;
  bool inTransaction_ = false;
  bool lost_ = false;
  std::string whyReadOnly_;

  std::list<Prepared> prepared_;  // the last used first
  std::unordered_map<std::string_view, std::list<Prepared>::iterator> preparedBySql_;
  int64_t names_ = 0;  // of statements, given so far
  std::unordered_map<std::string, std::shared_ptr<const PostgresQuery>> translations_;

  Stream* stream_ = nullptr;  // null: none is on its way

  std::vector<std::shared_ptr<const TableDef>> tables_;
  std::string structure_;  // that tables_ shows; empty: none read
  std::vector<std::shared_ptr<const TableDef>> standIns_;
  std::string standInStructure_;  // that they were made for; empty: none were asked for

  std::shared_ptr<RowNoteBook> book_;  // null: nobody asks
  int64_t ownChanges_ = 0;
  int64_t foreignCounter_ = 0;
  int64_t foreignWrites_ = -1;  // as the server counted them last; -1: not asked
  int64_t lastInsertCode_ = 0;
};

}  // namespace zemo
