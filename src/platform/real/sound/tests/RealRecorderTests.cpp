// The recorder with its thread, on an input whose sound the test gives.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/real/files/LocalFolder.h"
#include "platform/real/sound/RealRecorder.h"
#include "platform/real/sound/tests/OrderQueue.h"
#include "platform/real/sound/tests/SoundTestSupport.h"
#include "platform/real/sound/tests/SpokenInput.h"
#include "platform/sound/tests/TestSources.h"

namespace zemo {
namespace {

using testing::kBoundMs;
using testing::Lines;
using testing::ReadRecordedWav;
using testing::RecordedWav;
using testing::SpokenInput;
using SpokenSamples = std::vector<int16_t>;

class RealRecorderTest : public ::testing::Test {
 protected:
  RealRecorderTest() {
    recorder_ = std::make_unique<RealRecorder>(loop_, [this](int number) {
      if (number > 1) throw SoundError("no such input");
      return inputs_[number].Make("input " + std::to_string(number));
    });
    recorder_->OnEnd([this](const std::string& reason) {
      EXPECT_FALSE(recorder_->Recording());
      ends_.push_back(reason);
    });
  }
  bool Within(const std::function<bool()>& condition) {
    return testing::Within(kBoundMs, [&] {
      recorder_->Poll();
      loop_.Yield();
      return condition();
    });
  }
  // Its sound is heard: an opening counts once the recorder's thread has it.
  void Open(int device = 0) {
    recorder_->Listen(device);
    ASSERT_TRUE(Within([&] { return inputs_[device].openings > 0; }));
    inputs_[device].Give(1, 32767);
    ASSERT_TRUE(Within([&] { return recorder_->HeardLevels().left > 0.9f; }));
  }
  void Start() { recorder_->Start(0, folder_, "a.Wav"); }
  bool RecordedFrames(int64_t frames) {
    return Within([&] { return recorder_->RecordedMs() >= FramesToMs(frames); });
  }
  bool Ended() {
    return Within([this] { return !ends_.empty(); });
  }
  std::string Path() const { return files_.Path("tracks/a.Wav"); }
  RecordedWav Wav() const { return ReadRecordedWav(Path()); }
  void PutFormer() {
    std::filesystem::create_directories(files_.Path("tracks"));
    std::ofstream(Path()) << "former";
  }

  testing::TestFolder files_;
  LocalFolder folder_{files_.Path("tracks")};
  testing::OrderQueue loop_;
  SpokenInput inputs_[2];
  Lines ends_;
  std::unique_ptr<RealRecorder> recorder_;
};

TEST_F(RealRecorderTest, WhatComesBetweenStartAndStopIsInTheFileToTheFrame) {
  Open();
  inputs_[0].Give(1000, 1);
  Start();
  EXPECT_TRUE(recorder_->Recording());
  inputs_[0].Give(5000, [](int64_t frame) { return static_cast<int>(frame) + 2; });
  recorder_->Stop();
  EXPECT_FALSE(recorder_->Recording());
  const RecordedWav wav = Wav();
  EXPECT_EQ(wav.channels, 2);
  EXPECT_EQ(wav.rate, 44100);
  EXPECT_EQ(wav.bits, 16);
  ASSERT_EQ(wav.frames, 5000);
  EXPECT_EQ(wav.behind, 0);
  for (size_t i = 0; i < 5000; ++i) ASSERT_EQ(wav.Left()[i], static_cast<int16_t>(i + 2)) << i;
  EXPECT_EQ(recorder_->RecordedMs(), 113);  // 5000 / 44.1
  inputs_[0].Give(1000, 3);
  EXPECT_EQ(Wav().frames, 5000);
  EXPECT_EQ(ends_, Lines{});
  EXPECT_EQ(inputs_[0].openings, 1);
  EXPECT_EQ(folder_.Names(), std::vector<std::string>{"a.Wav"});
}

TEST_F(RealRecorderTest, AnInputOfOneChannelMakesAFileOfOne) {
  inputs_[0].channels = 1;
  Open();
  Start();
  inputs_[0].Give(700, -5);
  recorder_->Stop();
  EXPECT_EQ(Wav().channels, 1);
  EXPECT_EQ(Wav().samples, SpokenSamples(700, -5));
}

// A second at 48 kHz, of 1000 Hz.
TEST_F(RealRecorderTest, AnInputOfAnotherRateIsConverted) {
  inputs_[0].rate = 48000;
  Open();
  Start();
  inputs_[0].Give(48000, [](int64_t frame) {
    return static_cast<int>(16384 * std::sin(2 * M_PI * 1000 * static_cast<double>(frame) / 48000));
  });
  recorder_->Stop();
  const RecordedWav wav = Wav();
  EXPECT_EQ(wav.rate, 44100);
  EXPECT_NEAR(static_cast<double>(wav.frames), 44100, 200);  // what the converter still holds
  int turns = 0;
  int sign = 0, peak = 0;
  for (const int16_t x : wav.Left()) {
    if (x > 0 && sign < 0) ++turns;
    if (x != 0) sign = x;
    peak = std::max<int>(peak, x);
  }
  EXPECT_NEAR(turns, static_cast<double>(wav.frames) / 44.1, 3);
  EXPECT_NEAR(peak, 16384, 200);
}

TEST_F(RealRecorderTest, WhatWasSaidCanBeReadWhileItIsRecorded) {
  Open();
  Start();
  for (int turn = 1; turn <= 3; ++turn) {
    inputs_[0].Give(4410, turn);
    ASSERT_TRUE(RecordedFrames(4410 * turn));
    EXPECT_EQ(Wav().frames, 4410 * turn);
    EXPECT_EQ(Wav().behind, 0);
  }
}

TEST_F(RealRecorderTest, AnInputThatIsOpenedForTheRecordingIsHeardFromItsFirstFrame) {
  inputs_[0].holds = true;
  Start();
  EXPECT_TRUE(recorder_->Recording());
  EXPECT_EQ(recorder_->RecordedMs(), 0);
  inputs_[0].holds = false;
  ASSERT_TRUE(Within([this] { return inputs_[0].openings == 1; }));
  inputs_[0].Give(3000, 7);
  ASSERT_TRUE(RecordedFrames(3000));
  recorder_->Stop();
  EXPECT_EQ(Wav().Left(), SpokenSamples(3000, 7));
}

TEST_F(RealRecorderTest, AStopWhileTheInputStillOpensWaitsNotForItAndLeavesTheFormerFile) {
  PutFormer();
  inputs_[0].holds = true;
  Start();
  ASSERT_TRUE(Within([this] { return inputs_[0].asked == 1; }));
  const auto begin = std::chrono::steady_clock::now();
  recorder_->Stop();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
  EXPECT_FALSE(recorder_->Recording());
  inputs_[0].holds = false;
  ASSERT_TRUE(Within([this] { return inputs_[0].openings == 1; }));
  EXPECT_EQ(testing::BytesOf(Path()), "former");
  EXPECT_EQ(ends_, Lines{});
}

TEST_F(RealRecorderTest, AnInputThatDoesNotOpenIsToldAndTheFormerFileStays) {
  PutFormer();
  inputs_[0].absent = true;
  Start();
  ASSERT_TRUE(Ended());
  EXPECT_EQ(ends_, Lines{"spoken input: absent"});
  EXPECT_EQ(recorder_->RecordedMs(), 0);
  EXPECT_EQ(testing::BytesOf(Path()), "former");
  EXPECT_EQ(folder_.Names(), std::vector<std::string>{"a.Wav"});
  // Plugged in again.
  inputs_[0].absent = false;
  Start();
  ASSERT_TRUE(Within([this] { return inputs_[0].openings == 1; }));
  inputs_[0].Give(500, 4);
  ASSERT_TRUE(RecordedFrames(500));
  recorder_->Stop();
  EXPECT_EQ(Wav().Left(), SpokenSamples(500, 4));
}

TEST_F(RealRecorderTest, AnInputThatIsNoneRefusesAtOnce) {
  EXPECT_THROW(recorder_->Start(-1, folder_, "a.Wav"), SoundError);
  EXPECT_THROW(recorder_->Start(2, folder_, "a.Wav"), SoundError);
  EXPECT_THROW(recorder_->Listen(2), SoundError);
  EXPECT_FALSE(recorder_->Recording());
}

TEST_F(RealRecorderTest, AnInputThatIsLostIsToldAndEveryFrameBeforeIsKept) {
  Open();
  Start();
  inputs_[0].Give(9000, 12);
  inputs_[0].lastFrames = 400;
  inputs_[0].gone = true;
  ASSERT_TRUE(Ended());
  EXPECT_EQ(ends_, Lines{"sound input spoken input is gone"});
  SpokenSamples said(9000, 12);
  said.insert(said.end(), 400, 7);
  EXPECT_EQ(Wav().Left(), said);
  EXPECT_EQ(inputs_[0].closings, 1);
}

// 44 bytes of header and 4 for each frame: the 2489th comes to 10000.
TEST_F(RealRecorderTest, AFullDiskIsToldAndWhatItTookIsKept) {
  Open();
  Start();
  {
    const testing::FileSizeLimit limit(10000);
    inputs_[0].Give(5000, 12);
    ASSERT_TRUE(Ended());
  }
  EXPECT_EQ(ends_, Lines{Path() + ": File too large"});
  EXPECT_EQ(Wav().Left(), SpokenSamples(2489, 12));
  EXPECT_EQ(recorder_->RecordedMs(), 56);  // 2489 / 44.1
}

TEST_F(RealRecorderTest, ADiskThatIsFullFromTheBeginLeavesTheFormerFile) {
  PutFormer();
  Open();
  {
    const testing::FileSizeLimit limit(44);
    Start();
    inputs_[0].Give(100, 1);
    ASSERT_TRUE(Ended());
  }
  EXPECT_EQ(ends_, Lines{Path() + ": File too large"});
  EXPECT_FALSE(recorder_->HasFile());
  EXPECT_EQ(testing::BytesOf(Path()), "former");
  EXPECT_EQ(folder_.Names(), std::vector<std::string>{"a.Wav"});
}

TEST_F(RealRecorderTest, AFileThatCannotBeMadeIsTold) {
  std::ofstream(files_.Path("tracks")) << "a file in the folder's place";
  Open();
  Start();
  inputs_[0].Give(100, 1);
  ASSERT_TRUE(Ended());
  EXPECT_EQ(ends_, Lines{Path() + ": Not a directory"});
}

TEST_F(RealRecorderTest, ADiskThatFallsTooFarBehindEndsTheRecordingWithWhatCameBefore) {
  Open();
  Start();
  inputs_[0].Give(1000, 5);
  ASSERT_TRUE(RecordedFrames(1000));
  inputs_[0].Give(2 * InputRing::kMostSeconds * kSampleRate, 6);
  ASSERT_TRUE(Ended());
  EXPECT_EQ(ends_, Lines{Path() + ": the disk is too slow for the recording"});
  const SpokenSamples left = Wav().Left();
  ASSERT_GT(left.size(), 1000U);
  EXPECT_EQ(SpokenSamples(left.begin(), left.begin() + 1000), SpokenSamples(1000, 5));
}

TEST_F(RealRecorderTest, ANewRecordingTakesThePlaceOfTheFormer) {
  Open();
  Start();
  inputs_[0].Give(3000, 1);
  ASSERT_TRUE(RecordedFrames(3000));
  Start();  // ends the one before
  inputs_[0].Give(1000, 2);
  recorder_->Stop();
  EXPECT_EQ(Wav().Left(), SpokenSamples(1000, 2));
  EXPECT_EQ(ends_, Lines{});
}

TEST_F(RealRecorderTest, AnotherInputIsOpenedInPlaceOfTheFirst) {
  Open(0);
  Open(1);
  EXPECT_EQ(inputs_[0].closings, 1);
  recorder_->Start(1, folder_, "a.Wav");
  inputs_[1].Give(800, 3);
  recorder_->Stop();
  EXPECT_EQ(Wav().Left(), SpokenSamples(800, 3));
  recorder_->Listen(-1);
  EXPECT_TRUE(Within([this] { return inputs_[1].closings == 1; }));
}

TEST_F(RealRecorderTest, AnInputThatGivesNothingOrDigitalSilenceIsKnown) {
  EXPECT_EQ(recorder_->SilentMs(), 0);
  Open();
  Start();
  ASSERT_TRUE(Within([this] { return recorder_->SilentMs() >= 60; }));  // nothing comes
  inputs_[0].Give(441, 0);
  ASSERT_TRUE(RecordedFrames(441));
  EXPECT_GE(recorder_->SilentMs(), 60);  // silence comes
  const int64_t before = recorder_->SilentMs();
  inputs_[0].Give(441, -1);
  ASSERT_TRUE(RecordedFrames(882));
  EXPECT_LT(recorder_->SilentMs(), before);
}

TEST_F(RealRecorderTest, TheLevelIsTheHighestSinceTheLastQuestion) {
  Open();
  inputs_[0].Give(10, -16384);
  ASSERT_TRUE(Within([this] { return recorder_->HeardLevels().right == 0.5f; }));
  EXPECT_EQ(recorder_->HeardLevels().right, 0);
}

TEST_F(RealRecorderTest, WhatIsRecordedAtTheEndOfTheProgramIsKept) {
  Open();
  Start();
  inputs_[0].Give(4410, 3);
  ASSERT_TRUE(RecordedFrames(4410));
  recorder_.reset();
  EXPECT_EQ(Wav().Left(), SpokenSamples(4410, 3));
  EXPECT_EQ(inputs_[0].closings, 1);
}

TEST(InputRing, CountsWhatItHasNoRoomFor) {
  InputRing ring;
  ring.Reset(2);
  const std::vector<int16_t> block(2 * 1000, 7);
  ring.Take(block.data(), 1000);
  EXPECT_EQ(ring.Received(), 1000);
  EXPECT_EQ(ring.Filled(), 1000);
  ring.Take(nullptr, 1000);
  std::vector<int16_t> read(2 * 2000, 1);
  EXPECT_EQ(ring.Read(read.data(), 2000), 2000);
  EXPECT_EQ(read[1999], 7);
  EXPECT_EQ(read[2000], 0);
  int64_t given = 2000;
  for (; ring.Lost() == 0; given += 1000) ring.Take(block.data(), 1000);
  EXPECT_EQ(ring.Received() + ring.Lost(), given);
  EXPECT_EQ(ring.Filled(), ring.Received() - 2000);
}

}  // namespace
}  // namespace zemo
