// The way of a sound out of the preview's output and into the recorder's input.
#pragma once

#include <cstdint>

namespace zemo {

// Thread: the logic's.
class RoundTrip {
 public:
  virtual ~RoundTrip() = default;

  // Plays a short noise on that output and records it by that input, both by their numbers from 0,
  // and finds it in the recording. ms from the chain's position at the begin of a recording to
  // where in the recording that position is heard. Takes seconds, in yields of the loop; neither
  // the preview nor the recorder is used meanwhile. Throws SoundError, whose one line tells why
  // nothing was heard, and FileError.
  virtual int32_t MeasureMs(int output, int input) = 0;
};

}  // namespace zemo
