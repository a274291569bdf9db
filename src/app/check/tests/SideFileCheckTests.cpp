// The small files of the station's folder.
#include "app/check/tests/CheckedStation.h"

namespace zemo {
namespace {

using SideFileCheck = CheckedStation;

TEST_F(SideFileCheck, EveryLineOfTheDaysTimesHasToBeRead) {
  folder_.Put("station/StartStop.0",
              "\"START\",\"06:00\"\r\n\"STOP\",\"23:30-F\"\r\n\"STOP\",\"23:59:30-Q\"\r\n"
              "\"START\",\"06:00:30\"\r\n");
  folder_.Put("station/startstop.6",
              "\"START\",\"6:00\"\r\n\"BEGIN\",\"07:00\"\r\n\r\n\"STOP\"\r\n\"START\",\"24:00\"\r\n"
              "\"START\",\"08:00-F\"\r\n\"STOP\",\"08:00-X\"\r\n");
  EXPECT_EQ(Found(), (Lines{"file: StartStop.6: line 1 has no time of day (hh:mm)",
                            "file: StartStop.6: line 2 begins with neither START nor STOP",
                            "file: StartStop.6: line 4 should be \"START\" or \"STOP\" and a time",
                            "file: StartStop.6: line 5 has no time of day (hh:mm)",
                            "file: StartStop.6: line 6 has no time of day (hh:mm)",
                            "file: StartStop.6: line 7 has no time of day (hh:mm)"}));
}

TEST_F(SideFileCheck, EveryLineOfTheMarkersHasToBeATime) {
  folder_.Put("station/Topage.2", "\"10:15\"\r\n\"10:60\"\r\nnoon\r\n");
  EXPECT_EQ(Found(), (Lines{"file: Topage.2: line 2 should be one time of day (hh:mm)",
                            "file: Topage.2: line 3 should be one time of day (hh:mm)"}));
}

TEST_F(SideFileCheck, ExclusionsAreTwoTimes) {
  folder_.Put("station/Exclusion.Txt", "08:00\t09:30\r\n\t\r\n12:00\r\n13:00\t14h00\r\n");
  EXPECT_EQ(Found(), (Lines{"file: Exclusion.Txt: line 3 should be two times of day",
                            "file: Exclusion.Txt: line 4 should be two times of day"}));
}

TEST_F(SideFileCheck, InstrumentalHoursAreTwentyFour) {
  folder_.Put("station/Instrumental.Txt", "#TRUE#\r\n#FALSE#\r\n");
  EXPECT_EQ(Found(), Lines{"file: Instrumental.Txt: holds 2 hours and should hold 24"});
}

TEST_F(SideFileCheck, TheReadingLimitIsANumber) {
  folder_.Put("station/LectureBase.Txt", "all\r\n");
  EXPECT_EQ(Found(), Lines{"file: LectureBase.Txt: does not begin with a number"});
  folder_.Put("station/LectureBase.Txt", "\"15\"\r\n");
  EXPECT_EQ(Found(), Lines{});
}

TEST_F(SideFileCheck, TheWebPageHasToExist) {
  folder_.Put("station/Internet.Txt", folder_ / "page.htm\r\nTITLE:\r\n - \r\n\r\n");
  EXPECT_EQ(Found(),
            Lines{"file: Internet.Txt: its page is missing: " + folder_ / "page.htm (warning)"});
  folder_.Put("page.htm", "<html>");
  EXPECT_EQ(Found(), Lines{});
}

}  // namespace
}  // namespace zemo
