// What the measuring of a file says to the card that an import made of it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Folder.h"
#include "platform/SoundMeasures.h"

namespace zemo {

struct Station;

// A music card that an import made, with the exit point that nobody set.
struct BareExit {
  int32_t code = 0;
  int32_t exitMs = 0;
  std::string file;  // stored path
};

// --- those that wait to be measured, in the station's folder: what one run of the program or of
// the import leaves the next one goes on with. CODE, exit point in ms and path a line, with tabs.
// Throw FileError ---
inline constexpr const char* kExitsToFindFile = "ExitsToFind.Txt";
void KeepBareExit(Station& station, const BareExit& bare);
std::vector<BareExit> KeptBareExits(Station& station);  // the newest last
void ForgetBareExits(Station& station);

// Keeps the measures in the base, and gives the music card the proposed exit point where it still
// has that file and the exit point that nobody set. `stamp` is the file's of before it was
// measured. Throws StoreError.
void TakeMeasures(Station& station, const BareExit& bare, const SoundFileStamp& stamp,
                  const SoundMeasures& measures);
// The same from what is kept of that file; false where that is nothing.
bool TakeKnownMeasures(Station& station, const BareExit& bare, const SoundFileStamp& stamp);

}  // namespace zemo
