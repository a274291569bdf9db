// The settings' window as the program has it: one, made anew for each opening. Whoever holds this
// opens it.
#pragma once

#include <memory>

#include "settings/screens/SettingsWindow.h"

namespace zemo {

// Thread: the logic's. The station outlives it; it outlives the loop in which its window works.
class SettingsDesk {
 public:
  SettingsDesk(Station& station, SettingsSources sources);

  void Open();   // as the menu does; brings it forward where it is open
  bool Leave();  // ahead of the station's end: saves; false while the base is worked on

  SettingsWindow* Window() { return window_.get(); }  // null before the first opening

 private:
  Station& station_;
  SettingsSources sources_;
  std::unique_ptr<SettingsWindow> window_;
};

}  // namespace zemo
