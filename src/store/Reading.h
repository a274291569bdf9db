// A base, or an opening of one, as it is at one moment, for who reads several things of it.
#pragma once

namespace zemo {

// Others may write meanwhile as far as their engine lets them. `Base` is a Database or one of the
// engines' connections. Throws StoreError at the begin only. Not inside a transaction.
template <typename Base>
class Reading {
 public:
  explicit Reading(Base& base) : base_(base) { base_.BeginReading(); }
  ~Reading() {
    if constexpr (requires { base_.RollbackTrans(); })
      base_.RollbackTrans();
    else
      base_.Rollback();
  }
  Reading(const Reading&) = delete;
  Reading& operator=(const Reading&) = delete;

 private:
  Base& base_;
};

}  // namespace zemo
