// Sound files as they are written, read back with the library that writes them.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <fstream>

#include "platform/real/sound/SoundFileWriter.h"
#include "platform/real/sound/tests/SoundTestSupport.h"

namespace zemo {
namespace {

using testing::TestFolder;

std::vector<float> Ramp(int frames) {
  std::vector<float> stereo;
  for (int i = 0; i < frames; ++i) {
    stereo.push_back(static_cast<float>(i % 30000) / 32768.0f);
    stereo.push_back(static_cast<float>(-i % 30000) / 32768.0f);
  }
  return stereo;
}

std::vector<int16_t> ReadBack(const std::string& path, SF_INFO& info) {
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  if (file == nullptr) return {};
  std::vector<int16_t> samples(static_cast<size_t>(info.frames * info.channels));
  sf_readf_short(file, samples.data(), info.frames);
  sf_close(file);
  return samples;
}

class SoundFileWriterTest : public ::testing::TestWithParam<std::tuple<std::string, int64_t, int>> {
 protected:
  TestFolder folder_;
};

TEST_P(SoundFileWriterTest, WhatIsWrittenComesBackSampleForSample) {
  const auto& [name, mostFrames, format] = GetParam();
  const std::string path = folder_.Path(name);
  const std::vector<float> sound = Ramp(100000);
  SoundFileWriter writer(path, mostFrames);
  writer.Write(sound.data(), 60000);
  writer.Write(sound.data() + 2 * 60000, 40000);
  EXPECT_EQ(writer.Frames(), 100000);
  writer.Close();
  SF_INFO info{};
  const std::vector<int16_t> samples = ReadBack(path, info);
  EXPECT_EQ(info.samplerate, 44100);
  EXPECT_EQ(info.channels, 2);
  EXPECT_EQ(info.format & SF_FORMAT_TYPEMASK, format);
  EXPECT_EQ(info.format & SF_FORMAT_SUBMASK, SF_FORMAT_PCM_16);
  ASSERT_EQ(samples.size(), 200000u);
  for (int i = 0; i < 100000; ++i) {
    ASSERT_EQ(samples[2 * i], i % 30000);
    ASSERT_EQ(samples[2 * i + 1], -i % 30000);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Forms, SoundFileWriterTest,
    ::testing::Values(std::tuple{"a.wav", 100000, SF_FORMAT_WAV},
                      std::tuple{"A.WAV", 100000, SF_FORMAT_WAV},
                      std::tuple{"long.wav", SoundFileWriter::kUnbounded, SF_FORMAT_WAV},
                      std::tuple{"a.flac", SoundFileWriter::kUnbounded, SF_FORMAT_FLAC}));

std::string BytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Format 1, 2 channels, 44100 frames of 4 bytes a second (176400), 16 bits.
const std::string kPlainFormat("fmt \x10\0\0\0\x01\0\x02\0\x44\xAC\0\0\x10\xB1\x02\0\x04\0\x10\0",
                               24);

TEST(SoundFileWriter, AWavFileIsPlainPcmByteForByte) {
  const TestFolder folder;
  const std::vector<int16_t> frames{1, -1, 258, 0};
  SoundFileWriter writer(folder.Path("a.wav"), 2);
  writer.Write(frames.data(), 2);
  writer.Close();
  // Two frames are 8 bytes: 4 + 24 + 8 + 8 behind the first size.
  EXPECT_EQ(BytesOf(folder.Path("a.wav")),
            std::string("RIFF\x2C\0\0\0WAVE", 12) + kPlainFormat +
                std::string("data\x08\0\0\0\x01\0\xFF\xFF\x02\x01\0\0", 16));
}

TEST(SoundFileWriter, AWavFileOfUnknownLengthIsPlainPcmWithRoomToGrow) {
  const TestFolder folder;
  const std::vector<int16_t> frames{1, -1};
  SoundFileWriter writer(folder.Path("a.wav"));
  writer.Write(frames.data(), 1);
  writer.Close();
  // 4 + 24 + 36 + 8 + 4 behind the first size.
  EXPECT_EQ(BytesOf(folder.Path("a.wav")), std::string("RIFF\x4C\0\0\0WAVE", 12) + kPlainFormat +
                                               std::string("JUNK\x1C\0\0\0", 8) +
                                               std::string(28, '\0') +
                                               std::string("data\x04\0\0\0\x01\0\xFF\xFF", 12));
}

TEST(SoundFileWriter, AWavFileBeyondFourGigabytesTellsItsSizesIn64Bits) {
  // 2^30 frames are 2^32 bytes; 4 + 36 + 24 + 8 more behind the first size.
  EXPECT_EQ(WavFile::Header(int64_t{1} << 30, true),
            std::string("RF64\xFF\xFF\xFF\xFFWAVE", 12) + std::string("ds64\x1C\0\0\0", 8) +
                std::string("\x48\0\0\0\x01\0\0\0", 8) + std::string("\0\0\0\0\x01\0\0\0", 8) +
                std::string("\0\0\0\x40\0\0\0\0", 8) + std::string(4, '\0') + kPlainFormat +
                std::string("data\xFF\xFF\xFF\xFF", 8));
  EXPECT_EQ(WavFile::Header(int64_t{1} << 30, true).size(), WavFile::Header(1, true).size());
}

TEST(SoundFileWriter, AFileCutOffByACrashCanBeReadUpToItsLastSeconds) {
  const TestFolder folder;
  const std::vector<float> sound = Ramp(30 * kSampleRate);
  SoundFileWriter writer(folder.Path("a.wav"));
  writer.Write(sound.data(), 30 * kSampleRate);
  writer.Write(sound.data(), kSampleRate);
  std::filesystem::copy_file(folder.Path("a.wav"), folder.Path("crash.wav"));
  SF_INFO info{};
  EXPECT_GE(ReadBack(folder.Path("crash.wav"), info).size(), 2u * 30 * kSampleRate);
}

TEST(SoundFileWriter, AnotherEndingIsRefused) {
  const TestFolder folder;
  for (const char* name : {"a.mp3", "a", ".wave", "wav"}) {
    EXPECT_THROW(SoundFileWriter writer(folder.Path(name)), SoundError) << name;
    EXPECT_FALSE(std::filesystem::exists(folder.Path(name))) << name;
  }
}

TEST(SoundFileWriter, APlaceWhereNoFileCanBeMadeIsNamed) {
  const TestFolder folder;
  try {
    SoundFileWriter writer(folder.Path("absent/a.wav"));
    FAIL() << "it was made";
  } catch (const SoundError& error) {
    EXPECT_NE(std::string(error.what()).find("absent/a.wav"), std::string::npos);
  }
}

TEST(SoundFileWriter, ADiskThatIsFullFromTheStartIsAnError) {
  const TestFolder folder;
  std::filesystem::create_symlink("/dev/full", folder.Path("full.wav"));
  EXPECT_THROW(SoundFileWriter writer(folder.Path("full.wav")), SoundError);
}

TEST(SoundFileWriter, ADiskThatFillsUpIsAnError) {
  const TestFolder folder;
  const std::vector<float> sound = Ramp(kSampleRate);
  for (const char* name : {"full.wav", "full.flac"}) {
    SoundFileWriter writer(folder.Path(name));
    const testing::FileSizeLimit limit(500000);
    EXPECT_THROW(
        {
          for (int i = 0; i < 100; ++i) writer.Write(sound.data(), kSampleRate);
          writer.Close();
        },
        SoundError)
        << name;
  }
}

TEST(SoundFileWriter, NothingIsWrittenToAClosedFile) {
  const TestFolder folder;
  SoundFileWriter writer(folder.Path("a.wav"));
  writer.Close();
  writer.Close();
  EXPECT_THROW(writer.Write(Ramp(10).data(), 10), SoundError);
}

}  // namespace
}  // namespace zemo
