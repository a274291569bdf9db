// Inputs of the Pulse server, asked directly.
#pragma once

#include <memory>
#include <vector>

#include "platform/real/sound/InputDevice.h"
#include "platform/real/sound/SoundDevices.h"

namespace zemo {

// None without a server. What is played on an output can be recorded, too: those come last.
std::vector<SoundDevice> PulseInputs();

// Waits for the device of that name and is given no other one in its place; without a name it is
// the server's default.
std::unique_ptr<InputDevice> MakePulseInput(DeviceWish wish);

}  // namespace zemo
