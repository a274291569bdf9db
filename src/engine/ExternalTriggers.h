// The outside's hands on the engine: serial automaton, joystick contacts, topage and clipboard
// words. Each routine is one error boundary and never throws. Thread: the logic's.
#pragma once

namespace zemo {

struct Station;

// The automaton's contacts are read and served; every tick while the port is open.
void PollInputs(Station& station);
// Outputs 1 to 4 of the automaton, on or off.
void SetRelays(Station& station, bool one, bool two, bool three, bool four);

// Events of the joystick, buttons 1 to 4; pressed as "button 0" it only recomputes InputsAllowed.
void JoystickButtonDown(Station& station, int button);
void JoystickButtonUp(Station& station, int button);

// Every stopped tick while topage is pending: a neighbour hands the air back.
void AwaitHandBack(Station& station);

}  // namespace zemo
