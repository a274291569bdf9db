// What takes the mixed air besides a device: a sound file, and whatever else is to have it. A sink
// works on a thread of its own (SinkThread), so it may be as slow as its disk or its line.
#pragma once

#include <cstdint>
#include <string>

#include "platform/SoundSource.h"

namespace zemo {

// The frames of the air in order, 16-bit stereo at kSampleRate; each of them comes once, by Write
// or by WriteLost. A SoundError thrown here ends the sink, and its text is the line that the
// operator is told; what a sink can mend by itself, it mends. Thread: the sink's own.
class AirSink {
 public:
  virtual ~AirSink() = default;

  virtual void Write(const int16_t* stereo, int frames) = 0;
  // So many frames were lost here because the sink was too slow for the air.
  virtual void WriteLost(int64_t frames) = 0;
  virtual void Close() = 0;  // the air ends in order; nothing comes afterwards

  // Asked once, ahead of the rest.
  virtual std::string Name() const = 0;  // for a line that is told
  virtual int AheadFrames() const = 0;   // how far it may be behind the air before frames are lost
};

}  // namespace zemo
