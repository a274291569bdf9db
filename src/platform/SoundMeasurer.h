// Measures sound files in the background, at the lowest priority: an import of thousands of files
// goes on for hours beside the air.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "platform/SoundMeasures.h"

namespace zemo {

struct MeasuredSound {
  std::string path;
  std::optional<SoundMeasures> measures;
  std::string error;  // without measures: why, in one line
};

// Answers at once. Thread: the logic's.
class SoundMeasurer {
 public:
  // Files that are wished for, measured or waiting to be taken.
  static constexpr size_t kMostWishes = 16;

  virtual ~SoundMeasurer() = default;

  // The newest wish is measured first; one for a file that is wished for already becomes the
  // newest. False: nothing is taken now, ask later. `path` is a path of this system.
  virtual bool Wish(const std::string& path) = 0;

  // Each file that was taken comes out here once, in the order in which they were measured. To be
  // asked from time to time: nothing calls. nullopt: none now.
  virtual std::optional<MeasuredSound> TakeMeasured() = 0;
};

}  // namespace zemo
