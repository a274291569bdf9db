// The gain that brings a file to the target, worked out by hand. How it comes to what plays is
// tested on air (tests/scenario), and heard (tests/sound).
#include <gtest/gtest.h>

#include "station/Loudness.h"
#include "station/tests/FakePlatform.h"

namespace zemo {
namespace {

SoundMeasures Measured(std::optional<double> lufs, std::optional<double> peakDb) {
  SoundMeasures measures;
  measures.loudnessLufs = lufs;
  measures.truePeakDb = peakDb;
  return measures;
}

TEST(Loudness, AFileIsBroughtToTheTarget) {
  EXPECT_DOUBLE_EQ(LoudnessGainDb(-18, Measured(-9, -0.5)), -9);
  EXPECT_DOUBLE_EQ(LoudnessGainDb(-18, Measured(-18, -6)), 0);
  EXPECT_DOUBLE_EQ(LoudnessGainDb(-18, Measured(-30, -20)), 12);
  EXPECT_DOUBLE_EQ(LoudnessGainDb(-23, Measured(-10.5, 1.25)), -12.5);
}

TEST(Loudness, ATruePeakIsLiftedToMinus1AndNoFurther) {
  EXPECT_DOUBLE_EQ(LoudnessGainDb(-18, Measured(-24, -7)), 6);  // to -1 exactly
  EXPECT_DOUBLE_EQ(LoudnessGainDb(-18, Measured(-24, -3)), 2);
  EXPECT_DOUBLE_EQ(LoudnessGainDb(-18, Measured(-30, -1)), 0);
}

TEST(Loudness, ATruePeakAboveMinus1IsBroughtDownToIt) {
  EXPECT_DOUBLE_EQ(LoudnessGainDb(-18, Measured(-18, 0)), -1);
  EXPECT_DOUBLE_EQ(LoudnessGainDb(-18, Measured(-20, 1.5)), -2.5);
}

TEST(Loudness, SilenceAndWhatIsNotKnownPlaysAsItIs) {
  EXPECT_EQ(LoudnessGainDb(-18, Measured({}, {})), 0);
  EXPECT_EQ(LoudnessGainDb(-18, Measured(-9, {})), 0);
  EXPECT_EQ(LoudnessGainDb(-18, Measured({}, 0)), 0);
}

// A station without a base.
struct LoudnessTarget : testing::Test {
  FakePlatform fake;

  // The lines of the log that asking twice with that value makes.
  std::vector<std::string> ToldOf(const std::string& value) {
    fake.machineFolder.files["Settings.Ini"] = "LoudnessTarget=" + value + "\r\n";
    fake.errors.clear();
    for (int i = 0; i < 2; ++i) EXPECT_EQ(LoudnessGain(fake.station, "/a.wav"), 1) << value;
    return fake.errors;
  }
};

TEST_F(LoudnessTarget, NothingOrZeroIsOff) {
  EXPECT_EQ(LoudnessGain(fake.station, "/a.wav"), 1);
  for (const char* off : {"", "0", "0.0", " 0 "}) EXPECT_TRUE(ToldOf(off).empty()) << off;
}

TEST_F(LoudnessTarget, LiesFromMinus40ToMinus5) {
  for (const char* taken : {"-5", "-40", "-18", "-23.5"})
    EXPECT_TRUE(ToldOf(taken).empty()) << taken;
}

TEST_F(LoudnessTarget, AnythingElseIsOffAndToldInOneLine) {
  for (const char* refused :
       {"-4.9", "-40.1", "18", "loud", "-18 LUFS", "-18,5", "nan", "-inf", "1e400"}) {
    const auto told = ToldOf(refused);
    ASSERT_EQ(told.size(), 1U) << refused;
    EXPECT_EQ(told[0], "LoudnessTarget/75/\"" + std::string(refused) +
                           "\" in Settings.Ini is no loudness from -40 to -5 LUFS: every file "
                           "plays as it is");
  }
}

TEST_F(LoudnessTarget, WithoutABaseAFilePlaysAsItIs) {
  fake.soundFiles.files["/a.wav"] = "sound";
  EXPECT_TRUE(ToldOf("-18").empty());
}

}  // namespace
}  // namespace zemo
