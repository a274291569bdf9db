// The window of the affidavit as the program has it. Whoever holds this opens it.
#pragma once

#include <memory>

#include "traffic/screens/AffidavitWindow.h"

namespace zemo {

// Thread: the logic's. The station outlives it; it outlives the loop in which its window works.
class AffidavitDesk {
 public:
  AffidavitDesk(Station& station, AffidavitSources sources);

  void Open();  // brings it forward where it is open
  // Ahead of the station's end: the window is left. False while a routine works, at whose end it
  // closes.
  bool Leave();
  AffidavitWindow* Window() { return window_.get(); }  // null before the first opening

 private:
  Station& station_;
  AffidavitSources sources_;
  std::unique_ptr<AffidavitWindow> window_;
};

}  // namespace zemo
