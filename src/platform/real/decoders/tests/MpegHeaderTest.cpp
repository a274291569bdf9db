// Frame headers and information frames, byte by byte.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "TestSounds.h"
#include "platform/real/decoders/MpegHeader.h"

namespace zemo {
namespace {

using Four = std::array<uint8_t, 4>;

TEST(MpegHeaders, Mpeg1Layer3At128kbitHas417Bytes) {
  // 144 * 128000 / 44100 = 417.96
  const auto h = ParseMpegHeader(Four{0xFF, 0xFB, 0x90, 0x64}.data());
  ASSERT_TRUE(h);
  EXPECT_EQ(h->version, MpegVersion::kMpeg1);
  EXPECT_EQ(h->layer, 3);
  EXPECT_EQ(h->rate, 44100);
  EXPECT_EQ(h->channels, 2);
  EXPECT_EQ(h->samples, 1152);
  EXPECT_EQ(h->bytes, 417);
  EXPECT_EQ(ParseMpegHeader(Four{0xFF, 0xFB, 0x92, 0x64}.data())->bytes, 418);  // padded
  EXPECT_NEAR(h->MeanBytes(), 417.959, 0.001);
}

TEST(MpegHeaders, Mpeg2Layer3HasHalfTheSamples) {
  // 72 * 64000 / 24000 = 192; mono
  const auto h = ParseMpegHeader(Four{0xFF, 0xF3, 0x84, 0xC0}.data());
  ASSERT_TRUE(h);
  EXPECT_EQ(h->rate, 24000);
  EXPECT_EQ(h->channels, 1);
  EXPECT_EQ(h->samples, 576);
  EXPECT_EQ(h->bytes, 192);
}

TEST(MpegHeaders, Mpeg25Layer3GoesDownTo8000Hz) {
  // 72 * 8000 / 8000 = 72
  const auto h = ParseMpegHeader(Four{0xFF, 0xE3, 0x18, 0xC4}.data());
  ASSERT_TRUE(h);
  EXPECT_EQ(h->rate, 8000);
  EXPECT_EQ(h->bytes, 72);
}

TEST(MpegHeaders, Mpeg1Layer2At256kbitAnd48kHzHas768Bytes) {
  // 144 * 256000 / 48000 = 768
  const auto h = ParseMpegHeader(Four{0xFF, 0xFD, 0xC4, 0x04}.data());
  ASSERT_TRUE(h);
  EXPECT_EQ(h->layer, 2);
  EXPECT_EQ(h->samples, 1152);
  EXPECT_EQ(h->bytes, 768);
}

TEST(MpegHeaders, ReservedValuesAreNoHeader) {
  EXPECT_FALSE(ParseMpegHeader(Four{0xFE, 0xFB, 0x90, 0x64}.data()));  // no sync
  EXPECT_FALSE(ParseMpegHeader(Four{0xFF, 0xDB, 0x90, 0x64}.data()));  // no sync
  EXPECT_FALSE(ParseMpegHeader(Four{0xFF, 0xEB, 0x90, 0x64}.data()));  // version
  EXPECT_FALSE(ParseMpegHeader(Four{0xFF, 0xF9, 0x90, 0x64}.data()));  // layer
  EXPECT_FALSE(ParseMpegHeader(Four{0xFF, 0xFF, 0x90, 0x64}.data()));  // layer 1
  EXPECT_FALSE(ParseMpegHeader(Four{0xFF, 0xFB, 0xF0, 0x64}.data()));  // bit rate
  EXPECT_FALSE(ParseMpegHeader(Four{0xFF, 0xFB, 0x00, 0x64}.data()));  // free format
  EXPECT_FALSE(ParseMpegHeader(Four{0xFF, 0xFB, 0x9C, 0x64}.data()));  // rate
  EXPECT_FALSE(ParseMpegHeader(Four{0xFF, 0xFB, 0x90, 0x66}.data()));  // emphasis
}

// A frame of MPEG-1 layer 3 stereo with what `tag` says behind the side information.
std::string FrameWith(const std::string& tag) {
  std::string frame = std::string("\xFF\xFB\x90\x64", 4) + std::string(32, '\0') + tag;
  frame.resize(417);
  return frame;
}

std::optional<MpegInfo> InfoOf(const std::string& frame) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(frame.data());
  return ParseMpegInfo(*ParseMpegHeader(bytes), bytes, frame.size());
}

std::string Big32(uint32_t value) {
  std::string four(4, '\0');
  PutBigEndian32(four, 0, value);
  return four;
}

TEST(MpegInfoFrames, FullXingFrameStatesCountsDelayAndPadding) {
  // Delay 576 = 0x240, padding 1344 = 0x540: the three bytes 24 05 40.
  const auto info =
      InfoOf(FrameWith("Xing" + Big32(15) + Big32(1000) + Big32(417000) + std::string(100, '\x7F') +
                       Big32(57) + "LAME3.100" + std::string(12, '\x01') + "\x24\x05\x40"));
  ASSERT_TRUE(info);
  EXPECT_FALSE(info->constantRate);
  EXPECT_EQ(info->frames, 1000);
  EXPECT_EQ(info->bytes, 417000);
  EXPECT_TRUE(info->encoderNamed);
  EXPECT_EQ(info->delay, 576);
  EXPECT_EQ(info->padding, 1344);
}

TEST(MpegInfoFrames, FieldsThatAreNotFlaggedAreNotThere) {
  // Frames and quality only; the encoder's name then follows after 16 bytes.
  const auto info = InfoOf(FrameWith("Info" + Big32(9) + Big32(77) + Big32(57) + "Lavf58.12" +
                                     std::string(12, '\x01') + std::string("\x45\x00\x00", 3)));
  ASSERT_TRUE(info);
  EXPECT_TRUE(info->constantRate);
  EXPECT_EQ(info->frames, 77);
  EXPECT_FALSE(info->bytes);
  EXPECT_TRUE(info->encoderNamed);
  EXPECT_EQ(info->delay, 0x450);
  EXPECT_EQ(info->padding, 0);
}

TEST(MpegInfoFrames, XingFrameWithoutExtensionStatesNoDelay) {
  const auto info = InfoOf(FrameWith("Xing" + Big32(3) + Big32(5) + Big32(6)));
  ASSERT_TRUE(info);
  EXPECT_EQ(info->frames, 5);
  EXPECT_EQ(info->bytes, 6);
  EXPECT_FALSE(info->encoderNamed);
  EXPECT_EQ(info->delay, 0);
}

TEST(MpegInfoFrames, VbriFrameIsKnownButItsCountsAreNotUsed) {
  const auto info = InfoOf(FrameWith("VBRI" + Big32(0x00010000)));
  ASSERT_TRUE(info);
  EXPECT_FALSE(info->frames);
  EXPECT_FALSE(info->bytes);
}

TEST(MpegInfoFrames, OrdinaryFrameIsNone) {
  EXPECT_FALSE(InfoOf(FrameWith("Hello")));
}

TEST(MpegInfoFrames, FrameCutInTheMiddleOfItsFieldsGivesThoseThatAreWhole) {
  const std::string frame = FrameWith("Xing" + Big32(15) + Big32(1000) + Big32(417000));
  const std::string cut = frame.substr(0, 36 + 4 + 4 + 4 + 2);
  const auto info = InfoOf(cut);
  ASSERT_TRUE(info);
  EXPECT_EQ(info->frames, 1000);
  EXPECT_FALSE(info->bytes);
  EXPECT_FALSE(info->encoderNamed);
}

}  // namespace
}  // namespace zemo
