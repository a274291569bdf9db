// The devices and inputs of this machine, whichever sound system has them. The systems stand in one
// order everywhere: JACK, which somebody started on purpose; the Pulse server (PulseAudio, or
// PipeWire in its place); ALSA.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/real/sound/InputDevice.h"
#include "platform/real/sound/OutputDevice.h"

namespace zemo {

struct SoundDevice {
  std::string name;        // for people; two devices may have the same
  std::string key;         // what its system knows it by: the same each time that it is plugged in
  std::string system;      // "JACK", "PulseAudio" or "ALSA"
  std::vector<int> rates;  // frames a second that it takes as they are; others are converted
  int channels = 0;
  bool isDefault = false;  // of its system
};

// A device that is asked for. `name` is a key or a name, in any case; where it need not be whole, a
// part of either will do. Empty: the default device. The sound systems show what prelistens apart
// from the air, and keep its volume apart.
struct DeviceWish {
  std::string name;
  bool whole = false;
  bool prelistens = false;
};

// The one that the wish means, -1 for none: a key before a name, both before a part.
int FindSoundDevice(const std::vector<SoundDevice>& devices, const DeviceWish& wish);

// All that can play, in the order of the systems. Asks every sound system, which takes its time;
// one that does not answer within 2 s is left out.
std::vector<SoundDevice> ListSoundDevices();

// Whether any sound system has a device at all, without asking what it can do; one that does not
// answer within 2 s is taken to have one.
bool AnySoundDevice();

// The wished device through each sound system, in their order: which of them has it shows when it
// is opened.
std::vector<std::unique_ptr<OutputDevice>> MakeOutputDevices(const DeviceWish& wish);

// For prelistening, the device of that number in the list of all; they are listed when it is
// opened.
std::unique_ptr<OutputDevice> MakeNumberedDevice(int number);

// All that can record, listed as those that play.
std::vector<SoundDevice> ListSoundInputs();

// The input of that key; where the key is empty that of the number in the list of all, which are
// listed when it is opened. Throws SoundError for a negative number.
WishedInput InputOf(const std::string& key, int number);

}  // namespace zemo
