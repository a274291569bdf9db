// The on-air list's elements as rows of twelve texts.
#include <gtest/gtest.h>

#include "station/OnAirColumns.h"
#include "station/OnAirList.h"

namespace zemo {
namespace {

TEST(OnAirColumns, OfATitleHoldAllThatIsKnownOfIt) {
  const OnAirElement title{.code = 12,
                           .title = "Anna",
                           .secondLine = "Première",
                           .genre = "GOLD",
                           .variety = "NATIONAL",
                           .file = "/m/a.mp3",
                           .lengthMs = 185400,
                           .exitMs = 1500,
                           .introSec = 12,
                           .lastPlayed = 46347.5,  // noon of 21 November 2026
                           .plannedMs = 86400000.0 + 3723000};
  EXPECT_EQ(ColumnsOf(title),
            (Cells{"Anna", "Première", "03:05", "GOLD", "NATIONAL", "/m/a.mp3", "12",
                   "01 h 02 ' 03", "185400", "1500", "12", "2026/11/21  12:00:00"}));
}

TEST(OnAirColumns, OfWhatNobodySaidAreEmpty) {
  EXPECT_EQ(ColumnsOf({.code = Element::kBeginExtract, .title = "Begin Extrait"}),
            (Cells{"Begin Extrait", "", "", "", "", "", "-6", "", "", "", "", ""}));
  EXPECT_EQ(ColumnsOf({.code = Element::kSpot, .lengthMs = 0}),
            (Cells{"", "", "--:--", "", "", "", "-2", "", "0", "", "", ""}));
}

TEST(OnAirColumns, OfATitleOfUnknownLengthHaveDashesAndNoNumber) {
  const OnAirElement title{.code = 7};
  EXPECT_EQ(ColumnText(title, Col::kLength), "--:--");
  EXPECT_EQ(ColumnText(title, Col::kLengthMs), "");
}

TEST(OnAirColumns, OfATrackThatLiesOverTheElementBeforeShowItsLengthAndTakeNoTime) {
  const OnAirElement track{.code = Element::kVoiceTrack,
                           .title = "Voice Track",
                           .lengthMs = 5000,
                           .liesOver = true,
                           .startMs = 70000};
  EXPECT_EQ(ColumnText(track, Col::kLength), "00:05");
  EXPECT_EQ(ColumnText(track, Col::kLengthMs), "0");
  EXPECT_EQ(ColumnText(track, Col::kIntro), "70000");
  EXPECT_EQ(track.AirMs(), 0);
}

TEST(OnAirColumns, OfATrackOfItsOwnHaveItsLengthAndExitPoint) {
  const OnAirElement track{.code = Element::kVoiceTrack, .lengthMs = 5000, .exitMs = 250};
  EXPECT_EQ(ColumnText(track, Col::kLengthMs), "5000");
  EXPECT_EQ(ColumnText(track, Col::kExitMs), "250");
  EXPECT_EQ(ColumnText(track, Col::kIntro), "");
  EXPECT_EQ(track.AirMs(), 4750);
}

TEST(OnAirElement, WithoutNumbersTakesNoTime) {
  EXPECT_EQ(OnAirElement{}.AirMs(), 0);
  EXPECT_EQ((OnAirElement{.exitMs = 400}).AirMs(), -400);
}

TEST(OnAirList, SwappedElementsLeaveTheKeysInTheirPlaces) {
  OnAirList list;
  const int64_t first = list.Add({.title = "A"}).key;
  const int64_t second = list.Add({.title = "B"}).key;
  list.SwapElements(1, 2);
  EXPECT_EQ(list.Row(1).title, "B");
  EXPECT_EQ(list.Row(1).key, first);
  EXPECT_EQ(list.Row(2).title, "A");
  EXPECT_EQ(list.Row(2).key, second);
}

}  // namespace
}  // namespace zemo
