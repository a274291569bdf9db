// What cannot be played: one clear line, never a crash, a hang or a word on standard error.
#include <gtest/gtest.h>
#include <sndfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "TestSounds.h"
#include "platform/real/decoders/SoundFileOpener.h"

namespace zemo {
namespace {

class BadFiles : public testing::Test {
 protected:
  void SetUp() override { testing::internal::CaptureStderr(); }
  void TearDown() override { EXPECT_EQ(testing::internal::GetCapturedStderr(), ""); }

  // The message of the error that opening gives; empty when there is none.
  static std::string ErrorOf(const std::string& path) {
    try {
      SoundFileOpener().Open(path);
    } catch (const SoundError& error) {
      return error.what();
    }
    return "";
  }

  std::string ErrorOfBytes(const std::string& name, const std::string& bytes) {
    WriteBytes(folder_.Path(name), bytes);
    return ErrorOf(folder_.Path(name));
  }

  std::string Line(const std::string& name, const std::string& reason) const {
    return "cannot play \"" + folder_.Path(name) + "\": " + reason;
  }

  TestFolder folder_;
};

TEST_F(BadFiles, MissingFileIsNamed) {
  EXPECT_EQ(ErrorOf(folder_.Path("gone.mp3")), Line("gone.mp3", "No such file or directory"));
}

TEST_F(BadFiles, EmptyFileIsNamed) {
  EXPECT_EQ(ErrorOfBytes("empty.wav", ""), Line("empty.wav", "the file is empty"));
}

TEST_F(BadFiles, DirectoryIsNamed) {
  std::filesystem::create_directory(folder_.Path("folder.mp3"));
  EXPECT_EQ(ErrorOf(folder_.Path("folder.mp3")), Line("folder.mp3", "it is a directory"));
}

TEST_F(BadFiles, NamedPipeDoesNotHoldTheCaller) {
  ASSERT_EQ(::mkfifo(folder_.Path("pipe.mp3").c_str(), 0600), 0);
  EXPECT_EQ(ErrorOf(folder_.Path("pipe.mp3")), Line("pipe.mp3", "it is not a regular file"));
}

TEST_F(BadFiles, UnreadableFileIsNamed) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read everything";
  WriteBytes(folder_.Path("secret.wav"), WaveBytes({}, std::string(400, '\1')));
  ASSERT_EQ(::chmod(folder_.Path("secret.wav").c_str(), 0), 0);
  EXPECT_EQ(ErrorOf(folder_.Path("secret.wav")), Line("secret.wav", "Permission denied"));
}

TEST_F(BadFiles, TextNamedMp3IsNoSound) {
  std::string text;
  for (int i = 0; i < 20000; ++i) text += "This is a line of text, not a song.\n";
  EXPECT_EQ(ErrorOfBytes("text.mp3", text), Line("text.mp3", "no sound in a known format"));
}

TEST_F(BadFiles, NoiseNamedMp3IsNoSound) {
  EXPECT_EQ(ErrorOfBytes("noise.mp3", Noise(1000000, 3)),
            Line("noise.mp3", "no sound in a known format"));
}

TEST_F(BadFiles, WaveWithoutSoundIsNamed) {
  EXPECT_EQ(ErrorOfBytes("none.wav", WaveBytes({}, "")), Line("none.wav", "it holds no sound"));
  EXPECT_EQ(ErrorOfBytes("list.wav", WaveBytes({}, "") + "LIST" + LittleEndian(4, 4) + "INFO"),
            Line("list.wav", "it holds no sound"));
}

TEST_F(BadFiles, HeadersThatBreakOffAreOneLine) {
  const std::string wave = WaveBytes({}, std::string(400, '\1'));
  for (size_t size = 1; size < kWaveDataAt; ++size) {
    const std::string error = ErrorOfBytes("cut.wav", wave.substr(0, size));
    EXPECT_TRUE(error.starts_with(Line("cut.wav", ""))) << size << ": " << error;
    EXPECT_EQ(error.find('\n'), std::string::npos);
  }
}

TEST_F(BadFiles, LineBreaksInAPathDoNotBreakTheLine) {
  EXPECT_EQ(ErrorOf(folder_.Path("a\nb.mp3")), Line("a b.mp3", "No such file or directory"));
}

// Opens and reads what may be anything: the only promises are an end and no more than the length.
void PlayWhatever(const std::string& path) {
  try {
    const auto source = SoundFileOpener().Open(path);
    const int64_t length = source->LengthFrames();
    ASSERT_GT(length, 0);
    std::vector<float> buffer(2 * 1000);
    int64_t frames = 0;
    while (const int got = source->Read(buffer.data(), 1000)) {
      ASSERT_GT(got, 0);
      frames += got;
      ASSERT_LE(frames, length);
    }
    for (const int64_t target : {length / 2, length - 1, int64_t{0}}) {
      source->Seek(target);
      ASSERT_GE(source->Read(buffer.data(), 1000), 0);
    }
  } catch (const SoundError& error) {
    EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos);
  }
}

// Every byte of a short file's beginning and many further on take other values, one file after the
// other; and the file is cut.
TEST_F(BadFiles, FilesWithWrongBytesNeverCrashNorHang) {
  const std::string path = folder_.Path("sound");
  const Tones tones{.rate = 48000, .hertz = {441, 882}, .frames = 6000};
  std::vector<std::string> sounds = {Mp3Bytes(tones, Mp3Mode::kConstant, 0.4),
                                     Mp3Bytes(tones, Mp3Mode::kVariable, 0.4)};
  for (const int format : {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_WAVEX | SF_FORMAT_PCM_24,
                           SF_FORMAT_FLAC | SF_FORMAT_PCM_16, SF_FORMAT_OGG | SF_FORMAT_VORBIS}) {
    WriteSound(path, format, tones);
    sounds.push_back(ReadBytes(path));
  }
  sounds.push_back(WaveBytes({.tag = 0x55, .bits = 0}, sounds[0]));
  uint32_t random = 5;
  const auto next = [&random](size_t below) {
    random = random * 1664525 + 1013904223;
    return (random >> 8) % below;
  };
  for (const std::string& sound : sounds) {
    for (int i = 0; i < 150; ++i) {
      std::string broken = sound;
      const size_t where = i % 2 ? next(std::min<size_t>(200, sound.size())) : next(sound.size());
      for (size_t k = 0; k <= next(4) && where + k < broken.size(); ++k) {
        broken[where + k] = static_cast<char>(next(256));
      }
      if (i % 10 == 0) broken.resize(next(broken.size()) + 1);
      WriteBytes(path, broken);
      ASSERT_NO_FATAL_FAILURE(PlayWhatever(path)) << "variant " << i;
    }
  }
}

}  // namespace
}  // namespace zemo
