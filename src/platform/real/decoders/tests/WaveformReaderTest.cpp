// The shapes of sound files: what they hold, where they are kept, and when they are read anew.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/real/decoders/WaveformReader.h"

namespace zemo {
namespace {

// Two seconds: silence, then full scale.
class HalfLoud : public SoundSource {
 public:
  int64_t LengthFrames() const override { return 2 * kSampleRate; }
  int Read(float* stereo, int frames) override {
    const int given = static_cast<int>(std::min<int64_t>(frames, LengthFrames() - at_));
    for (int i = 0; i < given; ++i, ++at_) {
      stereo[2 * i] = at_ < kSampleRate ? 0.0F : -1.0F;
      stereo[2 * i + 1] = 0.0F;
    }
    return given;
  }
  void Seek(int64_t frame) override { at_ = frame; }

 private:
  int64_t at_ = 0;
};

class CountingOpener : public SoundOpener {
 public:
  explicit CountingOpener(std::atomic<int>& opened) : opened_(opened) {}
  std::unique_ptr<SoundSource> Open(const std::string& path) override {
    ++opened_;
    if (path.ends_with("bad.wav")) throw SoundError("no sound: " + path);
    return std::make_unique<HalfLoud>();
  }

 private:
  std::atomic<int>& opened_;
};

class Shapes : public testing::Test {
 protected:
  void SetUp() override {
    std::string path = (std::filesystem::temp_directory_path() / "zemo-test-XXXXXX").string();
    ASSERT_NE(mkdtemp(path.data()), nullptr);
    root_ = path;
    Put("loud.wav", "x");
    Put("bad.wav", "x");
  }
  void TearDown() override { std::filesystem::remove_all(root_); }
  void Put(const std::string& name, const std::string& bytes) {
    std::ofstream(root_ / name) << bytes;
  }
  std::unique_ptr<WaveformReader> Reader() {
    return std::make_unique<WaveformReader>(std::make_unique<CountingOpener>(opened_),
                                            (root_ / "Peaks").string());
  }
  std::shared_ptr<const WavePeaks> Read(WaveformReader& reader, const std::string& name) {
    const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::chrono::steady_clock::now() < bound) {
      if (auto peaks = reader.PeaksOf((root_ / name).string())) return peaks;
      std::this_thread::yield();  // another one reads
    }
    return nullptr;
  }
  std::shared_ptr<const WavePart> Part(WaveformReader& reader, const std::string& name,
                                       int64_t from, int64_t to, size_t most) {
    const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::chrono::steady_clock::now() < bound) {
      if (auto part = reader.PartOf((root_ / name).string(), from, to, most)) return part;
      std::this_thread::yield();  // another one reads
    }
    return nullptr;
  }
  std::filesystem::path root_;
  std::atomic<int> opened_ = 0;
};

TEST_F(Shapes, AShapeHoldsTheHighestLevelOfEachStretch) {
  const auto reader = Reader();
  const auto peaks = Read(*reader, "loud.wav");
  ASSERT_TRUE(peaks);
  ASSERT_EQ(peaks->size(), kWavePeaks);
  EXPECT_EQ(peaks->at(0), 0);
  EXPECT_EQ(peaks->at(499), 0);
  EXPECT_EQ(peaks->at(500), 255);
  EXPECT_EQ(peaks->at(999), 255);
}

TEST_F(Shapes, AShapeIsKeptInTheFolderForTheNextRun) {
  ASSERT_TRUE(Read(*Reader(), "loud.wav"));
  EXPECT_EQ(opened_, 1);
  const auto again = Read(*Reader(), "loud.wav");
  ASSERT_TRUE(again);
  EXPECT_EQ(again->at(999), 255);
  EXPECT_EQ(opened_, 1);
}

TEST_F(Shapes, AChangedFileIsReadAnew) {
  ASSERT_TRUE(Read(*Reader(), "loud.wav"));
  Put("loud.wav", "another length");
  ASSERT_TRUE(Read(*Reader(), "loud.wav"));
  EXPECT_EQ(opened_, 2);
}

TEST_F(Shapes, AFileThatCannotBeReadHasAnEmptyShapeAndNoneIsKept) {
  const auto reader = Reader();
  const auto bad = Read(*reader, "bad.wav");
  ASSERT_TRUE(bad);
  EXPECT_TRUE(bad->empty());
  const auto gone = Read(*reader, "gone.wav");
  ASSERT_TRUE(gone);
  EXPECT_TRUE(gone->empty());
  EXPECT_FALSE(std::filesystem::exists(root_ / "Peaks"));
}

// Full scale begins with frame 44100.
TEST_F(Shapes, APartIsReadFrameByFrameWhereItIsThatShort) {
  const auto reader = Reader();
  const auto part = Part(*reader, "loud.wav", 44096, 44104, 500);
  ASSERT_TRUE(part);
  EXPECT_EQ(part->lengthFrames, 88200);
  EXPECT_EQ(part->fromFrame, 44096);
  EXPECT_EQ(part->toFrame, 44104);
  EXPECT_EQ(part->peaks, (WavePeaks{0, 0, 0, 0, 255, 255, 255, 255}));
}

TEST_F(Shapes, APartHoldsTheHighestLevelOfEachOfItsStretches) {
  const auto reader = Reader();
  const auto part = Part(*reader, "loud.wav", 22050, 66150, 4);  // 11025 frames each
  ASSERT_TRUE(part);
  EXPECT_EQ(part->peaks, (WavePeaks{0, 0, 255, 255}));
  const auto behind = Part(*reader, "loud.wav", 88199, 88203, 4);
  ASSERT_TRUE(behind);
  EXPECT_EQ(behind->peaks, (WavePeaks{255, 0, 0, 0}));
}

TEST_F(Shapes, AnEmptyPartTellsTheLengthAndABadFileHasNone) {
  const auto reader = Reader();
  const auto length = Part(*reader, "loud.wav", 0, 0, 0);
  ASSERT_TRUE(length);
  EXPECT_EQ(length->lengthFrames, 88200);
  EXPECT_TRUE(length->peaks.empty());
  const auto bad = Part(*reader, "bad.wav", 0, 100, 10);
  ASSERT_TRUE(bad);
  EXPECT_EQ(bad->lengthFrames, 0);
  EXPECT_TRUE(bad->peaks.empty());
}

TEST_F(Shapes, APartThatWasAskedForLastIsKeptAndReadOnce) {
  const auto reader = Reader();
  const auto part = Part(*reader, "loud.wav", 0, 100, 10);
  EXPECT_EQ(Part(*reader, "loud.wav", 0, 100, 10), part);
  EXPECT_EQ(opened_, 1);
  EXPECT_TRUE(Read(*reader, "loud.wav"));
  EXPECT_EQ(Part(*reader, "loud.wav", 0, 100, 10), part);
  EXPECT_EQ(opened_, 2);
}

// A file without an end: its shape is never whole.
TEST_F(Shapes, APartIsReadInTheMiddleOfAWholeShape) {
  class Endless : public HalfLoud {
   public:
    int64_t LengthFrames() const override { return INT64_C(1) << 60; }
  };
  class EndlessOpener : public SoundOpener {
   public:
    std::unique_ptr<SoundSource> Open(const std::string&) override {
      return std::make_unique<Endless>();
    }
  };
  WaveformReader reader(std::make_unique<EndlessOpener>(), (root_ / "Peaks").string());
  EXPECT_EQ(reader.PeaksOf((root_ / "loud.wav").string()), nullptr);
  const auto part = Part(reader, "loud.wav", 44099, 44101, 2);
  ASSERT_TRUE(part);
  EXPECT_EQ(part->peaks, (WavePeaks{0, 255}));
  EXPECT_EQ(reader.PeaksOf((root_ / "loud.wav").string()), nullptr);
}

TEST_F(Shapes, AFolderThatCannotBeWrittenCostsOnlyTheKeeping) {
  Put("Peaks", "a file in its place");
  const auto peaks = Read(*Reader(), "loud.wav");
  ASSERT_TRUE(peaks);
  EXPECT_EQ(peaks->size(), kWavePeaks);
}

}  // namespace
}  // namespace zemo
