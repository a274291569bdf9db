// Lengths of sound files, read once as long as a file stays the same.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "platform/Folder.h"
#include "platform/SoundLengths.h"
#include "platform/SoundSource.h"

namespace zemo {

// Lengths by path, valid as long as size and time of change of the file stay the same. A file that
// cannot be opened is tried again each time. Thread: the logic's.
class KnownLengths {
 public:
  // Frames, as the opener's source tells them. `path` is a path of this system. Throws as the
  // opener does.
  int64_t LengthFrames(const std::string& path, SoundOpener& opener);

 private:
  struct Known {
    int64_t size = 0;       // bytes
    int64_t changedNs = 0;  // since 1970
    int64_t lengthFrames = 0;
  };
  std::unordered_map<std::string, Known> known_;
};

// The same by stored path. Opener and files are not owned. Thread: the logic's.
class SoundFileLengths : public SoundLengths {
 public:
  SoundFileLengths(SoundOpener& opener, const SoundFiles& files) : opener_(opener), files_(files) {}
  int32_t LengthMs(std::string_view storedPath) override;

 private:
  SoundOpener& opener_;
  const SoundFiles& files_;
  KnownLengths known_;
};

}  // namespace zemo
