// One sound file: can it go on air as it is?
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/check/Check.h"

namespace zemo {

struct SoundFault {
  Severity severity = Severity::kError;
  std::string why;
};

struct SoundFileLook {
  int64_t lengthMs = -1;  // -1: nothing in it can be played
  std::vector<SoundFault> faults;
};

// `path` is one of this system. Opens the file as the air does, reads its beginning and its end,
// and compares what its headers promise with what is there.
SoundFileLook LookAtSoundFile(const std::string& path);

}  // namespace zemo
