// Devices and inputs of JACK and of ALSA, by RtAudio.
#pragma once

#include <memory>
#include <vector>

#include "platform/real/sound/InputDevice.h"
#include "platform/real/sound/OutputDevice.h"
#include "platform/real/sound/SoundDevices.h"

namespace zemo {

enum class RtAudioSystem { kJack, kAlsa };

// A sound system that does not run has no devices.
std::vector<SoundDevice> RtAudioDevices(RtAudioSystem system);
bool AnyRtAudioDevice(RtAudioSystem system);
std::unique_ptr<OutputDevice> MakeRtAudioDevice(RtAudioSystem system, DeviceWish wish);

std::vector<SoundDevice> RtAudioInputs(RtAudioSystem system);
std::unique_ptr<InputDevice> MakeRtAudioInput(RtAudioSystem system, DeviceWish wish);

}  // namespace zemo
