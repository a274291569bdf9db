#include "platform/real/sound/ChainParting.h"

#include <chrono>
#include <thread>
#include <utility>

#include "platform/real/sound/AirSink.h"
#include "platform/real/sound/RealSoundChain.h"

namespace zemo {

namespace {

constexpr std::chrono::seconds kParting{2};
constexpr std::chrono::milliseconds kPartingTurn{1};

}  // namespace

void FreeSlots(RealSoundChain& chain) {
  for (int slot = 0; slot < kSlots; ++slot) chain.SetFileName(slot, "");
}

void DropRested(LeavingChains& chains) {
  for (const auto& chain : chains) chain->Poll();
  std::erase_if(chains, [](const auto& chain) { return chain->Rests(); });
}

void PartFrom(LeavingChains chains) {
  const auto until = std::chrono::steady_clock::now() + kParting;
  for (DropRested(chains); !chains.empty() && std::chrono::steady_clock::now() < until;
       DropRested(chains))
    std::this_thread::sleep_for(kPartingTurn);
  // What hangs shares nothing with anybody.
  for (auto& chain : chains) std::thread([gone = std::move(chain)] {}).detach();
}

}  // namespace zemo
