#include "settings/screens/SettingsDesk.h"

#include <utility>

namespace zemo {

SettingsDesk::SettingsDesk(Station& station, SettingsSources sources)
    : station_(station), sources_(std::move(sources)) {}

void SettingsDesk::Open() {
  if (!window_ || !window_->IsOpen())
    window_ = std::make_unique<SettingsWindow>(station_, sources_);
  window_->Open();
}

bool SettingsDesk::Leave() {
  return !window_ || window_->LeaveNow();
}

}  // namespace zemo
