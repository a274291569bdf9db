#include <gtest/gtest.h>

#include "platform/WavHeader.h"

namespace zemo {
namespace {

std::string Bytes(const char* bytes, size_t count) {
  return {bytes, count};
}

// 44100 frames of one channel are 88200 bytes, 0x15888, and 0x158AC with the head behind "RIFF".
TEST(WavHeader, TellsASecondOfOneChannel) {
  const std::string header = WavHeader(1, 44100);
  ASSERT_EQ(header.size(), 44U);
  EXPECT_EQ(header.substr(0, 12), "RIFF" + Bytes("\xAC\x58\x01\x00", 4) + "WAVE");
  EXPECT_EQ(header.substr(12, 12), "fmt " + Bytes("\x10\0\0\0\x01\0\x01\0", 8));
  EXPECT_EQ(header.substr(24, 12), Bytes("\x44\xAC\0\0\x88\x58\x01\0\x02\0\x10\0", 12));
  EXPECT_EQ(header.substr(36), "data" + Bytes("\x88\x58\x01\x00", 4));
}

TEST(WavHeader, TellsTwoChannels) {
  const std::string header = WavHeader(2, 1);
  EXPECT_EQ(header.substr(22, 2), Bytes("\x02\0", 2));
  EXPECT_EQ(header.substr(28, 8), Bytes("\x10\xB1\x02\0\x04\0\x10\0", 8));  // 176400 bytes a second
  EXPECT_EQ(header.substr(40), Bytes("\x04\0\0\0", 4));
}

TEST(WavHeader, MoreThanItCanTellIsTheMostItCan) {
  EXPECT_EQ(WavHeader(2, int64_t{1} << 40).substr(40), Bytes("\xD8\xFF\xFF\xFF", 4));
}

}  // namespace
}  // namespace zemo
