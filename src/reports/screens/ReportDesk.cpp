#include "reports/screens/ReportDesk.h"

#include <utility>

namespace zemo {

ReportDesk::ReportDesk(Station& station, ReportSources sources)
    : station_(station), sources_(std::move(sources)) {}

// One that was closed is made anew, in the language of the moment.
void ReportDesk::Open() {
  if (!window_ || !window_->IsOpen()) window_ = std::make_unique<ReportWindow>(station_, sources_);
  window_->Open();
}

bool ReportDesk::Leave() {
  return !window_ || window_->LeaveNow();
}

}  // namespace zemo
