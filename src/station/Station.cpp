#include "station/Station.h"

#include "platform/Folder.h"
#include "station/BasePlaces.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

const char* ReasonWord(SlotEnd reason) {
  switch (reason) {
    case SlotEnd::kFile:
      return "file";
    case SlotEnd::kFade:
      return "fade";
    case SlotEnd::kStopped:
      return "stopped";
    case SlotEnd::kRestart:
      return "restart";
  }
  return "stopped";
}
}  // namespace

Station::Station(const Platform& given, std::optional<BasePlace> place)
    : platform(given), base(place ? *std::move(place) : PlaceOfBase(given.stationFolder)) {
  platform.sound.SetObserver(this);
  engine.observer = this;
}

Station::~Station() {
  engine.observer = nullptr;
  platform.sound.SetObserver(nullptr);
}

LocalDateTime Station::Now() const {
  return platform.clock.LocalNow();
}

float Station::Timer() const {
  return SecondsSinceMidnight(Now());
}

void Station::WatchSilence() {
  bool silent = engine.IsRunning;
  for (int slot = 0; slot < kSlots && silent; ++slot) silent = !platform.sound.Sounds(slot);
  if (silent == silent_) return;
  silent_ = silent;
  events.Silence(silent ? "begin" : "end");
}

void Station::OnSlotEnd(int slot, SlotEnd reason) {
  events.End(slot, ReasonWord(reason));
  WatchSilence();
}

void Station::OnFade(int slot, int ms) {
  events.Fade(slot, ms);
}

void Station::OnVolume(int slot, int from, int to) {
  events.Volume(slot, from, to);
}

void Station::OnOutput(const char* state) {
  events.Output(state);
}

void Station::OnFlag(const char* name, double value, bool boolean) {
  events.Flag(name, value, boolean);
}

MainTimerHold::MainTimerHold(Station& station) : station_(station) {
  if (station_.engine.mainTimerHolds++ == 0 && station_.engine.MainTimer)
    station_.engine.MainTimer->SetEnabled(false);
}

MainTimerHold::~MainTimerHold() {
  if (--station_.engine.mainTimerHolds == 0 && station_.engine.MainTimer)
    station_.engine.MainTimer->SetEnabled(true);
}

}  // namespace zemo
