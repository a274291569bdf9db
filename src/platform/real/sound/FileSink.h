// The air into a sound file. Silence stands in it for what a slow disk could not take, so that its
// time stays that of the air.
#pragma once

#include <cstdint>
#include <string>

#include "platform/real/sound/AirSink.h"
#include "platform/real/sound/SoundFileWriter.h"

namespace zemo {

class FileSink final : public AirSink {
 public:
  // Replaces the file; throws SoundError.
  // What comes behind `mostFrames` is left out.
  explicit FileSink(const std::string& path, int64_t mostFrames = SoundFileWriter::kUnbounded)
      : mostFrames_(mostFrames), file_(path, mostFrames) {}

  void Write(const int16_t* stereo, int frames) override;
  void WriteLost(int64_t frames) override;
  void Close() override { file_.Close(); }
  std::string Name() const override { return file_.Path(); }
  int AheadFrames() const override { return kAheadFrames; }

  static constexpr int kAheadFrames = 10 * kSampleRate;  // that a disk may rest; 2 MB

 private:
  const int64_t mostFrames_;
  SoundFileWriter file_;
};

}  // namespace zemo
