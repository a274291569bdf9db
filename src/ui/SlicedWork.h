// Work over a whole table in slices between the ticks: the window can be worked in meanwhile.
#pragma once

#include <QTimer>
#include <functional>

namespace zemo {

struct Station;

// Thread: the logic's. The station outlives it.
class SlicedWork {
 public:
  // `slice` does some milliseconds of it and is true when nothing is left, which `done` is told.
  // Where another process has the base it throws StoreError and is called again. A fault ends the
  // work and is logged under `routine`.
  SlicedWork(Station& station, const char* routine, std::function<bool()> slice,
             std::function<void()> done);

  void Begin();  // anew; a slice at once, where the moment is free
  bool AtWork() const { return atWork_; }
  void ToTheEnd();  // yields; for what needs all of it

 private:
  void Turn();
  bool Slice();  // true when no other is to follow

  Station& station_;
  const char* routine_;
  const std::function<bool()> slice_;
  const std::function<void()> done_;
  bool atWork_ = false;
  int lockedTurns_ = 0;
  QTimer timer_;
};

}  // namespace zemo
