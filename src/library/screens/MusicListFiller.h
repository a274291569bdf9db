// Fills the list of the music between the ticks: the window can be worked in meanwhile.
#pragma once

#include <QTimer>
#include <functional>
#include <memory>

#include "library/MusicListFill.h"

namespace zemo {

struct Station;

// Thread: the logic's. Station and list outlive it.
class MusicListFiller {
 public:
  // `filled` is called when the list has its new rows.
  MusicListFiller(Station& station, CardList& list, std::function<void()> filled);

  void Begin();  // anew; a slice at once
  bool AtWork() const { return fill_ != nullptr; }
  void ToTheEnd();  // yields; for what needs the whole list

 private:
  void Turn();
  bool Slice();  // true when no other is to follow

  Station& station_;
  CardList& list_;
  const std::function<void()> filled_;
  std::unique_ptr<MusicListFill> fill_;
  int lockedTurns_ = 0;
  QTimer timer_;
};

}  // namespace zemo
