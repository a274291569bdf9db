// The window of the report as the program has it. Whoever holds this opens it.
#pragma once

#include <memory>

#include "reports/screens/ReportWindow.h"

namespace zemo {

// Thread: the logic's. The station outlives it; it outlives the loop in which its window works.
class ReportDesk {
 public:
  ReportDesk(Station& station, ReportSources sources);

  void Open();  // as the menu does; brings it forward where it is open
  // Ahead of the station's end: the window is left. False while a routine works, at whose end it
  // closes.
  bool Leave();
  ReportWindow* Window() { return window_.get(); }  // null before the first opening

 private:
  Station& station_;
  ReportSources sources_;
  std::unique_ptr<ReportWindow> window_;
};

}  // namespace zemo
