// The station itself for a command that works on it, and not on a copy of it: what is done stays,
// whether the station is on air or not.
#pragma once

#include "app/SimStation.h"

namespace zemo {

struct StationOptions;

// In the folders that were asked for, or the default ones, at this machine's moment; of its sound
// files only the lengths are known. The base is not open yet. Throws std::runtime_error with one
// line where no station stands there.
SimStation MakeOwnStation(const StationOptions& asked, BaseLock::Kind kind);

// Its base with all of its tables, as a start opens them, and nothing else of what a start does.
// Throws StoreError.
void OpenOwnBase(Station& station);

}  // namespace zemo
