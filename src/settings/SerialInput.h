// The automaton's port: what the option `PortCom` does, at the first activation and on the settings
// screen.
#pragma once

#include <string>

namespace zemo {

struct Station;

// Line parameters that the box `Setting` begins with: the machine's value PortComSetting, else
// "4800,N,8,1".
std::string LineSetting(const Station& station);

namespace Settings {

// Option 1 to 4 opens that port with those line parameters, unless one is open already; option 0
// closes it. SerialInputOpen follows. The text for `InfoERR`, "" where nothing was done; a port
// that cannot be opened is logged besides. Never throws. Thread: the logic's.
std::string PortCom_Click(Station& station, int option, const std::string& setting);

}  // namespace Settings

// Port 1 and up: the joystick there is heard from now on, also one that is plugged in later; 0:
// none. JoystickInUse and LedJoystique follow. True when one answers. Thread: the logic's.
bool UseJoystick(Station& station, int port);

}  // namespace zemo
