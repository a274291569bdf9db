#include "platform/real/analysis/LoudnessMeter.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <utility>

namespace zemo {

namespace {

static_assert(kSampleRate * kPowerWindowMs % 1000 == 0);

// A value a channel: the compiler's vectors, so that both are filtered by the same instructions.
using Pair = double __attribute__((vector_size(16)));

Pair Load(const std::array<double, kChannels>& values) {
  return Pair{values[0], values[1]};
}
// What fades behind a sound would become numbers that the processor takes a hundred times as long
// for: it ends where nobody hears or measures it.
void Store(std::array<double, kChannels>& values, Pair pair) {
  constexpr double kNothing = 1e-30;
  for (size_t i = 0; i < values.size(); ++i) {
    values[i] = std::fabs(pair[i]) < kNothing ? 0 : pair[i];
  }
}

constexpr size_t kStepWindows = 100 / kPowerWindowMs;
constexpr size_t kBlockSteps = 4;
constexpr double kAbsoluteGateLufs = -70;
constexpr double kRelativeGate = 0.1;  // of the power: 10 LU

// Mean of those blocks that reach the gate; 0 where none does.
double MeanAbove(std::span<const double> blocks, double gate) {
  double sum = 0;
  size_t count = 0;
  for (const double power : blocks) {
    if (power < gate) continue;
    sum += power;
    ++count;
  }
  return count == 0 ? 0 : sum / static_cast<double>(count);
}

std::vector<double> BlockPowers(std::span<const float> powers) {
  const auto mean = [](std::span<const float> of) {
    return std::accumulate(of.begin(), of.end(), 0.0) / static_cast<double>(of.size());
  };
  if (powers.empty()) return {};
  if (powers.size() < kStepWindows * kBlockSteps) return {mean(powers)};
  std::vector<double> steps;
  for (size_t at = 0; at + kStepWindows <= powers.size(); at += kStepWindows) {
    steps.push_back(mean(powers.subspan(at, kStepWindows)));
  }
  std::vector<double> blocks;
  for (size_t at = 0; at + kBlockSteps <= steps.size(); ++at) {
    blocks.push_back((steps[at] + steps[at + 1] + steps[at + 2] + steps[at + 3]) / kBlockSteps);
  }
  return blocks;
}

}  // namespace

// The two sections of the weighting as BS.1770 has them, for our rate.
LoudnessMeter::LoudnessMeter() {
  const auto warped = [](double hertz) { return std::tan(std::numbers::pi * hertz / kSampleRate); };
  {
    constexpr double kQ = 0.7071752369554196;
    const double k = warped(1681.974450955533);
    const double high = std::pow(10, 3.999843853973347 / 20);
    const double band = std::pow(high, 0.4996667741545416);
    const double a0 = 1 + k / kQ + k * k;
    const double b0 = high + band * k / kQ + k * k;
    shelf_ = {2 * (k * k - high) / b0, (high - band * k / kQ + k * k) / b0, 2 * (k * k - 1) / a0,
              (1 - k / kQ + k * k) / a0};
    powerGain_ = (b0 / a0) * (b0 / a0);
  }
  {
    constexpr double kQ = 0.5003270373238773;
    const double k = warped(38.13547087602444);
    const double a0 = 1 + k / kQ + k * k;
    highPass_ = {-2, 1, 2 * (k * k - 1) / a0, (1 - k / kQ + k * k) / a0};
  }
}

void LoudnessMeter::Add(const float* stereo, int frames) {
  while (frames > 0) {
    const int run = std::min(frames, kPowerWindowFrames - windowFrames_);
    Filter(stereo, run);
    stereo += static_cast<ptrdiff_t>(run) * kChannels;
    frames -= run;
    windowFrames_ += run;
    if (windowFrames_ == kPowerWindowFrames) EndWindow();
  }
}

// Within one window.
void LoudnessMeter::Filter(const float* stereo, int frames) {
  const Section shelf = shelf_;
  const Section pass = highPass_;
  Pair s1 = Load(state_[0]);
  Pair s2 = Load(state_[1]);
  Pair p1 = Load(state_[2]);
  Pair p2 = Load(state_[3]);
  Pair riseBefore = p1 - p2;
  Pair squares = Load(squares_);
  for (int i = 0; i < frames; ++i, stereo += kChannels) {
    const Pair in{stereo[0], stereo[1]};
    // What the value before goes into comes last: the next frame waits for that alone.
    const Pair s0 = (in - shelf.a2 * s2) - shelf.a1 * s1;
    const Pair shelved = s0 + (shelf.b1 * s1 + shelf.b2 * s2);
    s2 = s1;
    s1 = s0;
    const Pair p0 = (shelved - pass.a2 * p2) - pass.a1 * p1;
    const Pair rise = p0 - p1;  // the numerator is the square of a difference
    const Pair weighted = rise - riseBefore;
    riseBefore = rise;
    p2 = p1;
    p1 = p0;
    squares += weighted * weighted;
  }
  Store(state_[0], s1);
  Store(state_[1], s2);
  Store(state_[2], p1);
  Store(state_[3], p2);
  squares_ = {squares[0], squares[1]};
}

void LoudnessMeter::EndWindow() {
  const double square = powerGain_ * (squares_[0] + squares_[1]);
  powers_.push_back(static_cast<float>(square / kPowerWindowFrames));
  squares_ = {};
  windowFrames_ = 0;
}

std::vector<float> LoudnessMeter::TakePowers() {
  if (windowFrames_ > 0) EndWindow();
  return std::exchange(powers_, {});
}

double LufsOfPower(double power) {
  return -0.691 + 10 * std::log10(power);
}

double PowerOfLufs(double lufs) {
  return std::pow(10, (lufs + 0.691) / 10);
}

std::optional<double> IntegratedLufs(std::span<const float> powers) {
  const std::vector<double> blocks = BlockPowers(powers);
  const double absolute = PowerOfLufs(kAbsoluteGateLufs);
  const double loud = MeanAbove(blocks, absolute);
  if (loud <= 0) return std::nullopt;
  return LufsOfPower(MeanAbove(blocks, std::max(absolute, loud * kRelativeGate)));
}

}  // namespace zemo
