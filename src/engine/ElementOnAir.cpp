#include "engine/ElementOnAir.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "engine/MainTick.h"
#include "engine/TickMoment.h"
#include "station/Overlay.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {
// The last look before the element fell silent stands: one that nothing follows in time is late.
void NoteExitPoint(Station& station) {
  EngineState& engine = station.engine;
  if (!engine.IsRunning || !station.platform.sound.Sounds(engine.CurrentChannel)) return;
  engine.lateStarts.dueMs = station.platform.clock.MonotonicMs() +
                            static_cast<int64_t>(std::ceil(MsToExitPoint(station)));
}
}  // namespace

void ReadElementOnAir(Station& station) {
  EngineState& engine = station.engine;
  const SoundChain& sound = station.platform.sound;
  engine.CurrentChannel = sound.ChannelDone(0) ? 1 : 0;
  engine.NextChannel = 1 - engine.CurrentChannel;
  engine.ElementPositionMs = sound.Position(engine.CurrentChannel);
  engine.RemainingMs = static_cast<int32_t>(engine.BufferOffsetSec * 1000) +
                       engine.ElementLengthMs - engine.ElementPositionMs;
  NoteExitPoint(station);
}

void CountLateStart(Station& station) {
  EngineState& engine = station.engine;
  const std::optional<int64_t> dueMs = std::exchange(engine.lateStarts.dueMs, std::nullopt);
  if (!dueMs || engine.NextRequested) return;
  const int64_t lateMs = station.platform.clock.MonotonicMs() - *dueMs;
  engine.lateStarts.Count(static_cast<double>(std::max<int64_t>(lateMs, 0)) / 1000);
}

void ServeExtractEnd(Station& station) {
  EngineState& engine = station.engine;
  if (!engine.CheckExtrait || engine.ExtractEndMs < 1 ||
      engine.ElementPositionMs < engine.ExtractEndMs)
    return;
  engine.NextRequested = true;
}

void CountProgress(Station& station) {
  EngineState& engine = station.engine;
  if (engine.ElementLengthMs <= 0) return;
  engine.ProgressPercent =
      static_cast<int32_t>(int64_t{engine.ElementPositionMs} * 100 / engine.ElementLengthMs);
}

int32_t IntroElapsedSec(const EngineState& engine, float timer) {
  return static_cast<int32_t>(std::floor(timer - engine.IntroStartTimer));
}

void CountIntro(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (engine.IntroLengthSec > 0 && IntroElapsedSec(engine, at.timer) >= engine.IntroLengthSec)
    engine.IntroLengthSec = 0;
  if (engine.ProgressPercent > 30) station.notices.ticker.clear();
}

void ServeIntroOverlay(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (!engine.IntroOverlayPending) return;
  SoundChain& sound = station.Sound();
  const float leftSec =
      static_cast<float>(engine.IntroLengthSec) - (at.timer - engine.IntroArmedTimer) -
      static_cast<float>(sound.Length(kOverlaySlot)) / 1000 - engine.BufferOffsetSec - 1;
  if (leftSec > 0 && !GuardIsAhead(at.timer, engine.IntroArmedTimer)) return;
  engine.IntroOverlayPending = false;
  if (sound.FileName(kOverlaySlot).empty()) return;  // a stop or an output restart freed it
  StartOverlay(station, "jingle");
}

}  // namespace zemo
