// Marks on a sound of 100 s, seen 1000 pixels wide: 4410 frames, or 100 ms, are a pixel.
#include <gtest/gtest.h>

#include "library/SoundMarkers.h"

namespace zemo {
namespace {

constexpr int kWidth = 1000;
constexpr int64_t kFrames = 4410000;

class SoundMarkersTest : public testing::Test {
 protected:
  SoundMarkersTest() { Markers::SetLength(markers, kFrames); }
  int X(int32_t ms) const { return Markers::XOf(markers, ms, kWidth); }
  int32_t Ms(int x) const { return Markers::MsAt(markers, x, kWidth); }
  Mark At(int x) const { return Markers::MarkAt(markers, x, kWidth); }
  SoundMarks& Marks() { return markers.marks; }
  int32_t Place(Mark mark) const { return Markers::PlaceOf(markers, mark); }

  SoundMarkers markers;
};

TEST_F(SoundMarkersTest, TheWholeSoundIsInViewAtFirst) {
  EXPECT_EQ(markers.fromFrame, 0);
  EXPECT_EQ(markers.toFrame, kFrames);
  EXPECT_EQ(Markers::LengthMs(markers), 100000);
  EXPECT_EQ(X(0), 0);
  EXPECT_EQ(X(12345), 123);
  EXPECT_EQ(X(100000), 1000);
  EXPECT_EQ(Ms(123), 12300);
  EXPECT_EQ(Ms(-3), 0);
  EXPECT_EQ(Ms(1500), 100000);
}

TEST_F(SoundMarkersTest, ZoomHalvesTheViewAboutAPlaceThatStaysWhereItIs) {
  Markers::Zoom(markers, 1, 60000);       // at pixel 600
  EXPECT_EQ(markers.fromFrame, 1323000);  // 30 s
  EXPECT_EQ(markers.toFrame, 3528000);    // 80 s
  EXPECT_EQ(X(60000), 600);
  EXPECT_EQ(X(29000), -20);  // 50 ms a pixel
  Markers::Zoom(markers, -1, 60000);
  EXPECT_EQ(markers.fromFrame, 0);
  EXPECT_EQ(markers.toFrame, kFrames);
}

TEST_F(SoundMarkersTest, ZoomEndsWhereAFrameIsAPixelAndAtTheWholeSound) {
  Markers::Zoom(markers, 40, 50000);
  EXPECT_EQ(markers.toFrame - markers.fromFrame, 220);
  EXPECT_LE(markers.fromFrame, 2205000);
  EXPECT_GE(markers.toFrame, 2205000);
  Markers::Zoom(markers, -40, 50000);
  EXPECT_EQ(markers.fromFrame, 0);
  EXPECT_EQ(markers.toFrame, kFrames);
}

TEST_F(SoundMarkersTest, AViewStaysWithinTheSound) {
  Markers::Zoom(markers, 1, 0);
  Markers::Scroll(markers, -1);
  EXPECT_EQ(markers.fromFrame, 0);
  Markers::Scroll(markers, kFrames);
  EXPECT_EQ(markers.fromFrame, 2205000);
  EXPECT_EQ(markers.toFrame, kFrames);
}

TEST_F(SoundMarkersTest, WhatRunsOutOfTheViewFindsAWholeViewAhead) {
  Markers::Zoom(markers, 2, 0);  // 0 to 25 s
  Markers::BringIntoView(markers, 24999);
  EXPECT_EQ(markers.fromFrame, 0);
  Markers::BringIntoView(markers, 25100);
  EXPECT_EQ(markers.fromFrame, 1106910);  // 25.1 s
  Markers::BringIntoView(markers, 5000);  // in its middle: 5 s less 12.5 s
  EXPECT_EQ(markers.fromFrame, 0);
  Markers::BringIntoView(markers, 90000);  // 77.5 s, clamped to 75 s
  EXPECT_EQ(markers.fromFrame, 3307500);
}

TEST_F(SoundMarkersTest, AnExitIsHeldAsMsBeforeTheEndWithinWhatItsFieldHolds) {
  Markers::Put(markers, Mark::kExit, 95500);
  EXPECT_EQ(Marks().exitMs, 4500);
  EXPECT_EQ(Place(Mark::kExit), 95500);
  EXPECT_EQ(markers.chosen, Mark::kExit);
  Markers::Put(markers, Mark::kExit, 100000);
  EXPECT_EQ(Marks().exitMs, 1) << "0 would stand for none";
  Markers::Put(markers, Mark::kExit, 1000);
  EXPECT_EQ(Marks().exitMs, 32767);
  EXPECT_EQ(Place(Mark::kExit), 67233);
}

TEST_F(SoundMarkersTest, AnIntroIsTheWholeSecondsUpToItsPlace) {
  Markers::Put(markers, Mark::kIntro, 12999);
  EXPECT_EQ(Marks().introSec, 12);
  EXPECT_EQ(Place(Mark::kIntro), 12000);
  Markers::Put(markers, Mark::kIntro, 999);
  EXPECT_EQ(Marks().introSec, 0);
  EXPECT_EQ(Place(Mark::kIntro), -1);
}

TEST_F(SoundMarkersTest, AnExtractBeginsBeforeItEnds) {
  EXPECT_EQ(Place(Mark::kExtractBegin), -1);
  Markers::Put(markers, Mark::kExtractEnd, 45000);
  EXPECT_EQ(Place(Mark::kExtractBegin), 0);
  Markers::Put(markers, Mark::kExtractBegin, 60000);
  EXPECT_EQ(Marks().extractBeginMs, 44999);
  Markers::Put(markers, Mark::kExtractEnd, 100);
  EXPECT_EQ(Marks().extractEndMs, 45000);
  Markers::Erase(markers, Mark::kExtractEnd);
  EXPECT_EQ(Marks().extractEndMs, 0);
  EXPECT_EQ(Place(Mark::kExtractEnd), -1);
  EXPECT_EQ(Place(Mark::kExtractBegin), 44999);
}

TEST_F(SoundMarkersTest, TheMarkWithinFivePixelsIsHit) {
  Markers::Put(markers, Mark::kIntro, 20000);  // pixel 200
  Markers::Put(markers, Mark::kExit, 95000);   // pixel 950
  EXPECT_EQ(At(195), Mark::kIntro);
  EXPECT_EQ(At(205), Mark::kIntro);
  EXPECT_EQ(At(206), Mark::kNone);
  EXPECT_EQ(At(953), Mark::kExit);
}

TEST_F(SoundMarkersTest, OfTwoMarksThatAreAsNearTheChosenOneIsHit) {
  Markers::Put(markers, Mark::kExtractEnd, 90000);
  Markers::Put(markers, Mark::kExit, 90000);
  EXPECT_EQ(At(901), Mark::kExit);
  markers.chosen = Mark::kExtractEnd;
  EXPECT_EQ(At(901), Mark::kExtractEnd);
  Markers::Put(markers, Mark::kExit, 90300);  // 3 pixels on
  markers.chosen = Mark::kExtractEnd;
  EXPECT_EQ(At(903), Mark::kExit) << "the nearest";
}

TEST_F(SoundMarkersTest, StepsMoveTheChosenMarkElseTheCursor) {
  Markers::SetCursor(markers, 5000);
  Markers::Step(markers, kLongStepMs);
  Markers::Step(markers, -kStepMs);
  EXPECT_EQ(markers.cursorMs, 5090);
  Markers::Put(markers, Mark::kExit, 95000);
  Markers::Step(markers, kStepMs);
  EXPECT_EQ(Marks().exitMs, 4990);
  EXPECT_EQ(markers.cursorMs, 5090);
  Markers::SetCursor(markers, -4);
  EXPECT_EQ(markers.cursorMs, 0);
}

TEST_F(SoundMarkersTest, AnIntroGoesBySecondsAsItsFieldDoes) {
  Markers::Put(markers, Mark::kIntro, 12000);
  Markers::Step(markers, kStepMs);
  EXPECT_EQ(Marks().introSec, 13);
  Markers::Step(markers, -kLongStepMs);
  Markers::Step(markers, -kLongStepMs);
  EXPECT_EQ(Marks().introSec, 11);
}

TEST_F(SoundMarkersTest, AStepBringsTheMarkIntoView) {
  Markers::Put(markers, Mark::kExit, 95000);
  Markers::Zoom(markers, 2, 0);  // 0 to 25 s
  Markers::Step(markers, kStepMs);
  EXPECT_LE(markers.fromFrame, 95010 * 441 / 10);
  EXPECT_GE(markers.toFrame, 95010 * 441 / 10);
}

TEST_F(SoundMarkersTest, AChangeIsTakenBackARunOfStepsOrADragAsOne) {
  Markers::Put(markers, Mark::kExit, 95000);
  for (int step = 0; step < 5; ++step) Markers::Step(markers, kStepMs);
  Markers::BeginDrag(markers, Mark::kExit);
  Markers::DragTo(markers, 90000);
  Markers::DragTo(markers, 91000);
  Markers::EndDrag(markers);
  EXPECT_EQ(Marks().exitMs, 9000);
  EXPECT_TRUE(Markers::Undo(markers));
  EXPECT_EQ(Marks().exitMs, 4950);
  EXPECT_TRUE(Markers::Undo(markers));
  EXPECT_EQ(Marks().exitMs, 5000);
  EXPECT_TRUE(Markers::Undo(markers));
  EXPECT_EQ(Marks().exitMs, 0);
  EXPECT_FALSE(Markers::Undo(markers));
}

TEST_F(SoundMarkersTest, TheLast200ChangesCanBeTakenBack) {
  for (int change = 1; change <= 250; ++change)
    Markers::Put(markers, Mark::kExtractBegin, change * 100);
  int undone = 0;
  while (Markers::Undo(markers)) ++undone;
  EXPECT_EQ(undone, 200);
  EXPECT_EQ(Marks().extractBeginMs, 5000);
}

TEST_F(SoundMarkersTest, WhatLeavesAMarkWhereItWasIsNoChange) {
  Markers::Put(markers, Mark::kExit, 95000);
  Markers::Put(markers, Mark::kExit, 95000);
  Markers::BeginDrag(markers, Mark::kExit);
  Markers::EndDrag(markers);
  EXPECT_TRUE(Markers::Undo(markers));
  EXPECT_EQ(Marks().exitMs, 0);
}

TEST_F(SoundMarkersTest, TheMeasuredExitIsTakenWhereThereIsOne) {
  Markers::TakeMeasuredExit(markers);
  EXPECT_EQ(Marks().exitMs, 0);
  markers.measured = {300, 98000, 6400};
  Markers::TakeMeasuredExit(markers);
  EXPECT_EQ(Marks().exitMs, 6400);
  EXPECT_TRUE(Markers::Undo(markers));
  EXPECT_EQ(Marks().exitMs, 0);
}

TEST_F(SoundMarkersTest, ALengthThatIsKnownBetterKeepsAViewThatWasZoomed) {
  Markers::Zoom(markers, 1, 0);
  Markers::SetLength(markers, kFrames + 17);
  EXPECT_EQ(markers.toFrame, 2205000);
  Markers::SetLength(markers, 1000);
  EXPECT_EQ(markers.fromFrame, 0);
  EXPECT_EQ(markers.toFrame, 1000);
  Markers::SetLength(markers, 0);
  EXPECT_EQ(Ms(500), 0);
  Markers::Put(markers, Mark::kExit, 0);
  EXPECT_EQ(Marks().exitMs, 0);
}

}  // namespace
}  // namespace zemo
