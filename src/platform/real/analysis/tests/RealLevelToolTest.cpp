// A tone of 1 kHz has as many LUFS in two channels as its peak has dBFS in each.
#include <gtest/gtest.h>
#include <sndfile.h>

#include "platform/real/analysis/RealLevelTool.h"
#include "platform/real/analysis/SoundAnalyser.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/decoders/tests/TestSounds.h"
#include "platform/real/files/LocalFolder.h"

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
};

TEST_F(LevelToolTest, ASoftRecordingComesToTheLevelWithItsLength) {
  ASSERT_TRUE(tool.BringTo({-18, -1}, Tone(0.01), folder, "a.wav"));  // -40 dBFS
  EXPECT_NEAR(*Written().loudnessLufs, -18, 0.1);
  EXPECT_EQ(Written().lengthMs, 5000);
}

TEST_F(LevelToolTest, ALoudRecordingComesDown) {
  ASSERT_TRUE(tool.BringTo({-18, -1}, Tone(0.9), folder, "a.wav"));
  EXPECT_NEAR(*Written().loudnessLufs, -18, 0.1);
}

TEST_F(LevelToolTest, TheTruePeakIsHeld) {
  ASSERT_TRUE(tool.BringTo({5, -1}, Tone(0.1), folder, "a.wav"));
  EXPECT_NEAR(*Written().truePeakDb, -1, 0.1);
}

TEST_F(LevelToolTest, AFileCanTakeItsOwnPlace) {
  const std::string path = Tone(0.1);
  LocalFolder own(files.Path(""));
  ASSERT_TRUE(tool.BringTo({-30, -1}, path, own, "tone.wav"));
  EXPECT_NEAR(*MeasureSound(opener, path)->loudnessLufs, -30, 0.1);
}

TEST_F(LevelToolTest, SilenceIsNotWritten) {
  EXPECT_FALSE(tool.BringTo({-18, -1}, Tone(0), folder, "a.wav"));
  EXPECT_FALSE(folder.Exists("a.wav"));
}

}  // namespace
}  // namespace zemo
