// A new station on the virtual clock with the windows that the program has over it: the main screen
// and those of the office, which its menus open. Sounds are only lengths.
#pragma once

#include <memory>
#include <string>

#include "engine/screens/OnAirWindow.h"
#include "library/screens/LibraryDesk.h"
#include "platform/sim/SimDevices.h"
#include "reports/screens/ReportDesk.h"
#include "scheduling/screens/ModelDesk.h"
#include "settings/screens/SettingsDesk.h"
#include "support/ReadAtOnce.h"
#include "support/TestStation.h"
#include "traffic/screens/AffidavitDesk.h"
#include "traffic/screens/CampaignDesk.h"

namespace zemo::test {

// Thread: the screen's.
class StationWithWindows {
 public:
  // The station as `new` makes it; "YYYY-MM-DD hh:mm:ss".
  explicit StationWithWindows(const std::string& begin);
  ~StationWithWindows();
  StationWithWindows(const StationWithWindows&) = delete;

  void OpenMainScreen();
  // Up to that time since the begin; the windows have their turns meanwhile.
  void Run(int64_t untilMs);
  // A sound file beside the station's folder; its stored path.
  std::string MakeSound(const std::string& name, int64_t lengthMs) {
    return on.MakeSound(name, lengthMs);
  }
  std::string Path(const std::string& name) const { return home_.Path() + "/" + name; }

 private:
  TempFolder home_;

 public:
  TestStation on;
  ReadAtOnce importFiles{on.opener, on.soundFiles};

 private:
  SimDevices devices_{&on.prelisten};
  LibraryDesk library_;
  CampaignDesk campaigns_;
  ModelDesk models_;
  AffidavitDesk affidavit_;
  ReportDesk report_;
  SettingsDesk settings_;
  std::unique_ptr<OnAirWindow> main_;
};

}  // namespace zemo::test
