#include "voicetrack/screens/VoiceTrackDesk.h"

namespace zemo {

VoiceTrackDesk::VoiceTrackDesk(Station& station, VoiceTrackSources sources)
    : station_(station), sources_(sources) {}

VoiceTrackDesk::~VoiceTrackDesk() {
  delete window_;
}

// One that was closed is made anew, in the language of the moment.
void VoiceTrackDesk::Open(QWidget& over, int64_t key) {
  if (!window_ || !window_->IsOpen()) {
    delete window_;
    window_ = new VoiceTrackWindow(station_, sources_, over);
  }
  window_->Open(key);
}

bool VoiceTrackDesk::Leave() {
  return !window_ || window_->LeaveNow();
}

}  // namespace zemo
