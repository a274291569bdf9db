// What the logic orders of the mixer's thread, through a lock-free ring.
#pragma once

#include <cstdint>

namespace zemo {

class DecodedStream;

// One order of the logic. Which members count is told with the kind.
struct MixerOrder {
  enum class Kind {
    kStart,    // slot, stream (given to the mixer), generation, frame, gain
    kSeek,     // the same, for a slot that sounds
    kSilence,  // slot
    kFade,     // slot, frame: the frames of the fade
    kPause,    // on
    kRun,      // run, capacityFrames of the output ring: the output starts
    kHalt,     // it stops
  };
  Kind kind = Kind::kHalt;
  int slot = 0;
  DecodedStream* stream = nullptr;
  uint32_t generation = 0;  // of the slot: counts its starts
  int64_t frame = 0;        // position in the file, or length of the fade
  double gain = 1.0;        // of the file
  uint16_t run = 0;         // counts the starts of the output
  int capacityFrames = 0;   // at kSampleRate
  bool on = false;
};

}  // namespace zemo
