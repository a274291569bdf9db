// Sound files that are decoded on other threads than the one that reads them, as fast as the
// machine can: for a render, whose reader waits for them and gets the very frames that it would
// have decoded itself.
#pragma once

#include <memory>
#include <string>

#include "platform/SoundSource.h"

namespace zemo {

// Opens as the opener behind it does, which it owns. A source that has a twin (SoundSource::Twin)
// is decoded by both of them, a few seconds each in turn, from its first Read behind a Seek on; any
// other by whoever reads. Thread: as the opener behind it.
class AheadOpener final : public SoundOpener {
 public:
  explicit AheadOpener(std::unique_ptr<SoundOpener> opener) : opener_(std::move(opener)) {}
  std::unique_ptr<SoundSource> Open(const std::string& path) override;

 private:
  std::unique_ptr<SoundOpener> opener_;
};

// A source read so; `partFrames` is what each of the two decodes in turn. A part that does not go
// on as the one before it would, sample by sample - a damaged file has more than one way to be read
// - is left, and the rest read by that one alone.
std::unique_ptr<SoundSource> DecodeAhead(std::unique_ptr<SoundSource> source, int partFrames);

}  // namespace zemo
