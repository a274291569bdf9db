#include "engine/ExternalTriggers.h"

#include "station/Station.h"

namespace zemo {

// No input is wired yet.
void PollInputs(Station&) {}
void JoystickButtonDown(Station&, int) {}
void JoystickButtonUp(Station&, int) {}
void SetRelays(Station&, bool, bool, bool, bool) {}
void TraiteTopage(Station&) {}

}  // namespace zemo
