#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
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

// The machine's programs are those of a folder of the test's own.
class MachinesMixer : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = testing::TempDir() + "mixers" + std::to_string(getpid());
    std::filesystem::create_directory(folder_);
    setenv("PATH", folder_.c_str(), 1);
  }
  void TearDown() override {
    setenv("PATH", path_.c_str(), 1);
    std::filesystem::remove_all(folder_);
  }
  // It writes a line: its name, and the arguments that it is given.
  void Install(const std::string& name) const {
    std::ofstream(folder_ + "/" + name)
        << "#!/bin/sh\necho " + name + " \"$@\" >>'" + folder_ + "/told'\n";
    std::filesystem::permissions(folder_ + "/" + name, std::filesystem::perms::owner_all);
  }
  // What was run, once a line of it is there.
  std::string Told() const {
    std::string line;
    for (int turn = 0; turn < 1000; ++turn) {
      std::ifstream told(folder_ + "/told");
      if (std::getline(told, line) && !told.eof()) return line;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return "nothing";
  }

  std::string folder_;

 private:
  const std::string path_ = getenv("PATH");
};

TEST_F(MachinesMixer, IsTheOneOfTheScreenWhereThereIsOne) {
  for (const char* name : {"pavucontrol", "alsamixer", "x-terminal-emulator"}) Install(name);
  EXPECT_TRUE(RealSystem().RunMixer());
  EXPECT_EQ(Told(), "pavucontrol");
}

TEST_F(MachinesMixer, IsElseTheOneOfATerminal) {
  for (const char* name : {"alsamixer", "x-terminal-emulator"}) Install(name);
  EXPECT_TRUE(RealSystem().RunMixer());
  EXPECT_EQ(Told(), "x-terminal-emulator -e alsamixer");
}

TEST_F(MachinesMixer, IsNoneWithoutATerminalForItAndInATerminalAlone) {
  EXPECT_FALSE(RealSystem().RunMixer());
  Install("alsamixer");
  EXPECT_FALSE(RealSystem().RunMixer());
  std::filesystem::rename(folder_ + "/alsamixer", folder_ + "/x-terminal-emulator");
  EXPECT_FALSE(RealSystem().RunMixer());
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
