#include "platform/real/analysis/RealLevelTool.h"

#include <ebur128.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <new>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/FileInParts.h"
#include "platform/Folder.h"
#include "platform/WavHeader.h"
#include "platform/real/files/WholeFiles.h"
#include "platform/sound/SampleFormat.h"

namespace zemo {

namespace {

constexpr int kLevelBlockFrames = 16384;
constexpr size_t kCopiedBytes = size_t{1} << 20;        // at a time
constexpr int64_t kGatedFrames = kSampleRate * 4 / 10;  // of the measure's blocks

using FloatBlock = std::array<float, size_t{kChannels} * kLevelBlockFrames>;

// Goes through the whole sound, which may be of hours; gives its frames.
template <typename Take>
int64_t ForEachBlock(SoundSource& source, Take take) {
  FloatBlock block{};
  int64_t all = 0;
  for (int frames = source.Read(block.data(), kLevelBlockFrames); frames > 0;
       frames = source.Read(block.data(), kLevelBlockFrames)) {
    take(block, frames);
    all += frames;
  }
  return all;
}

struct R128State {
  void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
};
using R128Meter = std::unique_ptr<ebur128_state, R128State>;

struct Loudness {
  double lufs = 0, truePeakDb = 0;
  int64_t frames = 0;
};

void AddFrames(const R128Meter& meter, const float* stereo, int64_t frames) {
  if (ebur128_add_frames_float(meter.get(), stereo, static_cast<size_t>(frames)) != EBUR128_SUCCESS)
    throw std::bad_alloc();
}

// A sound that is shorter than a block of the measure has silence behind it. Gives its frames.
int64_t AddWhole(const R128Meter& meter, SoundSource& source) {
  const int64_t frames = ForEachBlock(
      source, [&](const FloatBlock& block, int count) { AddFrames(meter, block.data(), count); });
  if (frames == 0 || frames >= kGatedFrames) return frames;
  const std::vector<float> silence(static_cast<size_t>(kChannels * (kGatedFrames - frames)));
  AddFrames(meter, silence.data(), kGatedFrames - frames);
  return frames;
}

// nullopt: nothing in it reaches -70 LUFS.
std::optional<Loudness> LoudnessOf(SoundSource& source) {
  const R128Meter meter(
      ebur128_init(kChannels, kSampleRate, EBUR128_MODE_I | EBUR128_MODE_TRUE_PEAK));
  if (!meter) throw std::bad_alloc();
  Loudness loudness;
  loudness.frames = AddWhole(meter, source);
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

// The block's samples, the least byte first.
std::string SamplesAt(double gain, FloatBlock& block, int frames) {
  std::array<int16_t, size_t{kChannels} * kLevelBlockFrames> whole{};
  const int count = frames * kChannels;
  std::transform(block.begin(), block.begin() + count, block.begin(),
                 [gain](float sample) { return static_cast<float>(sample * gain); });
  FloatToInt16(block.data(), whole.data(), count);
  std::string bytes;
  bytes.reserve(static_cast<size_t>(count) * kWavSampleBytes);
  for (int i = 0; i < count; ++i) {
    const auto sample = static_cast<uint16_t>(whole[static_cast<size_t>(i)]);
    bytes += static_cast<char>(sample & 0xFF);
    bytes += static_cast<char>(sample >> 8);
  }
  return bytes;
}

std::unique_ptr<FileInParts> OpenIn(const Folder& folder, const std::string& name) {
  std::error_code failed;  // the file's own opening tells
  std::filesystem::create_directories(folder.Path(), failed);
  return ReplaceFileInParts(folder.PathOf(name));
}

}  // namespace

// The header has the number of frames, so that they are counted ahead of the writing.
bool RealLevelTool::BringTo(const Level& level, const std::string& path, Folder& folder,
                            const std::string& name) {
  const auto loudness = LoudnessOf(*opener_->Open(path));
  if (!loudness) return false;
  const double gainDb =
      std::min(level.loudnessLufs - loudness->lufs, level.mostTruePeakDb - loudness->truePeakDb);
  const double gain = std::pow(10, gainDb / 20);
  const auto file = OpenIn(folder, name);
  file->Append(WavHeader(kChannels, loudness->frames));
  const int64_t written = ForEachBlock(*opener_->Open(path), [&](FloatBlock& block, int count) {
    file->Append(SamplesAt(gain, block, count));
  });
  if (written != loudness->frames) throw SoundError(path + ": changed while it was read");
  file->Finish();
  return true;
}

void RealLevelTool::Copy(Folder& folder, const std::string& from, const std::string& to) {
  const std::string path = folder.PathOf(from);
  std::ifstream file(path, std::ios::binary);
  if (!file) throw FileError(path + ": is not there");
  const auto copy = OpenIn(folder, to);
  std::string part(kCopiedBytes, '\0');
  while (file.read(part.data(), static_cast<std::streamsize>(part.size())) || file.gcount() > 0)
    copy->Append(std::string_view(part).substr(0, static_cast<size_t>(file.gcount())));
  if (file.bad()) throw FileError(path + ": cannot be read");
  copy->Finish();
}

}  // namespace zemo
