// See ResampledSource.h.
#include "platform/real/decoders/ResampledSource.h"

#include <algorithm>
#include <numeric>

namespace zemo {
namespace {

constexpr int kInputFrames = 1024;

// Input frames the converter looks back over, at the input's rate or at ours, whichever is lower:
// half its filter is 20 of them.
constexpr int kLookBack = 32;

}  // namespace

ResampledSource::ResampledSource(std::unique_ptr<SampleSource> source)
    : source_(std::move(source)), input_(2 * kInputFrames) {
  const int rate = source_->Rate();
  const int64_t common = std::gcd(rate, kSampleRate);
  inStep_ = rate / common;
  outStep_ = kSampleRate / common;
  end_ = length_ = OutputFrames(source_->LengthFrames());
  int error = 0;
  converter_.reset(src_new(SRC_SINC_FASTEST, kChannels, &error));
  if (!converter_) throw SoundError(src_strerror(error));
}

int64_t ResampledSource::OutputFrames(int64_t inputFrames) const {
  return (inputFrames * outStep_ + inStep_ - 1) / inStep_;
}

void ResampledSource::Refill() {
  inputUsed_ = 0;
  inputFrames_ = inputEnded_ ? 0 : source_->Read(input_.data(), kInputFrames);
  inputRead_ += inputFrames_;
  if (inputFrames_ == kInputFrames) return;
  if (!inputEnded_) end_ = std::min(length_, OutputFrames(inputRead_));
  inputEnded_ = true;
  std::fill(input_.begin() + 2 * inputFrames_, input_.end(), 0.0F);
  inputFrames_ = kInputFrames;
}

int ResampledSource::Convert(float* stereo, int frames) {
  SRC_DATA data{};
  data.data_in = input_.data() + 2 * inputUsed_;
  data.input_frames = inputFrames_ - inputUsed_;
  data.data_out = stereo;
  data.output_frames = frames;
  data.src_ratio = static_cast<double>(kSampleRate) / source_->Rate();
  if (src_process(converter_.get(), &data) != 0) return -1;
  inputUsed_ += static_cast<int>(data.input_frames_used);
  return static_cast<int>(data.output_frames_gen);
}

int ResampledSource::Read(float* stereo, int frames) {
  int given = 0;
  for (;;) {
    // Every round: the end comes nearer when the file proves shorter than it said.
    const auto wanted = static_cast<int>(std::min<int64_t>(frames - given, end_ - position_));
    if (wanted <= 0) return given;
    if (inputUsed_ == inputFrames_) Refill();
    const int usedBefore = inputUsed_;
    const int got = Convert(stereo + 2 * given, wanted);
    if (got < 0 || (got == 0 && inputUsed_ == usedBefore)) return given;
    given += got;
    position_ += got;
  }
}

void ResampledSource::Seek(int64_t frame) {
  const int64_t target = std::clamp<int64_t>(frame, 0, length_);
  // Restarted on a frame where both rates meet, far enough before the target that the filter holds
  // what it would hold in reading from the start.
  const int64_t lookBack = kLookBack * std::max<int64_t>(1, kSampleRate / source_->Rate() + 1);
  const int64_t step = std::max<int64_t>(0, (target - lookBack) / outStep_);
  src_reset(converter_.get());
  inputRead_ = std::min(step * inStep_, source_->LengthFrames());
  source_->Seek(inputRead_);
  inputUsed_ = inputFrames_ = 0;
  inputEnded_ = false;
  end_ = length_;
  position_ = step * outStep_;
  std::vector<float> dropped(2 * kInputFrames);
  while (position_ < target) {
    if (Read(dropped.data(),
             static_cast<int>(std::min<int64_t>(kInputFrames, target - position_))) == 0) {
      return;
    }
  }
}

}  // namespace zemo
