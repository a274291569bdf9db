// How a sound chain of a listener's own, beside the air, is given up: closed and without files it
// comes to rest, and only then its threads end without a wait. Thread: the logic's.
#pragma once

#include <memory>
#include <vector>

namespace zemo {

class RealSoundChain;

using LeavingChains = std::vector<std::unique_ptr<RealSoundChain>>;

void FreeSlots(RealSoundChain& chain);
// Those that rest are gone behind it.
void DropRested(LeavingChains& chains);
// At the end of the program: waits 2 s at most. One that hangs in its sound system is left to
// itself then.
void PartFrom(LeavingChains chains);

}  // namespace zemo
