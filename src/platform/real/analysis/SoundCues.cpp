#include "platform/real/analysis/SoundCues.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "platform/real/analysis/LoudnessMeter.h"

namespace zemo {

namespace {

constexpr double kSoundShare = 3.1622776601683795e-5;  // of the power: 45 LU below
constexpr double kExitShare = 1.0 / 25;                // a fifth of the level

constexpr size_t Windows(int ms) {
  return static_cast<size_t>(ms / kPowerWindowMs);
}
constexpr size_t kLongSilence = Windows(5000);
constexpr size_t kWholeTitle = Windows(60'000);
constexpr size_t kAhead = Windows(50);
constexpr size_t kAround = Windows(1000);

int32_t MsOf(size_t window, int32_t lengthMs) {
  return static_cast<int32_t>(
      std::min<int64_t>(static_cast<int64_t>(window) * kPowerWindowMs, std::max(lengthMs, 0)));
}

// Windows of the title: from its first sound to behind its last one.
struct Extent {
  size_t begin = 0;
  size_t end = 0;
};

Extent Sounding(std::span<const float> powers, double floor) {
  const auto sounds = [&](float power) { return power >= floor; };
  const auto first = std::find_if(powers.begin(), powers.end(), sounds);
  const auto last = std::find_if(powers.rbegin(), powers.rend(), sounds);
  if (first == powers.end()) return {};
  return {static_cast<size_t>(first - powers.begin()), static_cast<size_t>(powers.rend() - last)};
}

size_t TitleEnd(std::span<const float> powers, double floor, const Extent& sounding) {
  size_t silence = 0;  // windows of it in front of this one
  for (size_t at = sounding.begin; at < sounding.end; ++at) {
    if (powers[at] < floor) {
      ++silence;
      continue;
    }
    const size_t front = at - silence - sounding.begin;
    if (silence >= kLongSilence && front >= std::min(kWholeTitle, sounding.end - at)) {
      return at - silence;
    }
    silence = 0;
  }
  return sounding.end;
}

// Sums of powers, for means over any windows; there is silence around them.
class Sums {
 public:
  explicit Sums(std::span<const float> powers) {
    upTo_.reserve(powers.size() + 1);
    for (const float power : powers) upTo_.push_back(upTo_.back() + power);
  }
  size_t Count() const { return upTo_.size() - 1; }
  double Of(size_t begin, size_t end) const {
    return upTo_[std::min(end, Count())] - upTo_[std::min(begin, Count())];
  }
  // Behind the last window for which the mean of `windows`, `before` of them in front of it, is
  // `level` or more; 0 where none is.
  size_t LastReaching(size_t before, size_t windows, double level) const {
    for (size_t at = Count(); at-- > 0;) {
      const size_t begin = at - std::min(at, before);
      if (Of(begin, at - before + windows) >= level * static_cast<double>(windows)) return at + 1;
    }
    return 0;
  }

 private:
  std::vector<double> upTo_ = {0.0};
};

size_t ExitWindow(std::span<const float> title, double level) {
  const Sums sums(title);
  const size_t last = sums.LastReaching(0, kAhead, level);
  const size_t before = std::min(last, kAround / 2);
  const double behind = sums.Of(last + kAhead, last + kAhead + kAround);
  const bool atOnce = sums.Of(last - before, last) >= level * static_cast<double>(before) &&
                      behind < level * kExitShare * static_cast<double>(kAround);
  if (atOnce) return last;
  const size_t inAFade = sums.LastReaching(kAround / 2, kAround, level);
  return inAFade == 0 ? last : std::min(last, inAFade);
}

}  // namespace

SoundCues FindCues(std::span<const float> powers, double lufs, int32_t lengthMs) {
  const double loudness = PowerOfLufs(lufs);
  const double floor = loudness * kSoundShare;
  const Extent sounding = Sounding(powers, floor);
  const size_t titleEnd = TitleEnd(powers, floor, sounding);
  const size_t exit = ExitWindow(powers.first(titleEnd), loudness * kExitShare);
  SoundCues cues;
  cues.beginMs = MsOf(sounding.begin, lengthMs);
  cues.endMs = MsOf(sounding.end, lengthMs);
  cues.exitMs =
      std::clamp<int32_t>(lengthMs - MsOf(exit, lengthMs), 1, std::numeric_limits<int16_t>::max());
  return cues;
}

}  // namespace zemo
