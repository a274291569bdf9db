// A tone of 1 kHz has as many LUFS in two channels as its peak has dBFS in each.
#include <ebur128.h>
#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <vector>

#include "platform/real/analysis/RealLevelTool.h"
#include "platform/real/analysis/SoundAnalyser.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/decoders/tests/TestSounds.h"
#include "platform/real/files/LocalFolder.h"
#include "platform/real/files/WholeFiles.h"

namespace zemo {
namespace {

constexpr int kWavFormat = SF_FORMAT_WAV | SF_FORMAT_PCM_16;

struct LevelToolTest : testing::Test {
  TestFolder files;
  LocalFolder folder{files.Path("tracks")};
  RealLevelTool tool{std::make_unique<SoundFileOpener>()};
  SoundFileOpener opener;

  std::string Tone(double level) {
    WriteSound(files.Path("tone.wav"), kWavFormat, {44100, {1000.0, 1000.0}, level, 220'500});
    return files.Path("tone.wav");
  }
  SoundMeasures Written() { return MeasureSound(opener, folder.PathOf("a.wav")).value(); }
  double Peak() { return Written().truePeakDb.value(); }  // by our own meter
  // Of the file as libebur128 measures it.
  struct Loudness {
    double lufs = 0, peakDb = 0;
  };
  Loudness Heard() {
    ebur128_state* meter = ebur128_init(2, 44100, EBUR128_MODE_I | EBUR128_MODE_TRUE_PEAK);
    const auto source = opener.Open(folder.PathOf("a.wav"));
    std::vector<float> stereo(static_cast<size_t>(2 * source->LengthFrames()));
    const int frames = source->Read(stereo.data(), static_cast<int>(source->LengthFrames()));
    ebur128_add_frames_float(meter, stereo.data(), static_cast<size_t>(frames));
    Loudness heard;
    double peak = 0;
    ebur128_loudness_global(meter, &heard.lufs);
    ebur128_true_peak(meter, 0, &peak);
    heard.peakDb = 20 * std::log10(peak);
    ebur128_destroy(&meter);
    return heard;
  }
};

TEST_F(LevelToolTest, ASoftRecordingComesToTheLevelWithItsLength) {
  ASSERT_TRUE(tool.BringTo({-18, -1}, Tone(0.01), folder, "a.wav"));  // -40 dBFS
  EXPECT_NEAR(Heard().lufs, -18, 0.1);
  EXPECT_EQ(Written().lengthMs, 5000);
}

TEST_F(LevelToolTest, ALoudRecordingComesDown) {
  ASSERT_TRUE(tool.BringTo({-18, -1}, Tone(0.9), folder, "a.wav"));
  EXPECT_NEAR(Heard().lufs, -18, 0.1);
}

TEST_F(LevelToolTest, TheTruePeakIsHeld) {
  ASSERT_TRUE(tool.BringTo({5, -1}, Tone(0.1), folder, "a.wav"));
  EXPECT_NEAR(Heard().peakDb, -1, 0.1);
}

TEST_F(LevelToolTest, AFileCanTakeItsOwnPlace) {
  const std::string path = Tone(0.1);
  LocalFolder own(files.Path(""));
  ASSERT_TRUE(tool.BringTo({-30, -1}, path, own, "tone.wav"));
  EXPECT_NEAR(*MeasureSound(opener, path)->loudnessLufs, -30, 0.1);
}

// Half of a block of the measure, the other half being silence: 3 dB softer than the tone.
TEST_F(LevelToolTest, ASoundShorterThanTheMeasuresBlockHasSilenceBehindIt) {
  WriteSound(files.Path("word.wav"), kWavFormat, {44100, {1000.0, 1000.0}, 0.1, 8820});
  ASSERT_TRUE(tool.BringTo({-30, -1}, files.Path("word.wav"), folder, "a.wav"));
  EXPECT_NEAR(Peak(), -30 + 3.0, 0.3);  // -20 dBFS are -23 LUFS so
}

TEST_F(LevelToolTest, TheLouderChannelsTruePeakIsHeld) {
  WriteSound(files.Path("side.wav"), kWavFormat, {44100, {0.0, 1000.0}, 0.1, 220'500});
  ASSERT_TRUE(tool.BringTo({5, -1}, files.Path("side.wav"), folder, "a.wav"));
  EXPECT_NEAR(Peak(), -1, 0.1);
}

// Of hours of sound the samples do not fit beside what is on air.
TEST_F(LevelToolTest, NoSoundIsHeldWhole) {
  struct InParts : LocalFolder {
    using LocalFolder::LocalFolder;
    void Write(std::string_view, std::string_view) override { throw FileError("written whole"); }
    std::optional<std::string> Read(std::string_view) const override {
      throw FileError("read whole");
    }
  } parts{files.Path("made later")};
  ASSERT_TRUE(tool.BringTo({-18, -1}, Tone(0.01), parts, "a.wav"));
  tool.Copy(parts, "a.wav", "b.wav");
  EXPECT_EQ(ReadWholeFile(parts.PathOf("b.wav")), ReadWholeFile(parts.PathOf("a.wav")));
  EXPECT_EQ(parts.SizeBytes("b.wav"), 44 + 220'500 * 4);
  EXPECT_EQ(parts.Names(), (std::vector<std::string>{"a.wav", "b.wav"}));
  EXPECT_THROW(tool.Copy(parts, "none.wav", "b.wav"), FileError);
  EXPECT_EQ(parts.SizeBytes("b.wav"), 44 + 220'500 * 4);
}

TEST_F(LevelToolTest, SilenceIsNotWritten) {
  EXPECT_FALSE(tool.BringTo({-18, -1}, Tone(0), folder, "a.wav"));
  EXPECT_FALSE(folder.Exists("a.wav"));
}

}  // namespace
}  // namespace zemo
