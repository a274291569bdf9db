#include <gtest/gtest.h>

#include <string>

#include "platform/NameValueLines.h"

namespace zemo {
namespace {

TEST(NameValueLines, NamesAndValuesStandWithoutTheBlanksAroundThem) {
  const auto lines = NameValueLines("A=1\r\n \tB b = c = d\t\nE=");
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0].name, "A");
  EXPECT_EQ(lines[0].value, "1");
  EXPECT_EQ(lines[1].name, "B b");
  EXPECT_EQ(lines[1].value, "c = d");
  EXPECT_EQ(lines[2].name, "E");
  EXPECT_EQ(lines[2].value, "");
}

TEST(NameValueLines, LinesEndWithEitherSignOrBoth) {
  const auto lines = NameValueLines("A=1\rB=2\nC=3\r\nD=4");
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[1].value, "2");
  EXPECT_EQ(lines[3].name, "D");
}

TEST(NameValueLines, ALineWithoutAnEqualsSignIsPassedOverAndTakesNoneOfTheNext) {
  const auto lines = NameValueLines("remark\n\nA=1\n");
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].name, "A");
}

TEST(NameValueLines, AByteOrderMarkBelongsToNoName) {
  const auto lines = NameValueLines(
      "\xEF\xBB\xBF"
      "A=1");
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].name, "A");
}

TEST(NameValueLines, ThePlaceOfAValueHoldsItsBlanksAndNotTheLineEnd) {
  std::string bytes = "A=1\r\nB= 22 \r\nC=3";
  const auto lines = NameValueLines(bytes);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[1].valueBegin, 7U);
  EXPECT_EQ(lines[1].valueLength, 4U);
  bytes.replace(lines[1].valueBegin, lines[1].valueLength, "x");
  EXPECT_EQ(bytes, "A=1\r\nB=x\r\nC=3");
}

}  // namespace
}  // namespace zemo
