// FLAC, Ogg and AIFF: length, content, seeks.
#include <gtest/gtest.h>
#include <sndfile.h>

#include "TestSounds.h"
#include "platform/real/decoders/SoundFileOpener.h"

namespace zemo {
namespace {

struct Format {
  const char* name;
  int code;
  int rate;
  double levelTolerance;
};

class OtherFormats : public testing::TestWithParam<Format> {
 protected:
  TestFolder folder_;
};

TEST_P(OtherFormats, LengthContentAndSeeksAreExact) {
  const Format& format = GetParam();
  const std::string path = folder_.Path("sound");
  WriteSound(path, format.code,
             {.rate = format.rate, .hertz = {441, 882}, .frames = 3 * format.rate});
  const auto source = SoundFileOpener().Open(path);
  EXPECT_EQ(source->LengthFrames(), 3 * 44100);
  const auto all = ReadAll(*source);
  ASSERT_EQ(all.size(), 2 * 3 * 44100U);
  EXPECT_NEAR(ToneLevel(Left(all), 441), 0.5, format.levelTolerance);
  EXPECT_NEAR(ToneLevel(Right(all), 882), 0.5, format.levelTolerance);
  EXPECT_LT(ToneLevel(Left(all), 882), format.levelTolerance);
  ExpectExactSeeks(*source, all, 1e-5);
}

INSTANTIATE_TEST_SUITE_P(
    Each, OtherFormats,
    testing::Values(Format{"Flac16", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 44100, 0.001},
                    Format{"Flac24", SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 44100, 0.001},
                    Format{"Flac24At48kHz", SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 48000, 0.001},
                    Format{"Vorbis", SF_FORMAT_OGG | SF_FORMAT_VORBIS, 44100, 0.02},
                    Format{"VorbisAt48kHz", SF_FORMAT_OGG | SF_FORMAT_VORBIS, 48000, 0.02},
                    Format{"Opus", SF_FORMAT_OGG | SF_FORMAT_OPUS, 48000, 0.02},
                    Format{"Aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 44100, 0.001}),
    [](const auto& test) { return test.param.name; });

TEST(VorbisFiles, SeeksAreExactWherePagesAreLong) {
  // Next to nothing to encode: a page then holds some two seconds.
  const TestFolder folder;
  const std::string path = folder.Path("quiet.ogg");
  WriteSound(path, SF_FORMAT_OGG | SF_FORMAT_VORBIS,
             {.hertz = {100, 100}, .level = 0.01, .frames = 20 * 44100});
  const auto source = SoundFileOpener().Open(path);
  ExpectExactSeeks(*source, ReadAll(*source), 1e-6);
}

// The same Ogg stream under another serial number: two streams put together must differ in it, and
// the encoder takes it from the time of day. Every page carries it and a checksum over itself.
std::string WithSerial(std::string ogg, uint32_t serial) {
  constexpr size_t kSerialAt = 14;
  constexpr size_t kChecksumAt = 22;
  size_t next = 0;
  for (size_t page = 0; page < ogg.size(); page = next) {
    const size_t segments = static_cast<uint8_t>(ogg[page + 26]);
    next = page + 27 + segments;
    for (size_t i = 0; i < segments; ++i) next += static_cast<uint8_t>(ogg[page + 27 + i]);
    PutLittleEndian32(ogg, page + kSerialAt, serial);
    PutLittleEndian32(ogg, page + kChecksumAt, 0);
    uint32_t checksum = 0;
    for (size_t i = page; i < next; ++i) {
      checksum ^= static_cast<uint32_t>(static_cast<uint8_t>(ogg[i])) << 24;
      for (int bit = 0; bit < 8; ++bit) {
        checksum = checksum << 1 ^ (checksum >> 31 ? 0x04C11DB7U : 0U);
      }
    }
    PutLittleEndian32(ogg, page + kChecksumAt, checksum);
  }
  return ogg;
}

TEST(VorbisFiles, FilesPutBehindOneAnotherPlayInTurn) {
  const TestFolder folder;
  constexpr int kVorbis = SF_FORMAT_OGG | SF_FORMAT_VORBIS;
  WriteSound(folder.Path("a.ogg"), kVorbis, {.hertz = {441, 882}, .frames = 44100});
  WriteSound(folder.Path("b.ogg"), kVorbis, {.hertz = {600}, .frames = 20000});
  const std::string both = folder.Path("both.ogg");
  WriteBytes(both, WithSerial(ReadBytes(folder.Path("a.ogg")), 1) +
                       WithSerial(ReadBytes(folder.Path("b.ogg")), 2));
  const auto source = SoundFileOpener().Open(both);
  const auto all = ReadAll(*source);
  ASSERT_EQ(all.size(), 2 * 64100U);
  const std::span<const float> second(all.data() + 2 * 45100, 2 * 18000);
  EXPECT_NEAR(ToneLevel(Left(second), 600), 0.5, 0.02);
  EXPECT_NEAR(ToneLevel(Right(second), 600), 0.5, 0.02);
  ExpectExactSeeks(*source, all, 1e-6);
}

TEST(VorbisFiles, ChannelsAreFoldedInTheOrderOfVorbis) {
  const TestFolder folder;
  const std::string path = folder.Path("three.ogg");
  // L C R, a tone each.
  WriteSound(path, SF_FORMAT_OGG | SF_FORMAT_VORBIS,
             {.hertz = {300, 500, 700}, .level = 0.2, .frames = 88200});
  const auto read = Decode(path);
  const auto left = Left(read);
  const auto right = Right(read);
  EXPECT_NEAR(ToneLevel(left, 300), 0.2, 0.01);
  EXPECT_NEAR(ToneLevel(left, 500), 0.1414, 0.01);
  EXPECT_LT(ToneLevel(left, 700), 0.005);
  EXPECT_NEAR(ToneLevel(right, 700), 0.2, 0.01);
  EXPECT_NEAR(ToneLevel(right, 500), 0.1414, 0.01);
  EXPECT_LT(ToneLevel(right, 300), 0.005);
}

TEST(FlacFiles, CutFilePlaysUpToTheCut) {
  const TestFolder folder;
  const std::string path = folder.Path("cut.flac");
  WriteSound(path, SF_FORMAT_FLAC | SF_FORMAT_PCM_16, {.hertz = {441, 882}, .frames = 10 * 44100});
  const std::string bytes = ReadBytes(path);
  WriteBytes(path, bytes.substr(0, bytes.size() / 2));
  const auto read = Decode(path);
  EXPECT_GT(read.size() / 2, 4 * 44100U);
  EXPECT_LT(read.size() / 2, 6 * 44100U);
}

TEST(FlacFiles, LengthThatIsNotStatedIsCounted) {
  const TestFolder folder;
  const std::string path = folder.Path("streamed.flac");
  WriteSound(path, SF_FORMAT_FLAC | SF_FORMAT_PCM_16, {.hertz = {441, 882}, .frames = 50000});
  std::string bytes = ReadBytes(path);
  // The low half of byte 21 and bytes 22 to 25 state the number of frames; 0 means unknown.
  bytes[21] = static_cast<char>(bytes[21] & 0xF0);
  for (size_t i = 22; i < 26; ++i) bytes[i] = '\0';
  WriteBytes(path, bytes);
  const auto source = SoundFileOpener().Open(path);
  EXPECT_EQ(source->LengthFrames(), 50000);
  EXPECT_EQ(ReadAll(*source).size(), 2 * 50000U);
}

}  // namespace
}  // namespace zemo
