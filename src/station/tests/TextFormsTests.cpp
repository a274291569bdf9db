#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/tests/RandomBytes.h"
#include "station/TextForms.h"

namespace zemo {
namespace {

TEST(Val, TakesTheNumberAtTheBeginningAndNothingBehindIt) {
  EXPECT_EQ(Val("12abc"), 12);
  EXPECT_EQ(Val("  12"), 12);
  EXPECT_EQ(Val("-3.5 s"), -3.5);
  EXPECT_EQ(Val("+7"), 7);
  EXPECT_EQ(Val(".5"), 0.5);
  EXPECT_EQ(Val("5."), 5);
  EXPECT_EQ(Val("1e3x"), 1000);
  EXPECT_EQ(Val("1e"), 1);
  EXPECT_EQ(Val("3,5"), 3);
}

TEST(Val, IsZeroForATextThatBeginsWithNoNumber) {
  for (const char* text :
       {"", " ", "abc", "-", "+-3", "--3", "-.", ".", "inf", "nan", "-inf", "0x"})
    EXPECT_EQ(Val(text), 0) << text;
}

TEST(Val, IsZeroForANumberThatNoDoubleHolds) {
  EXPECT_EQ(Val("1e999"), 0);
  EXPECT_EQ(Val("-1e999"), 0);
}

TEST(ValInt, CutsTheFractionAndStaysInsideItsBits) {
  EXPECT_EQ(ValInt("12.9"), 12);
  EXPECT_EQ(ValInt("-12.9"), -12);
  EXPECT_EQ(ValInt("2147483647"), 2147483647);
  EXPECT_EQ(ValInt("2147483648"), 2147483647);
  EXPECT_EQ(ValInt("-99999999999"), std::numeric_limits<int32_t>::min());
  EXPECT_EQ(ValInt("1e300"), 2147483647);
}

TEST(TextForms, TrimTakesBlanksOffBothEndsOnly) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(Trim("   "), "");
  EXPECT_EQ(Trim("\ta "), "\ta");
}

TEST(TextForms, UpperAsciiLeavesAccentsAlone) {
  EXPECT_EQ(UpperAscii("aé1z{"), "Aé1Z{");
}

TEST(TextForms, UpperLatinCapitalisesTheLettersOfWesternEurope) {
  EXPECT_EQ(UpperLatin("française àâäéèêëîïôöùûüçñãõåæøœÿšž"),
            "FRANÇAISE ÀÂÄÉÈÊËÎÏÔÖÙÛÜÇÑÃÕÅÆØŒŸŠŽ");
  EXPECT_EQ(UpperLatin("ÉTÉ 6÷2 ß € 漢"), "ÉTÉ 6÷2 ß € 漢");
}

TEST(TextForms, UpperLatinKeepsTheLengthWhateverTheBytes) {
  RandomBytes random(3);
  for (int round = 0; round < 2000; ++round) {
    const std::string text = random.Text(60);
    EXPECT_EQ(UpperLatin(text).size(), text.size());
  }
}

TEST(TextForms, EqualNoCaseComparesAsciiLettersOnly) {
  EXPECT_TRUE(EqualNoCase("Load", "LOAD"));
  EXPECT_FALSE(EqualNoCase("Load", "Loa"));
  EXPECT_FALSE(EqualNoCase("é", "É"));
  EXPECT_TRUE(EqualNoCase("", ""));
}

TEST(TextForms, TwoDigitsCutsToTheLastTwo) {
  EXPECT_EQ(TwoDigits(7), "07");
  EXPECT_EQ(TwoDigits(59), "59");
  EXPECT_EQ(TwoDigits(100), "00");
  EXPECT_EQ(TwoDigits(-5), "05");
}

TEST(FormatDuration, ShowsMinutesAndSecondsEachCutToTwoDigits) {
  EXPECT_EQ(FormatDuration(183999), "03:03");
  EXPECT_EQ(FormatDuration(1000), "00:01");
  EXPECT_EQ(FormatDuration(5999000), "99:59");
  EXPECT_EQ(FormatDuration(6000000), "00:00");  // 100 minutes lose the leading digit
  EXPECT_EQ(FormatDuration(7384000), "23:04");  // 123 minutes 4 seconds
}

TEST(FormatDuration, OfLessThanASecondIsDashes) {
  EXPECT_EQ(FormatDuration(999), "--:--");
  EXPECT_EQ(FormatDuration(0), "--:--");
  EXPECT_EQ(FormatDuration(-5000), "--:--");
}

TEST(TextForms, HoursMinutesTextBeginsWithTwoDigitsOfHours) {
  EXPECT_EQ(HoursMinutesText(0), "00 h 00");
  EXPECT_EQ(HoursMinutesText(59 * 60000), "00 h 59");
  EXPECT_EQ(HoursMinutesText(90 * 60000 + 59999), "01 h 30");
  EXPECT_EQ(HoursMinutesText(int64_t{596} * 3600000), "596 h 00");
  EXPECT_EQ(HoursMinutesText(-1), "00 h 00");
}

TEST(TextForms, ClockTextShowsAPosition) {
  EXPECT_EQ(ClockText(0), "00:00:00");
  EXPECT_EQ(ClockText(3723999), "01:02:03");
  EXPECT_EQ(ClockText(int64_t{100} * 3600000), "100:00:00");
  EXPECT_EQ(ClockText(-1), "00:00:00");
}

TEST(TextForms, PlannedTimeWrapsAtMidnightBothWays) {
  EXPECT_EQ(PlannedTimeText(0), "00 h 00 ' 00");
  EXPECT_EQ(PlannedTimeText(45296789.0), "12 h 34 ' 56");
  EXPECT_EQ(PlannedTimeText(86400000.0), "00 h 00 ' 00");
  EXPECT_EQ(PlannedTimeText(86400000.0 * 3 + 61000), "00 h 01 ' 01");
  EXPECT_EQ(PlannedTimeText(-1000.0), "23 h 59 ' 59");
  EXPECT_EQ(PlannedTimeText(-1e-12), "00 h 00 ' 00");
  EXPECT_EQ(PlannedTimeText(std::nan("")), "00 h 00 ' 00");
}

TEST(TextForms, FirstCharactersCountsCharactersAndSplitsNone) {
  EXPECT_EQ(FirstCharacters("été", 1), "é");
  EXPECT_EQ(FirstCharacters("été", 2), "ét");
  EXPECT_EQ(FirstCharacters("été", 9), "été");
  EXPECT_EQ(FirstCharacters("été", 0), "");
  EXPECT_EQ(FirstCharacters("été", -1), "");
}

TEST(TextForms, PaddedTextIsAsManyCharactersWide) {
  EXPECT_EQ(PaddedText("été", 5), "été  ");
  EXPECT_EQ(PaddedText("été", 3), "été");
  EXPECT_EQ(PaddedText("été", 2), "ét");
  EXPECT_EQ(PaddedText("", 2), "  ");
  EXPECT_EQ(PaddedText("été", -1), "");
}

TEST(Val, TakesAnyBytes) {
  RandomBytes random(5);
  for (int round = 0; round < 2000; ++round) {
    const std::string text = random.Text(40);
    EXPECT_TRUE(std::isfinite(Val(text)));
    EXPECT_LE(FirstCharacters(text, 3).size(), text.size());
    ValInt(text);
  }
}

}  // namespace
TEST(TextForms, SecondsAreRoundedToTheTenthAndNeverBelowNought) {
  EXPECT_EQ(SecondsText(1600), "1.6");
  EXPECT_EQ(SecondsText(949), "0.9");
  EXPECT_EQ(SecondsText(950), "1.0");
  EXPECT_EQ(SecondsText(0), "0.0");
  EXPECT_EQ(SecondsText(-500), "0.0");
  EXPECT_EQ(SecondsText(32767), "32.8");
}

}  // namespace zemo
