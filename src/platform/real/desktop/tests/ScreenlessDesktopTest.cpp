#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include "platform/real/desktop/RealClock.h"
#include "platform/real/desktop/ScreenlessDesktop.h"

namespace zemo {
namespace {

TEST(ScreenlessMessageBoxes, TellOneLineOnStandardError) {
  ScreenlessMessageBoxes boxes;
  testing::internal::CaptureStderr();
  boxes.Show("Alerte", "Erreur de\nséléction\r\nde sortie audio", Buttons::kOk);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "zemoradio: message: Alerte: Erreur de séléction  de sortie audio\n");
}

TEST(ScreenlessMessageBoxes, GiveTheSafeAnswer) {
  ScreenlessMessageBoxes boxes;
  testing::internal::CaptureStderr();
  EXPECT_EQ(boxes.Show("a", "b", Buttons::kOk), Answer::kOk);
  EXPECT_EQ(boxes.Show("a", "b", Buttons::kOkCancel), Answer::kCancel);
  EXPECT_EQ(boxes.Show("a", "b", Buttons::kYesNo), Answer::kNo);
  testing::internal::GetCapturedStderr();
}

TEST(ScreenlessClipboard, HoldsTheTextThatWasPutThere) {
  ScreenlessClipboard clipboard;
  EXPECT_EQ(clipboard.Text(), "");
  clipboard.SetText("Info Sat On");
  EXPECT_EQ(clipboard.Text(), "Info Sat On");
}

TEST(RealSystem, AShutdownThatIsRefusedIsAnError) {
  EXPECT_NO_THROW(RealSystem({"true"}).Shutdown());
  EXPECT_THROW(RealSystem({"false"}).Shutdown(), std::runtime_error);
}

TEST(RealSystem, AShutdownCommandThatIsMissingIsAnErrorThatNamesIt) {
  try {
    RealSystem({"no-such-command-anywhere"}).Shutdown();
    FAIL() << "no error";
  } catch (const std::runtime_error& error) {
    EXPECT_NE(std::string(error.what()).find("no-such-command-anywhere"), std::string::npos);
  }
}

TEST(RealSystem, AProgramIsRunWithItsArgumentAndOneThatIsMissingIsTold) {
  const std::string file = testing::TempDir() + "run by " + std::to_string(getpid());
  ASSERT_TRUE(RealSystem().Run("touch", file));
  for (int turn = 0; turn < 1000 && !std::filesystem::exists(file); ++turn)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_TRUE(std::filesystem::remove(file));
  EXPECT_FALSE(RealSystem().Run("no-such-command-anywhere", ""));
}

TEST(RealSystem, HasNoScreen) {
  EXPECT_EQ(RealSystem().Screen().width, 0);
  EXPECT_EQ(RealSystem().Screen().height, 0);
}

TEST(RealClock, ShowsAMomentThatExistsAndNeverGoesBack) {
  const RealClock clock;
  const LocalDateTime now = clock.LocalNow();
  EXPECT_GE(now.year, 2024);
  EXPECT_TRUE(now.month >= 1 && now.month <= 12);
  EXPECT_TRUE(now.day >= 1 && now.day <= 31);
  EXPECT_TRUE(now.hour >= 0 && now.hour <= 23);
  EXPECT_TRUE(now.second >= 0 && now.second <= 59);
  EXPECT_TRUE(now.millisecond >= 0 && now.millisecond <= 999);
  int64_t last = clock.MonotonicMs();
  for (int i = 0; i < 1000; ++i) {
    const int64_t next = clock.MonotonicMs();
    ASSERT_GE(next, last);
    last = next;
  }
}

}  // namespace
}  // namespace zemo
