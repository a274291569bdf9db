// The recorder of voice tracks: an input of the machine, written into a WAV file as it comes
// (44.1 kHz, 16 bits, mono or stereo as the device gives it).
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace zemo {

class Folder;

// Thread: the logic's. Answers at once; real sound is written by a thread of its own.
class Recorder {
 public:
  virtual ~Recorder() = default;

  // Opens the input ahead, so that a recording begins with its order and the levels are known; -1
  // closes it. Nothing while it records. `device` is a number of the machine's list of inputs,
  // from 0. Throws SoundError for one that refuses at once.
  virtual void Listen(int device) = 0;

  // Makes the file in the folder anew with the first sound of that input, and the folder where it
  // is missing. Throws SoundError or FileError when it cannot begin, and tells by OnEnd what shows
  // later: what stood under that name is as it was then. What was recorded before is ended first.
  virtual void Start(int device, Folder& folder, const std::string& name) = 0;
  // Ends the file, which holds everything up to now; nothing unless it records. May wait for it in
  // yields of the loop.
  virtual void Stop() = 0;
  virtual bool Recording() const = 0;
  virtual int64_t RecordedMs() const = 0;  // of this recording; of the last one once it has ended

  // Of this recording, or the last one: its file stands in the place of what was there.
  virtual bool HasFile() const = 0;

  // For how long the input has given nothing, or digital silence: since it was opened or the
  // recording began at most. 0 without an input.
  virtual int64_t SilentMs() const = 0;
  // Highest level since the last question, 0 to 1, left and right; the same for one channel.
  struct Levels {
    float left = 0, right = 0;
  };
  virtual Levels HeardLevels() = 0;

  // Called from the event loop when the recording ended by itself: an input that does not open or
  // was lost, a file that cannot be made, a full disk. `reason` is one line. What came before is in
  // the file.
  virtual void OnEnd(std::function<void(const std::string& reason)> ended) = 0;
};

}  // namespace zemo
