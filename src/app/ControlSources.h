// What the control socket tells besides the station.
#pragma once

#include <functional>

#include "app/ControlWords.h"
#include "platform/real/sound/RealSoundChain.h"

namespace zemo {

// Thread: the logic's.
struct ControlSources {
  std::function<SoundHealth()> output;  // of the output, its peaks since the last question
  FreeSpace& space;                     // not owned
};

}  // namespace zemo
