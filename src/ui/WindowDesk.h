// A window of the office as the program has it: one, made anew for each opening. Whoever holds this
// opens it.
#pragma once

#include <memory>
#include <utility>

namespace zemo {

struct Station;

// `DeskWindow` is made of the station and a copy of the sources, and opened, asked and left as the
// others beside the air are. Thread: the logic's. The station outlives it; it outlives the loop in
// which its window works.
template <typename DeskWindow, typename Sources>
class WindowDesk {
 public:
  WindowDesk(Station& station, Sources sources) : station_(station), sources_(std::move(sources)) {}

  // As the menu does; brings it forward where it is open. One that was closed is made anew, in the
  // language of the moment.
  void Open() {
    if (!window_ || !window_->IsOpen()) window_ = std::make_unique<DeskWindow>(station_, sources_);
    window_->Open();
  }
  // Ahead of the station's end: the window is left, and saves what it saves when it is closed.
  // False while it may not be left: while a routine works, it closes at that one's end.
  bool Leave() { return !window_ || window_->LeaveNow(); }

  DeskWindow* Window() { return window_.get(); }  // null before the first opening

 private:
  Station& station_;
  Sources sources_;
  std::unique_ptr<DeskWindow> window_;
};

}  // namespace zemo
