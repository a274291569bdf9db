// The four buttons of the joystick: a held button is a held contact.
#include "engine/ExternalTriggers.h"
#include "engine/StartStop.h"
#include "engine/TakeOvers.h"
#include "platform/EventLoop.h"
#include "station/Station.h"

namespace zemo {

namespace {

bool LocalProgrammeSet(Station& station) {
  return station.base.CnfInt(Cnf::kEntreSat) == 3;
}

// Button 1 obeys no exclusion.
void Press(Station& station, int button) {
  const EngineState& engine = station.engine;
  switch (button) {
    case 1:
      if (!engine.IsRunning) StartStopZemoRadio(station, true);
      break;
    case 2:
      if (engine.InputsAllowed && !engine.SatelliteTaking) BeginSatellite(station);
      break;
    case 3:
      if (engine.InputsAllowed && LocalProgrammeSet(station) && !engine.LocalProgrammeOn)
        BeginLocalProgramme(station);
      break;
    case 4:
      if (engine.InputsAllowed) StartPulse(station);
      break;
    default:
      break;
  }
}

void LetGo(Station& station, int button) {
  EngineState& engine = station.engine;
  switch (button) {
    case 1:
      if (!engine.IsRunning) return;
      StartStopZemoRadio(station, false);
      engine.NextRequested = true;
      station.platform.loop.Yield();
      break;
    case 2:
      if (!engine.SatelliteTaking) return;
      EndSatellite(station);
      engine.NextRequested = true;
      break;
    case 3:
      if (LocalProgrammeSet(station) && engine.LocalProgrammeOn) EndLocalProgramme(station);
      break;
    default:
      break;
  }
}

}  // namespace

void JoystickButtonDown(Station& station, int button) {
  if (!station.engine.JoystickInUse) return;
  try {
    station.base.CheckCnf();
    if (button != 0) station.engine.joystickLamp = static_cast<JoystickLamp>(button);
    ComputeInputsAllowed(station);
    Press(station, button);
  } catch (const std::exception&) {
    LogCurrentException(station, "JoystickButtonDown");
  }
}

void JoystickButtonUp(Station& station, int button) {
  try {
    station.base.CheckCnf();
    station.engine.joystickLamp = JoystickLamp::kDark;
    LetGo(station, button);
  } catch (const std::exception&) {
    LogCurrentException(station, "JoystickButtonUp");
  }
}

}  // namespace zemo
