// `zemoradio simulate`: the air on a virtual clock, with sounds that only have a length.
#include "app/CommandLine.h"
#include "app/Commands.h"
#include "app/Simulation.h"
#include "platform/real/decoders/LengthOnlyOpener.h"
#include "platform/real/decoders/SoundFileOpener.h"

namespace zemo {

int RunSimulate(const CommandLine& line) {
  Simulate(line, std::make_unique<LengthOnlyOpener>(std::make_unique<SoundFileOpener>()), nullptr);
  return 0;
}

}  // namespace zemo
