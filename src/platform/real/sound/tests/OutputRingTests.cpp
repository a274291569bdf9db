// The output ring: who drains it never waits, and gets every frame once and in order.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "platform/real/sound/OutputRing.h"

namespace zemo {
namespace {

// Frames numbered from `first` on, left and right alike; never 0.
std::vector<int16_t> Frames(int first, int count) {
  std::vector<int16_t> stereo;
  for (int i = 0; i < count; ++i) {
    const auto sample = static_cast<int16_t>(1 + (first + i) % 32000);
    stereo.push_back(sample);
    stereo.push_back(sample);
  }
  return stereo;
}

std::vector<int16_t> Drained(OutputRing& ring, int frames) {
  std::vector<int16_t> out(2 * static_cast<size_t>(frames), -1);
  ring.Drain(out.data(), frames);
  return out;
}

TEST(OutputRing, GivesNothingBeforeItFlows) {
  OutputRing ring;
  EXPECT_EQ(Drained(ring, 4), std::vector<int16_t>(8, 0));  // not even a size yet
  ring.Reset(100, kSampleRate);
  ring.Write(Frames(0, 60).data(), 60);
  EXPECT_EQ(Drained(ring, 4), std::vector<int16_t>(8, 0));
  EXPECT_EQ(ring.FilledFrames(), 60);
  EXPECT_EQ(ring.Underruns(), 0u);
}

TEST(OutputRing, FlowsInOrderOverItsEdge) {
  OutputRing ring;
  ring.Reset(100, kSampleRate);
  ring.Begin(1);
  for (int first = 0; first < 1000; first += 50) {
    ring.Write(Frames(first, 50).data(), 50);
    ASSERT_EQ(Drained(ring, 50), Frames(first, 50));
  }
  EXPECT_EQ(ring.PlayedFrames(1), 1000);
}

TEST(OutputRing, TooLittleIsFilledWithSilenceAndCountedAndTimeGoesOn) {
  OutputRing ring;
  ring.Reset(100, kSampleRate);
  ring.Begin(3);
  ring.Write(Frames(0, 10).data(), 10);
  std::vector<int16_t> expected = Frames(0, 10);
  expected.resize(60, 0);
  EXPECT_EQ(Drained(ring, 30), expected);
  EXPECT_EQ(ring.Underruns(), 1u);
  EXPECT_EQ(ring.PlayedFrames(3), 30);
  EXPECT_EQ(ring.PlayedFrames(2), 0);  // another run
}

TEST(OutputRing, WhatWasPlayedCountsInFramesOfTheAirWhateverTheRate) {
  OutputRing ring;
  ring.Reset(100, 48000);
  ring.Begin(1);
  Drained(ring, 48000);
  EXPECT_EQ(ring.PlayedFrames(1), 44100);
  ring.Reset(100, 96000);  // a device of another rate takes over
  EXPECT_EQ(ring.PlayedFrames(1), 44100);
  Drained(ring, 9600);
  EXPECT_EQ(ring.PlayedFrames(1), 48510);
}

TEST(OutputRing, WhatItGaveIsWhatWasPlayedWithoutTheSilenceInBetween) {
  OutputRing ring;
  ring.Reset(100, 48000);
  ring.Begin(3);
  ring.Write(Frames(0, 48).data(), 48);
  Drained(ring, 96);
  EXPECT_EQ(ring.PlayedFrames(3), 88);  // 96 at 48 kHz are 88.2 at 44.1
  EXPECT_EQ(ring.GivenFrames(3), 44);
  ring.Begin(4);
  EXPECT_EQ(ring.GivenFrames(3), 0);
  EXPECT_EQ(ring.GivenFrames(4), 0);
}

TEST(OutputRing, WhatWaitsWhenItEndsGlidesToSilence) {
  OutputRing ring;
  ring.Reset(2000, kSampleRate);
  ring.Begin(1);
  const std::vector<int16_t> loud(2 * 2000, 20000);
  ring.Write(loud.data(), 2000);
  EXPECT_EQ(Drained(ring, 100), std::vector<int16_t>(200, 20000));
  ring.End();
  const std::vector<int16_t> out = Drained(ring, 600);
  EXPECT_NEAR(out[0], 20000 * 440 / 441, 1);
  for (size_t i = 2; i < out.size(); i += 2) {
    ASSERT_LE(out[i], out[i - 2]);
    ASSERT_LE(out[i - 2] - out[i], 20000 / 441 + 1);
  }
  EXPECT_EQ(out[2 * 440], 0);
  EXPECT_EQ(Drained(ring, 10), std::vector<int16_t>(20, 0));  // once
  EXPECT_EQ(ring.PlayedFrames(1), 100);
}

TEST(OutputRing, ADeviceGetsSilenceWhileTheClockDrains) {
  OutputRing ring;
  ring.Reset(100, kSampleRate);
  ring.Begin(1);
  ring.Write(Frames(0, 20).data(), 20);
  std::vector<int16_t> out(20, -1);
  EXPECT_EQ(ring.DrainForDevice(out.data(), 10), 0);
  EXPECT_EQ(out, std::vector<int16_t>(20, 0));
  EXPECT_EQ(ring.FilledFrames(), 20);
  ring.SetDeviceDrains(true);
  EXPECT_EQ(ring.DrainForDevice(out.data(), 10), 10);
  EXPECT_EQ(out, Frames(0, 10));
  EXPECT_EQ(ring.AskedByDevice(), 20u);
}

TEST(OutputRing, TheCallbackOfADeviceFillsItsBufferFromTheRing) {
  OutputRing ring;
  ring.Reset(100, kSampleRate);
  ring.Begin(1);
  ring.SetDeviceDrains(true);
  ring.Write(Frames(0, 20).data(), 20);
  std::vector<int16_t> out(40, -1);
  EXPECT_EQ(DeviceCallback(out.data(), nullptr, 20, 0.0, 0, &ring), 0);
  EXPECT_EQ(out, Frames(0, 20));
}

TEST(OutputRing, UnderTwoThreadsEveryFrameComesOnceAndInOrder) {
  constexpr int kFrames = 400000;
  OutputRing ring;
  ring.Reset(777, kSampleRate);
  ring.Begin(1);
  std::thread mixer([&ring] {
    for (int next = 0; next < kFrames;) {
      const int count = std::min({1 + next % 300, ring.FreeFrames(), kFrames - next});
      if (count == 0) std::this_thread::yield();
      ring.Write(Frames(next, count).data(), count);
      next += count;
    }
  });
  std::vector<int16_t> out(2 * 256);
  bool inOrder = true;
  for (int next = 0; next < kFrames;) {
    const int given = ring.Drain(out.data(), 1 + next % 256);
    if (given == 0) std::this_thread::yield();
    for (int i = 0; i < given; ++i, ++next) {
      inOrder = inOrder && out[2 * i] == 1 + next % 32000 && out[2 * i + 1] == out[2 * i];
    }
  }
  mixer.join();
  EXPECT_TRUE(inOrder);
}

TEST(OutputRing, ItMayBeginEndAndChangeItsSizeUnderTheOneThatDrains) {
  OutputRing ring;
  std::atomic<bool> quit{false};
  bool sane = true;
  std::thread device([&] {
    std::vector<int16_t> out(2 * 100);
    while (!quit) {
      const int given = ring.Drain(out.data(), 100);
      for (int i = 2 * given; i < 200; ++i) sane = sane && out[i] == 0;
      for (int i = 0; i < 200; ++i) sane = sane && out[i] >= 0;
    }
  });
  for (uint16_t run = 1; run < 3000; ++run) {
    ring.Reset(100 + run % 5 * 100, kSampleRate);
    ring.Write(Frames(0, 90).data(), 90);
    ring.Begin(run);
    for (int i = 0; i < 3; ++i) {
      const int count = std::min(50, ring.FreeFrames());
      ring.Write(Frames(90, count).data(), count);
    }
    ring.End();
  }
  quit = true;
  device.join();
  EXPECT_TRUE(sane);
}

TEST(OutputRing, ADeviceThatTakesOverRisesOverTenMillisecondsOnce) {
  OutputRing ring;
  ring.Reset(2000, kSampleRate);
  ring.Begin(1);
  ring.Write(std::vector<int16_t>(4000, 8820).data(), 2000);
  ring.SetDeviceDrains(true);
  ring.RiseNext();
  std::vector<int16_t> out(2000);
  ring.DrainForDevice(out.data(), 1000);
  for (int i = 0; i < 441; ++i) ASSERT_EQ(out[2 * i], 20 * i) << i;  // 8820 in 441 frames
  for (int i = 441; i < 1000; ++i) ASSERT_EQ(out[2 * i + 1], 8820) << i;
  ring.DrainForDevice(out.data(), 1000);
  EXPECT_EQ(out, std::vector<int16_t>(2000, 8820));
}

}  // namespace
}  // namespace zemo
