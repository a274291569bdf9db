// Where the frames of an MPEG stream lie, found without decoding. At 48 kHz and 192 kbit/s every
// frame has exactly 144 * 192000 / 48000 = 576 bytes, so that offsets are multiples of it.
#include <gtest/gtest.h>

#include "TestSounds.h"
#include "platform/real/decoders/MpegLayout.h"

namespace zemo {
namespace {

constexpr size_t kFrame = 576;
constexpr size_t kInfoFramesAt = 4 + 32 + 8;  // MPEG-1 stereo: header, side information, flags
constexpr size_t kInfoBytesAt = kInfoFramesAt + 4;

class MpegLayouts : public testing::Test {
 protected:
  MpegLayouts() {
    mp3_ = Mp3Bytes({.rate = 48000, .hertz = {441, 882}, .frames = 48000}, Mp3Mode::kConstant,
                    kLevel192);
    sound_ = WithoutInfoFrame(mp3_);
    EXPECT_EQ(mp3_.size() % kFrame, 0U);
    frames_ = static_cast<int64_t>(sound_.size() / kFrame);
  }

  std::optional<MpegLayout> LayOut(const std::string& bytes) {
    const std::string path = folder_.Path("sound.mp3");
    WriteBytes(path, bytes);
    FileBytes file(path);
    return LayOutMpeg(file, file.Whole());
  }

  TestFolder folder_;
  std::string mp3_;
  std::string sound_;
  int64_t frames_ = 0;
};

TEST_F(MpegLayouts, HeaderThatAgreesWithTheFileIsTrusted) {
  const auto layout = LayOut(mp3_);
  ASSERT_TRUE(layout);
  EXPECT_FALSE(layout->scanned);
  EXPECT_EQ(layout->frames, frames_);
  EXPECT_EQ(layout->area.begin, static_cast<int64_t>(kFrame));
}

TEST_F(MpegLayouts, TagsAroundTheStreamDoNotShakeTheTrust) {
  const std::string id3v2 = std::string("ID3\x04\x00\x00\x00\x00\x01\x00", 10) + Noise(128, 1);
  const std::string ape = "APETAGEX" + LittleEndian(2000, 4) + LittleEndian(40 + 32, 4) +
                          LittleEndian(1, 4) + LittleEndian(0xA0000000, 4) + LittleEndian(0, 8) +
                          Noise(40, 2) + "APETAGEX" + LittleEndian(2000, 4) +
                          LittleEndian(40 + 32, 4) + LittleEndian(1, 4) +
                          LittleEndian(0x80000000, 4) + LittleEndian(0, 8);
  ASSERT_EQ(ape.size(), 104U);
  const std::string id3v1 = "TAG" + std::string(125, 'x');
  for (const std::string& end : {id3v1, ape, ape + id3v1}) {
    const auto layout = LayOut(id3v2 + mp3_ + end);
    ASSERT_TRUE(layout);
    EXPECT_FALSE(layout->scanned);
    EXPECT_EQ(layout->frames, frames_);
    EXPECT_EQ(layout->area.end, static_cast<int64_t>(id3v2.size() + mp3_.size()));
  }
}

TEST_F(MpegLayouts, StreamWithoutHeaderIsCounted) {
  const auto layout = LayOut(sound_);
  ASSERT_TRUE(layout);
  EXPECT_TRUE(layout->scanned);
  EXPECT_EQ(layout->frames, frames_);
  EXPECT_EQ(layout->SoundBegin(), 0);
  EXPECT_EQ(layout->SoundEnd(), frames_ * 1152);
}

TEST_F(MpegLayouts, CutFileIsCountedWhateverItsHeaderSays) {
  const auto layout = LayOut(mp3_.substr(0, 11 * kFrame + 300));
  ASSERT_TRUE(layout);
  EXPECT_TRUE(layout->scanned);
  EXPECT_EQ(layout->frames, 10);
  EXPECT_EQ(layout->area.begin, static_cast<int64_t>(kFrame));
  // The encoder's 576 samples and the decoder's 529 come off the beginning, no padding off the end.
  EXPECT_EQ(layout->SoundBegin(), 1105);
  EXPECT_EQ(layout->SoundEnd(), 11520);
}

TEST_F(MpegLayouts, FrameCountThatTheBytesCannotHoldIsNotBelieved) {
  std::string lie = mp3_;
  PutBigEndian32(lie, kInfoFramesAt, static_cast<uint32_t>(2 * frames_));
  const auto layout = LayOut(lie);
  ASSERT_TRUE(layout);
  EXPECT_TRUE(layout->scanned);
  EXPECT_EQ(layout->frames, frames_);
}

TEST_F(MpegLayouts, ByteCountThatDisagreesWithTheFileIsNotBelieved) {
  std::string lie = mp3_;
  PutBigEndian32(lie, kInfoBytesAt, static_cast<uint32_t>(mp3_.size() + 1));
  const auto layout = LayOut(lie);
  ASSERT_TRUE(layout);
  EXPECT_TRUE(layout->scanned);
  EXPECT_EQ(layout->frames, frames_);
}

TEST_F(MpegLayouts, JunkBetweenFramesIsLeftOut) {
  const std::string junk = Noise(10000, 5);
  const auto layout = LayOut(sound_.substr(0, 10 * kFrame) + junk + sound_.substr(10 * kFrame));
  ASSERT_TRUE(layout);
  EXPECT_EQ(layout->frames, frames_);
  ASSERT_EQ(layout->spans.size(), 2U);
  EXPECT_EQ(layout->spans[0].begin, 0);
  EXPECT_EQ(layout->spans[0].end, static_cast<int64_t>(10 * kFrame));
  EXPECT_EQ(layout->spans[1].begin, static_cast<int64_t>(10 * kFrame + junk.size()));
  EXPECT_EQ(layout->spans[1].end, static_cast<int64_t>(sound_.size() + junk.size()));
}

TEST_F(MpegLayouts, FewFramesBetweenTwoPiecesOfJunkAreFound) {
  const std::string junk = Noise(3000, 8);
  const auto layout =
      LayOut(sound_.substr(0, 10 * kFrame) + junk + sound_.substr(10 * kFrame, 5 * kFrame) + junk +
             sound_.substr(15 * kFrame));
  ASSERT_TRUE(layout);
  EXPECT_EQ(layout->frames, frames_);
  EXPECT_EQ(layout->spans.size(), 3U);
}

TEST_F(MpegLayouts, JunkBeforeTheFirstFrameIsLeftOut) {
  const auto layout = LayOut(Noise(5000, 6) + sound_);
  ASSERT_TRUE(layout);
  EXPECT_EQ(layout->frames, frames_);
  EXPECT_EQ(layout->area.begin, 5000);
}

TEST_F(MpegLayouts, FramesOfAnotherRateInTheStreamAreJunk) {
  const std::string other = WithoutInfoFrame(
      Mp3Bytes({.hertz = {441, 882}, .frames = 22050}, Mp3Mode::kConstant, kLevel192));
  const auto layout = LayOut(sound_ + other);
  ASSERT_TRUE(layout);
  EXPECT_EQ(layout->frames, frames_);
  EXPECT_EQ(layout->first.rate, 48000);
}

TEST_F(MpegLayouts, OneFrameAloneIsAStreamOnlyWhenItFillsTheFile) {
  EXPECT_EQ(LayOut(sound_.substr(0, kFrame)).value().frames, 1);
  EXPECT_FALSE(LayOut("x" + sound_.substr(0, kFrame)));
  EXPECT_FALSE(LayOut(sound_.substr(0, kFrame) + std::string(kFrame, 'x')));
  EXPECT_FALSE(LayOut(sound_.substr(0, kFrame - 1)));
}

TEST_F(MpegLayouts, InformationFrameWithoutSoundIsNoStream) {
  EXPECT_FALSE(LayOut(mp3_.substr(0, kFrame)));
}

TEST_F(MpegLayouts, NoiseAndTextAreNoStream) {
  for (const uint32_t seed : {1U, 2U, 3U, 4U, 5U}) EXPECT_FALSE(LayOut(Noise(300000, seed)));
  EXPECT_FALSE(LayOut(std::string(300000, 't')));
  EXPECT_FALSE(LayOut(std::string(300000, '\xFF')));
  EXPECT_FALSE(LayOut(std::string(300000, '\0')));
}

TEST_F(MpegLayouts, TagThatClaimsMoreThanTheFileIsNoStream) {
  EXPECT_FALSE(LayOut(std::string("ID3\x04\x00\x00\x7F\x7F\x7F\x7F", 10) + sound_));
}

}  // namespace
}  // namespace zemo
