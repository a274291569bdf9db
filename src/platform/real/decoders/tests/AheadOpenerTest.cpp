// What is decoded ahead by two threads against what the same file gives to one that reads it.
#include <gtest/gtest.h>

#include <filesystem>
#include <mutex>
#include <set>
#include <thread>

#include "platform/real/decoders/AheadOpener.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/decoders/tests/TestSounds.h"

namespace zemo {
namespace {

constexpr int kFrames = 5 * 44100;

class AheadFiles : public testing::Test {
 protected:
  // What the file gives from a frame on; with parts, decoded ahead.
  std::vector<float> From(const std::string& path, int64_t frame, int chunk, int partFrames = 0) {
    auto source = SoundFileOpener().Open(path);
    if (partFrames > 0) source = DecodeAhead(std::move(source), partFrames);
    source->Seek(frame);
    return ReadAll(*source, chunk);
  }
  void ExpectTheSame(const std::string& bytes) {
    const std::string path = folder_.Path("sound");
    WriteBytes(path, bytes);
    for (const int64_t frame : {0, 1, 44100, 100000}) {
      const auto plain = From(path, frame, 1000);
      for (const int partFrames : {2000, 11520, 44100, 10 * 44100})
        for (const int chunk : {441, 4608, 50000})
          EXPECT_TRUE(From(path, frame, chunk, partFrames) == plain)
              << frame << " by " << partFrames << " in " << chunk;
    }
  }

  TestFolder folder_;
};

TEST_F(AheadFiles, EveryPartIsToTheLastBitThatOfTheFile) {
  const auto bursts = Bursts(44100, 2, kFrames);
  for (const Mp3Mode mode : {Mp3Mode::kConstant, Mp3Mode::kVariable})
    for (const double level : {0.0, kLevel192, 1.0}) {
      SCOPED_TRACE(level);
      ExpectTheSame(Mp3BytesOf(bursts, 44100, 2, mode, level));
    }
}

TEST_F(AheadFiles, ADamagedFileGivesWhatItGivesToOneReader) {
  const std::string mp3 =
      Mp3Bytes({.hertz = {441, 882}, .frames = kFrames}, Mp3Mode::kConstant, kLevel192);
  for (const size_t damage : {600U, 3000U, 30000U}) {
    SCOPED_TRACE(damage);
    std::string broken = mp3;
    broken.replace(50000, damage, Noise(damage, 11));
    ExpectTheSame(broken);
  }
  ExpectTheSame(mp3.substr(0, mp3.size() / 2));
}

TEST_F(AheadFiles, OtherRatesAndFormsAreReadAsEver) {
  ExpectTheSame(Mp3BytesOf(Bursts(48000, 2, 48000), 48000, 2, Mp3Mode::kConstant, kLevel192));
  ExpectTheSame(WaveBytes({}, Noise(400000, 3)));
}

TEST_F(AheadFiles, TheFileThatWasOpenedIsReadWhateverHasItsPathByThen) {
  const std::string path = folder_.Path("a.mp3");
  WriteBytes(path, Mp3Bytes({.hertz = {441, 882}, .frames = kFrames}, Mp3Mode::kConstant, 0.5));
  const auto plain = From(path, 0, 1000);
  const auto source = AheadOpener(std::make_unique<SoundFileOpener>()).Open(path);
  WriteBytes(folder_.Path("b.mp3"),
             Mp3Bytes({.hertz = {300, 700}, .frames = kFrames}, Mp3Mode::kConstant, 0.5));
  std::filesystem::rename(folder_.Path("b.mp3"), path);
  EXPECT_TRUE(ReadAll(*source) == plain);
}

TEST_F(AheadFiles, TheTwinIsOfTheFileThatWasOpened) {
  const std::string path = folder_.Path("a.mp3");
  WriteBytes(path, Mp3Bytes({.hertz = {441, 882}, .frames = kFrames}, Mp3Mode::kConstant, 0.5));
  const auto plain = From(path, 0, 1000);
  const auto source = SoundFileOpener().Open(path);
  std::filesystem::remove(path);
  const auto twin = source->Twin();
  ASSERT_NE(twin, nullptr);
  EXPECT_TRUE(ReadAll(*twin) == plain);
}

TEST_F(AheadFiles, AMissingFileIsToldAtItsOpening) {
  EXPECT_THROW(AheadOpener(std::make_unique<SoundFileOpener>()).Open(folder_.Path("no.mp3")),
               SoundError);
}

// Counts its frames; its twin counts otherwise from a frame on.
class CountedSource : public SoundSource {
 public:
  struct Shared {
    std::mutex mutex;
    std::set<std::thread::id> readers;
    bool hasTwin = true;
    int64_t twinErrsFrom = INT64_MAX;
    int64_t throwsAt = INT64_MAX;
    bool throwsOnce = false;
  };
  explicit CountedSource(Shared& shared, bool twin = false) : shared_(shared), twin_(twin) {}
  int64_t LengthFrames() const override { return kLength; }
  int Read(float* stereo, int frames) override {
    const int given = static_cast<int>(std::min<int64_t>(frames, kLength - at_));
    {
      const std::lock_guard lock(shared_.mutex);
      shared_.readers.insert(std::this_thread::get_id());
      const bool passed = shared_.throwsOnce && at_ > shared_.throwsAt;
      if (at_ + given > shared_.throwsAt && !passed) {
        if (shared_.throwsOnce) shared_.throwsAt = INT64_MAX;
        throw SoundError("no more of it");
      }
    }
    for (int i = 0; i < given; ++i, ++at_)
      stereo[2 * i] = stereo[2 * i + 1] =
          static_cast<float>(twin_ && at_ >= shared_.twinErrsFrom ? -at_ : at_);
    return given;
  }
  void Seek(int64_t frame) override { at_ = std::min(frame, kLength); }
  std::unique_ptr<SoundSource> Twin() const override {
    return shared_.hasTwin ? std::make_unique<CountedSource>(shared_, true) : nullptr;
  }

  static constexpr int64_t kLength = 100000;

 private:
  Shared& shared_;
  const bool twin_;
  int64_t at_ = 0;
};

void ExpectCounted(const std::vector<float>& all) {
  ASSERT_EQ(all.size(), 2U * CountedSource::kLength);
  for (size_t i = 0; i < all.size(); ++i) ASSERT_EQ(all[i], static_cast<float>(i / 2)) << i;
}

TEST(AheadSources, TwoThreadsDecodeAndNeitherIsTheReader) {
  CountedSource::Shared shared;
  const auto source = DecodeAhead(std::make_unique<CountedSource>(shared), 5000);
  ExpectCounted(ReadAll(*source));
  // The end of the file is asked for by who reads.
  shared.readers.erase(std::this_thread::get_id());
  EXPECT_EQ(shared.readers.size(), 2U);
}

TEST(AheadSources, APartThatDoesNotGoOnAsTheOneBeforeIsLeft) {
  for (const int64_t from : {0, 5000, 5100, 6151, 15000, 25100}) {
    SCOPED_TRACE(from);
    CountedSource::Shared shared;
    shared.twinErrsFrom = from;
    const auto source = DecodeAhead(std::make_unique<CountedSource>(shared), 5000);
    ExpectCounted(ReadAll(*source, 700));
    source->Seek(0);
    shared.twinErrsFrom = INT64_MAX;
    ExpectCounted(ReadAll(*source, 700));
  }
}

TEST(AheadSources, WhatHasNoTwinIsReadByTheReader) {
  CountedSource::Shared shared;
  shared.hasTwin = false;
  ExpectCounted(ReadAll(*DecodeAhead(std::make_unique<CountedSource>(shared), 5000)));
  EXPECT_EQ(shared.readers, std::set{std::this_thread::get_id()});
}

// In a part's second step of 4608 frames: behind those before it, and not as a hole.
TEST(AheadSources, AFaultThatPassesIsToldToTheReaderToo) {
  for (const int64_t at : {4700, 9700, 14700}) {
    CountedSource::Shared shared;
    shared.throwsAt = at;
    shared.throwsOnce = true;
    const auto source = DecodeAhead(std::make_unique<CountedSource>(shared), 5000);
    std::vector<float> frames(2 * 700);
    float next = 0;
    const auto read = [&] {
      while (const int given = source->Read(frames.data(), 700))
        for (int i = 0; i < given; ++i, ++next)
          ASSERT_EQ(frames[2 * static_cast<size_t>(i)], next) << at;
    };
    EXPECT_THROW(read(), SoundError) << at;
    EXPECT_EQ(next, static_cast<float>(at - 4700 + 4608));
  }
}

TEST(AheadSources, AFaultOfADecoderComesToTheReader) {
  for (const int64_t at : {100, 4700, 7000, 12000}) {
    CountedSource::Shared shared;
    shared.throwsAt = at;
    const auto source = DecodeAhead(std::make_unique<CountedSource>(shared), 5000);
    std::vector<float> frame(2);
    int64_t given = 0;
    const auto read = [&] {
      for (; source->Read(frame.data(), 1) == 1; ++given) ASSERT_EQ(frame[0], given);
    };
    EXPECT_THROW(read(), SoundError) << at;
    // By steps of 4608 frames, of which the one that holds the fault is lost.
    EXPECT_LE(given, at);
    EXPECT_GT(given, at - 4608);
  }
}

TEST(AheadSources, OneThatIsNeverReadToItsEndGoesInOrder) {
  CountedSource::Shared shared;
  const auto source = DecodeAhead(std::make_unique<CountedSource>(shared), 5000);
  std::vector<float> some(2000);
  for (const int64_t frame : {0, 50000, 99990, 3}) {
    source->Seek(frame);
    EXPECT_EQ(source->Read(some.data(), 1000),
              std::min<int64_t>(1000, CountedSource::kLength - frame));
    EXPECT_EQ(some[0], static_cast<float>(frame));
  }
}

}  // namespace
}  // namespace zemo
