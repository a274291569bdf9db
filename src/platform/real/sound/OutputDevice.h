// A device that plays the output ring by calling back for its frames.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/real/sound/OutputRing.h"

namespace zemo {

// Used by one thread (the device thread), which may wait in it: opening a device takes its time.
class OutputDevice {
 public:
  struct Opened {
    std::string name;  // as the system calls it
    int rate = 0;      // frames a second that it takes
  };

  virtual ~OutputDevice() = default;
  // Opens it and lets it play `ring` (not owned) through DrainForDevice. Throws SoundError.
  virtual Opened Open(OutputRing& ring) = 0;
  virtual void Close() = 0;  // no call back comes any more when it returns
};

// The device of that name (without regard to case; a part of the name will do), the default one for
// an empty name, through whichever sound system of this machine has it.
std::unique_ptr<OutputDevice> MakeSystemDevice(const std::string& name);

// Whether any sound system has a device at all, without asking what it can do.
bool AnySoundDevice();

// Names of all devices that can play. Asks every sound system; opens each for that, which takes its
// time.
std::vector<std::string> OutputDeviceNames();

}  // namespace zemo
