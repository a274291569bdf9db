#include "app/BackgroundMeasuring.h"

#include "engine/FreeMoment.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "station/Station.h"

namespace zemo {

namespace {
constexpr int kTurnMs = 200;
constexpr int kRestMs = 2000;  // while there is nothing to measure
}  // namespace

BackgroundMeasuring::BackgroundMeasuring(Station& station)
    : station_(station), thread_(std::make_unique<SoundFileOpener>()), cards_(station, thread_) {
  TurnEvery(kTurnMs);
}

void BackgroundMeasuring::Add(int32_t code, const std::string& file) {
  cards_.Add(code, file);
  TurnEvery(kTurnMs);
}

void BackgroundMeasuring::TurnEvery(int ms) {
  if (ms == everyMs_) return;
  everyMs_ = ms;
  timer_ = station_.platform.loop.MakeTimer(ms, [this] { Turn(); });
  timer_->SetEnabled(true);
}

void BackgroundMeasuring::Turn() {
  if (IsFreeMoment(station_)) TurnEvery(cards_.Turn() ? kTurnMs : kRestMs);
}

}  // namespace zemo
