#include <gtest/gtest.h>

#include "station/Overlap.h"

namespace zemo {

TEST(Overlap, ALongOneFadesTheOldElementAndAShortOneLetsItPlayToItsEnd) {
  EXPECT_EQ(OverlapFadeMs(3001, 2000, 180000), 2000);
  EXPECT_EQ(OverlapFadeMs(3000, 2000, 180000), std::nullopt);
  EXPECT_EQ(OverlapFadeMs(4000, 0, 180000), 0) << "silent at once";
}

TEST(Overlap, ANewElementThatIsShorterThanItFadesTheOldOneWithinItsOwnLength) {
  EXPECT_EQ(OverlapFadeMs(2500, 2000, 1500), 1500);
  EXPECT_EQ(OverlapFadeMs(2500, 1000, 1500), 1000);
  EXPECT_EQ(OverlapFadeMs(2500, 2000, 2500), std::nullopt);
}

}  // namespace zemo
