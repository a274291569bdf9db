// Files of every loudness on air, heard: measured by libebur128 before and behind the program.
#include <ebur128.h>

#include <memory>
#include <nlohmann/json.hpp>

#include "RenderedStation.h"
#include "platform/real/files/WholeFiles.h"
#include "store/SoundMeasuresTable.h"
#include "store/StationBase.h"

namespace zemo {
namespace {

using namespace hearing;

constexpr double kTarget = -18;
constexpr double kSeconds = 8;

struct Loudness {
  double lufs = 0;
  double peakDb = 0;  // true peak, dBTP
};

Loudness LoudnessOf(const Recording& heard, double fromSeconds, double toSeconds) {
  struct End {
    void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
  };
  const std::unique_ptr<ebur128_state, End> meter(
      ebur128_init(2, kRate, EBUR128_MODE_I | EBUR128_MODE_TRUE_PEAK));
  std::vector<float> stereo;
  const auto last = std::min(heard.left.size(), static_cast<size_t>(toSeconds * kRate));
  for (auto i = static_cast<size_t>(fromSeconds * kRate); i < last; ++i)
    stereo.insert(stereo.end(), 2, heard.left[i]);
  EXPECT_EQ(ebur128_add_frames_float(meter.get(), stereo.data(), stereo.size() / 2),
            EBUR128_SUCCESS);
  Loudness loudness;
  double peak = 0;
  ebur128_loudness_global(meter.get(), &loudness.lufs);
  ebur128_true_peak(meter.get(), 0, &peak);
  loudness.peakDb = 20 * std::log10(peak);
  return loudness;
}
Loudness LoudnessOf(const Recording& heard) {
  return LoudnessOf(heard, 0, heard.Seconds());
}

// --- sounds of kSeconds, near full scale ---

std::vector<double> Chord(double hertz) {
  std::vector<double> samples(static_cast<size_t>(kSeconds * kRate));
  for (size_t i = 0; i < samples.size(); ++i) {
    const double turns = 2 * std::numbers::pi * static_cast<double>(i) / kRate;
    samples[i] = 0.49 * (std::sin(turns * hertz) + std::sin(turns * hertz * 1.5));
  }
  return samples;
}

// As of a crowd that swells and falls four times a second.
std::vector<double> SwellingNoise(uint32_t seed) {
  std::vector<double> samples(static_cast<size_t>(kSeconds * kRate));
  double low = 0;
  for (size_t i = 0; i < samples.size(); ++i) {
    seed = seed * 1664525U + 1013904223U;
    low += 0.2 * (static_cast<double>(seed >> 8) / (1U << 23) - 1 - low);
    const double swell =
        1 + 0.5 * std::sin(2 * std::numbers::pi * 4 * static_cast<double>(i) / kRate);
    samples[i] = 0.6 * swell * low;
  }
  return samples;
}

// Quiet, with a short loud tone each second.
std::vector<double> Drops() {
  std::vector<double> samples = SwellingNoise(7);
  for (size_t i = 0; i < samples.size(); ++i) {
    samples[i] *= 0.05;
    const size_t since = i % kRate;
    if (since < 100)
      samples[i] += 0.6 * std::sin(2 * std::numbers::pi * 882 * static_cast<double>(since) / kRate);
  }
  return samples;
}

class LoudnessHeard : public RenderedStation {
 protected:
  struct Title {
    std::string file;
    Recording sound;  // as it is in the file
    Loudness loudness;
  };

  // At that loudness, at the end of the list.
  void AddSound(std::vector<double> samples, std::optional<double> lufs = {}) {
    const std::string file = Path("station/title" + std::to_string(titles.size()) + ".wav");
    WriteWav(file, samples);
    if (lufs) {
      const double factor = std::pow(10, (*lufs - LoudnessOf(ReadWav(file)).lufs) / 20);
      for (double& sample : samples) sample *= factor;
      WriteWav(file, samples);
    }
    titles.push_back({file, ReadWav(file), {}});
    titles.back().loudness = LoudnessOf(titles.back().sound);
    AddTitle(file, kSeconds, 1);
  }
  // As a measuring of the library leaves them.
  void StoreLoudness() const {
    StationBase base(Path("station/Triskin.MDB"));
    base.OpenOrCreateDatabase();
    for (const Title& title : titles) {
      SoundMeasures measures;
      measures.loudnessLufs = title.loudness.lufs;
      measures.truePeakDb = title.loudness.peakDb;
      StoreMeasures(base, title.file, RegularFileStamp(title.file).value(), measures);
    }
  }
  void SetTarget(const std::string& lufs) const {
    Put("machine/Settings.Ini", "LoudnessTarget=" + lufs + "\r\n");
  }
  Recording RenderAll() const {
    return Render(static_cast<int>((kSeconds + 1) * static_cast<double>(titles.size())), {},
                  "--machine machine");
  }
  // Frames behind 10:00:00 at which each element began.
  std::vector<size_t> BeginFrames() const {
    std::vector<size_t> frames;
    for (const std::string& line : LinesOf(ReadText(Path("trace")))) {
      const auto event = nlohmann::json::parse(line);
      if (event["event"] != "start") continue;
      const auto at = event["at"].get<std::string>();  // 2026-11-21T10:MM:SS.mmm
      const double seconds = std::stod(at.substr(14, 2)) * 60 + std::stod(at.substr(17));
      frames.push_back(static_cast<size_t>(std::lround(seconds * 1000)) * 441 / 10);
    }
    return frames;
  }

  std::vector<Title> titles;
};

TEST_F(LoudnessHeard, TenTitlesFromMinus9ToMinus30AreWithinOneUnitOfEachOther) {
  for (int i = 0; i < 10; ++i) {
    const double lufs = -9 - i * 21.0 / 9;
    AddSound(i < 5 ? Chord(300.0 + 100 * i) : SwellingNoise(static_cast<uint32_t>(i)), lufs);
    ASSERT_NEAR(titles.back().loudness.lufs, lufs, 0.1) << i;
    ASSERT_LE(titles.back().loudness.peakDb, 0) << i;
  }
  MakeBase();
  StoreLoudness();
  SetTarget("-18");
  const Recording heard = RenderAll();
  const auto begins = BeginFrames();
  ASSERT_EQ(begins.size(), 10U);
  double least = 0, most = -100;
  for (size_t i = 0; i < titles.size(); ++i) {
    const double from = static_cast<double>(begins[i]) / kRate;
    const double lufs = LoudnessOf(heard, from + 0.5, from + kSeconds - 0.5).lufs;
    EXPECT_NEAR(lufs, kTarget, 0.5) << i;
    least = std::min(least, lufs);
    most = std::max(most, lufs);
    // It is the file, sample by sample, at one factor: the limiter has no part in it.
    const double factor = std::pow(10, (kTarget - titles[i].loudness.lufs) / 20);
    for (size_t frame = kRate / 2; frame < static_cast<size_t>((kSeconds - 0.5) * kRate); ++frame)
      ASSERT_NEAR(heard.left[begins[i] + frame], titles[i].sound.left[frame] * factor, 0.51 / 32768)
          << i << " " << frame;
  }
  EXPECT_LE(most - least, 1);
  EXPECT_LE(LoudnessOf(heard).peakDb, -1);
}

TEST_F(LoudnessHeard, AQuietTitleIsLiftedUntilItsTruePeakIsAtMinus1) {
  AddSound(Drops());
  const Loudness before = titles[0].loudness;
  ASSERT_LT(before.lufs, -25);
  ASSERT_NEAR(before.peakDb, -4.4, 0.5);  // 0.6 of full scale
  MakeBase();
  StoreLoudness();
  SetTarget("-18");
  const Loudness after = LoudnessOf(RenderAll());
  EXPECT_NEAR(after.peakDb, -1, 0.02);
  EXPECT_NEAR(after.lufs, before.lufs + (-1 - before.peakDb), 0.1);
}

TEST_F(LoudnessHeard, WithoutATargetOrAMeasureEverySampleIsThatOfTheFile) {
  AddSound(Chord(400), -9);
  AddSound(SwellingNoise(1), -26);
  MakeBase();
  const auto heardNow = [this] {
    RenderAll();
    return ReadText(Path("heard.wav"));
  };
  const std::string plain = heardNow();
  SetTarget("-18");
  EXPECT_TRUE(plain == heardNow()) << "not measured";
  StoreLoudness();
  EXPECT_FALSE(plain == heardNow()) << "measured";
  SetTarget("");
  EXPECT_TRUE(plain == heardNow()) << "measured, without a target";
  const Recording heard = ReadWav(Path("heard.wav"));
  const auto begins = BeginFrames();
  ASSERT_EQ(begins.size(), 2U);
  for (size_t i = 0; i < titles.size(); ++i)
    for (size_t frame = kRate / 2; frame < static_cast<size_t>((kSeconds - 0.5) * kRate); ++frame)
      ASSERT_EQ(heard.left[begins[i] + frame], titles[i].sound.left[frame]) << i << " " << frame;
}

}  // namespace
}  // namespace zemo
