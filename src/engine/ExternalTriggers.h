// The outside's hands on the engine: serial automaton, joystick contacts, topage and clipboard
// words.
#pragma once

namespace zemo {

struct Station;

void PollInputs(Station& station);                      // every tick while the port is open
void JoystickButtonDown(Station& station, int button);  // 1 to 4; 0 only recomputes InputsAllowed
void JoystickButtonUp(Station& station, int button);
void SetRelays(Station& station, bool one, bool two, bool three, bool four);
void TraiteTopage(Station& station);  // every stopped tick while topage is pending

}  // namespace zemo
