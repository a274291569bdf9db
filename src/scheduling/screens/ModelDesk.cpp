#include "scheduling/screens/ModelDesk.h"

namespace zemo {

ModelDesk::ModelDesk(Station& station, ModelSources sources)
    : station_(station), sources_(sources) {}

// One that was closed is made anew, in the language of the moment.
void ModelDesk::Open() {
  if (!window_ || !window_->IsOpen()) window_ = std::make_unique<ModelWindow>(station_, sources_);
  window_->Open();
}

bool ModelDesk::Leave() {
  return !window_ || window_->LeaveNow();
}

}  // namespace zemo
