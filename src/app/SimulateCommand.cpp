// `zemoradio simulate`: the air on a virtual clock, with sounds that only have a length.
#include "app/Commands.h"
#include "app/Simulation.h"
#include "platform/real/decoders/LengthOnlyOpener.h"
#include "platform/real/decoders/SoundFileOpener.h"

namespace zemo {

int RunSimulate(const SimulateOptions& options) {
  Simulate(options, std::make_unique<LengthOnlyOpener>(std::make_unique<SoundFileOpener>()),
           nullptr);
  return 0;
}

}  // namespace zemo
