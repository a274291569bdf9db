#include "platform/real/analysis/SoundAnalyser.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "platform/real/analysis/LoudnessMeter.h"
#include "platform/real/analysis/SoundCues.h"
#include "platform/real/analysis/TruePeakMeter.h"
#include "platform/real/decoders/FileBytes.h"
#include "platform/real/decoders/ShapeMaker.h"

namespace zemo {

namespace {

constexpr int kBlockFrames = 4096;

}  // namespace

std::optional<SoundMeasures> MeasureSound(SoundOpener& opener, const std::string& path,
                                          const std::stop_token& stop) {
  const auto source = opener.Open(path);
  LoudnessMeter loudness;
  TruePeakMeter truePeak;
  ShapeMaker shape(source->LengthFrames());
  std::vector<float> block(static_cast<size_t>(kBlockFrames) * kChannels);
  while (!stop.stop_requested()) {
    const int frames = source->Read(block.data(), kBlockFrames);
    if (frames == 0) break;
    loudness.Add(block.data(), frames);
    truePeak.Add(block.data(), frames);
    shape.Add(block.data(), frames);
  }
  if (stop.stop_requested()) return std::nullopt;

  const std::vector<float> powers = loudness.TakePowers();
  if (powers.empty()) throw CannotPlay(path, "nothing of it can be decoded");
  SoundMeasures measures;
  measures.lengthMs = static_cast<int32_t>(
      std::min<int64_t>(FramesToMs(source->LengthFrames()), std::numeric_limits<int32_t>::max()));
  measures.loudnessLufs = IntegratedLufs(powers);
  if (const float peak = truePeak.Finish(); peak > 0) measures.truePeakDb = 20 * std::log10(peak);
  measures.peaks = shape.Peaks();
  if (measures.loudnessLufs) {
    const SoundCues cues = FindCues(powers, *measures.loudnessLufs, measures.lengthMs);
    measures.soundBeginMs = cues.beginMs;
    measures.soundEndMs = cues.endMs;
    measures.exitMs = cues.exitMs;
  }
  return measures;
}

}  // namespace zemo
