// The sound files of an import as the logic gets them: found below folders and looked into by
// somebody else, in the background.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/SoundTags.h"

namespace zemo {

// All that an import wants to know of a sound file before it becomes a card.
struct SoundFileReading {
  std::string path{};   // as a card stores it
  std::string error{};  // not empty: no sound that can be played, and why, in one line
  int32_t lengthMs = 0;
  bool hardlySounds = false;  // from its first sound to its last one it is less than a second
  std::optional<TagTexts> tags{};
  std::string sameSoundAs{};  // path of another file, a card's or one read before, of that sound
};

// Answers at once. Thread: the logic's.
class ImportFiles {
 public:
  struct Count {
    size_t files = 0;
    bool all = false;  // no more will be found
  };
  virtual ~ImportFiles() = default;

  // Sound files, and folders with all that is in them. `known` are the stored paths of the cards
  // that there are: not read again, but compared. What it was at is left off.
  virtual void Begin(std::vector<std::string> paths, std::vector<std::string> known) = 0;
  virtual void Stop() = 0;
  virtual Count Found() const = 0;
  // Each file that was found comes out here once, in the order of the paths; of a known one the
  // path alone. To be asked from time to time: nothing calls. nullopt: none now.
  virtual std::optional<SoundFileReading> Take() = 0;
};

}  // namespace zemo
