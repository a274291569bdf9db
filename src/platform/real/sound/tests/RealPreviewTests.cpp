// The preview's chain with its threads, on devices that a test plays.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/SoundChain.h"
#include "platform/real/sound/RealPreview.h"
#include "platform/real/sound/tests/OrderQueue.h"
#include "platform/real/sound/tests/SoundTestSupport.h"
#include "platform/sound/tests/TestSources.h"

namespace zemo {
namespace {

using testing::PlayedDevice;

class RealPreviewTest : public ::testing::Test {
 protected:
  RealPreviewTest() {
    opener_.Add("music", testing::Constant(0.5f), 60 * kSampleRate);
    opener_.Add("voice", testing::Constant(0.25f), 2205);
    Make();
  }
  void Make(std::chrono::milliseconds patience = RealPreview::kPatience) {
    preview_ = std::make_unique<RealPreview>(
        loop_, opener_,
        [this](int number) {
          if (number < 0 || number > 1) throw SoundError("no device");
          WishedDevice wished;
          wished.systems.push_back(devices_[number].Make());
          wished.identity = std::to_string(number);
          return wished;
        },
        patience);
    preview_->OnLost([this] { ++lost_; });
  }
  bool Within(const std::function<bool()>& condition) {
    return testing::Within(testing::kBoundMs, [&] {
      preview_->Poll();
      loop_.Yield();
      return condition();
    });
  }
  void Play(const std::string& file, int device = 0) {
    SoundChain& sound = preview_->Sound();
    preview_->UseDevice(device);
    sound.SetFileName(0, file);
    sound.SetChannelDone(0, false);
    sound.Start();
  }
  // Whether that left sample was played there, to a step of 16 bits.
  bool Plays(int sample, int device = 0) {
    const std::vector<int16_t> played = devices_[device].Played();
    for (size_t i = 0; i < played.size(); i += 2)
      if (std::abs(played[i] - sample) <= 1) return true;
    return false;
  }

  testing::WaveOpener opener_;
  testing::OrderQueue loop_;
  PlayedDevice devices_[2];
  std::unique_ptr<RealPreview> preview_;
  int lost_ = 0;
};

// 16384 is half of full scale, which the volume halves; a quarter of it comes on top.
TEST_F(RealPreviewTest, ThreeSlotsAreHeardTogetherAtTheirVolumes) {
  Play("music");
  ASSERT_TRUE(Within([this] { return Plays(16384); }));
  SoundChain& sound = preview_->Sound();
  EXPECT_FALSE(Plays(8192));
  sound.SetVolume(0, kUnityVolume / 2);
  ASSERT_TRUE(Within([this] { return Plays(8192); }));
  sound.SetFileName(2, "voice");
  sound.SetChannelDone(2, false);
  ASSERT_TRUE(Within([&] { return Plays(16384 / 2 + 8192) && sound.ChannelDone(2); }));
  sound.Close();
  EXPECT_TRUE(Within([this] { return devices_[0].closings == 1; }));
  EXPECT_EQ(lost_, 0);
}

TEST_F(RealPreviewTest, AnotherDeviceIsTakenAtOnceAndTheSameOneStaysOpen) {
  Play("music", 0);
  ASSERT_TRUE(Within([this] { return Plays(16384, 0); }));
  preview_->Sound().Close();
  Play("music", 0);
  preview_->Sound().Close();
  Play("music", 1);
  ASSERT_TRUE(Within([this] { return Plays(16384, 1); }));
  EXPECT_EQ(devices_[0].openings, 1);
  EXPECT_EQ(devices_[0].closings, 1);
}

TEST_F(RealPreviewTest, ADeviceThatIsNoneRefusesAtOnce) {
  EXPECT_THROW(preview_->UseDevice(2), SoundError);
}

TEST_F(RealPreviewTest, ADeviceThatIsLostIsToldOnceAndNothingGoesOnUnheard) {
  Play("music");
  ASSERT_TRUE(Within([this] { return Plays(16384); }));
  devices_[0].absent = true;
  devices_[0].gone = true;
  ASSERT_TRUE(Within([this] { return lost_ == 1; }));
  const int32_t stands = preview_->Sound().Position(0);
  ASSERT_TRUE(Within([this] { return devices_[0].asked >= 2; }));  // it is tried again
  EXPECT_EQ(preview_->Sound().Position(0), stands);
  EXPECT_EQ(lost_, 1);
}

TEST_F(RealPreviewTest, ADeviceThatDoesNotBeginIsTold) {
  Make(std::chrono::milliseconds(300));
  devices_[0].conduct = PlayedDevice::Conduct::kStandsStill;
  Play("music");
  EXPECT_TRUE(Within([this] { return lost_ == 1; }));
}

TEST_F(RealPreviewTest, AStopAheadOfTheLossIsNoLoss) {
  Play("music");
  ASSERT_TRUE(Within([this] { return Plays(16384); }));
  preview_->Sound().Close();
  devices_[0].gone = true;
  ASSERT_TRUE(Within([this] { return devices_[0].closings == 1; }));
  loop_.Yield();
  EXPECT_EQ(lost_, 0);
}

TEST_F(RealPreviewTest, TheEndOfTheProgramClosesIt) {
  Play("music");
  ASSERT_TRUE(Within([this] { return Plays(16384); }));
  preview_.reset();
  EXPECT_EQ(devices_[0].closings, 1);
}

}  // namespace
}  // namespace zemo
