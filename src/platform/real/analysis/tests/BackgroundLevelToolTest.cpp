// While a file is brought to a level the loop goes on.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "platform/EventLoop.h"
#include "platform/SoundSource.h"
#include "platform/real/analysis/BackgroundLevelTool.h"
#include "platform/real/files/LocalFolder.h"

namespace zemo {
namespace {

// A level tool that goes on when the loop has turned a few times.
struct BesideTheLoop : testing::Test {
  struct CountingLoop : EventLoop {
    std::atomic<int> turns{0};
    std::thread::id thread = std::this_thread::get_id();
    void Yield() override {}
    void WaitYield() override {
      EXPECT_EQ(std::this_thread::get_id(), thread);
      ++turns;
      std::this_thread::yield();
    }
    void PassYield() override {}
    std::unique_ptr<LoopTimer> MakeTimer(int, std::function<void()>) override { return nullptr; }
    void Post(std::function<void()>) override {}
    uint64_t EventsServed() const override { return 0; }
  };
  struct HeldTool : LevelTool {
    explicit HeldTool(const CountingLoop& of) : loop(of) {}
    const CountingLoop& loop;
    void Hold() const {
      const int from = loop.turns;
      const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(20);
      while (loop.turns < from + 5 && std::chrono::steady_clock::now() < bound)
        std::this_thread::yield();
      if (loop.turns < from + 5) throw SoundError("the loop stands still");
    }
    bool BringTo(const Level& level, const std::string& path, Folder&,
                 const std::string& name) override {
      Hold();
      if (path.empty()) throw SoundError("no such file");
      return level.loudnessLufs == -18 && name == "a.wav";
    }
    void Copy(Folder& folder, const std::string& from, const std::string& to) override {
      Hold();
      folder.Write(to, folder.Read(from).value());
    }
  };

  std::string path = testing::TempDir() + "/beside-the-loop";
  LocalFolder folder{path};
  CountingLoop loop;
  BackgroundLevelTool tool{loop, std::make_unique<HeldTool>(loop)};
};

TEST_F(BesideTheLoop, ALevelIsChangedAndItsAnswerComesBack) {
  EXPECT_TRUE(tool.BringTo({-18, -1}, "file", folder, "a.wav"));
  EXPECT_FALSE(tool.BringTo({-23, -1}, "file", folder, "a.wav"));
  EXPECT_GE(loop.turns, 10);
}

TEST_F(BesideTheLoop, AFaultComesBackAsWhatItIs) {
  EXPECT_THROW(tool.BringTo({-18, -1}, "", folder, "a.wav"), SoundError);
}

TEST_F(BesideTheLoop, AFileIsCopied) {
  folder.Write("one", "sound");
  tool.Copy(folder, "one", "two");
  EXPECT_EQ(folder.Read("two"), "sound");
  EXPECT_GE(loop.turns, 5);
}

}  // namespace
}  // namespace zemo
