// One opening of a base on a PostgreSQL server: statements, transactions and the catalogue. What
// the database, its cursors and its snapshots share.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "store/LockWait.h"
#include "store/RowNotes.h"
#include "store/TableDefs.h"
#include "store/Value.h"
#include "store/postgres/PostgresCatalogue.h"
#include "store/postgres/PostgresLine.h"
#include "store/postgres/PostgresResult.h"
#include "store/postgres/PostgresValues.h"

namespace zemo {

class PostgresRowStream;

// Thread: the logic's, without a lock inside. Operations throw StoreError: kErrLocked when others
// write for longer than `wait` allows, kErrOther when the server is out of reach. No message holds
// more of the URL than its host and the base's name.
class PostgresConnection {
 public:
  using Parameters = PostgresParameters;

  PostgresConnection(const std::string& url, bool create, std::shared_ptr<LockWait> wait,
                     LineKeeper* keeper = nullptr);
  ~PostgresConnection();
  PostgresConnection(const PostgresConnection&) = delete;
  PostgresConnection& operator=(const PostgresConnection&) = delete;

  // Why nothing can be written, one line; empty: it can, as far as the server lets this role.
  const std::string& WhyReadOnly() const { return whyReadOnly_; }

  void Close();  // an open transaction is committed; errors there are lost
  bool IsOpen() const { return line_.IsOpen(); }
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

  // For who waits for what others notify: readable when the server has said something; -1: lost.
  int Socket() const;
  // Notices have come since the last asking. Reads what the server has sent, and waits for nothing.
  bool TakeNotices();

  // Beside whoever works on the base; not in a transaction. Each lock is waited for ten seconds,
  // once: throws kErrLocked behind that. May take minutes.
  void Compact();

  void Begin();         // nothing when one is open
  void BeginReading();  // the same of one moment, without the writers' lock
  void Commit();        // nothing when none is open; what cannot be committed is rolled back
  void Rollback();      // nothing when none is open; throws nothing
  bool InTransaction() const { return inTransaction_; }

  // As those of the file's connection.
  std::shared_ptr<const TableDef> FindTable(std::string_view name) {
    return catalogue_.FindTable(name);
  }
  const PostgresCatalogue::Tables& AllTables() { return catalogue_.AllTables(); }
  bool StructureIsOld() { return catalogue_.IsOld(); }
  void StructureChanged();
  // Stand-ins, as those of the file. They are gone after a change of the structure that this
  // connection made or met.
  std::vector<std::string> PutStandIns();
  bool StandInsAreOld() { return catalogue_.StandInsAreOld(); }
  std::shared_ptr<const TableDef> FindReadTable(std::string_view name) {
    return catalogue_.FindReadTable(name);
  }

  void TellRows(std::shared_ptr<RowNoteBook> book) { book_ = std::move(book); }
  void Note(const std::string& table, int64_t row);
  void NoteAll();

  int64_t ChangeCounter();
  int64_t ForeignSeen() const { return foreignCounter_; }
  int64_t LastInsertCode() const { return lastInsertCode_; }
  void Inserted(int64_t code) { lastInsertCode_ = code; }

 private:
  void SetUp(bool create);
  void ActAsOwner();
  void RenewFunctions();
  void Check() const;
  void RequireWritable() const;
  [[noreturn]] void Fail(const PostgresResult& result, std::string_view shown);
  [[noreturn]] void FailConnection(const std::string& what);
  PostgresResult Attempt(const std::string& sql, const Parameters* prepared, bool writes,
                         std::string_view shown);
  void DropBrokenIndexes();
  void ChangeOnce(const std::string& sql);
  void KeepStatement();
  void TakeBackStatement();
  void TakeBackTransaction();
  template <typename Work>
  auto WithStructure(Work work);
  PostgresResult RunTranslated(std::string_view sql, const Values& values, bool forRows);
  void ReadTranslated(std::string_view sql, const Values& values, const TakeResult& take);
  bool TakeRows(PostgresRowStream& stream, const TakeResult& take);

  std::string name_;
  std::shared_ptr<LockWait> wait_;
  PostgresLine line_;
  PostgresCatalogue catalogue_;
  bool inTransaction_ = false;
  bool onlyReads_ = false;  // the transaction, which leaves everything as it was
  bool lost_ = false;
  std::string whyReadOnly_;

  std::shared_ptr<RowNoteBook> book_;  // null: nobody asks
  int64_t ownChanges_ = 0;             // beside those that the catalogue met
  int64_t foreignCounter_ = 0;
  int64_t foreignWrites_ = -1;  // as the server counted them last; -1: not asked
  int64_t lastInsertCode_ = 0;
};

}  // namespace zemo
