// The choices of requests as they stand in the machine folder afterwards.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

#include "scheduling/ChoiceLog.h"
#include "scheduling/tests/RequestFixture.h"
#include "station/SideFileText.h"

namespace zemo {
namespace {

using test::kSaturday;
using test::RequestStation;
using test::TitleCard;

std::vector<std::string> Kept(const RequestStation& s) {
  const auto bytes = s.machineFolder.LocalFolder::Read(kChoicesFile);
  return bytes ? SplitLines(*bytes) : std::vector<std::string>{};
}

// Where `part` stands in `text`, so that a failure shows both.
testing::AssertionResult Holds(const std::string& text, const std::string& part) {
  if (text.find(part) != std::string::npos) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "no " << part << "\nin " << text;
}

RequestSeen Seen(int titles, int firstCode = 1) {
  RequestSeen seen;
  seen.at = {.year = 2026, .month = 11, .day = 21, .hour = 10, .minute = 55};
  seen.kind = "percentage";
  for (int i = 0; i < titles; ++i)
    seen.titles.push_back({firstCode + i, "A", "T", "POP", "NATIONAL", {}});
  return seen;
}

// 100 of 600 s are 16.67 %, 200 are 33.33 %, which passes 30 %.
TEST(ChoiceLog, APercentageRequestLeavesTheBudgetThatTookEachTitle) {
  RequestStation s("2026-11-21 10:55:00");
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 30);
  TitleCard card{.artist = "AB\"BA", .title = "ÉTÉ", .lengthMs = 100000, .passes = 8};
  const int32_t first = s.Add(card);
  card.artist = "BEE GEES";
  card.lastdiff = 40000;
  const int32_t second = s.Add(card);
  card.artist = "CLASH";
  card.minutes = 120;
  card.diffusions = {"21/11/2026 à 10:00"};
  s.Add(card);
  s.Request(10);
  ASSERT_EQ(s.Listed(), (std::vector<int32_t>{first, second}));
  const auto lines = Kept(s);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(
      lines[0],
      "{\"at\":\"2026-11-21T10:55:00\",\"kind\":\"percentage\",\"hour\":10,\"weekday\":6,"
      "\"minutes\":10,\"candidates\":3,\"offered\":2,\"refused\":1,\"refusals\":[\"21/11/2026 "
      "10:55:00 POP\\u0009CLASH ÉTÉ >> Ecart minutes pas assez important 120 > 55\"],"
      "\"titles\":[{\"code\":" +
          std::to_string(first) +
          ",\"artist\":\"AB\\\"BA\",\"title\":\"ÉTÉ\",\"genre\":\"POP\",\"variety\":"
          "\"NATIONAL\",\"place\":1,\"percent\":30,\"share_before\":0,\"share_after\":16.67,"
          "\"budget_s\":600},{\"code\":" +
          std::to_string(second) +
          ",\"artist\":\"BEE GEES\",\"title\":\"ÉTÉ\",\"genre\":\"POP\",\"variety\":"
          "\"NATIONAL\",\"place\":2,\"percent\":30,\"share_before\":16.67,\"share_after\":33.33,"
          "\"budget_s\":600}]}");
}

TEST(ChoiceLog, ASkeletonRequestLeavesThePositionAndThePass) {
  RequestStation s("2026-11-21 10:55:00");
  s.SetCnf("Squelette", -1);
  s.SetCnf("CheckNational", 0);
  s.Variety("NATIONAL", 100);
  s.Position(kSaturday, 10, "JAZZ");
  s.Position(kSaturday, 10, "POP");
  s.Add({.artist = "A", .lengthMs = 40000});
  s.Add({.artist = "B", .lengthMs = 40000, .lastdiff = 40000});
  s.Request(1);
  const auto lines = Kept(s);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(Holds(lines[0], "\"kind\":\"skeleton\""));
  EXPECT_TRUE(Holds(lines[0], "\"place\":1,\"position\":2,\"pass\":1}"));
  EXPECT_TRUE(Holds(lines[0], "\"place\":2,\"position\":2,\"pass\":2}"));
}

TEST(ChoiceLog, ARequestThatTookNothingLeavesNothing) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 30);
  s.Request(10);
  EXPECT_FALSE(s.machineFolder.LocalFolder::Exists(kChoicesFile));
}

TEST(ChoiceLog, OnlyTheFirstRefusalsAreKeptAndAllAreCounted) {
  RequestStation s("2026-11-21 10:55:00");
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  s.Add({.artist = "FREE"});
  for (int i = 0; i < 25; ++i)
    s.Add(
        {.artist = "R" + std::to_string(i), .minutes = 120, .diffusions = {"21/11/2026 à 10:00"}});
  s.Request(10);
  const auto lines = Kept(s);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(Holds(lines[0], "\"refused\":25"));
  EXPECT_TRUE(Holds(lines[0], "R19"));
  EXPECT_FALSE(Holds(lines[0], "R20"));
}

TEST(ChoiceLog, TheFileHoldsTheLast200TitlesAndNeverMoreThanTwiceAsMany) {
  RequestStation s;
  size_t longest = 0;
  for (int request = 0; request < 100; ++request) {
    KeepChoices(s.station, Seen(10, request * 10 + 1));
    longest = std::max(longest, Kept(s).size());
  }
  const auto lines = Kept(s);
  EXPECT_EQ(longest, 40U);
  ASSERT_GE(lines.size(), 20U);
  for (size_t i = 0; i < 20; ++i)
    EXPECT_TRUE(Holds(lines[lines.size() - 20 + i],
                      "\"code\":" + std::to_string(801 + static_cast<int>(i) * 10) + ","));
}

TEST(ChoiceLog, WhatStoodInTheFileBeforeTheStartStays) {
  RequestStation s;
  s.machineFolder.LocalFolder::Write(kChoicesFile,
                                     ChoicesLine(Seen(3, 70)) + "\r\nno line of ours\r\n{\"half");
  KeepChoices(s.station, Seen(2, 80));
  const auto lines = Kept(s);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_TRUE(Holds(lines[0], "\"code\":72,"));
  EXPECT_TRUE(Holds(lines[1], "\"code\":81,"));
}

TEST(ChoiceLog, AFileAbove4MegabytesIsToldAndBegunAnewInsteadOfRead) {
  RequestStation s;
  s.machineFolder.Write(kChoicesFile, std::string((4 << 20) + 1, '\n'));
  KeepChoices(s.station, Seen(1, 1));
  KeepChoices(s.station, Seen(1, 2));
  EXPECT_EQ(s.LastError(), "KeepChoices: Choices.Txt is larger than 4 MB: it is not read");
  const auto lines = Kept(s);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(Holds(lines[0], "\"code\":2"));
}

TEST(ChoiceLog, ATextOfForeignBytesOrControlsLeavesALineThatCanBeRead) {
  RequestSeen seen = Seen(1);
  seen.titles[0].artist = "caf\xE9";  // Windows-1252
  seen.titles[0].title = "a\\\"code\":b\n";
  EXPECT_TRUE(
      Holds(ChoicesLine(seen), "\"artist\":\"café\",\"title\":\"a\\\\\\\"code\\\":b\\u000a\""));
}

TEST(ChoiceLog, AFileThatCannotBeWrittenIsLoggedOnceAndMadeGoodLater) {
  RequestStation s;
  s.machineFolder.Subfolder(kChoicesFile).Write("x", "");  // a folder in its place
  for (int i = 1; i <= 3; ++i) KeepChoices(s.station, Seen(1, i));
  EXPECT_EQ(s.Events("error").size(), 1U);
  EXPECT_TRUE(Holds(s.LastError(), "KeepChoices: "));
  s.machineFolder.Subfolder(kChoicesFile).Remove("x");
  ASSERT_EQ(rmdir((s.machineDir.Path() + "/" + kChoicesFile).c_str()), 0);
  KeepChoices(s.station, Seen(1, 4));
  const auto lines = Kept(s);
  ASSERT_EQ(lines.size(), 3U);  // the first was lost with the reading
  EXPECT_TRUE(Holds(lines[0], "\"code\":2,"));
  EXPECT_TRUE(Holds(lines[2], "\"code\":4,"));
  EXPECT_EQ(s.Events("error").size(), 1U);
}

}  // namespace
}  // namespace zemo
