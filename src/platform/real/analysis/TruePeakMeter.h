// The true peak of a sound: its highest level at four times the rate, as ITU-R BS.1770 asks for,
// by the interpolation of libebur128 (a sinc of 49 taps under a Hann window), against which the
// tests hold it. A value between two samples is a sum of twelve of them, so that it is at most
// kMostGain times the highest of these, whatever the sound is: stretches that cannot exceed the
// peak known so far are left out, and nothing is lost by it.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace zemo {

// One thread at a time.
class TruePeakMeter {
 public:
  TruePeakMeter();

  // The frames that follow the ones before.
  void Add(const float* stereo, int frames);

  // Of the louder channel, full scale 1.0, silence behind the end. Nothing is added behind it.
  float Finish();

  // The sum of the twelve factors' absolute values is 1.864 half way between two samples and less
  // elsewhere: 5.4 dB.
  static constexpr float kMostGain = 1.87F;

 private:
  static constexpr size_t kTaps = 12;
  static constexpr size_t kPairs = kTaps / 2;  // of samples as far from the middle
  static constexpr size_t kGroup = 16;         // frames
  static constexpr size_t kLanes = 4;
  using Factors = std::array<std::array<float, kLanes>, kPairs>;  // each four times over

  void TakeGroup(const float* stereo);
  float HighestBetween(const float* stereo) const;

  // For sums and differences of a pair, the outermost first. The values a quarter and three
  // quarters of the way to the next sample mirror each other: one is what the sums give and what
  // the differences give, the other the one less the other. Half way only sums count.
  Factors quarterSums_;
  Factors quarterDifferences_;
  Factors halfSums_;
  std::vector<float> line_;  // kTaps - 1 frames done, then those that wait for a whole group
  float levelBefore_ = 0;    // of the group before
  float highest_ = 0;
};

}  // namespace zemo
