#include "engine/ElementOnAir.h"

#include <cmath>

#include "engine/TickMoment.h"
#include "station/Overlay.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

void ReadElementOnAir(Station& station) {
  EngineState& engine = station.engine;
  MainScreen& screen = station.screen;
  const SoundChain& sound = station.platform.sound;
  engine.CurrentChannel = sound.ChannelDone(0) ? 1 : 0;
  engine.NextChannel = 1 - engine.CurrentChannel;
  engine.ElementPositionMs = sound.Position(engine.CurrentChannel);
  engine.RemainingMs = static_cast<int32_t>(engine.BufferOffsetSec * 1000) +
                       engine.ElementLengthMs - engine.ElementPositionMs;
  screen.Temp = FormatDuration(engine.RemainingMs);
  screen.Tmn = engine.RemainingMs / 1000 / 60;
  screen.Tss = engine.RemainingMs / 1000 % 60;
}

void ServeExtractEnd(Station& station) {
  EngineState& engine = station.engine;
  if (!engine.CheckExtrait || engine.ExtractEndMs < 1 ||
      engine.ElementPositionMs < engine.ExtractEndMs)
    return;
  engine.NextRequested = true;
  station.screen.LblFeu.visible = false;
}

void ShowProgress(Station& station) {
  EngineState& engine = station.engine;
  MainScreen& screen = station.screen;
  if (engine.ElementLengthMs <= 0) return;
  engine.ProgressPercent =
      static_cast<int32_t>(int64_t{engine.ElementPositionMs} * 100 / engine.ElementLengthMs);
  screen.VuMettrePercent = engine.ElementPositionMs < 5000 ? 0 : engine.ProgressPercent;
  screen.LblEncours = ClockText(station.Sound().OutputPosition());
}

void CountIntro(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  MainScreen& screen = station.screen;
  if (engine.IntroLengthSec > 0) {
    const auto elapsed = static_cast<int32_t>(std::floor(at.timer - engine.IntroStartTimer));
    screen.VueIntro.elapsedSec = elapsed;
    if (elapsed >= engine.IntroLengthSec) {
      engine.IntroLengthSec = 0;
      screen.VueIntro.visible = false;
    }
  }
  if (screen.LblInfoScrolling && engine.ProgressPercent > 30) {
    screen.LblInfoScrolling = false;
    screen.LblInfo = "ZEMO RADIO PRO";
  }
}

void ServeIntroOverlay(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (!engine.IntroOverlayPending) return;
  SoundChain& sound = station.Sound();
  station.screen.LblIntro.visible = at.now.second % 2 == 0;
  const float leftSec =
      static_cast<float>(engine.IntroLengthSec) - (at.timer - engine.IntroArmedTimer) -
      static_cast<float>(sound.Length(kOverlaySlot)) / 1000 - engine.BufferOffsetSec - 1;
  if (leftSec > 0 && !GuardIsAhead(at.timer, engine.IntroArmedTimer)) return;
  engine.IntroOverlayPending = false;
  station.screen.LblIntro.visible = false;
  if (sound.FileName(kOverlaySlot).empty()) return;  // a stop or an output restart freed it
  StartOverlay(station, "jingle");
}

}  // namespace zemo
