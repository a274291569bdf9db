// `zemoradio render`: as simulate, with the sound decoded, faded and mixed for real into a file.
#include <memory>
#include <string>
#include <utility>

#include "app/Commands.h"
#include "app/Simulation.h"
#include "platform/real/decoders/AheadOpener.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/sound/SoundFileWriter.h"

namespace zemo {

namespace {
// The end of a render comes with the turn of the clock that reaches it.
constexpr int64_t kSlackFrames = int64_t{60} * kSampleRate;
}  // namespace

int RunRender(const RenderOptions& options) {
  std::unique_ptr<SoundFileWriter> file;
  std::string lost;  // why sound could not be written; the engine must not take that for its fault
  auto opener = std::make_unique<AheadOpener>(std::make_unique<SoundFileOpener>());
  Simulate(options, std::move(opener), [&]() -> SimSoundChain::Sink {
    file = std::make_unique<SoundFileWriter>(
        options.audio,
        options.forMs ? MsToFrames(*options.forMs) + kSlackFrames : SoundFileWriter::kUnbounded);
    return [&](const float* stereo, int frames) {
      if (!lost.empty()) return;
      try {
        file->Write(stereo, frames);
      } catch (const SoundError& error) {
        lost = error.what();
      }
    };
  });
  if (!lost.empty()) throw SoundError(lost);
  file->Close();
  return 0;
}

}  // namespace zemo
