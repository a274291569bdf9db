// The wait pointer over a piece of work, on whatever way that ends.
#pragma once

#include "station/ScreenNotices.h"

namespace zemo {

class WaitPointer {
 public:
  explicit WaitPointer(ScreenNotices& notices) : notices_(notices), former_(notices.hourglass) {
    notices_.hourglass = true;
  }
  ~WaitPointer() { notices_.hourglass = former_; }
  WaitPointer(const WaitPointer&) = delete;

 private:
  ScreenNotices& notices_;
  const bool former_;
};

}  // namespace zemo
