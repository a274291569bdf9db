// Devices of the Pulse server, asked directly: with a short buffer of our own choosing, and told at
// once of a device that sleeps, wakes, moves or is gone.
#pragma once

#include <memory>
#include <vector>

#include "platform/real/sound/OutputDevice.h"
#include "platform/real/sound/SoundDevices.h"

namespace zemo {

std::vector<SoundDevice> PulseDevices();  // none without a server

// Without a name the sound follows the server's default device; with one it waits for that device.
std::unique_ptr<OutputDevice> MakePulseDevice(DeviceWish wish);

}  // namespace zemo
