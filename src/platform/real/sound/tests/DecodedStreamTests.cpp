// Decoding ahead on a thread of its own: nothing lost, nothing waited for.
#include <gtest/gtest.h>

#include "platform/real/sound/DecodedStream.h"
#include "platform/real/sound/tests/SoundTestSupport.h"
#include "platform/sound/tests/TestSources.h"

namespace zemo {
namespace {

using testing::kBoundMs;
using testing::Numbered;
using testing::WaveSource;
using testing::Within;

constexpr int kStreamFrames = 1 << 19;
constexpr int kAhead = 65536;

// Gives its frames only once the gate is open; throws at a frame if it is told to.
class GatedSource : public WaveSource {
 public:
  GatedSource(int64_t length, std::atomic<int64_t>& gate, int64_t throwsAt)
      : WaveSource(Numbered(), length), gate_(gate), throwsAt_(throwsAt) {}
  int Read(float* stereo, int frames) override {
    while (gate_.load() < given_ + frames && gate_.load() < LengthFrames())
      std::this_thread::yield();
    if (given_ >= throwsAt_) throw SoundError("gone");
    const int got = WaveSource::Read(stereo, frames);
    given_ += got;
    return got;
  }

 private:
  std::atomic<int64_t>& gate_;
  int64_t throwsAt_;
  int64_t given_ = 0;
};

class DecodedStreamTest : public ::testing::Test {
 protected:
  std::unique_ptr<DecodedStream> Gated(int64_t throwsAt = INT64_MAX) {
    return std::make_unique<DecodedStream>(
        std::make_unique<GatedSource>(kStreamFrames, gate_, throwsAt), 0, kAhead, late_);
  }
  std::atomic<uint64_t> late_{0};
  std::atomic<int64_t> gate_{0};
};

TEST_F(DecodedStreamTest, EveryFrameArrivesOnceAndInOrder) {
  DecodedStream stream(std::make_unique<WaveSource>(Numbered(), kStreamFrames), 0, kAhead, late_);
  stream.StartDecoder();
  std::vector<float> out(2 * 3000);
  int64_t next = 0;
  while (next < kStreamFrames) {
    const int asked = static_cast<int>(1 + next % 2999);
    ASSERT_TRUE(Within(kBoundMs, [&] { return stream.AvailableFrames() >= asked; }));
    const int given = stream.Read(out.data(), asked);
    ASSERT_EQ(given, std::min<int64_t>(asked, kStreamFrames - next));
    for (int i = 0; i < given; ++i) ASSERT_EQ(out[2 * i], Numbered()(next + i));
    next += given;
  }
  EXPECT_EQ(stream.Read(out.data(), 100), 0);
  EXPECT_EQ(late_, 0u);
  EXPECT_TRUE(Within(kBoundMs, [&] { return stream.DecoderStopped(); }));
}

TEST_F(DecodedStreamTest, TheFirstFramesAreThereAsSoonAsItIs) {
  DecodedStream stream(std::make_unique<WaveSource>(Numbered(), kStreamFrames), 1000, kAhead,
                       late_);
  std::vector<float> out(2 * 13000);
  EXPECT_GE(stream.AvailableFrames(), 13000);
  EXPECT_EQ(stream.Read(out.data(), 13000), 13000);
  EXPECT_EQ(out[0], Numbered()(1000));
  EXPECT_EQ(out[2 * 12999], Numbered()(13999));
  EXPECT_EQ(late_, 0u);
}

TEST_F(DecodedStreamTest, AShortFileNeedsNoDecoderAnyMore) {
  DecodedStream stream(std::make_unique<WaveSource>(Numbered(), 5000), 0, kAhead, late_);
  stream.StartDecoder();
  EXPECT_TRUE(stream.DecoderStopped());
  EXPECT_EQ(stream.AvailableFrames(), INT64_MAX);
  std::vector<float> out(2 * 6000);
  EXPECT_EQ(stream.Read(out.data(), 6000), 5000);
}

TEST_F(DecodedStreamTest, LateFramesAreSilentCountedAndPassedOver) {
  gate_ = 13824;  // what is decoded at once
  const std::unique_ptr<DecodedStream> stream = Gated();
  stream->StartDecoder();
  std::vector<float> out(2 * 20000);
  ASSERT_EQ(stream->Read(out.data(), 20000), 20000);
  EXPECT_EQ(out[2 * 13823], Numbered()(13823));
  EXPECT_EQ(out[2 * 13824], 0.0f);
  EXPECT_EQ(out[2 * 19999], 0.0f);
  EXPECT_EQ(late_, 20000u - 13824);
  gate_ = kStreamFrames;
  ASSERT_TRUE(Within(kBoundMs, [&] { return stream->AvailableFrames() >= 1000; }));
  ASSERT_EQ(stream->Read(out.data(), 1000), 1000);
  EXPECT_EQ(out[0], Numbered()(20000));  // in time again
  EXPECT_EQ(late_, 20000u - 13824);
}

TEST_F(DecodedStreamTest, ADecoderThatFailsEndsItsStream) {
  gate_ = kStreamFrames;
  const std::unique_ptr<DecodedStream> stream = Gated(30000);
  stream->StartDecoder();
  ASSERT_TRUE(Within(kBoundMs, [&] { return stream->DecoderStopped(); }));
  EXPECT_TRUE(stream->DecoderFailed());
  std::vector<float> out(2 * 50000);
  EXPECT_EQ(stream->Read(out.data(), 50000), 7 * 4608);  // the first block boundary from 30000 on
  EXPECT_EQ(late_, 0u);
}

TEST_F(DecodedStreamTest, ARetiredDecoderStops) {
  gate_ = kStreamFrames;
  const std::unique_ptr<DecodedStream> stream = Gated();
  stream->StartDecoder();
  EXPECT_FALSE(stream->DecoderStopped());  // the file is longer than the ring
  stream->Retire();
  EXPECT_TRUE(Within(kBoundMs, [&] { return stream->DecoderStopped(); }));
}

}  // namespace
}  // namespace zemo
