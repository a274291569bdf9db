// Titles that are made as they are read, with endings of which it is known where they fall below a
// fifth of the title's level: for the tests of the cues, and a seeded corpus of them for their
// benchmark.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/SoundSource.h"

namespace zemo::test {

// How a section fades from its level: not at all, to nothing by amplitude, by 60 dB evenly (which
// is how a room rings, too), to nothing by a quarter of a cosine.
enum class Law { kSteady, kLinear, kDecibels, kCosine };
enum class Material { kNoise, kChord, kBeat, kWords };

struct Section {
  double seconds = 0;
  double level = 1;  // of the title's own; 0 is silence
  Law law = Law::kSteady;
};

struct KnownTitle {
  std::string kind;
  std::vector<Section> sections;
  Material material = Material::kNoise;
  bool mono = false;
  double level = 0.3;  // of the whole
  uint32_t seed = 1;
  double exitSeconds = 0;  // known, from the begin

  double Seconds() const;
};

// The share of a section after which its gain is below `gain`.
double ShareAt(Law law, double gain);

// A second that is repeated without a seam, stereo.
std::vector<float> LoopOf(Material material, bool mono, uint32_t seed);

// Not shared between threads.
class MadeTitle : public SoundSource {
 public:
  explicit MadeTitle(KnownTitle title);
  int64_t LengthFrames() const override { return length_; }
  void Seek(int64_t frame) override;
  int Read(float* stereo, int frames) override;

 private:
  double Gain() const;

  KnownTitle title_;
  std::vector<float> loop_;
  std::vector<int64_t> ends_;  // frames, a section each
  int64_t length_ = 0;
  int64_t at_ = 0;
};

// Gives the title whatever the path.
class MadeOpener : public SoundOpener {
 public:
  explicit MadeOpener(KnownTitle title);
  std::unique_ptr<SoundSource> Open(const std::string& path) override;

 private:
  KnownTitle title_;
};

}  // namespace zemo::test
