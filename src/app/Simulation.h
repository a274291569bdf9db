// A run on the virtual clock, as `simulate` and `render` do it.
#pragma once

#include <functional>
#include <memory>

#include "app/CommandLine.h"
#include "platform/SoundSource.h"
#include "platform/sim/SimSoundChain.h"

namespace zemo {

// Runs what the command line asks for. `opener` gives the sound; `makeSink`, when not empty, is
// asked once all has been checked for what gets every frame of the run. Throws UsageError for a
// script that cannot be read and std::runtime_error with one line for everything else.
void Simulate(const CommandLine& line, std::unique_ptr<SoundOpener> opener,
              const std::function<SimSoundChain::Sink()>& makeSink);

}  // namespace zemo
