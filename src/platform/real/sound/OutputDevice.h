// A device, through one sound system, that plays the output ring by calling back for its frames.
#pragma once

#include <string>

#include "platform/SoundSource.h"
#include "platform/real/sound/OutputRing.h"

namespace zemo {

// The sound system does not run, or does not have the device.
struct NoSuchDevice : SoundError {
  using SoundError::SoundError;
};

// The sound system runs and does not answer: whoever asks another one, whose default may be a
// device of this one, would wait with it.
struct SystemHangs : SoundError {
  using SoundError::SoundError;
};

// Used by one thread (the device thread), which may wait in it: opening a device takes its time.
class OutputDevice {
 public:
  struct Opened {
    std::string name;      // as its system calls it, for people
    int rate = 0;          // frames a second that it takes
    int bufferFrames = 0;  // that it asks for at once, before anything is heard
    int delayMs = 0;       // from its asking for a frame to its sound, about
  };

  enum class Condition {
    kFine,    // as far as the system tells: whether it plays shows in its calls
    kAsleep,  // the system put it to sleep and will wake it
    kGone,    // it will not call any more
  };
  struct News {
    Condition condition = Condition::kFine;
    std::string movedTo;  // not empty: since the last look the sound goes to that device instead
  };

  virtual ~OutputDevice() = default;
  // Opens it and lets it play `ring` (not owned) through DrainForDevice. Throws SoundError.
  virtual Opened Open(OutputRing& ring) = 0;
  virtual void Close() = 0;           // no call back comes any more when it returns
  virtual News Look() { return {}; }  // while it is open
};

}  // namespace zemo
