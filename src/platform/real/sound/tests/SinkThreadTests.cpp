// A sink of the air: whatever its writing does, the one who gives it the air never waits, and it
// gets every frame, or its place, once and in order.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <string>
#include <thread>
#include <vector>

#include "platform/real/sound/FileSink.h"
#include "platform/real/sound/SinkThread.h"
#include "platform/real/sound/tests/SoundTestSupport.h"

namespace zemo {
namespace {

using testing::HeldSink;
using testing::kBoundMs;
using testing::TestFolder;
using testing::Within;

constexpr int kChunk = 1024;

// FramesFrom numbered from `first` on, left and right alike; never 0.
std::vector<int16_t> FramesFrom(int first, int count) {
  std::vector<int16_t> stereo;
  for (int i = 0; i < count; ++i) {
    stereo.insert(stereo.end(), 2, static_cast<int16_t>(1 + (first + i) % 32000));
  }
  return stereo;
}

std::vector<int16_t> Joined(std::vector<int16_t> first, const std::vector<int16_t>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

std::vector<int16_t> Lost(int frames) {
  return std::vector<int16_t>(2 * static_cast<size_t>(frames), HeldSink::kLost);
}

std::vector<std::string> Told(SinkThread& sink) {
  std::vector<std::string> lines;
  sink.Told().Take([&](const std::string& line, bool) { lines.push_back(line); });
  return lines;
}

// Gives it the frames `first` to `end`, chunk by chunk.
void Give(SinkThread& sink, int first, int end) {
  for (; first < end; first += kChunk) {
    const int count = std::min(kChunk, end - first);
    sink.Take(FramesFrom(first, count).data(), count);
  }
}

// Holds the sink with one chunk in its hands, so that its whole ring is free.
void HoldWithAChunk(SinkThread& thread, HeldSink& sink) {
  sink.Hold();
  Give(thread, 0, kChunk);
  ASSERT_TRUE(Within(kBoundMs, [&] { return sink.Begun() == 1; }));
}

TEST(SinkThread, AtItsEndItHasEveryFrameOnceAndInOrderAndIsClosed) {
  HeldSink sink;
  SinkThread thread(sink.Make());
  HoldWithAChunk(thread, sink);
  Give(thread, kChunk, 17000);
  EXPECT_FALSE(sink.Closed());
  std::thread end([&] { thread.End(); });
  sink.Release();
  end.join();
  EXPECT_EQ(sink.Written(), FramesFrom(0, 17000));
  EXPECT_TRUE(sink.Closed());
  EXPECT_EQ(thread.LostFrames(), 0u);
  EXPECT_EQ(Told(thread), std::vector<std::string>{});
}

TEST(SinkThread, WhatAHeldSinkCannotTakeIsCountedAndItsPlaceIsKept) {
  HeldSink sink;
  SinkThread thread(sink.Make());
  HoldWithAChunk(thread, sink);
  // The ring takes 16384 frames behind the chunk: up to frame 17408. Three chunks are lost.
  Give(thread, kChunk, 17408 + 3 * kChunk);
  EXPECT_EQ(thread.LostFrames(), 3072u);
  EXPECT_EQ(thread.Gaps(), 1u);
  sink.Release();
  ASSERT_TRUE(Within(kBoundMs, [&] { return sink.Written().size() == 2 * 17408; }));
  Give(thread, 20480, 22000);
  thread.End();
  EXPECT_EQ(sink.Written(),
            Joined(Joined(FramesFrom(0, 17408), Lost(3072)), FramesFrom(20480, 1520)));
  EXPECT_EQ(thread.LostFrames(), 3072u);
  EXPECT_EQ(thread.Gaps(), 1u);
}

TEST(SinkThread, AfterALossNothingIsTakenBeforeHalfOfTheRingIsFree) {
  HeldSink sink;
  SinkThread thread(sink.Make());
  HoldWithAChunk(thread, sink);
  Give(thread, kChunk, 17408 + kChunk);
  EXPECT_EQ(thread.LostFrames(), 1024u);
  // The next writing has 4096 frames: a quarter of the ring is free now.
  sink.LetOne();
  ASSERT_TRUE(Within(kBoundMs, [&] { return sink.Begun() == 2; }));
  Give(thread, 18432, 19456);
  EXPECT_EQ(thread.LostFrames(), 2048u);
  sink.LetOne();
  ASSERT_TRUE(Within(kBoundMs, [&] { return sink.Begun() == 3; }));
  Give(thread, 19456, 20480);
  EXPECT_EQ(thread.LostFrames(), 2048u);
  EXPECT_EQ(thread.Gaps(), 1u);
  sink.Release();
  thread.End();
  EXPECT_EQ(sink.Written(),
            Joined(Joined(FramesFrom(0, 17408), Lost(2048)), FramesFrom(19456, 1024)));
}

TEST(SinkThread, ALossAtTheEndKeepsItsPlaceToo) {
  HeldSink sink;
  SinkThread thread(sink.Make());
  HoldWithAChunk(thread, sink);
  Give(thread, kChunk, 17408 + 2 * kChunk);
  std::thread end([&] { thread.End(); });
  sink.Release();
  end.join();
  EXPECT_EQ(sink.Written(), Joined(FramesFrom(0, 17408), Lost(2048)));
  EXPECT_TRUE(sink.Closed());
}

TEST(SinkThread, WhateverThePaceEveryFrameOrItsPlaceComesOnceAndInOrder) {
  constexpr int kFrames = 400000;
  HeldSink sink;
  SinkThread thread(sink.Make());
  for (int first = 0, count = 0; first < kFrames; first += count) {
    count = std::min(1 + first % kChunk, kFrames - first);
    if (first % 50 == 0) sink.Hold();
    if (first % 50 == 25) sink.Release();
    thread.Take(FramesFrom(first, count).data(), count);
  }
  sink.Release();
  thread.End();
  const std::vector<int16_t> written = sink.Written();
  ASSERT_EQ(written.size(), 2u * kFrames);
  uint64_t lost = 0;
  for (int i = 0; i < kFrames; ++i) {
    if (written[2 * i] == HeldSink::kLost)
      ++lost;
    else
      ASSERT_EQ(written[2 * i], 1 + i % 32000) << i;
    ASSERT_EQ(written[2 * i + 1], written[2 * i]) << i;
  }
  EXPECT_EQ(lost, thread.LostFrames());
}

TEST(SinkThread, AFailingSinkIsToldOnceAndGivenNoMore) {
  HeldSink sink;
  sink.FailAt(2 * 3000);
  SinkThread thread(sink.Make());
  Give(thread, 0, 4096);
  ASSERT_TRUE(Within(kBoundMs, [&] { return !thread.Takes(); }));
  Give(thread, 4096, 100000);
  thread.End();
  EXPECT_EQ(Told(thread), std::vector<std::string>{"held sink: is full"});
  EXPECT_EQ(thread.LostFrames(), 0u);
  EXPECT_FALSE(sink.Closed());
}

TEST(SinkThread, ASinkThatCannotBeClosedIsTold) {
  HeldSink sink;
  sink.failsAtClose = true;
  SinkThread thread(sink.Make());
  thread.End();
  EXPECT_EQ(Told(thread), std::vector<std::string>{"held sink: cannot be closed"});
}

TEST(FileSink, SilenceStandsForWhatWasLost) {
  const TestFolder folder;
  const std::string path = folder.Path("a.wav");
  FileSink file(path);
  file.Write(FramesFrom(0, 100).data(), 100);
  file.WriteLost(10000);
  file.Write(FramesFrom(200, 50).data(), 50);
  file.Close();
  SF_INFO info{};
  SNDFILE* read = sf_open(path.c_str(), SFM_READ, &info);
  std::vector<int16_t> stereo(2 * static_cast<size_t>(info.frames));
  sf_readf_short(read, stereo.data(), info.frames);
  sf_close(read);
  const std::vector<int16_t> silence(20000, 0);
  EXPECT_EQ(stereo, Joined(Joined(FramesFrom(0, 100), silence), FramesFrom(200, 50)));
}

TEST(FileSink, WhatFailsIsOneLineForTheOperator) {
  const TestFolder folder;
  FileSink file(folder.Path("a.wav"));
  file.Close();
  try {
    file.WriteLost(1);
    FAIL();
  } catch (const SoundError& error) {
    EXPECT_EQ(error.what(), folder.Path("a.wav") + ": is closed: the air goes on unrecorded");
  }
}

TEST(SinkThread, SilenceFillsItUpToTheFramesAskedForAtItsEnd) {
  HeldSink sink;
  SinkThread thread(sink.Make());
  Give(thread, 0, 5000);
  EXPECT_EQ(thread.Frames(), 5000);
  thread.End(7000);
  EXPECT_EQ(sink.Written(), Joined(FramesFrom(0, 5000), Lost(2000)));
  EXPECT_EQ(thread.LostFrames(), 0u);
}

TEST(FileSink, LeavesOutWhatComesBehindItsMostFrames) {
  const TestFolder folder;
  const std::string path = folder.Path("cut.wav");
  FileSink sink(path, 1500);
  sink.Write(FramesFrom(0, 1000).data(), 1000);
  sink.Write(FramesFrom(1000, 1000).data(), 1000);
  sink.WriteLost(1000);
  sink.Close();
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(info.frames, 1500);
  sf_close(file);
}

}  // namespace
}  // namespace zemo
