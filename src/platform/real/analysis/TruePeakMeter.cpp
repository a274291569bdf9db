#include "platform/real/analysis/TruePeakMeter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

#include "platform/SoundSource.h"
#include "platform/real/decoders/HighestLevel.h"

namespace zemo {

namespace {

constexpr int kOversampling = 4;
constexpr int kFilterTaps = 49;  // at the higher rate

using Four = float __attribute__((vector_size(16)));

Four Load(const float* at) {
  Four four;
  std::memcpy(&four, at, sizeof four);
  return four;
}

double Tap(int index) {
  using std::numbers::pi;
  const double x = (index - (kFilterTaps - 1) / 2.0) * pi / kOversampling;
  const double sinc = std::fabs(x) < 1e-6 ? 1 : std::sin(x) / x;
  return sinc * 0.5 * (1 - std::cos(2 * pi * index / (kFilterTaps - 1)));
}

Four Magnitude(Four value) {
  return value > -value ? value : -value;
}

}  // namespace

TruePeakMeter::TruePeakMeter() : line_((kTaps - 1) * kChannels) {
  for (int pair = 0; pair < static_cast<int>(kPairs); ++pair) {
    const int oldest = kFilterTaps - 1 - kOversampling * (pair + 1);
    const int newest = kOversampling * pair;
    const auto fill = [pair](Factors& factors, double value) {
      factors[static_cast<size_t>(pair)].fill(static_cast<float>(value));
    };
    fill(quarterSums_, (Tap(oldest + 1) + Tap(newest + 1)) / 2);
    fill(quarterDifferences_, (Tap(oldest + 1) - Tap(newest + 1)) / 2);
    fill(halfSums_, Tap(oldest + 2));
  }
}

void TruePeakMeter::Add(const float* stereo, int frames) {
  const size_t samples = static_cast<size_t>(frames) * kChannels;
  // The samples themselves are the fourth value, and known now they spare the more of the others.
  highest_ = std::max(highest_, HighestLevel(stereo, samples));
  line_.insert(line_.end(), stereo, stereo + samples);
  constexpr size_t kKept = (kTaps - 1) * kChannels;
  constexpr size_t kStep = kGroup * kChannels;
  size_t at = kKept;
  for (; at + kStep <= line_.size(); at += kStep) TakeGroup(line_.data() + at);
  line_.erase(line_.begin(), line_.begin() + static_cast<ptrdiff_t>(at - kKept));
}

// `stereo` has the frames before the group in front of it.
void TruePeakMeter::TakeGroup(const float* stereo) {
  static_assert(kTaps - 1 <= kGroup, "or more than one group before counts");
  const float level = HighestLevel(stereo, kGroup * kChannels);
  if (std::max(level, levelBefore_) * kMostGain > highest_) {
    highest_ = std::max(highest_, HighestBetween(stereo));
  }
  levelBefore_ = level;
}

float TruePeakMeter::HighestBetween(const float* stereo) const {
  Four highest{};
  for (size_t at = 0; at < kGroup * kChannels; at += kLanes) {
    const float* newest = stereo + at;
    const float* oldest = newest - (kTaps - 1) * kChannels;
    Four even{};
    Four odd{};
    Four half{};
    for (size_t pair = 0; pair < kPairs; ++pair) {
      const Four old = Load(oldest + pair * kChannels);
      const Four fresh = Load(newest - pair * kChannels);
      const Four sum = old + fresh;
      even += Load(quarterSums_[pair].data()) * sum;
      odd += Load(quarterDifferences_[pair].data()) * (old - fresh);
      half += Load(halfSums_[pair].data()) * sum;
    }
    const Four quarters = Magnitude(even) + Magnitude(odd);  // the higher one of the two
    const Four middle = Magnitude(half);
    highest = highest > quarters ? highest : quarters;
    highest = highest > middle ? highest : middle;
  }
  return std::max(std::max(highest[0], highest[1]), std::max(highest[2], highest[3]));
}

float TruePeakMeter::Finish() {
  const std::vector<float> silence((kGroup + kTaps) * kChannels, 0.0F);
  Add(silence.data(), static_cast<int>(silence.size()) / kChannels);
  return highest_;
}

}  // namespace zemo
