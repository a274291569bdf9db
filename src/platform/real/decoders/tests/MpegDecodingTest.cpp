// MP3 from file to frames: length, position, level, seeks; with and without information frame,
// tags, junk, cuts and damage.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <numbers>

#include "TestSounds.h"
#include "platform/real/decoders/SoundFileOpener.h"

namespace zemo {
namespace {

constexpr double kBest = 0.0;  // encoder level: highest bit rate
constexpr double kLow = 0.9;
constexpr size_t kFrame48 = 576;  // bytes of a frame at 192 kbit/s and 48 kHz: 144 * 192 / 48

// Frames at 44.1 kHz of `frames` at 48 kHz: those whose instant lies before the end.
int64_t From48(int64_t frames) {
  return (frames * 147 + 159) / 160;
}

// Largest distance of one side from the tone it was made of, but for `edge` frames at both ends.
double DistanceFromTone(const std::vector<float>& side, double hertz, double level, size_t edge) {
  double largest = 0;
  for (size_t i = edge; i + edge < side.size(); ++i) {
    const double turn = 2 * std::numbers::pi * hertz * static_cast<double>(i) / 44100;
    largest = std::max(largest, std::abs(side[i] - level * std::sin(turn)));
  }
  return largest;
}

class MpegDecoding : public testing::Test {
 protected:
  std::unique_ptr<SoundSource> OpenBytes(const std::string& bytes,
                                         const std::string& name = "sound.mp3") {
    WriteBytes(folder_.Path(name), bytes);
    return SoundFileOpener().Open(folder_.Path(name));
  }

  std::vector<float> DecodeBytes(const std::string& bytes) {
    const auto source = OpenBytes(bytes);
    auto all = ReadAll(*source);
    EXPECT_EQ(static_cast<int64_t>(all.size()), 2 * source->LengthFrames());
    return all;
  }

  // A second of tones at 48 kHz, 192 kbit/s.
  static const std::string& Second48() {
    static const std::string mp3 = Mp3Bytes({.rate = 48000, .hertz = {441, 882}, .frames = 48000},
                                            Mp3Mode::kConstant, kLevel192);
    return mp3;
  }

  TestFolder folder_;
};

// One frame too early or too late would be 0.5 * 2 pi * 1000 / 44100 = 0.07 off.
TEST_F(MpegDecoding, SoundIsAsLongAndStandsWhereItWasBeforeTheEncoder) {
  for (const Mp3Mode mode : {Mp3Mode::kConstant, Mp3Mode::kVariable}) {
    const auto read = DecodeBytes(Mp3Bytes({.hertz = {1000, 700}, .frames = 100003}, mode, kBest));
    EXPECT_EQ(read.size(), 2 * 100003U);
    EXPECT_LT(DistanceFromTone(Left(read), 1000, 0.5, 1500), 0.02);
    EXPECT_LT(DistanceFromTone(Right(read), 700, 0.5, 1500), 0.02);
  }
}

TEST_F(MpegDecoding, EveryRateGivesTheSameLengthAndPositionAt44100) {
  for (const int rate : {8000, 11025, 12000, 16000, 22050, 24000, 32000, 48000}) {
    SCOPED_TRACE(rate);
    const auto read = DecodeBytes(Mp3Bytes(
        {.rate = rate, .hertz = {1000, 700}, .frames = 2 * rate + 1}, Mp3Mode::kConstant, kBest));
    // Two seconds and one frame of the file's rate, the frame begun counted whole.
    EXPECT_EQ(static_cast<int64_t>(read.size() / 2), 88200 + (44100 + rate - 1) / rate);
    EXPECT_LT(DistanceFromTone(Left(read), 1000, 0.5, 8000), 0.03);
    EXPECT_LT(DistanceFromTone(Right(read), 700, 0.5, 8000), 0.03);
  }
}

TEST_F(MpegDecoding, OneChannelSoundsOnBothSidesAtItsLevel) {
  const auto read =
      DecodeBytes(Mp3Bytes({.hertz = {1000}, .frames = 44100}, Mp3Mode::kConstant, kLevel192));
  EXPECT_EQ(read.size(), 2 * 44100U);
  EXPECT_LT(DistanceFromTone(Left(read), 1000, 0.5, 1500), 0.02);
  EXPECT_EQ(Left(read), Right(read));
}

TEST_F(MpegDecoding, JointStereoKeepsTheSidesApart) {
  const std::string mp3 =
      Mp3Bytes({.hertz = {441, 882}, .frames = 88200}, Mp3Mode::kConstant, kLevel192);
  ASSERT_EQ(static_cast<uint8_t>(mp3[3]) >> 6, 1) << "not encoded as joint stereo";
  const auto read = DecodeBytes(mp3);
  // The encoder itself takes 3 % off at this bit rate.
  EXPECT_NEAR(ToneLevel(Left(read), 441), 0.485, 0.002);
  EXPECT_LT(ToneLevel(Left(read), 882), 0.005);
  EXPECT_NEAR(ToneLevel(Right(read), 882), 0.485, 0.002);
  EXPECT_LT(ToneLevel(Right(read), 441), 0.005);
}

TEST_F(MpegDecoding, StreamWithoutHeaderIsAsLongAsItsFrames) {
  const std::string sound = WithoutInfoFrame(Second48());
  ASSERT_EQ(sound.size() % kFrame48, 0U);
  const auto frames = static_cast<int64_t>(sound.size() / kFrame48);
  const auto read = DecodeBytes(sound);
  EXPECT_EQ(static_cast<int64_t>(read.size() / 2), From48(frames * 1152));
}

TEST_F(MpegDecoding, StreamOfTwoBitRatesWithoutHeaderIsAsLongAsItsFrames) {
  // The first frames state the low rate: a length guessed from them would be far too great.
  const std::string low = WithoutInfoFrame(
      Mp3Bytes({.rate = 48000, .hertz = {441, 882}, .frames = 48000}, Mp3Mode::kConstant, 0.8));
  const std::string high = WithoutInfoFrame(Second48());
  // 3 bytes a kbit/s: 144 / 48.
  const size_t lowFrame = 3 * 96;
  ASSERT_EQ(static_cast<uint8_t>(low[2]) >> 4, 7) << "not 96 kbit/s";
  ASSERT_EQ(low.size() % lowFrame, 0U);
  const auto frames = static_cast<int64_t>(low.size() / lowFrame + high.size() / kFrame48);
  const auto read = DecodeBytes(low + high);
  EXPECT_EQ(static_cast<int64_t>(read.size() / 2), From48(frames * 1152));
}

TEST_F(MpegDecoding, TagsChangeNothing) {
  const std::string mp3 =
      Mp3Bytes({.hertz = {441, 882}, .frames = 44100}, Mp3Mode::kVariable, kLevel192);
  const auto plain = DecodeBytes(mp3);
  // A tag of 1000 * 128 bytes, full of what looks like frames.
  std::string tag("ID3\x03\x00\x00\x00\x07\x68\x00", 10);
  for (int i = 0; i < 1000; ++i) tag += std::string("\xFF\xFB\x90\x64", 4) + std::string(124, 'p');
  const std::string id3v1 = "TAG" + std::string(125, '\xFF');
  EXPECT_EQ(DecodeBytes(tag + mp3), plain);
  EXPECT_EQ(DecodeBytes(mp3 + id3v1), plain);
  EXPECT_EQ(DecodeBytes(tag + tag + mp3 + id3v1), plain);
}

TEST_F(MpegDecoding, CutFileIsAsLongAsWhatIsThere) {
  // The information frame, 40 frames and half of one; delay off, no padding: 46080 - 1105.
  const auto read = DecodeBytes(Second48().substr(0, 41 * kFrame48 + 300));
  EXPECT_EQ(static_cast<int64_t>(read.size() / 2), From48(40 * 1152 - 1105));
}

TEST_F(MpegDecoding, CutAtEveryByteOfAFrameGivesWhatTheLengthSays) {
  const std::string mp3 =
      Mp3Bytes({.hertz = {441, 882}, .frames = 10000}, Mp3Mode::kConstant, kLevel192);
  for (size_t cut = 1; cut < 700; cut += 13) {
    SCOPED_TRACE(cut);
    const auto read = DecodeBytes(mp3.substr(0, mp3.size() - cut));
    EXPECT_EQ((read.size() / 2 + 1105) % 1152, 0U);
  }
}

TEST_F(MpegDecoding, JunkBetweenFramesIsNotHeard) {
  const std::string sound = WithoutInfoFrame(Second48());
  const auto clean = DecodeBytes(sound);
  for (const std::string& junk : {std::string(5000, 'x'), Noise(300000, 7), std::string(1, '\xFF'),
                                  "TAG" + std::string(125, ' ')}) {
    SCOPED_TRACE(junk.size());
    const auto read =
        DecodeBytes(sound.substr(0, 20 * kFrame48) + junk + sound.substr(20 * kFrame48));
    EXPECT_EQ(read, clean);
  }
}

TEST_F(MpegDecoding, DamageUnderATrustedHeaderCostsOnlyTheFramesHit) {
  const std::string mp3 =
      Mp3Bytes({.hertz = {441, 882}, .frames = 5 * 44100}, Mp3Mode::kConstant, kLevel192);
  for (const size_t damage : {600U, 3000U, 30000U}) {
    SCOPED_TRACE(damage);
    std::string broken = mp3;
    broken.replace(50000, damage, Noise(damage, 11));
    const auto source = OpenBytes(broken);
    EXPECT_EQ(source->LengthFrames(), 5 * 44100);
    const auto read = ReadAll(*source);
    const auto frames = static_cast<int64_t>(read.size() / 2);
    // A frame is 626 bytes; three more for those begun and the reservoir.
    EXPECT_GE(frames, 5 * 44100 - static_cast<int64_t>(damage / 626 + 3) * 1152);
    EXPECT_LE(frames, 5 * 44100);
    const std::span<const float> lastSecond(read.data() + read.size() - 2 * 44100, 2 * 44100);
    EXPECT_NEAR(ToneLevel(Left(lastSecond), 441), 0.5, 0.05);
    source->Seek(44100);
    std::vector<float> buffer(2000);
    EXPECT_EQ(source->Read(buffer.data(), 1000), 1000);
  }
}

TEST_F(MpegDecoding, OneFrameIsASound) {
  const auto read = DecodeBytes(WithoutInfoFrame(Second48()).substr(0, kFrame48));
  EXPECT_EQ(read.size() / 2, 1059U);  // 1152 * 147 / 160 = 1058.4
}

TEST_F(MpegDecoding, LayerTwoPlays) {
  // 48 kHz, 256 kbit/s: 768 bytes. Without any bits allocated a frame is silence.
  std::string mp2;
  for (int i = 0; i < 10; ++i) mp2 += std::string("\xFF\xFD\xC4\x04", 4) + std::string(764, '\0');
  const auto read = DecodeBytes(mp2);
  EXPECT_EQ(read.size() / 2, 10584U);  // 11520 * 147 / 160
  EXPECT_EQ(ToneLevel(read, 441), 0);
}

TEST_F(MpegDecoding, MpegInAWaveFilePlaysWhateverTheLengthInIt) {
  const std::string mp3 =
      Mp3Bytes({.hertz = {441, 882}, .frames = 44100}, Mp3Mode::kConstant, kLevel192);
  const auto plain = DecodeBytes(mp3);
  std::string wave = WaveBytes({.tag = 0x55, .bits = 0}, mp3);
  EXPECT_EQ(DecodeBytes(wave + "LIST" + LittleEndian(4, 4) + "INFO"), plain);
  for (const uint32_t lie : {0U, 0xFFFFFFFFU, 100000000U}) {
    PutLittleEndian32(wave, kWaveDataLengthAt, lie);
    EXPECT_EQ(DecodeBytes(wave), plain) << lie;
  }
}

TEST_F(MpegDecoding, NameEndingDoesNotMatter) {
  EXPECT_EQ(OpenBytes(Second48(), "named.wav")->LengthFrames(), 44100);
}

TEST_F(MpegDecoding, ReadsOfAnySizeGiveTheSame) {
  const auto whole = DecodeBytes(Second48());
  for (const int chunk : {1, 7, 1152, 5000, 100000}) {
    EXPECT_EQ(ReadAll(*OpenBytes(Second48()), chunk), whole) << chunk;
  }
}

TEST_F(MpegDecoding, SeeksAreExactWhateverTheReservoirHolds) {
  const auto bursts = Bursts(44100, 2, 3 * 44100);
  for (const Mp3Mode mode : {Mp3Mode::kConstant, Mp3Mode::kVariable}) {
    for (const double level : {kBest, kLevel192, kLow}) {
      SCOPED_TRACE(level);
      const std::string mp3 = Mp3BytesOf(bursts, 44100, 2, mode, level);
      const auto source = OpenBytes(mp3);
      ExpectExactSeeks(*source, ReadAll(*source), 1e-5);
      const auto bare = OpenBytes(WithoutInfoFrame(mp3));
      ExpectExactSeeks(*bare, ReadAll(*bare), 1e-5);
    }
  }
}

TEST_F(MpegDecoding, SeeksAreExactInSmallFramesAndOtherRates) {
  for (const int rate : {8000, 16000, 24000, 32000, 48000}) {
    for (const int channels : {1, 2}) {
      SCOPED_TRACE(rate);
      const auto bursts = Bursts(rate, channels, 3 * rate);
      const auto source = OpenBytes(Mp3BytesOf(bursts, rate, channels, Mp3Mode::kConstant, 1.0));
      ExpectExactSeeks(*source, ReadAll(*source), 1e-5);
    }
  }
}

TEST_F(MpegDecoding, SeeksAreExactAcrossJunk) {
  const std::string sound = WithoutInfoFrame(
      Mp3BytesOf(Bursts(48000, 2, 3 * 48000), 48000, 2, Mp3Mode::kConstant, kLevel192));
  const auto source = OpenBytes(sound.substr(0, 60 * kFrame48) + Noise(50000, 9) +
                                sound.substr(60 * kFrame48, 10 * kFrame48) + Noise(50000, 10) +
                                sound.substr(70 * kFrame48));
  ExpectExactSeeks(*source, ReadAll(*source), 1e-5);
}

TEST_F(MpegDecoding, FileCutWhileItPlaysEndsShort) {
  const std::string mp3 =
      Mp3Bytes({.hertz = {441, 882}, .frames = 20 * 44100}, Mp3Mode::kConstant, kBest);
  const auto source = OpenBytes(mp3);
  std::vector<float> buffer(2 * 44100);
  ASSERT_EQ(source->Read(buffer.data(), 44100), 44100);
  ASSERT_EQ(::truncate(folder_.Path("sound.mp3").c_str(), static_cast<off_t>(mp3.size() / 2)), 0);
  const auto rest = static_cast<int64_t>(ReadAll(*source).size() / 2);
  // Half of the bytes are half of the frames of a constant rate; one second is read already.
  EXPECT_NEAR(static_cast<double>(rest), 9 * 44100, 2 * 1152);
  EXPECT_EQ(source->Read(buffer.data(), 1), 0);
  source->Seek(15 * 44100);
  EXPECT_EQ(source->Read(buffer.data(), 1), 0);
  source->Seek(44100);
  EXPECT_EQ(source->Read(buffer.data(), 100), 100);
}

TEST_F(MpegDecoding, FileEmptiedWhileItPlaysEndsShort) {
  const auto source =
      OpenBytes(Mp3Bytes({.hertz = {441, 882}, .frames = 20 * 44100}, Mp3Mode::kConstant, kBest));
  ASSERT_EQ(::truncate(folder_.Path("sound.mp3").c_str(), 0), 0);
  EXPECT_LT(ReadAll(*source).size() / 2, 5 * 44100U);
  source->Seek(15 * 44100);
  float frame[2];
  EXPECT_EQ(source->Read(frame, 1), 0);
}

TEST_F(MpegDecoding, FileDeletedWhileItPlaysIsHeardToItsEnd) {
  const auto source = OpenBytes(Second48());
  std::filesystem::remove(folder_.Path("sound.mp3"));
  EXPECT_EQ(ReadAll(*source).size(), 2 * 44100U);
}

}  // namespace
}  // namespace zemo
