#include "platform/real/analysis/RealLevelTool.h"

#include <ebur128.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <optional>
#include <vector>

#include "platform/Folder.h"
#include "platform/WavHeader.h"
#include "platform/sound/SampleFormat.h"

namespace zemo {

namespace {

constexpr int kLevelBlockFrames = 4096;
constexpr int64_t kGatedFrames = kSampleRate * 4 / 10;  // of the measure's blocks

struct R128State {
  void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
};
using R128Meter = std::unique_ptr<ebur128_state, R128State>;

struct Loudness {
  double lufs = 0, truePeakDb = 0;
};

void AddFrames(const R128Meter& meter, const float* stereo, int64_t frames) {
  if (ebur128_add_frames_float(meter.get(), stereo, static_cast<size_t>(frames)) != EBUR128_SUCCESS)
    throw std::bad_alloc();
}

// A sound that is shorter than a block of the measure has silence behind it.
void AddWhole(const R128Meter& meter, SoundSource& source) {
  std::vector<float> block(size_t{kChannels} * kLevelBlockFrames);
  int64_t added = 0;
  for (int frames = source.Read(block.data(), kLevelBlockFrames); frames > 0;
       frames = source.Read(block.data(), kLevelBlockFrames)) {
    AddFrames(meter, block.data(), frames);
    added += frames;
  }
  if (added == 0 || added >= kGatedFrames) return;
  block.assign(static_cast<size_t>(kChannels * (kGatedFrames - added)), 0);
  AddFrames(meter, block.data(), kGatedFrames - added);
}

// nullopt: nothing in it reaches -70 LUFS.
std::optional<Loudness> LoudnessOf(SoundSource& source) {
  const R128Meter meter(
      ebur128_init(kChannels, kSampleRate, EBUR128_MODE_I | EBUR128_MODE_TRUE_PEAK));
  if (!meter) throw std::bad_alloc();
  AddWhole(meter, source);
  Loudness loudness;
  ebur128_loudness_global(meter.get(), &loudness.lufs);
  if (!std::isfinite(loudness.lufs)) return std::nullopt;
  double highest = 0;
  for (unsigned channel = 0; channel < kChannels; ++channel) {
    double peak = 0;
    ebur128_true_peak(meter.get(), channel, &peak);
    highest = std::max(highest, peak);
  }
  loudness.truePeakDb = 20 * std::log10(highest);
  return loudness;
}

// The samples of the whole file, the least byte first.
std::string SamplesAt(double gain, SoundSource& source) {
  std::array<float, size_t{kChannels} * kLevelBlockFrames> block{};
  std::array<int16_t, size_t{kChannels} * kLevelBlockFrames> whole{};
  std::string bytes;
  for (int frames = source.Read(block.data(), kLevelBlockFrames); frames > 0;
       frames = source.Read(block.data(), kLevelBlockFrames)) {
    const int count = frames * kChannels;
    std::transform(block.begin(), block.begin() + count, block.begin(),
                   [gain](float sample) { return static_cast<float>(sample * gain); });
    FloatToInt16(block.data(), whole.data(), count);
    for (int i = 0; i < count; ++i) {
      const auto sample = static_cast<uint16_t>(whole[static_cast<size_t>(i)]);
      bytes += static_cast<char>(sample & 0xFF);
      bytes += static_cast<char>(sample >> 8);
    }
  }
  return bytes;
}

}  // namespace

bool RealLevelTool::BringTo(const Level& level, const std::string& path, Folder& folder,
                            const std::string& name) {
  const auto loudness = LoudnessOf(*opener_->Open(path));
  if (!loudness) return false;
  const double gainDb =
      std::min(level.loudnessLufs - loudness->lufs, level.mostTruePeakDb - loudness->truePeakDb);
  const std::string samples = SamplesAt(std::pow(10, gainDb / 20), *opener_->Open(path));
  const auto frames = static_cast<int64_t>(samples.size() / (kWavSampleBytes * kChannels));
  folder.Write(name, WavHeader(kChannels, frames) + samples);
  return true;
}

void RealLevelTool::Copy(Folder& folder, const std::string& from, const std::string& to) {
  const auto bytes = folder.Read(from);
  if (!bytes) throw FileError(folder.PathOf(from) + ": is not there");
  folder.Write(to, *bytes);
}

}  // namespace zemo
