// A transaction of which either all is stored or nothing.
#pragma once

#include "store/Database.h"

namespace zemo {

// Begins now; what is not committed at the end of the scope is undone. Not inside another
// transaction, which would be undone with it. Keep no yield in its scope: the file is locked for
// writing meanwhile. Thread: the logic's. Throws StoreError.
class WholeTransaction {
 public:
  explicit WholeTransaction(Database& database) : database_(database) { database_.BeginTrans(); }
  ~WholeTransaction() {
    if (!ended_) database_.RollbackTrans();
  }
  WholeTransaction(const WholeTransaction&) = delete;
  WholeTransaction& operator=(const WholeTransaction&) = delete;

  void Commit() {
    ended_ = true;  // what cannot be committed is undone there
    database_.CommitTrans();
  }

 private:
  Database& database_;
  bool ended_ = false;
};

}  // namespace zemo
