// The shape of a sound file, to be drawn: its highest level in each of many equal stretches.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zemo {

// 0 is silence, 255 full scale; from the begin of the file to its end.
using WavePeaks = std::vector<uint8_t>;
inline constexpr size_t kWavePeaks = 1000;  // stretches of a file

// A part of a file, closer than its whole shape has it: as many equal stretches as were asked for,
// or as it has frames.
struct WavePart {
  int64_t lengthFrames = 0;            // of the whole file; 0 for one that cannot be read
  int64_t fromFrame = 0, toFrame = 0;  // as asked for
  WavePeaks peaks;                     // what lies behind the file's end is silent
};

// Answers at once: the shape is read in the background, the wish asked last first. Thread: the
// logic's.
class Waveforms {
 public:
  virtual ~Waveforms() = default;
  // Null until it is read; empty for a file that cannot be. `path` is a path of this system.
  virtual std::shared_ptr<const WavePeaks> PeaksOf(const std::string& path) = 0;
  // The same of frames `fromFrame` to `toFrame`, which is not in it, in at most `most` stretches.
  // An empty part only tells the length. One part is kept, the one asked for last: a wish takes the
  // place of the one before, which is left off.
  virtual std::shared_ptr<const WavePart> PartOf(const std::string& path, int64_t fromFrame,
                                                 int64_t toFrame, size_t most) = 0;
};

}  // namespace zemo
