// The wait pointer over a piece of work, on whatever way that ends.
#pragma once

#include "station/MainScreen.h"

namespace zemo {

class WaitPointer {
 public:
  explicit WaitPointer(MainScreen& screen) : screen_(screen), former_(screen.hourglass) {
    screen_.hourglass = true;
  }
  ~WaitPointer() { screen_.hourglass = former_; }
  WaitPointer(const WaitPointer&) = delete;

 private:
  MainScreen& screen_;
  const bool former_;
};

}  // namespace zemo
