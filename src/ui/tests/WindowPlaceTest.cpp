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

// A box of 200 x 100 in a window of 1000 x 600.
TEST(WindowPlace, ABoxStandsInTheMiddleUnlessItWouldCoverWhatItSpeaksOf) {
  const QSize box(200, 100);
  const QRect window(0, 0, 1000, 600);
  EXPECT_EQ(PlaceBeside(box, {}, window), QPoint(399, 249));
  EXPECT_EQ(PlaceBeside(box, {0, 0, 1000, 30}, window), QPoint(399, 249));
  EXPECT_EQ(PlaceBeside(box, {0, 280, 1000, 30}, window), QPoint(399, 322));   // 12 below 309
  EXPECT_EQ(PlaceBeside(box, {0, 340, 1000, 260}, window), QPoint(399, 228));  // 12 above 340
  EXPECT_EQ(PlaceBeside(box, {300, 0, 400, 600}, window), QPoint(712, 249));   // 12 right of 699
  EXPECT_EQ(PlaceBeside(box, {300, 0, 700, 600}, window), QPoint(88, 249));    // 12 left of 300
}

TEST(WindowPlace, ABoxThatHasNoFreePlaceStandsInTheMiddle) {
  EXPECT_EQ(PlaceBeside({200, 100}, {0, 0, 1000, 600}, {0, 0, 1000, 600}), QPoint(399, 249));
}

}  // namespace
}  // namespace zemo::test
