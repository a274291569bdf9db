// Loudness as ITU-R BS.1770 and EBU R 128 measure it: the K weighting, the power behind it in short
// windows, and the integrated loudness of those. Both channels are filtered at once and the windows
// serve the cues (SoundCues.h) as well, which makes it several times as fast as libebur128, against
// which the tests hold it.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <vector>

#include "platform/SoundSource.h"

namespace zemo {

inline constexpr int kPowerWindowMs = 10;
inline constexpr int kPowerWindowFrames = kSampleRate * kPowerWindowMs / 1000;

// One thread at a time.
class LoudnessMeter {
 public:
  LoudnessMeter();

  // The frames that follow the ones before.
  void Add(const float* stereo, int frames);

  // Mean square of the weighted sound in each window, summed over the channels. One that the end of
  // the sound cuts is filled up with silence.
  std::vector<float> TakePowers();

 private:
  void Filter(const float* stereo, int frames);
  void EndWindow();

  // Coefficients of numerator and denominator, the leading ones being 1.
  struct Section {
    double b1, b2, a1, a2;
  };
  Section shelf_;
  Section highPass_;
  double powerGain_;  // what the leading ones left out of the power
  // A value a channel: the last two of the shelf, then of the high pass.
  std::array<std::array<double, kChannels>, 4> state_{};
  std::array<double, kChannels> squares_{};  // of the window
  int windowFrames_ = 0;                     // in it so far
  std::vector<float> powers_;
};

double LufsOfPower(double power);
double PowerOfLufs(double lufs);

// Gated in blocks of 400 ms that begin every 100 ms; a sound that is shorter than one block is one.
// nullopt: nothing in it reaches -70 LUFS.
std::optional<double> IntegratedLufs(std::span<const float> powers);

}  // namespace zemo
