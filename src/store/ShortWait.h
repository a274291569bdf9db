// Within its scope the base answers "locked" soon instead of waiting its whole time-out: for work
// on which a transition may wait.
#pragma once

#include <algorithm>

#include "store/StationBase.h"

namespace zemo {

// Thread: the logic's. Does nothing while the base is closed.
class ShortWait {
 public:
  static constexpr int kShortWaitMs = 100;

  explicit ShortWait(StationBase& base, int waitMs = kShortWaitMs) : base_(base) {
    if (!base_.IsOpen()) return;
    formerMs_ = base_.Db().BusyTimeoutMs();
    base_.Db().SetBusyTimeoutMs(std::min(formerMs_, waitMs));
  }
  ~ShortWait() {
    if (formerMs_ >= 0 && base_.IsOpen()) base_.Db().SetBusyTimeoutMs(formerMs_);
  }
  ShortWait(const ShortWait&) = delete;

 private:
  StationBase& base_;
  int formerMs_ = -1;  // -1: nothing to restore
};

}  // namespace zemo
