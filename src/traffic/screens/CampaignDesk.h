// The window of the campaigns as the program has it. Whoever holds this opens it.
#pragma once

#include <memory>

#include "traffic/screens/CampaignWindow.h"

namespace zemo {

// Thread: the logic's. The station outlives it; it outlives the loop in which its window works.
class CampaignDesk {
 public:
  CampaignDesk(Station& station, CampaignSources sources);

  void Open();  // as the menu does; brings it forward where it is open
  // Ahead of the station's end: the window is left. False while a routine works, at whose end it
  // closes.
  bool Leave();
  CampaignWindow* Window() { return window_.get(); }  // null before the first opening

 private:
  Station& station_;
  CampaignSources sources_;
  std::unique_ptr<CampaignWindow> window_;
};

}  // namespace zemo
