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

// Answers at once: the shape is read in the background, the wish asked last first. Thread: the
// logic's.
class Waveforms {
 public:
  virtual ~Waveforms() = default;
  // Null until it is read; empty for a file that cannot be. `path` is a path of this system.
  virtual std::shared_ptr<const WavePeaks> PeaksOf(const std::string& path) = 0;
};

}  // namespace zemo
