// What the database of every engine does in the same way over its own connection: openings,
// transactions, counters and the notes of rows.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "store/Database.h"
#include "store/StoreError.h"

namespace zemo {

// `OpenConnection` is one opening of the base, with the operations of `Connection`; `Defs` is its
// catalogue, made over it. Cursors share the connection, so that one that outlives the database, or
// its opening, finds it closed. The engine opens it: its Open makes a connection and gives it to
// Take. `Face` is what it is to others. Thread: the logic's.
template <typename OpenConnection, typename Defs, typename Face = Database>
class EngineDatabase : public Face {
 public:
  ~EngineDatabase() override { EngineDatabase::Close(); }

  void BeginTrans() override { Use().Begin(); }
  void CommitTrans() override { Use().Commit(); }
  void RollbackTrans() override {
    if (connection_) connection_->Rollback();
  }
  bool InTransaction() const override { return connection_ && connection_->InTransaction(); }
  TableDefs& Tables() override { return Use(), *tables_; }
  void Close() override {
    if (!connection_) return;
    counted_ = counter_ + 1;  // another opening is another state, whatever it counts
    foreignCounted_ += connection_->ForeignSeen() + 1;
    connection_->Close();
  }
  bool IsOpen() const override { return connection_ && connection_->IsOpen(); }
  int64_t ChangeCounter() override {
    counter_ = counted_ + Use().ChangeCounter();
    return counter_;
  }
  int64_t ForeignCounter() override {
    ChangeCounter();
    return foreignCounted_ + connection_->ForeignSeen();
  }
  std::shared_ptr<RowNotes> NoteRows(std::string_view table) override {
    return book_->Begin(table);
  }
  int64_t LastInsertCode() const override {
    return connection_ ? connection_->LastInsertCode() : 0;
  }
  LockWait& Waiting() override { return *wait_; }

 protected:
  // `shown` is what an error calls the base.
  EngineDatabase(std::string shown, std::shared_ptr<LockWait> wait)
      : wait_(std::move(wait)), shown_(std::move(shown)) {}

  // The opening from now on; the former one is closed.
  void Take(std::shared_ptr<OpenConnection> fresh) {
    Close();
    connection_ = std::move(fresh);
    connection_->TellRows(book_);
    book_->NoteAll();
    tables_.emplace(*connection_);
  }
  // The last opening, which may be closed again. Throws kErrClosed before the first.
  OpenConnection& Use() const { return *Shared(); }
  // The same for who keeps it, as a cursor does.
  const std::shared_ptr<OpenConnection>& Shared() const {
    if (!connection_) throw StoreError(kErrClosed, shown_ + " is not open");
    return connection_;
  }
  // The same, null before the first.
  const OpenConnection* Opening() const { return connection_.get(); }

  const std::shared_ptr<LockWait> wait_;

 private:
  const std::string shown_;
  std::shared_ptr<OpenConnection> connection_;  // null before the first opening
  std::optional<Defs> tables_;
  int64_t counter_ = 0;  // as last told
  int64_t counted_ = 0;  // in earlier openings
  int64_t foreignCounted_ = 0;
  const std::shared_ptr<RowNoteBook> book_ = std::make_shared<RowNoteBook>();
};

}  // namespace zemo
