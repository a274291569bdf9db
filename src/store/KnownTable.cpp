#include "store/KnownTable.h"

#include "store/LockWait.h"
#include "store/StoreError.h"

namespace zemo {

void KnownTable::CheckSigns(Database& db) {
  if (!notes_) {
    notes_ = db.NoteRows(table_);
    notes_->Clear();  // of what an earlier run knew the pages alone tell
  }
  if (notes_->All() || OthersWrote(db) || (!keepable_ && notes_->Count() > 0)) StartOver(db);
}

void KnownTable::StartOver(Database& db) {
  const int64_t foreign = db.ForeignCounter();
  const bool keepable = db.IsReadAsStored(table_);
  BeginPass(db, keepable);
  keepable_ = keepable;
  foreign_ = foreign;
  notes_->Clear();  // a written row's page has another mark, or none
  whole_ = false;
  lastCode_ = kBelowAll;
}

KnownTable::State KnownTable::Look(Database& db) {
  if (db.InTransaction()) return State::kUnknown;  // what is read now may be taken back
  const NoLockWait atOnce(db.Waiting());
  try {
    CheckSigns(db);
    if (!keepable_) return State::kUnknown;
    if (!whole_) ReadOn(db);
    if (whole_ && notes_->Count() > own_.atOnce) return State::kBeingRead;
    if (whole_) ReadOwn(db, own_.atOnce);
  } catch (const StoreError&) {
    return State::kUnknown;
  }
  return whole_ ? State::kKnown : State::kBeingRead;
}

bool KnownTable::ReadSlice(Database& db) {
  if (db.InTransaction()) return false;
  CheckSigns(db);
  if (!keepable_) return false;
  if (!whole_)
    ReadOn(db);
  else
    ReadOwn(db, own_.aSlice);
  return keepable_ && (!whole_ || notes_->All() || notes_->Count() > 0);
}

bool KnownTable::ReadAhead(Database& db) {
  const NoLockWait atOnce(db.Waiting());
  try {
    return ReadSlice(db);
  } catch (const StoreError&) {
    return false;
  }
}

void KnownTable::ReadOwn(Database& db, size_t most) {
  if (notes_->Count() == 0) return;
  ReadAgain(db, most);
  if (notes_->All() || OthersWrote(db)) StartOver(db);
}

void KnownTable::EndSlice(int64_t lastCode) {
  lastCode_ = lastCode;
  if (lastCode_ == kAboveAll) whole_ = readOnce_ = true;
}

}  // namespace zemo
