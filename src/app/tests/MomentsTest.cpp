// Durations, moments and times of day, the days on which summer time comes and goes included.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

#include "app/Moments.h"

namespace zemo {
namespace {

constexpr int64_t kSecond = 1000;
constexpr int64_t kMinute = 60'000;
constexpr int64_t kHour = 3'600'000;
constexpr int64_t kDay = 86'400'000;

// The zone of the tests: UTC+1, in summer UTC+2 from the last Sunday of March 02:00 to the last
// Sunday of October 03:00.
class Moments : public testing::Test {
 protected:
  void SetUp() override {
    if (const char* zone = std::getenv("TZ")) before_ = zone;
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    tzset();
  }
  void TearDown() override {
    if (before_)
      setenv("TZ", before_->c_str(), 1);
    else
      unsetenv("TZ");
    tzset();
  }

  static int64_t Utc(const char* moment) { return UtcMs(*ParseMoment(moment)); }
  // How long after `from` the clock first shows that time.
  static int64_t MsUntil(const char* from, const char* timeOfDay) {
    return FirstMomentOfDay(Utc(from), *ParseTimeOfDay(timeOfDay)) - Utc(from);
  }

  std::optional<std::string> before_;
};

TEST_F(Moments, ADurationIsSecondsUnlessItsUnitSaysMinutesHoursOrDays) {
  EXPECT_EQ(ParseDuration("90"), 90 * kSecond);
  EXPECT_EQ(ParseDuration("90s"), 90 * kSecond);
  EXPECT_EQ(ParseDuration("45m"), 45 * kMinute);
  EXPECT_EQ(ParseDuration("24h"), 24 * kHour);
  EXPECT_EQ(ParseDuration("7d"), 7 * kDay);
  EXPECT_EQ(ParseDuration("0"), 0);
}

TEST_F(Moments, WhatIsNoDurationIsRefused) {
  for (const char* text : {"", "s", "h", "-1", "+1", "1.5h", "1 h", " 1", "1h ", "1h30m", "1H",
                           "ten", "36526d", "99999999999999999999"})
    EXPECT_EQ(ParseDuration(text), std::nullopt) << text;
  EXPECT_EQ(ParseDuration("36525d"), 36525 * kDay);
}

TEST_F(Moments, AMomentIsADateABlankAndATime) {
  const LocalDateTime moment{
      .year = 2026, .month = 11, .day = 21, .hour = 7, .minute = 8, .second = 9};
  EXPECT_EQ(ParseMoment("2026-11-21 07:08:09"), moment);
  for (const char* text :
       {"", "2026-11-21", "2026-11-21T07:08:09", "2026-11-21 7:08:09", "2026-11-21 07:08",
        "2026-11-21 07:08:09.500", "2026-11-21 07:08:09 ", "21/11/2026 07:08:09",
        "2026-11-21  7:08:09", "2026-1a-21 07:08:09", "2026-11-21 +7:08:09"})
    EXPECT_EQ(ParseMoment(text), std::nullopt) << text;
}

TEST_F(Moments, ADateThatNoCalendarHasIsRefused) {
  EXPECT_EQ(ParseMoment("2026-02-29 00:00:00"), std::nullopt);
  EXPECT_NE(ParseMoment("2028-02-29 00:00:00"), std::nullopt);
  EXPECT_EQ(ParseMoment("2026-04-31 00:00:00"), std::nullopt);
  EXPECT_EQ(ParseMoment("2026-13-01 00:00:00"), std::nullopt);
  EXPECT_EQ(ParseMoment("2026-00-01 00:00:00"), std::nullopt);
  EXPECT_EQ(ParseMoment("2026-01-00 00:00:00"), std::nullopt);
  EXPECT_EQ(ParseMoment("1899-12-31 00:00:00"), std::nullopt);
  EXPECT_EQ(ParseMoment("2026-01-01 24:00:00"), std::nullopt);
  EXPECT_EQ(ParseMoment("2026-01-01 00:60:00"), std::nullopt);
  EXPECT_EQ(ParseMoment("2026-01-01 00:00:60"), std::nullopt);
}

TEST_F(Moments, ATimeOfDayMayHaveUpToThreeDecimals) {
  EXPECT_EQ(ParseTimeOfDay("00:00:00"), 0);
  EXPECT_EQ(ParseTimeOfDay("23:59:59.999"), kDay - 1);
  EXPECT_EQ(ParseTimeOfDay("01:02:03.5"), kHour + 2 * kMinute + 3 * kSecond + 500);
  EXPECT_EQ(ParseTimeOfDay("00:00:00.05"), 50);
  EXPECT_EQ(ParseTimeOfDay("00:00:00.005"), 5);
  for (const char* text :
       {"00:00:00.", "00:00:00.0005", "00:00:00,5", "0:00:00", "00:00", "00:00:0x"})
    EXPECT_EQ(ParseTimeOfDay(text), std::nullopt) << text;
}

TEST_F(Moments, SecondsMayHaveUpToThreeDecimals) {
  EXPECT_EQ(ParseSeconds("0"), 0);
  EXPECT_EQ(ParseSeconds("3600"), kHour);
  EXPECT_EQ(ParseSeconds("1.25"), 1250);
  for (const char* text : {"", ".5", "1.", "-1", "1s", "1.0000"})
    EXPECT_EQ(ParseSeconds(text), std::nullopt) << text;
}

TEST_F(Moments, LocalTimeIsOneHourAheadInWinterAndTwoInSummer) {
  // 1 January 2026 is day 20454 since 1970, 1 July 2026 day 20635.
  EXPECT_EQ(Utc("2026-01-01 12:00:00"), 20454 * kDay + 11 * kHour);
  EXPECT_EQ(Utc("2026-07-01 12:00:00"), 20635 * kDay + 10 * kHour);
  EXPECT_EQ(LocalOfUtcMs(20635 * kDay + 10 * kHour + 7),
            (LocalDateTime{.year = 2026, .month = 7, .day = 1, .hour = 12, .millisecond = 7}));
}

TEST_F(Moments, ATimeThatStandsTwiceMeansTheFirst) {
  // 25 October 2026: 02:30 stands at 00:30 and at 01:30 UTC; day 20751 since 1970.
  EXPECT_EQ(Utc("2026-10-25 02:30:00"), 20751 * kDay + 30 * kMinute);
}

TEST_F(Moments, ATimeThatSummerTimeSkipsIsNotShownByTheClock) {
  EXPECT_FALSE(LocalClockShows(*ParseMoment("2026-03-29 02:30:00")));
  EXPECT_TRUE(LocalClockShows(*ParseMoment("2026-03-29 01:59:59")));
  EXPECT_TRUE(LocalClockShows(*ParseMoment("2026-03-29 03:00:00")));
  EXPECT_TRUE(LocalClockShows(*ParseMoment("2026-10-25 02:30:00")));
}

TEST_F(Moments, ATimeOfDayIsTheFirstSuchMomentNotBefore) {
  EXPECT_EQ(MsUntil("2026-11-21 10:00:00", "10:00:00"), 0);
  EXPECT_EQ(MsUntil("2026-11-21 10:00:00", "10:00:00.001"), 1);
  EXPECT_EQ(MsUntil("2026-11-21 10:00:00", "09:59:59"), kDay - kSecond);
  EXPECT_EQ(MsUntil("2026-12-31 23:00:00", "01:00:00"), 2 * kHour);
}

TEST_F(Moments, ATimeOfDayGoesThroughTheChangesOfSummerTimeByTheClock) {
  EXPECT_EQ(MsUntil("2026-03-29 01:00:00", "04:00:00"), 2 * kHour);  // the hour of 02 is missing
  EXPECT_EQ(MsUntil("2026-03-29 01:00:00", "02:30:00"), kDay + kMinute * 30);  // only the day after
  EXPECT_EQ(MsUntil("2026-10-25 01:00:00", "04:00:00"),
            4 * kHour);  // the hour of 02 is there twice
  EXPECT_EQ(MsUntil("2026-10-25 01:00:00", "02:30:00"), kHour + 30 * kMinute);
  // From 02:45 summer time the next 02:30 is the one of winter time, 45 minutes later.
  EXPECT_EQ(MsUntil("2026-10-25 02:45:00", "02:30:00"), 45 * kMinute);
}

}  // namespace
}  // namespace zemo
