// The lock-free ring, between two threads that do their worst.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "platform/real/sound/SpscRing.h"

namespace zemo {
namespace {

TEST(SpscRing, ItsCapacityIsTheNextPowerOfTwo) {
  EXPECT_EQ(SpscRing<int>(1).Capacity(), 1u);
  EXPECT_EQ(SpscRing<int>(1000).Capacity(), 1024u);
  EXPECT_EQ(SpscRing<int>(1024).Capacity(), 1024u);
}

TEST(SpscRing, TakesWhatFitsAndGivesWhatIsThere) {
  SpscRing<int> ring(8);
  const std::vector<int> items{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  EXPECT_EQ(ring.Write(items.data(), 10), 8u);
  EXPECT_EQ(ring.Free(), 0u);
  EXPECT_FALSE(ring.Push(11));
  std::vector<int> out(10);
  EXPECT_EQ(ring.Read(out.data(), 3), 3u);
  EXPECT_EQ(ring.Skip(2), 2u);
  EXPECT_EQ(ring.Write(items.data() + 8, 2), 2u);  // over the edge
  EXPECT_EQ(ring.Read(out.data() + 3, 10), 5u);
  EXPECT_EQ(out, (std::vector<int>{1, 2, 3, 6, 7, 8, 9, 10, 0, 0}));
  EXPECT_EQ(ring.Skip(1), 0u);
  EXPECT_FALSE(ring.Pop(out[0]));
}

TEST(SpscRing, EveryItemArrivesOnceAndInOrderUnderTwoThreads) {
  constexpr uint32_t kItems = 2000000;
  SpscRing<uint32_t> ring(256);
  std::thread writer([&ring] {
    std::vector<uint32_t> items(97);
    for (uint32_t next = 0; next < kItems;) {
      const uint32_t count = std::min<uint32_t>(1 + next % 97, kItems - next);
      for (uint32_t i = 0; i < count; ++i) items[i] = next + i;
      const uint64_t taken = next % 3 == 0 ? ring.Push(items[0]) : ring.Write(items.data(), count);
      if (taken == 0) std::this_thread::yield();
      next += static_cast<uint32_t>(taken);
    }
  });
  std::vector<uint32_t> items(61);
  uint32_t expected = 0;
  bool inOrder = true;
  while (expected < kItems) {
    const uint64_t given =
        expected % 5 == 0 ? ring.Pop(items[0]) : ring.Read(items.data(), 1 + expected % 61);
    if (given == 0) std::this_thread::yield();
    for (uint64_t i = 0; i < given; ++i) inOrder = inOrder && items[i] == expected++;
  }
  writer.join();
  EXPECT_TRUE(inOrder);
  EXPECT_EQ(ring.Filled(), 0u);
}

}  // namespace
}  // namespace zemo
