// Fills the list of the music between the ticks: the window can be worked in meanwhile.
#pragma once

#include <functional>
#include <memory>

#include "library/MusicListFill.h"
#include "ui/SlicedWork.h"

namespace zemo {

struct Station;

// Thread: the logic's. Station and list outlive it.
class MusicListFiller {
 public:
  // `filled` is called when the list has its new rows.
  MusicListFiller(Station& station, CardList& list, std::function<void()> filled);

  void Begin();  // anew; a slice at once
  bool AtWork() const { return work_.AtWork(); }
  void ToTheEnd() { work_.ToTheEnd(); }  // yields; for what needs the whole list

 private:
  Station& station_;
  CardList& list_;
  std::unique_ptr<MusicListFill> fill_;
  SlicedWork work_;
};

}  // namespace zemo
