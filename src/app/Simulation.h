// A run on the virtual clock, as `simulate` and `render` do it.
#pragma once

#include <functional>
#include <memory>

#include "app/CommandOptions.h"
#include "platform/SoundSource.h"
#include "platform/sim/SimSoundChain.h"

namespace zemo {

// Runs what is asked for. `opener` gives the sound; `makeSink`, when not empty, is
// asked once all has been checked for what gets every frame of the run. Throws UsageError for a
// script that cannot be read and std::runtime_error with one line for everything else.
void Simulate(const SimulateOptions& options, std::unique_ptr<SoundOpener> opener,
              const std::function<SimSoundChain::Sink()>& makeSink);

}  // namespace zemo
