#include <gtest/gtest.h>

#include <string>

#include "library/CardBroadcasts.h"

namespace zemo {
namespace {

std::string Again(const std::string& text) {
  const auto minute = BroadcastMinuteOf(text);
  if (!minute) return "none";
  DiffusionText again;
  WriteBroadcast(*minute, again);
  return {again.data(), again.size()};
}

TEST(CardBroadcasts, TheUsualTextIsANumberAndComesBackToTheByte) {
  for (const char* text :
       {"01/01/1900 à 00:00", "21/11/2026 à 10:05", "29/02/2024 à 23:59", "31/12/2899 à 12:00"})
    EXPECT_EQ(Again(text), text);
}

TEST(CardBroadcasts, MinutesCountFromTheFirstOf1900) {
  EXPECT_EQ(BroadcastMinuteOf("01/01/1900 à 00:00"), 0U);
  EXPECT_EQ(BroadcastMinuteOf("02/01/1900 à 01:02"), 1440U + 62);
  EXPECT_EQ(BroadcastDay(1900, 3, 1), 31 + 28);  // no leap year
  EXPECT_LT(BroadcastDay(1899, 12, 31), 0);
}

TEST(CardBroadcasts, AnyOtherTextHasNone) {
  for (const char* text :
       {"", "21/11/2026", "21/11/2026 a 10:05", "21/11/2026 à 10:5", "1/11/2026 à 10:05",
        "21/11/2026 à 10:05 ", " 21/11/2026 à 10:05", "30/02/2026 à 10:05", "21/13/2026 à 10:05",
        "21/11/2026 à 24:00", "21/11/2026 à 10:60", "21-11-2026 à 10:05", "21/11/1899 à 10:05",
        "21/11/2900 à 10:05", "2x/11/2026 à 10:05", "00/11/2026 à 10:05"})
    EXPECT_EQ(Again(text), "none") << text;
}

}  // namespace
}  // namespace zemo
