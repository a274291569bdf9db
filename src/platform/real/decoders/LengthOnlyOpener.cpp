// See LengthOnlyOpener.h.
#include "platform/real/decoders/LengthOnlyOpener.h"

#include <algorithm>

namespace zemo {
namespace {

class SilentSource : public SoundSource {
 public:
  explicit SilentSource(int64_t lengthFrames) : length_(lengthFrames) {}

  int64_t LengthFrames() const override { return length_; }

  int Read(float* stereo, int frames) override {
    const auto given = static_cast<int>(std::min<int64_t>(frames, length_ - position_));
    std::fill(stereo, stereo + kChannels * given, 0.0F);
    position_ += given;
    return given;
  }

  void Seek(int64_t frame) override { position_ = std::clamp<int64_t>(frame, 0, length_); }

 private:
  int64_t length_;
  int64_t position_ = 0;
};

}  // namespace

std::unique_ptr<SoundSource> LengthOnlyOpener::Open(const std::string& path) {
  return std::make_unique<SilentSource>(known_.LengthFrames(path, *files_));
}

}  // namespace zemo
