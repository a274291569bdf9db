// WAV files: every sample format to the value, lengths to the sample, headers that lie.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <bit>
#include <cmath>
#include <limits>

#include "TestSounds.h"
#include "platform/real/decoders/SoundFileOpener.h"

namespace zemo {
namespace {

std::string Bytes32(float value) {
  return LittleEndian(std::bit_cast<uint32_t>(value), 4);
}
std::string Bytes64(double value) {
  return LittleEndian(static_cast<int64_t>(std::bit_cast<uint64_t>(value)), 8);
}

class WaveDecoding : public testing::Test {
 protected:
  std::vector<float> DecodeBytes(const std::string& bytes) {
    const std::string path = folder_.Path("sound.wav");
    WriteBytes(path, bytes);
    const auto source = SoundFileOpener().Open(path);
    length_ = source->LengthFrames();
    return ReadAll(*source);
  }

  // 1000 frames whose left samples count upwards, right downwards.
  static std::string Ramp() {
    std::string data;
    for (int i = 0; i < 1000; ++i) data += LittleEndian(i, 2) + LittleEndian(-i, 2);
    return data;
  }

  void ExpectRamp(const std::vector<float>& read) {
    EXPECT_EQ(length_, 1000);
    ASSERT_EQ(read.size(), 2000U);
    EXPECT_EQ(read[2 * 999], 999 / 32768.0F);
    EXPECT_EQ(read[2 * 999 + 1], -999 / 32768.0F);
  }

  TestFolder folder_;
  int64_t length_ = 0;
};

using Floats = std::vector<float>;

TEST_F(WaveDecoding, SixteenBitSamplesAreTheirValueOver32768) {
  const std::string data = LittleEndian(16384, 2) + LittleEndian(-32768, 2) + LittleEndian(1, 2) +
                           LittleEndian(32767, 2);
  EXPECT_EQ(DecodeBytes(WaveBytes({}, data)),
            (Floats{0.5F, -1.0F, 1 / 32768.0F, 32767 / 32768.0F}));
}

TEST_F(WaveDecoding, EightBitSamplesAreUnsignedAround128) {
  const std::string data = {'\x80', '\xC0', '\x00', '\x40'};
  EXPECT_EQ(DecodeBytes(WaveBytes({.bits = 8}, data)), (Floats{0.0F, 0.5F, -1.0F, -0.5F}));
}

TEST_F(WaveDecoding, TwentyFourBitSamplesAreTheirValueOver8388608) {
  const std::string data = LittleEndian(0x400000, 3) + LittleEndian(-0x800000, 3);
  EXPECT_EQ(DecodeBytes(WaveBytes({.bits = 24}, data)), (Floats{0.5F, -1.0F}));
}

TEST_F(WaveDecoding, ThirtyTwoBitSamplesAreTheirValueOverTwoToThe31) {
  const std::string data = LittleEndian(0x20000000, 4) + LittleEndian(-0x40000000, 4);
  EXPECT_EQ(DecodeBytes(WaveBytes({.bits = 32}, data)), (Floats{0.25F, -0.5F}));
}

TEST_F(WaveDecoding, FloatSamplesAreTakenAsTheyAre) {
  const std::string data = Bytes32(0.3F) + Bytes32(-1.5F);
  EXPECT_EQ(DecodeBytes(WaveBytes({.tag = 3, .bits = 32}, data)), (Floats{0.3F, -1.5F}));
}

TEST_F(WaveDecoding, DoubleSamplesAreRoundedToFloat) {
  const std::string data = Bytes64(0.1) + Bytes64(-0.75);
  EXPECT_EQ(DecodeBytes(WaveBytes({.tag = 3, .bits = 64}, data)), (Floats{0.1F, -0.75F}));
}

TEST_F(WaveDecoding, FloatSamplesThatAreNoNumbersAreSilence) {
  const float infinite = std::numeric_limits<float>::infinity();
  const std::string data =
      Bytes32(std::nanf("")) + Bytes32(infinite) + Bytes32(-1e30F) + Bytes32(0.5F);
  EXPECT_EQ(DecodeBytes(WaveBytes({.tag = 3, .bits = 32}, data)),
            (Floats{0.0F, 0.0F, -16.0F, 0.5F}));
}

TEST_F(WaveDecoding, OneChannelSoundsOnBothSides) {
  const std::string data = LittleEndian(16384, 2) + LittleEndian(-8192, 2) + LittleEndian(4096, 2);
  EXPECT_EQ(DecodeBytes(WaveBytes({.channels = 1}, data)),
            (Floats{0.5F, 0.5F, -0.25F, -0.25F, 0.125F, 0.125F}));
}

TEST_F(WaveDecoding, ExtensibleHeaderIsUnderstood) {
  const std::string guidTail("\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71", 14);
  const std::string form = LittleEndian(0xFFFE, 2) + LittleEndian(2, 2) + LittleEndian(44100, 4) +
                           LittleEndian(44100 * 6, 4) + LittleEndian(6, 2) + LittleEndian(24, 2) +
                           LittleEndian(22, 2) + LittleEndian(24, 2) + LittleEndian(3, 4) +
                           LittleEndian(1, 2) + guidTail;
  ASSERT_EQ(form.size(), 40U);
  const std::string data = LittleEndian(0x400000, 3) + LittleEndian(0x200000, 3);
  EXPECT_EQ(DecodeBytes("RIFF" + LittleEndian(4 + 48 + 8 + 6, 4) + "WAVEfmt " +
                        LittleEndian(40, 4) + form + "data" + LittleEndian(6, 4) + data),
            (Floats{0.5F, 0.25F}));
}

TEST_F(WaveDecoding, SixChannelsKeepTheCentreAndDropTheLowFrequencies) {
  // L R C LFE Ls Rs: left 0.25 + 0.7071 * 0.5 (centre) = 0.60355; right 0.7071 * (0.5 + 0.25).
  std::string data;
  for (const int value : {8192, 0, 16384, 32767, 0, 8192}) data += LittleEndian(value, 2);
  const auto read = DecodeBytes(WaveBytes({.channels = 6}, data));
  ASSERT_EQ(read.size(), 2U);
  EXPECT_NEAR(read[0], 0.603553, 1e-5);
  EXPECT_NEAR(read[1], 0.530330, 1e-5);
}

TEST_F(WaveDecoding, LengthIsExactToTheSample) {
  DecodeBytes(WaveBytes({}, Ramp()));
  EXPECT_EQ(length_, 1000);
  DecodeBytes(WaveBytes({}, Ramp() + std::string(4, '\0')));
  EXPECT_EQ(length_, 1001);
}

TEST_F(WaveDecoding, ChunksBehindTheSoundAreNotSound) {
  ExpectRamp(DecodeBytes(WaveBytes({}, Ramp()) + "LIST" + LittleEndian(4, 4) + "INFO"));
}

TEST_F(WaveDecoding, DataLengthBeyondTheFileEndsWithTheFile) {
  for (const uint32_t lie : {4004U, 1000000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
    std::string bytes = WaveBytes({}, Ramp());
    PutLittleEndian32(bytes, kWaveDataLengthAt, lie);
    SCOPED_TRACE(lie);
    ExpectRamp(DecodeBytes(bytes));
  }
}

TEST_F(WaveDecoding, DataLengthZeroOfARecordingNeverClosedEndsWithTheFile) {
  std::string bytes = WaveBytes({}, Ramp());
  PutLittleEndian32(bytes, kWaveDataLengthAt, 0);
  ExpectRamp(DecodeBytes(bytes));
  PutLittleEndian32(bytes, kWaveRiffLengthAt, 0);
  ExpectRamp(DecodeBytes(bytes));
}

TEST_F(WaveDecoding, RiffLengthThatLiesChangesNothing) {
  for (const uint32_t lie : {0U, 100U, 1000000U, 0xFFFFFFFFU}) {
    std::string bytes = WaveBytes({}, Ramp());
    PutLittleEndian32(bytes, kWaveRiffLengthAt, lie);
    SCOPED_TRACE(lie);
    ExpectRamp(DecodeBytes(bytes));
  }
}

TEST_F(WaveDecoding, FileCutWithinAFrameHoldsTheWholeFrames) {
  const std::string bytes = WaveBytes({}, Ramp());
  DecodeBytes(bytes.substr(0, kWaveDataAt + 4 * 500 + 3));
  EXPECT_EQ(length_, 500);
}

TEST_F(WaveDecoding, NameEndingDoesNotMatter) {
  const std::string path = folder_.Path("named.mp3");
  WriteBytes(path, WaveBytes({}, Ramp()));
  EXPECT_EQ(SoundFileOpener().Open(path)->LengthFrames(), 1000);
}

TEST_F(WaveDecoding, TagsBeforeTheHeaderAreSkipped) {
  const std::string tag = std::string("ID3\x03\x00\x00\x00\x00\x01\x00", 10) + Noise(128, 3);
  ExpectRamp(DecodeBytes(tag + WaveBytes({}, Ramp())));
}

TEST_F(WaveDecoding, SeeksAreExact) {
  for (const int format : {SF_FORMAT_PCM_U8, SF_FORMAT_PCM_16, SF_FORMAT_PCM_24, SF_FORMAT_PCM_32,
                           SF_FORMAT_FLOAT, SF_FORMAT_DOUBLE}) {
    const std::string path = folder_.Path("seek.wav");
    WriteSound(path, SF_FORMAT_WAV | format, {.hertz = {441, 997}, .frames = 20001});
    const auto source = SoundFileOpener().Open(path);
    ExpectExactSeeks(*source, ReadAll(*source), 0);
  }
}

TEST_F(WaveDecoding, LevelAndContentOfBothSidesAreKept) {
  const std::string path = folder_.Path("tone.wav");
  WriteSound(path, SF_FORMAT_WAV | SF_FORMAT_PCM_16,
             {.hertz = {441, 882}, .level = 0.5, .frames = 44100});
  const auto read = Decode(path);
  EXPECT_NEAR(ToneLevel(Left(read), 441), 0.5, 0.001);
  EXPECT_NEAR(ToneLevel(Left(read), 882), 0, 0.001);
  EXPECT_NEAR(ToneLevel(Right(read), 882), 0.5, 0.001);
  EXPECT_NEAR(ToneLevel(Right(read), 441), 0, 0.001);
}

}  // namespace
}  // namespace zemo
