// Sources that only know their length, and how seldom a file is opened for it.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "TestSounds.h"
#include "platform/real/decoders/LengthOnlyOpener.h"
#include "platform/real/decoders/SoundFileOpener.h"

namespace zemo {
namespace {

// Counts what reaches the opener behind.
class CountingOpener : public SoundOpener {
 public:
  explicit CountingOpener(int& opens) : opens_(opens) {}
  std::unique_ptr<SoundSource> Open(const std::string& path) override {
    ++opens_;
    return SoundFileOpener().Open(path);
  }

 private:
  int& opens_;
};

class LengthOnly : public testing::Test {
 protected:
  static std::string Wave(int frames) {
    return WaveBytes({}, std::string(static_cast<size_t>(frames) * 4, '\x11'));
  }

  TestFolder folder_;
  int opens_ = 0;
  LengthOnlyOpener opener_{std::make_unique<CountingOpener>(opens_)};
};

TEST_F(LengthOnly, SourceHasTheLengthOfTheFileAndReadsAsSilence) {
  WriteBytes(folder_.Path("a.wav"), Wave(1500));
  const auto source = opener_.Open(folder_.Path("a.wav"));
  EXPECT_EQ(source->LengthFrames(), 1500);
  std::vector<float> buffer(2 * 1000, 1.0F);
  EXPECT_EQ(source->Read(buffer.data(), 1000), 1000);
  EXPECT_EQ(std::ranges::count(buffer, 0.0F), 2000);
  EXPECT_EQ(source->Read(buffer.data(), 1000), 500);
  EXPECT_EQ(source->Read(buffer.data(), 1000), 0);
  source->Seek(1400);
  EXPECT_EQ(source->Read(buffer.data(), 1000), 100);
  source->Seek(9999);
  EXPECT_EQ(source->Read(buffer.data(), 1000), 0);
  source->Seek(-1);
  EXPECT_EQ(source->Read(buffer.data(), 1000), 1000);
}

TEST_F(LengthOnly, UnchangedFileIsOpenedOnce) {
  WriteBytes(folder_.Path("a.wav"), Wave(1500));
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(opener_.Open(folder_.Path("a.wav"))->LengthFrames(), 1500);
  }
  EXPECT_EQ(opens_, 1);
}

TEST_F(LengthOnly, FileOfAnotherSizeIsOpenedAgain) {
  WriteBytes(folder_.Path("a.wav"), Wave(1500));
  opener_.Open(folder_.Path("a.wav"));
  WriteBytes(folder_.Path("a.wav"), Wave(1600));
  EXPECT_EQ(opener_.Open(folder_.Path("a.wav"))->LengthFrames(), 1600);
}

TEST_F(LengthOnly, FileOfTheSameSizeChangedAtAnotherTimeIsOpenedAgain) {
  const std::string path = folder_.Path("a.wav");
  WriteBytes(path, Wave(1500));
  opener_.Open(path);
  // The same number of bytes, now of one channel: twice the frames.
  WriteBytes(path, WaveBytes({.channels = 1}, std::string(6000, '\x11')));
  std::filesystem::last_write_time(path,
                                   std::filesystem::last_write_time(path) + std::chrono::hours(1));
  EXPECT_EQ(opener_.Open(path)->LengthFrames(), 3000);
  EXPECT_EQ(opens_, 2);
}

TEST_F(LengthOnly, FileDeletedSinceIsAnErrorAndPlaysWhenItIsBack) {
  const std::string path = folder_.Path("a.wav");
  WriteBytes(path, Wave(1500));
  opener_.Open(path);
  std::filesystem::remove(path);
  EXPECT_THROW(opener_.Open(path), SoundError);
  WriteBytes(path, Wave(1700));
  EXPECT_EQ(opener_.Open(path)->LengthFrames(), 1700);
}

}  // namespace
}  // namespace zemo
