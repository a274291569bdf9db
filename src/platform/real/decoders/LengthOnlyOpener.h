// Sound files that only know their length: for the simulated mode, where nothing is heard and days
// pass in seconds.
#pragma once

#include <memory>
#include <string>

#include "platform/SoundSource.h"
#include "platform/real/files/KnownLengths.h"

namespace zemo {

// Takes the length from the opener it wraps and closes the file at once; its sources read as
// silence. Lengths are kept by path as long as size and time of change of the file stay the same,
// errors are not. Thread: the logic's.
class LengthOnlyOpener : public SoundOpener {
 public:
  explicit LengthOnlyOpener(std::unique_ptr<SoundOpener> files) : files_(std::move(files)) {}

  // Throws as the wrapped opener does.
  std::unique_ptr<SoundSource> Open(const std::string& path) override;

 private:
  std::unique_ptr<SoundOpener> files_;
  KnownLengths known_;
};

}  // namespace zemo
