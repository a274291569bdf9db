#include <gtest/gtest.h>

#include "station/IsoMoments.h"

namespace zemo {
namespace {

TEST(IsoMoments, ADayHasFourTwoAndTwoDigits) {
  EXPECT_EQ(IsoDay({2026, 11, 21, 9, 5, 7, 0}), "2026-11-21");
  EXPECT_EQ(IsoDay({987, 1, 2, 0, 0, 0, 0}), "0987-01-02");
}

TEST(IsoMoments, AMomentHasABlankOrWhatIsAskedForBetween) {
  EXPECT_EQ(IsoMoment({2026, 1, 2, 3, 4, 5, 678}), "2026-01-02 03:04:05");
  EXPECT_EQ(IsoMoment({2026, 1, 2, 3, 4, 5, 678}, 'T'), "2026-01-02T03:04:05");
}

}  // namespace
}  // namespace zemo
