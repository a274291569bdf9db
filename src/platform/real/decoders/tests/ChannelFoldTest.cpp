// Gains of the channels of a file towards left and right.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <array>

#include "platform/real/decoders/ChannelFold.h"

namespace zemo {
namespace {

TEST(ChannelFold, OneChannelGoesToBothSidesAtFullLevel) {
  const auto gains = FoldToStereo(1, {});
  ASSERT_EQ(gains.size(), 1U);
  EXPECT_EQ(gains[0].left, 1);
  EXPECT_EQ(gains[0].right, 1);
}

TEST(ChannelFold, ChannelMapOverrulesTheUsualOrder) {
  // The order of Vorbis: L C R Ls Rs LFE.
  const std::array map = {SF_CHANNEL_MAP_LEFT,      SF_CHANNEL_MAP_CENTER,     SF_CHANNEL_MAP_RIGHT,
                          SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT, SF_CHANNEL_MAP_LFE};
  const std::vector<int> places(map.begin(), map.end());
  const auto gains = FoldToStereo(6, places);
  ASSERT_EQ(gains.size(), 6U);
  EXPECT_EQ(gains[0].left, 1);
  EXPECT_EQ(gains[0].right, 0);
  EXPECT_NEAR(gains[1].left, 0.7071, 1e-4);
  EXPECT_NEAR(gains[1].right, 0.7071, 1e-4);
  EXPECT_EQ(gains[2].right, 1);
  EXPECT_NEAR(gains[3].left, 0.7071, 1e-4);
  EXPECT_EQ(gains[3].right, 0);
  EXPECT_NEAR(gains[4].right, 0.7071, 1e-4);
  EXPECT_EQ(gains[5].left, 0);
  EXPECT_EQ(gains[5].right, 0);
}

TEST(ChannelFold, MapWithoutAnyKnownPlaceIsNotBelieved) {
  const std::vector<int> places(3, SF_CHANNEL_MAP_INVALID);
  EXPECT_EQ(FoldToStereo(3, places)[0].left, 1);
  EXPECT_EQ(FoldToStereo(3, places)[1].right, 1);
}

TEST(ChannelFold, MoreChannelsThanAnyKnownLayoutGiveTheirFirstTwo) {
  const auto gains = FoldToStereo(12, {});
  ASSERT_EQ(gains.size(), 12U);
  EXPECT_EQ(gains[0].left, 1);
  EXPECT_EQ(gains[1].right, 1);
  for (size_t i = 2; i < gains.size(); ++i) EXPECT_EQ(gains[i].left + gains[i].right, 0) << i;
}

}  // namespace
}  // namespace zemo
