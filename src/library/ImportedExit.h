// What the measuring of a file says to the card that an import made of it.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Folder.h"
#include "platform/SoundMeasures.h"

namespace zemo {

struct Station;

// Keeps the measures in the base, and gives the music card of that CODE the proposed exit point
// where it still has that file and `bareExitMs`, the one that nobody set. `stamp` is the file's of
// before it was measured. Throws StoreError.
void TakeMeasures(Station& station, int32_t code, const std::string& file,
                  const SoundFileStamp& stamp, const SoundMeasures& measures, int32_t bareExitMs);

}  // namespace zemo
