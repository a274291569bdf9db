#include <gtest/gtest.h>

#include "library/HourMasks.h"

namespace zemo {

TEST(HourMasks, AFreshOneAllowsEveryHourOfEveryDay) {
  const HourMasks masks;
  for (int day = 1; day <= 7; ++day) EXPECT_EQ(masks.Mask(day), std::string(24, '1'));
}

TEST(HourMasks, ChoosingADayKeepsTheBoxesOfTheDayLeftAndShowsThoseOfTheDayChosen) {
  HourMasks masks;
  masks.Tranche[0] = false;
  masks.Choose(3);
  EXPECT_TRUE(masks.Tranche[0]);
  masks.Tranche[23] = false;
  masks.Choose(1);
  EXPECT_FALSE(masks.Tranche[0]);
  EXPECT_TRUE(masks.Tranche[23]);
  EXPECT_EQ(masks.Mask(1), "0" + std::string(23, '1'));
  EXPECT_EQ(masks.Mask(3), std::string(23, '1') + "0");
}

TEST(HourMasks, ADayThatIsNoneIsNotChosen) {
  HourMasks masks;
  masks.Choose(8);
  masks.Choose(0);
  EXPECT_EQ(masks.JourSem(), 1);
}

TEST(HourMasks, WhatIsNoOneIsBarredAndWhatLacksToo) {
  HourMasks masks;
  masks.Take(2, "1x1");
  EXPECT_EQ(masks.Mask(2), "101" + std::string(21, '0'));
}

TEST(HourMasks, AMaskIsCopiedAndPastedIntoTheChosenDay) {
  HourMasks masks;
  masks.Tranche[5] = false;
  const std::string copied = masks.Copied();
  masks.Choose(7);
  masks.Paste(copied + " and what stands behind it");
  EXPECT_EQ(masks.Mask(7),
            "11111"
            "0" +
                std::string(18, '1'));
}

TEST(HourMasks, ATextTooShortForAMaskIsNotPasted) {
  HourMasks masks;
  masks.Paste("0000");
  EXPECT_EQ(masks.Mask(1), std::string(24, '1'));
}

}  // namespace zemo
