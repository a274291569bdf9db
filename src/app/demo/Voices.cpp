// Wavetable notes and noise drums. Tables hold at most eight harmonics, so that no note of the
// range used folds back at the top of the spectrum.
#include "app/demo/Voices.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <span>

namespace zemo {
namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;
constexpr int kTableBits = 11;
constexpr size_t kTableSize = size_t{1} << kTableBits;

struct Table {
  std::array<float, kTableSize + 1> samples{};  // the first again at the end, to interpolate to

  explicit Table(std::span<const float> harmonics) {
    float peak = 0;
    for (size_t i = 0; i < kTableSize; ++i) {
      double sum = 0;
      for (size_t h = 0; h < harmonics.size(); ++h) {
        sum += harmonics[h] * std::sin(kTwoPi * static_cast<double>((h + 1) * i) / kTableSize);
      }
      samples[i] = static_cast<float>(sum);
      peak = std::max(peak, std::abs(samples[i]));
    }
    for (float& sample : samples) sample /= peak;
    samples[kTableSize] = samples[0];
  }
};

// How a voice sounds: its harmonics, its envelope in seconds, and the spread of its two strings.
struct VoiceShape {
  Table table;
  double attackSec;
  double decaySec;  // to 1/e while the note is held; 0 for a level tone
  double releaseSec;
  double detune;  // ratio between the two strings, 1 for one string
};

const VoiceShape& ShapeOf(Voice voice) {
  static constexpr float kPad[] = {1, 0.5F, 0.33F, 0.2F, 0.12F, 0.08F};
  static constexpr float kBass[] = {1, 0.45F, 0.22F, 0.1F};
  static constexpr float kPluck[] = {1, 0.6F, 0.4F, 0.28F, 0.18F, 0.12F, 0.08F};
  static constexpr float kLead[] = {1, 0.15F, 0.3F, 0.08F, 0.12F};
  static constexpr float kBell[] = {1, 0, 0.35F, 0, 0, 0.2F};
  static constexpr float kSine[] = {1};
  static const std::array<VoiceShape, 6> kShapes = {{
      {Table(kPad), 0.25, 0, 0.6, 1.006},
      {Table(kBass), 0.008, 0.9, 0.06, 1},
      {Table(kPluck), 0.003, 0.28, 0.08, 1.003},
      {Table(kLead), 0.03, 1.6, 0.15, 1.004},
      {Table(kBell), 0.002, 0.9, 0.5, 1.002},
      {Table(kSine), 0.01, 0, 0.05, 1},
  }};
  return kShapes[static_cast<size_t>(voice)];
}

// Phase as a 32-bit fraction of a turn, so that it wraps by itself.
struct Oscillator {
  const Table& table;
  uint32_t phase;
  uint32_t step;

  float Next() {
    const uint32_t at = phase >> (32 - kTableBits);
    const auto rest = static_cast<float>(phase << kTableBits) * (1.0F / 4294967296.0F);
    phase += step;
    return table.samples[at] + (table.samples[at + 1] - table.samples[at]) * rest;
  }
};

uint32_t StepOf(double frequency) {
  return static_cast<uint32_t>(frequency / kDemoRate * 4294967296.0);
}

int64_t FramesOf(double seconds) {
  return std::llround(seconds * kDemoRate);
}

}  // namespace

void StereoBuffer::Need(int64_t frames) {
  if (frames > Frames()) samples.resize(static_cast<size_t>(frames) * 2);
}

void StereoBuffer::Cut(int64_t frames) {
  samples.resize(static_cast<size_t>(frames) * 2);
}

void StereoBuffer::Add(const StereoBuffer& other) {
  Need(other.Frames());
  for (size_t i = 0; i < other.samples.size(); ++i) samples[i] += other.samples[i];
}

uint32_t DemoRandom::Next() {
  state_ += 0x9E3779B97F4A7C15U;
  uint64_t mixed = state_;
  mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
  mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
  return static_cast<uint32_t>((mixed ^ (mixed >> 31)) >> 32);
}

void AddNote(StereoBuffer& to, Voice voice, const Note& note) {
  const VoiceShape& shape = ShapeOf(voice);
  const double frequency = 440 * std::exp2((note.pitch - 69) / 12);
  const int64_t begin = FramesOf(note.atSec);
  const int64_t held = FramesOf(note.lengthSec);
  const int64_t release = FramesOf(shape.releaseSec);
  to.Need(begin + held + release);

  Oscillator first{shape.table, 0, StepOf(frequency)};
  Oscillator second{shape.table, 0x40000000, StepOf(frequency * shape.detune)};
  const double turn = (note.pan + 1) * std::numbers::pi / 4;  // equal power
  const float left = note.level * static_cast<float>(std::cos(turn));
  const float right = note.level * static_cast<float>(std::sin(turn));
  const auto attack = static_cast<float>(1 / (shape.attackSec * kDemoRate));
  const auto decay =
      shape.decaySec > 0 ? static_cast<float>(std::exp(-1 / (shape.decaySec * kDemoRate))) : 1.0F;
  const float fall = 1 / static_cast<float>(release);

  float rise = 0, sustain = 1, tail = 1;
  float* out = to.samples.data() + begin * 2;
  for (int64_t i = 0; i < held + release; ++i) {
    rise = std::min(rise + attack, 1.0F);
    sustain *= decay;
    if (i >= held) tail -= fall;
    const float sample =
        (first.Next() + second.Next()) * 0.5F * rise * sustain * std::max(tail, 0.0F);
    *out++ += sample * left;
    *out++ += sample * right;
  }
}

void AddDrum(StereoBuffer& to, Drum drum, double atSec, float level, DemoRandom& random) {
  static constexpr double kLengthSec[] = {0.35, 0.22, 0.06, 0.03};
  static constexpr double kDecaySec[] = {0.09, 0.06, 0.018, 0.006};
  const auto kind = static_cast<size_t>(drum);
  const int64_t begin = FramesOf(atSec);
  const int64_t frames = FramesOf(kLengthSec[kind]);
  to.Need(begin + frames);
  const auto decay = static_cast<float>(std::exp(-1 / (kDecaySec[kind] * kDemoRate)));
  float envelope = level, before = 0;
  double phase = 0;
  float* out = to.samples.data() + begin * 2;
  for (int64_t i = 0; i < frames; ++i) {
    const float noise = random.Unit() * 2 - 1;
    const float bright = noise - before;  // a difference lets only the top of the noise through
    before = noise;
    float sample = 0;
    if (drum == Drum::kKick) {
      const double seconds = static_cast<double>(i) / kDemoRate;
      phase += kTwoPi * (45 + 90 * std::exp(-seconds * 40)) / kDemoRate;
      sample = static_cast<float>(std::sin(phase));
    } else if (drum == Drum::kSnare) {
      phase += kTwoPi * 185 / kDemoRate;
      sample = 0.6F * noise + 0.4F * static_cast<float>(std::sin(phase));
    } else {
      sample = 0.5F * bright;
    }
    sample *= envelope;
    envelope *= decay;
    *out++ += sample;
    *out++ += sample;
  }
}

void AddTone(StereoBuffer& to, double atSec, double lengthSec, double frequency, float level) {
  const int64_t begin = FramesOf(atSec);
  const int64_t frames = FramesOf(lengthSec);
  const auto edge = static_cast<float>(FramesOf(0.002));
  to.Need(begin + frames);
  for (int64_t i = 0; i < frames; ++i) {
    const auto nearest = static_cast<float>(std::min(i, frames - 1 - i));
    const double angle = kTwoPi * frequency * static_cast<double>(i) / kDemoRate;
    const float sample =
        level * std::min(1.0F, nearest / edge) * static_cast<float>(std::sin(angle));
    const auto at = static_cast<size_t>(begin + i) * 2;
    to.samples[at] += sample;
    to.samples[at + 1] += sample;
  }
}

void AddEcho(StereoBuffer& to, double delaySec, float level, float feedback) {
  const auto delay = static_cast<size_t>(FramesOf(delaySec));
  std::vector<float> line(delay * 2);
  size_t at = 0;
  for (size_t i = 0; i < to.samples.size(); i += 2) {
    const float left = line[at], right = line[at + 1];
    line[at] = to.samples[i] + right * feedback;  // crossed: each repeat comes from the other side
    line[at + 1] = to.samples[i + 1] + left * feedback;
    to.samples[i] += left * level;
    to.samples[i + 1] += right * level;
    at = at + 2 == line.size() ? 0 : at + 2;
  }
}

void Level(StereoBuffer& to, float rms) {
  double sum = 0;
  for (const float sample : to.samples) sum += static_cast<double>(sample) * sample;
  if (sum == 0) return;
  const auto now = static_cast<float>(std::sqrt(sum / static_cast<double>(to.samples.size())));
  const float gain = rms / now;
  for (float& sample : to.samples) {
    // x / (1 + |x|^3)^(1/3) would be rounder; this one is straight up to a half and costs no root.
    const float loud = sample * gain;
    const float size = std::abs(loud);
    const float over = size - 0.5F;
    sample = size <= 0.5F ? loud : std::copysign(0.5F + over / (1 + over / 0.4F), loud);
  }
}

void FadeEnd(StereoBuffer& to, double lengthSec) {
  const int64_t fade = std::min(FramesOf(lengthSec), to.Frames());
  const int64_t begin = to.Frames() - fade;
  for (int64_t i = 0; i < fade; ++i) {
    const float gain = static_cast<float>(fade - i) / static_cast<float>(fade);
    const auto at = static_cast<size_t>(begin + i) * 2;
    to.samples[at] *= gain;
    to.samples[at + 1] *= gain;
  }
}

}  // namespace zemo
