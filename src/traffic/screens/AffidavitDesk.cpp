#include "traffic/screens/AffidavitDesk.h"

#include <utility>

namespace zemo {

AffidavitDesk::AffidavitDesk(Station& station, AffidavitSources sources)
    : station_(station), sources_(std::move(sources)) {}

// One that was closed is made anew, in the language of the moment.
void AffidavitDesk::Open() {
  if (!window_ || !window_->IsOpen())
    window_ = std::make_unique<AffidavitWindow>(station_, sources_);
  window_->Open();
}

bool AffidavitDesk::Leave() {
  return !window_ || window_->LeaveNow();
}

}  // namespace zemo
