// An input device, through one sound system, that fills the input ring by calling back with its
// frames.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/real/sound/InputRing.h"
#include "platform/real/sound/OutputDevice.h"

namespace zemo {

// Used by one thread (the recording thread), which may wait in it.
class InputDevice {
 public:
  struct Opened {
    std::string name;  // as its system calls it, for people
    int rate = 0;      // frames a second that it gives
    int delayMs = 0;   // from a sound to its frame in the ring, at most and about
  };

  virtual ~InputDevice() = default;
  // Opens it and lets it fill `ring` (not owned), which it resets first. Throws SoundError;
  // NoSuchDevice and SystemHangs as an output does.
  virtual Opened Open(InputRing& ring) = 0;
  virtual void Close() = 0;  // no call back comes any more when it returns
  virtual OutputDevice::Condition Look() { return OutputDevice::Condition::kFine; }
};

// One input through each sound system that may have it, the first one to be tried first.
struct WishedInput {
  std::string identity;  // by which two wishes for the same input are known
  std::vector<std::unique_ptr<InputDevice>> systems;
};

}  // namespace zemo
