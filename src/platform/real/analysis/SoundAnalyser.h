// One decode of a whole sound file, and all that it says (platform/SoundMeasures.h).
#pragma once

#include <optional>
#include <stop_token>
#include <string>

#include "platform/SoundMeasures.h"
#include "platform/SoundSource.h"

namespace zemo {

// nullopt: it was told to stop, which it looks at every 93 ms of sound. Throws SoundError for a
// file that cannot be opened, or of which nothing can be decoded; of one that is damaged further
// on, what could be decoded counts, and its stated length. `path` is a path of this system. Any
// thread, one an opener; it keeps 12 bytes for each 10 ms of sound while it runs.
std::optional<SoundMeasures> MeasureSound(SoundOpener& opener, const std::string& path,
                                          const std::stop_token& stop = {});

}  // namespace zemo
