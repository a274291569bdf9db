#include "app/BackgroundMeasuring.h"

#include <memory>

#include "engine/FreeMoment.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "station/Station.h"

namespace zemo {

namespace {
constexpr int kTurnMs = 200;
constexpr int kRestMs = 2000;  // while there is nothing to measure
}  // namespace

BackgroundMeasuring::BackgroundMeasuring(Station& station)
    : station_(station),
      thread_(std::make_unique<SoundFileOpener>()),
      cards_(station, thread_),
      timer_(station.platform.loop, [this] { Turn(); }) {
  timer_.SetInterval(kTurnMs);
}

void BackgroundMeasuring::Add(int32_t code, const std::string& file) {
  cards_.Add(code, file);
  timer_.SetInterval(kTurnMs);
}

void BackgroundMeasuring::Turn() {
  if (IsFreeMoment(station_)) timer_.SetInterval(cards_.Turn() ? kTurnMs : kRestMs);
}

}  // namespace zemo
