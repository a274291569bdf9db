// How long a sound file plays, without playing it: the spare player AudioFileTmp of the texts that
// make up breaks, campaigns and cards.
#pragma once

#include <cstdint>
#include <string_view>

namespace zemo {

// Thread: the logic's.
class SoundLengths {
 public:
  virtual ~SoundLengths() = default;
  // Milliseconds; 0 for the empty path and for a file that is missing or cannot be opened. A file
  // is opened once as long as its size and its time of change stay the same. Never throws.
  virtual int32_t LengthMs(std::string_view storedPath) = 0;
};

}  // namespace zemo
