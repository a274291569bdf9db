#include "app/BackgroundMeasuring.h"

#include "engine/FreeMoment.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "station/Station.h"

namespace zemo {

namespace {
constexpr int kTurnMs = 200;
}

BackgroundMeasuring::BackgroundMeasuring(Station& station)
    : thread_(std::make_unique<SoundFileOpener>()),
      cards_(station, thread_),
      timer_(station.platform.loop.MakeTimer(kTurnMs, [this, &station] {
        if (IsFreeMoment(station)) cards_.Turn();
      })) {
  timer_->SetEnabled(true);
}

}  // namespace zemo
