#include <gtest/gtest.h>

#include <cmath>

#include "platform/tests/RandomBytes.h"
#include "station/TimeForms.h"

namespace zemo {
namespace {

// A calendar that only counts days one by one, to compare the arithmetic with.
struct CountedDay {
  int year, month, day;
  int weekday;  // 1 Monday to 7 Sunday

  void Next() {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    weekday = weekday % 7 + 1;
    if (++day <= kDays[month - 1] + (month == 2 && leap ? 1 : 0)) return;
    day = 1;
    if (++month <= 12) return;
    month = 1;
    ++year;
  }
  LocalDateTime Moment() const { return {year, month, day}; }
};

constexpr CountedDay kFirstOf1900{1900, 1, 1, 1};  // a Monday

const LocalDateTime kEvening{2026, 11, 21, 23, 4, 9, 500};  // a Saturday

TEST(TimeForms, TextsOfAMoment) {
  EXPECT_EQ(TimeText(kEvening), "23:04:09");
  EXPECT_EQ(DateText(kEvening), "21/11/2026");
  EXPECT_EQ(ShortDateText(kEvening), "21/11/26");
  EXPECT_EQ(DateKey(kEvening), "20261121");
}

TEST(TimeForms, SecondsSinceMidnightAreSinglePrecision) {
  EXPECT_EQ(SecondsSinceMidnight({2026, 11, 21, 0, 0, 0, 250}), 0.25f);
  EXPECT_EQ(SecondsSinceMidnight(kEvening), 83049.5f);
  // Between two values late in the day lie 1/128 s: 86399.999 is not one of them.
  EXPECT_EQ(SecondsSinceMidnight({2026, 11, 21, 23, 59, 59, 999}), 86400.0f);
}

TEST(TimeForms, DateKeyOfTextTakesNothingButADate) {
  EXPECT_EQ(DateKeyOfText("21/11/2026"), "20261121");
  EXPECT_EQ(DateKeyOfText("29/02/2024"), "20240229");
  for (const char* text : {"", "21/11/26", "21-11-2026", "31/04/2026", "29/02/2023", "00/01/2026",
                           "01/13/2026", "aa/bb/cccc", "JJ/MM/ANNE", "21/11/20260", " 1/11/2026"})
    EXPECT_EQ(DateKeyOfText(text), "") << text;
}

TEST(LongDateText, NamesTheDayInTheFourLanguages) {
  EXPECT_EQ(LongDateText(kEvening, 0), "Samedi 21 novembre 2026");
  EXPECT_EQ(LongDateText(kEvening, 1), "Saturday 21 November 2026");
  EXPECT_EQ(LongDateText(kEvening, 2), "Sábado 21 novembro 2026");
  EXPECT_EQ(LongDateText(kEvening, 3), "Sábado 21 noviembre 2026");
  EXPECT_EQ(LongDateText({2007, 1, 1}, 0), "Lundi 01 janvier 2007");
  EXPECT_EQ(LongDateText({2007, 1, 1}, 2), "Segunda-feira 01 janeiro 2007");
  EXPECT_EQ(LongDateText({2026, 8, 5}, 0), "Mercredi 05 août 2026");
  EXPECT_EQ(LongDateText({2026, 8, 5}, 3), "Miércoles 05 agosto 2026");
}

TEST(LongDateText, IsFrenchForALanguageThatThereIsNot) {
  EXPECT_EQ(LongDateText(kEvening, 4), "Samedi 21 novembre 2026");
  EXPECT_EQ(LongDateText(kEvening, -1), "Samedi 21 novembre 2026");
}

TEST(LongDateText, IsEmptyForNoDate) {
  EXPECT_EQ(LongDateText({2026, 13, 1}, 0), "");
}

TEST(LongDateText, NamesEveryDayOfTwoCenturiesAsTheCalendarDoes) {
  const char* const kDays[] = {"Lundi ",    "Mardi ",  "Mercredi ", "Jeudi ",
                               "Vendredi ", "Samedi ", "Dimanche "};
  for (CountedDay day = kFirstOf1900; day.year < 2100; day.Next()) {
    const std::string text = LongDateText(day.Moment(), 0);
    ASSERT_EQ(text.rfind(kDays[day.weekday - 1], 0), 0u) << text;
  }
}

TEST(DateSerial, CountsDaysFromThe30thOfDecember1899) {
  EXPECT_EQ(DaySerial(1899, 12, 30), 0);
  EXPECT_EQ(DaySerial(1899, 12, 31), 1);
  EXPECT_EQ(DaySerial(1900, 1, 1), 2);
  EXPECT_EQ(DaySerial(1970, 1, 1), 25569);  // 70 years of 365 days, 17 leap days, and the 2 before
  EXPECT_EQ(DaySerial(1899, 12, 29), -1);
  EXPECT_EQ(DateSerial({1900, 1, 1, 12, 0, 0}), 2.5);
  EXPECT_EQ(DateSerial({1900, 1, 1, 18, 0, 0}), 2.75);
}

TEST(DateSerial, OfEveryDayOfFourCenturiesIsOneMoreThanTheDayBefore) {
  double serial = 2;
  for (CountedDay day = kFirstOf1900; day.year < 2300; day.Next(), ++serial) {
    ASSERT_EQ(DaySerial(day.year, day.month, day.day), serial);
    ASSERT_EQ(FromDateSerial(serial), day.Moment());
  }
}

TEST(DateSerial, ComesBackToTheMillisecond) {
  RandomBytes random(7);
  for (int round = 0; round < 20000; ++round) {
    LocalDateTime moment;
    moment.year = 1900 + static_cast<int>(random.Below(300));
    moment.month = 1 + static_cast<int>(random.Below(12));
    moment.day = 1 + static_cast<int>(random.Below(28));
    moment.hour = static_cast<int>(random.Below(24));
    moment.minute = static_cast<int>(random.Below(60));
    moment.second = static_cast<int>(random.Below(60));
    moment.millisecond = static_cast<int>(random.Below(1000));
    ASSERT_EQ(FromDateSerial(DateSerial(moment)), moment);
  }
}

TEST(DateSerial, OutsideTheYearsIsDayZero) {
  const LocalDateTime zero;
  EXPECT_EQ(FromDateSerial(0), zero);
  EXPECT_EQ(FromDateSerial(1e300), zero);
  EXPECT_EQ(FromDateSerial(-1e300), zero);
  EXPECT_EQ(FromDateSerial(std::nan("")), zero);
  EXPECT_EQ(FromDateSerial(DaySerial(9999, 12, 31)), (LocalDateTime{9999, 12, 31}));
  EXPECT_EQ(FromDateSerial(DaySerial(1, 1, 1)), (LocalDateTime{1, 1, 1}));
}

TEST(TimeForms, LastPlayedTextHasTwoBlanksAndIsEmptyForNever) {
  EXPECT_EQ(LastPlayedText(DateSerial(kEvening)), "2026/11/21  23:04:09");
  EXPECT_EQ(LastPlayedText(2.5), "1900/01/01  12:00:00");
  EXPECT_EQ(LastPlayedText(0), "");
}

TEST(TimeForms, ValidDateKnowsLeapYears) {
  EXPECT_TRUE(ValidDate(2000, 2, 29));
  EXPECT_FALSE(ValidDate(1900, 2, 29));
  EXPECT_FALSE(ValidDate(2026, 0, 1));
  EXPECT_FALSE(ValidDate(2026, 1, 32));
  EXPECT_FALSE(ValidDate(0, 1, 1));
  EXPECT_FALSE(ValidDate(10000, 1, 1));
}

TEST(CurrentWeekday, IsOneOnTheFirstOfJanuary2007) {
  EXPECT_EQ(CurrentWeekday({2007, 1, 1}), 1);
}

TEST(CurrentWeekday, AgreesWithTheCalendarFromMarch1900ToFebruary2100) {
  CountedDay day = kFirstOf1900;
  while (day.month < 3) day.Next();
  for (; day.year < 2100 || day.month < 3; day.Next())
    ASSERT_EQ(CurrentWeekday(day.Moment()), day.weekday)
        << day.year << "-" << day.month << "-" << day.day;
  // 2100 is no leap year, which the arithmetic does not know.
  EXPECT_EQ(day.weekday, 1);
  EXPECT_EQ(CurrentWeekday(day.Moment()), 2);
}

}  // namespace
}  // namespace zemo
