#include "platform/real/analysis/RealLevelTool.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "platform/Folder.h"
#include "platform/WavHeader.h"
#include "platform/real/analysis/SoundAnalyser.h"
#include "platform/sound/SampleFormat.h"

namespace zemo {

namespace {

constexpr int kLevelBlockFrames = 4096;

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
  const auto measures = MeasureSound(*opener_, path);
  if (!measures || !measures->loudnessLufs || !measures->truePeakDb) return false;
  const double gainDb = std::min(level.loudnessLufs - *measures->loudnessLufs,
                                 level.mostTruePeakDb - *measures->truePeakDb);
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
