#include "platform/real/analysis/RealLevelTool.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#include "platform/FileInParts.h"
#include "platform/Folder.h"
#include "platform/WavHeader.h"
#include "platform/real/analysis/SoundAnalyser.h"
#include "platform/real/files/WholeFiles.h"
#include "platform/sound/SampleFormat.h"

namespace zemo {

namespace {

constexpr int kLevelBlockFrames = 16384;
constexpr size_t kCopiedBytes = size_t{1} << 20;  // at a time

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
  const auto measures = MeasureSound(*opener_, path);
  if (!measures || !measures->loudnessLufs || !measures->truePeakDb) return false;
  const double gainDb = std::min(level.loudnessLufs - *measures->loudnessLufs,
                                 level.mostTruePeakDb - *measures->truePeakDb);
  const double gain = std::pow(10, gainDb / 20);
  const int64_t frames = ForEachBlock(*opener_->Open(path), [](FloatBlock&, int) {});
  const auto file = OpenIn(folder, name);
  file->Append(WavHeader(kChannels, frames));
  const int64_t written = ForEachBlock(*opener_->Open(path), [&](FloatBlock& block, int count) {
    file->Append(SamplesAt(gain, block, count));
  });
  if (written != frames) throw SoundError(path + ": changed while it was read");
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
