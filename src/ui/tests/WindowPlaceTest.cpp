#include <gtest/gtest.h>

#include "platform/LocalValues.h"
#include "support/TestStation.h"
#include "ui/WindowPlace.h"

namespace zemo::test {
namespace {

const QRect kLeft(0, 0, 1920, 1080), kRight(1920, 0, 1280, 1024);

TEST(WindowPlace, APlaceOnAScreenStaysAsItIs) {
  EXPECT_EQ(Within({100, 60, 800, 600}, {kLeft, kRight}), QRect(100, 60, 800, 600));
  EXPECT_EQ(Within({2000, 60, 800, 600}, {kLeft, kRight}), QRect(2000, 60, 800, 600));
}

TEST(WindowPlace, AWindowThatHangsOverTheEdgeComesWholeOntoTheScreenThatShowsMostOfIt) {
  EXPECT_EQ(Within({1700, -30, 800, 600}, {kLeft, kRight}), QRect(1920, 0, 800, 600));
  EXPECT_EQ(Within({1300, 900, 800, 600}, {kLeft, kRight}), QRect(1120, 480, 800, 600));
}

TEST(WindowPlace, AWindowOfAScreenThatIsGoneComesToTheFirst) {
  EXPECT_EQ(Within({2000, 60, 800, 600}, {kLeft}), QRect(1120, 60, 800, 600));
}

TEST(WindowPlace, NoWindowIsLargerThanItsScreen) {
  EXPECT_EQ(Within({-10, -10, 3000, 2000}, {kLeft}), QRect(0, 0, 1920, 1080));
}

TEST(WindowPlace, EachWindowHasItsOwn) {
  TestStation on;
  LocalValues& values = on.station.platform.localValues;
  KeepPlace(values, "FrmOne", {1, 2, 300, 400});
  KeepPlace(values, "FrmTwo", {5, 6, 700, 800});
  EXPECT_EQ(KeptPlace(values, "FrmOne", {kLeft}), QRect(1, 2, 300, 400));
  EXPECT_EQ(KeptPlace(values, "FrmTwo", {kLeft}), QRect(5, 6, 700, 800));
  EXPECT_EQ(KeptPlace(values, "FrmThree", {kLeft}), std::nullopt);
}

TEST(WindowPlace, WhatIsNoPlaceIsPassedOver) {
  TestStation on;
  LocalValues& values = on.station.platform.localValues;
  for (const char* kept : {"", "1,2,3", "1,2,300,x", "1,2,300,400,5", "1,2,0,400", "1,2,300,-4"}) {
    values.Set("PlaceFrmOne", kept);
    EXPECT_EQ(KeptPlace(values, "FrmOne", {kLeft}), std::nullopt) << kept;
  }
}

}  // namespace
}  // namespace zemo::test
