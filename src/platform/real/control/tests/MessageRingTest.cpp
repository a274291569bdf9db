// Messages between two threads: whole, in their order, and refused where there is no room.
#include <gtest/gtest.h>

#include <thread>

#include "platform/real/control/MessageRing.h"

namespace zemo {
namespace {

TEST(MessageRing, GivesWhatWasPutInItsOrderAndNothingMore) {
  MessageRing ring(1024);
  ASSERT_TRUE(ring.Put(7, 2, "first"));
  ASSERT_TRUE(ring.Put(8, 0, ""));
  MessageRing::Head head;
  std::string text = "before";
  ASSERT_TRUE(ring.Take(head, text));
  EXPECT_EQ(head.client, 7u);
  EXPECT_EQ(head.kind, 2u);
  EXPECT_EQ(text, "first");
  ASSERT_TRUE(ring.Take(head, text));
  EXPECT_EQ(head.client, 8u);
  EXPECT_EQ(text, "");
  EXPECT_FALSE(ring.Take(head, text));
}

TEST(MessageRing, RefusesAMessageThatFindsNoRoomAsAWhole) {
  MessageRing ring(64);
  const std::string fits(64 - sizeof(MessageRing::Head), 'x');
  EXPECT_FALSE(ring.Put(1, 0, fits + "y"));
  EXPECT_TRUE(ring.Put(1, 0, fits));
  EXPECT_FALSE(ring.Put(2, 0, ""));
  MessageRing::Head head;
  std::string text;
  ASSERT_TRUE(ring.Take(head, text));
  EXPECT_EQ(text, fits);
  EXPECT_FALSE(ring.Take(head, text));
}

// 2,000 messages of up to 60,000 bytes through 65,536: round and round, and often met half written.
TEST(MessageRing, CarriesMessagesFromOneThreadToAnother) {
  constexpr uint64_t kMessages = 2000;
  const auto textOf = [](uint64_t number) {
    return std::string(number * 7919 % 60000, static_cast<char>('a' + number % 26));
  };
  MessageRing ring(65536);
  std::thread writer([&] {
    for (uint64_t number = 0; number < kMessages;) {
      const std::string text = textOf(number);
      if (ring.Put(number, 1, text))
        ++number;
      else
        std::this_thread::yield();
    }
  });
  MessageRing::Head head;
  std::string text;
  for (uint64_t number = 0; number < kMessages;) {
    if (!ring.Take(head, text)) {
      std::this_thread::yield();
      continue;
    }
    ASSERT_EQ(head.client, number);
    ASSERT_TRUE(text == textOf(number)) << number;
    ++number;
  }
  writer.join();
}

}  // namespace
}  // namespace zemo
