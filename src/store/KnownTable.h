// A table of the base in memory: when what is kept of it is what the base holds now. It is read in
// slices, each short enough to stand between two ticks; those from its first row to its last are a
// pass.
//
// It is true by three signs, all looked at whenever it is asked for:
//   own writes      the store notes the rows; they are read again first;
//   others' writes  ForeignCounter moved: nothing is known until another pass has looked at the
//                   whole table. It counts where the counter stands at its end as it stood at its
//                   begin;
//   the structure   only a table that is read as it stands is kept; of any other nothing is known.
//                   Who changes it counts as another program, or the store notes all rows.
// Whoever is told that nothing is known asks the base, or reads on. While another process has the
// file to himself the counter cannot be read, and what was known is: he has not committed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>

#include "store/Database.h"
#include "store/RowNotes.h"

namespace zemo {

// Thread: the logic's.
class KnownTable {
 public:
  static constexpr int64_t kBelowAll = std::numeric_limits<int64_t>::min();  // CODEs
  static constexpr int64_t kAboveAll = std::numeric_limits<int64_t>::max();

  virtual ~KnownTable() = default;

  enum class State {
    kKnown,      // what is kept is what the base holds in this moment
    kBeingRead,  // it will be, once ReadSlice has nothing more to read
    kUnknown,    // the base alone can tell, or cannot be read
  };
  // Reads no more than one slice and waits for no lock. Throws nothing.
  State Look(Database& db);
  // Reads on where something is not known; true: something is left to be read. Throws StoreError;
  // what was read stays, and it can be called again.
  bool ReadSlice(Database& db);
  // The same for who only reads ahead: waits for no lock and throws nothing, since who asks is
  // told.
  bool ReadAhead(Database& db);
  bool WasRead() const { return readOnce_; }      // once at least
  int64_t ReadUpTo() const { return lastCode_; }  // CODE, of the pass under way

 protected:
  // CODEs above `from` up to `to`.
  struct Range {
    int64_t from, to;
  };
  // Of the rows that this program wrote so many are read again by who asks, and in a slice.
  struct OwnRows {
    size_t atOnce, aSlice;
  };
  KnownTable(const char* table, OwnRows own) : table_(table), own_(own) {}

  // These throw StoreError.
  void CheckSigns(Database& db);  // begins a pass where one of them says so
  void StartOver(Database& db);
  bool OthersWrote(Database& db) const { return db.ForeignCounter() != foreign_; }
  // Database::ReadPages, on from `lastCode_`.
  bool ReadPages(Database& db, const Database::TakePage& take) const {
    return db.ReadPages(table_, lastCode_, take);
  }
  void EndSlice(int64_t lastCode);  // of the pass

  // What begins with a pass; `keepable`: the table is read as it stands. The notes still tell
  // whether all rows may be others. A fault leaves what is known as it was.
  virtual void BeginPass(Database& db, bool keepable) = 0;
  // A slice of the pass: up to its EndSlice, or to StartOver.
  virtual void ReadOn(Database& db) = 0;
  // Up to `most` of the rows that this program wrote. What cannot be read stays noted.
  virtual void ReadAgain(Database& db, size_t most) = 0;

  std::shared_ptr<RowNotes> notes_;  // null before the first look
  bool keepable_ = false;            // as BeginPass was told, and as its rows turned out
  bool whole_ = false;               // the pass is at its end
  bool readOnce_ = false;
  int64_t lastCode_ = kBelowAll;  // the pass has read up to it

 private:
  void ReadOwn(Database& db, size_t most);

  const char* const table_;
  const OwnRows own_;
  int64_t foreign_ = -1;  // ForeignCounter at the begin of the pass; none before the first
};

}  // namespace zemo
