#include "engine/HeldKeys.h"

#include "engine/OperatorControls.h"
#include "engine/OverlayButton.h"
#include "engine/StartStop.h"
#include "engine/TickMoment.h"
#include "platform/Desktop.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr int kKeyNumPad0 = 96;
constexpr int kKeySpace = 32;
constexpr float kSpaceLockSec = 2;

void ServeSpaceKey(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (engine.LastSpacePressTimer > at.timer) engine.LastSpacePressTimer = at.timer - 3;
  if (at.timer - engine.LastSpacePressTimer < kSpaceLockSec) return;
  engine.LastSpacePressTimer = at.timer;
  StartStopZemoRadio(station, !engine.IsRunning);
}

void ForgetSilentKey(Station& station) {
  if (station.platform.sound.ChannelDone(kOverlaySlot)) station.engine.OverlayKey.clear();
}

}  // namespace

void ServeKeys(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  ForgetSilentKey(station);
  const Keyboard& keyboard = station.platform.keyboard;
  if (!keyboard.MainScreenActive() || !engine.HotKeysArmed) return;
  if (keyboard.Held(kKeyNumPad0)) OnAir::AskForNext(station);
  if (keyboard.Held(kKeySpace)) ServeSpaceKey(station, at);
  for (const EngineLists::Shortcut& shortcut : station.lists.Touches) {
    const auto key = static_cast<int>(Val(shortcut.Touche));
    if (key <= 0) break;
    if (!keyboard.Held(key + kKeyNumPad0)) continue;
    OnAir::PlayShortcut(station, key);
    break;
  }
}

}  // namespace zemo
