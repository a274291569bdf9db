// From the mixer's rate to a device's other one, or back. One thread.
#pragma once

#include <samplerate.h>

#include <cstdint>
#include <vector>

#include "platform/SoundSource.h"

namespace zemo {

class RateConverter {
 public:
  explicit RateConverter(int toRate, int fromRate = kSampleRate,
                         int channels = kChannels)  // frames a second
      : ratio_(static_cast<double>(toRate) / fromRate) {
    int error = 0;
    state_ = src_new(SRC_SINC_MEDIUM_QUALITY, channels, &error);
    if (state_ == nullptr) throw SoundError(src_strerror(error));
  }
  ~RateConverter() { src_delete(state_); }
  RateConverter(const RateConverter&) = delete;
  RateConverter& operator=(const RateConverter&) = delete;

  // The most that Convert gives for so many frames, and the most frames whose result fits.
  int MostOut(int frames) const { return static_cast<int>(frames * ratio_) + kSlackFrames; }
  int MostIn(int room) const { return static_cast<int>((room - kSlackFrames) / ratio_); }

  // Takes all `frames`, interleaved; `out` has room for MostOut. Returns the frames given.
  int Convert(const float* samples, int frames, float* out) {
    SRC_DATA data{};
    data.data_in = samples;
    data.input_frames = frames;
    data.data_out = out;
    data.output_frames = MostOut(frames);
    data.src_ratio = ratio_;
    src_process(state_, &data);
    return static_cast<int>(data.output_frames_gen);
  }

 private:
  static constexpr int kSlackFrames = 16;

  SRC_STATE* state_ = nullptr;
  double ratio_;
};

}  // namespace zemo
