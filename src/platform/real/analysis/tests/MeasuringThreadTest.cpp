// Files measured in the background, in real time: what is waited for has a bound.
#include <gtest/gtest.h>
#include <sched.h>
#include <sndfile.h>

#include <chrono>
#include <functional>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/real/analysis/MeasuringThread.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/decoders/tests/TestSounds.h"

namespace zemo {
namespace {

bool Wait(const std::function<bool()>& condition) {
  const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (std::chrono::steady_clock::now() < bound) {
    if (condition()) return true;
    std::this_thread::yield();  // another one measures
  }
  return false;
}

// Holds the first file that is opened until it is let go, and notes which were opened.
class HeldOpener : public SoundOpener {
 public:
  struct Notes {
    std::mutex mutex;
    std::vector<std::string> opened;
    int policy = -1;
    std::promise<void> letGo;
    size_t Opened() {
      const std::lock_guard lock(mutex);
      return opened.size();
    }
  };
  explicit HeldOpener(Notes& notes) : notes_(notes), go_(notes.letGo.get_future()) {}
  std::unique_ptr<SoundSource> Open(const std::string& path) override {
    {
      const std::lock_guard lock(notes_.mutex);
      notes_.opened.push_back(path);
      notes_.policy = sched_getscheduler(0);
    }
    if (go_.valid()) go_.get();
    throw SoundError("held: " + path);
  }

 private:
  Notes& notes_;
  std::future<void> go_;
};

std::optional<MeasuredSound> Next(MeasuringThread& thread) {
  std::optional<MeasuredSound> sound;
  Wait([&] { return (sound = thread.TakeMeasured()).has_value(); });
  return sound;
}

void WishFor(MeasuringThread& thread, const std::string& path) {
  ASSERT_TRUE(Wait([&] { return thread.Wish(path); })) << path;
}

TEST(MeasuringThread, GivesTheMeasuresOfEachFileOrWhyThereAreNone) {
  const TestFolder folder;
  WriteSound(folder.Path("a.wav"), SF_FORMAT_WAV | SF_FORMAT_PCM_16,
             {44100, {1000, 1000}, 0.1, 44'100});
  WriteBytes(folder.Path("b.wav"), "no sound");
  MeasuringThread thread(std::make_unique<SoundFileOpener>());
  WishFor(thread, folder.Path("a.wav"));
  const auto good = Next(thread);
  ASSERT_TRUE(good && good->measures);
  EXPECT_EQ(good->path, folder.Path("a.wav"));
  EXPECT_NEAR(*good->measures->loudnessLufs, -20, 0.2);
  EXPECT_EQ(good->error, "");
  WishFor(thread, folder.Path("b.wav"));
  const auto bad = Next(thread);
  ASSERT_TRUE(bad);
  EXPECT_EQ(bad->path, folder.Path("b.wav"));
  EXPECT_FALSE(bad->measures);
  EXPECT_NE(bad->error, "");
  EXPECT_FALSE(thread.TakeMeasured());
}

TEST(MeasuringThread, TheNewestWishIsMeasuredFirst) {
  HeldOpener::Notes notes;
  MeasuringThread thread(std::make_unique<HeldOpener>(notes));
  WishFor(thread, "held");
  ASSERT_TRUE(Wait([&] { return notes.Opened() == 1; }));
  for (const auto* path : {"a", "b", "c", "a", "held"}) WishFor(thread, path);
  notes.letGo.set_value();
  std::vector<std::string> order;
  for (int i = 0; i < 4; ++i) order.push_back(Next(thread).value().path);
  EXPECT_EQ(order, (std::vector<std::string>{"held", "a", "c", "b"}));
}

TEST(MeasuringThread, NoMoreThanSixteenFilesWaitToBeMeasuredOrTaken) {
  HeldOpener::Notes notes;
  MeasuringThread thread(std::make_unique<HeldOpener>(notes));
  WishFor(thread, "held");
  ASSERT_TRUE(Wait([&] { return notes.Opened() == 1; }));
  for (int i = 1; i < 16; ++i) WishFor(thread, std::to_string(i));
  EXPECT_FALSE(thread.Wish("one more"));
  notes.letGo.set_value();
  ASSERT_TRUE(Wait([&] { return notes.Opened() == 16; }));
  EXPECT_FALSE(thread.Wish("one more"));
  EXPECT_EQ(Next(thread).value().path, "held");
  WishFor(thread, "one more");
}

TEST(MeasuringThread, RunsOnlyWhileNothingElseWantsTo) {
  HeldOpener::Notes notes;
  MeasuringThread thread(std::make_unique<HeldOpener>(notes));
  WishFor(thread, "held");
  notes.letGo.set_value();
  ASSERT_TRUE(Next(thread));
  EXPECT_EQ(notes.policy, SCHED_IDLE);
}

// A sound that never ends.
class EndlessOpener : public SoundOpener {
 public:
  explicit EndlessOpener(std::atomic<int>& reads) : reads_(reads) {}
  std::unique_ptr<SoundSource> Open(const std::string&) override {
    return std::make_unique<Endless>(reads_);
  }

 private:
  class Endless : public SoundSource {
   public:
    explicit Endless(std::atomic<int>& reads) : reads_(reads) {}
    int64_t LengthFrames() const override { return int64_t{1} << 40; }
    int Read(float* stereo, int frames) override {
      ++reads_;
      std::fill_n(stereo, 2 * frames, 0.1F);
      return frames;
    }
    void Seek(int64_t) override {}

   private:
    std::atomic<int>& reads_;
  };
  std::atomic<int>& reads_;
};

TEST(MeasuringThread, EndsInTheMiddleOfAFile) {
  std::atomic<int> reads = 0;
  {
    MeasuringThread thread(std::make_unique<EndlessOpener>(reads));
    WishFor(thread, "endless");
    WishFor(thread, "next");
    ASSERT_TRUE(Wait([&] { return reads > 10; }));
  }
  SUCCEED();  // a thread that goes on keeps the test from getting here
}

TEST(MeasuringThread, EndsWhileItHasNothingToDo) {
  std::atomic<int> reads = 0;
  for (int i = 0; i < 100; ++i) MeasuringThread thread(std::make_unique<EndlessOpener>(reads));
  EXPECT_EQ(reads, 0);
}

}  // namespace
}  // namespace zemo
