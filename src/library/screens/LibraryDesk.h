// The windows of the library as the program has them: one of the library, one selector for all
// windows. Whoever holds this opens them.
#pragma once

#include <memory>
#include <string>

#include "library/screens/LibraryWindow.h"
#include "library/screens/SelectorDialog.h"

namespace zemo {

// Thread: the logic's. The station outlives it; it outlives the loop in which its windows work.
class LibraryDesk {
 public:
  // What the sources choose files by is the desk's own.
  LibraryDesk(Station& station, LibrarySources sources);

  void Open();                    // as the menu does; brings it forward where it is open
  void OpenOnCard(int32_t code);  // of the music
  void OpenSelector(QWidget& over, const std::string& storedPath);  // to listen

  // Ahead of the station's end: what is open is left, the hour pips saved. False while a routine
  // works, at whose end the window closes.
  bool Leave();

  LibraryWindow* Window() { return window_.get(); }  // null before the first opening
  SelectorDialog& Selector() { return selector_; }

 private:
  LibraryWindow& Ready();  // one that was closed is made anew, in the language of the moment

  Station& station_;
  LibrarySources sources_;
  SelectorDialog selector_;
  std::unique_ptr<LibraryWindow> window_;
};

}  // namespace zemo
