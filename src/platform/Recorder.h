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

  // Makes the file in the folder anew, and the folder where it is missing. Throws SoundError or
  // FileError when it cannot begin: what stood under that name is as it was then. `device` is a
  // number of the machine's list of inputs, from 0. What was recorded before is ended first.
  virtual void Start(int device, Folder& folder, const std::string& name) = 0;
  // Ends the file, which holds everything up to now; nothing unless it records.
  virtual void Stop() = 0;
  virtual bool Recording() const = 0;
  virtual int64_t RecordedMs() const = 0;  // of this recording; of the last one once it has ended

  // Called from the event loop when the recording ended by itself: a lost device, a full disk.
  // `reason` is one line. What came before is in the file.
  virtual void OnEnd(std::function<void(const std::string& reason)> ended) = 0;
};

}  // namespace zemo
