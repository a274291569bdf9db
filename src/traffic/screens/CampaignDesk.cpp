#include "traffic/screens/CampaignDesk.h"

#include <utility>

namespace zemo {

CampaignDesk::CampaignDesk(Station& station, CampaignSources sources)
    : station_(station), sources_(std::move(sources)) {}

// One that was closed is made anew, in the language of the moment.
void CampaignDesk::Open() {
  if (!window_ || !window_->IsOpen())
    window_ = std::make_unique<CampaignWindow>(station_, sources_);
  window_->Open();
}

bool CampaignDesk::Leave() {
  return !window_ || window_->LeaveNow();
}

}  // namespace zemo
