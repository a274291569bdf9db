// Scripts: every order of the table, the times of the lines, and what ends a run before it begins.
#include <gtest/gtest.h>

#include <cstdlib>

#include "app/Script.h"

namespace zemo {
namespace {

const LocalDateTime kBegin{.year = 2026, .month = 11, .day = 21, .hour = 10};

std::vector<ScriptOrder> Parse(const std::string& text) {
  return ParseScript(text, kBegin, "s.txt");
}

// The only order of a script of one line.
ScriptOrder Single(const std::string& order) {
  const auto orders = Parse("+0 " + order);
  EXPECT_EQ(orders.size(), 1u) << order;
  return orders.empty() ? ScriptOrder{} : orders[0];
}

using Words = std::vector<std::string>;

std::string ErrorOf(const std::string& text) {
  try {
    Parse(text);
  } catch (const ScriptError& error) {
    return error.what();
  }
  return "read without an error";
}

struct Example {
  const char* line;
  Order order;
  Words arguments;
};

TEST(Script, EveryOrderIsReadWithItsArguments) {
  const std::vector<Example> examples{
      {"start", Order::kStart, {}},
      {"stop", Order::kStop, {}},
      {"next", Order::kNext, {}},
      {"keydown 32", Order::kKeyDown, {"32"}},
      {"keyup 105", Order::kKeyUp, {"105"}},
      {"mode auto", Order::kMode, {"auto"}},
      {"mode live", Order::kMode, {"live"}},
      {"request", Order::kRequest, {}},
      {"compose", Order::kCompose, {}},
      {"load 7", Order::kLoad, {"7"}},
      {"save \"La liste\" 21/11/2026 10:30 3",
       Order::kSave,
       {"La liste", "21/11/2026", "10:30", "3"}},
      {"new", Order::kNew, {}},
      {"insert music 12", Order::kInsert, {"music", "12"}},
      {"insert jingle 1 4", Order::kInsert, {"jingle", "1", "4"}},
      {"insert spot 2", Order::kInsert, {"spot", "2"}},
      {"insert other 3 1", Order::kInsert, {"other", "3", "1"}},
      {"insert extract", Order::kInsertExtract, {}},
      {"insert extract 2", Order::kInsertExtract, {"2"}},
      {"move 3 1", Order::kMove, {"3", "1"}},
      {"delete 2", Order::kDelete, {"2"}},
      {"rightclick 2", Order::kRightClick, {"2"}},
      {"break 5", Order::kBreak, {"5"}},
      {"break 5 at 2", Order::kBreak, {"5", "2"}},
      {"preview 2026-12-24", Order::kPreview, {"2026-12-24"}},
      {"local XRapport 10", Order::kLocal, {"XRapport", "10"}},
      {"check OptionDirect on", Order::kCheck, {"OptionDirect", "on"}},
      {"check CheckExtrait off", Order::kCheck, {"CheckExtrait", "off"}},
      {"contact 0 on", Order::kContact, {"0", "on"}},
      {"contact 3 off", Order::kContact, {"3", "off"}},
      {"joystick 1 down", Order::kJoystick, {"1", "down"}},
      {"joystick 4 up", Order::kJoystick, {"4", "up"}},
      {"clipboard Zemo Play Now", Order::kClipboard, {"Zemo Play Now"}},
      {"sql UPDATE Cnf SET Jingles = 0", Order::kSql, {"UPDATE Cnf SET Jingles = 0"}},
      {"drop \"/a b/New.mdb\" New.mdb", Order::kDrop, {"/a b/New.mdb", "New.mdb"}},
      {"remove MajGrillePub.txt", Order::kRemove, {"MajGrillePub.txt"}},
      {"set FadeOut 2000", Order::kSet, {"FadeOut", "2000"}},
      {"answer yes", Order::kAnswer, {"yes"}},
      {"answer cancel", Order::kAnswer, {"cancel"}},
      {"dump", Order::kDump, {}},
      {"kill", Order::kKill, {}},
  };
  for (const Example& example : examples) {
    const ScriptOrder order = Single(example.line);
    EXPECT_EQ(order.order, example.order) << example.line;
    EXPECT_EQ(order.arguments, example.arguments) << example.line;
  }
}

TEST(Script, ALineThatCannotBeReadIsRefusedWithItsNumber) {
  const std::vector<std::string> bad{"stat",
                                     "start now",
                                     "keydown",
                                     "keydown x",
                                     "keydown 0",
                                     "keydown 255",
                                     "mode manual",
                                     "load",
                                     "load 0",
                                     "load 1.5",
                                     "save a 21/11/2026 10:30",
                                     "save a 21/11/2026 10:30 4",
                                     "insert music",
                                     "insert music x",
                                     "insert music 1 0",
                                     "insert music 1 2 3",
                                     "insert news 1",
                                     "insert extract x",
                                     "move 1",
                                     "move 0 1",
                                     "delete -1",
                                     "break 5 2",
                                     "break 5 at",
                                     "break",
                                     "preview 24/12/2026",
                                     "preview 2026-02-30",
                                     "local XRapport",
                                     "local a=b 1",
                                     "check OptionDirect",
                                     "check CheckPub maybe",
                                     "check Nothing on",
                                     "check FadeOut on",
                                     "contact 4 on",
                                     "contact 1",
                                     "joystick 0 down",
                                     "joystick 5 up",
                                     "joystick 1 on",
                                     "sql",
                                     "sql   ",
                                     "drop /music/a",
                                     "drop /music/a ../a",
                                     "drop /music/a x/y",
                                     "remove ..",
                                     "remove a\\b",
                                     "set Jingles",
                                     "set Nothing 1",
                                     "set Jingles many",
                                     "set Jingles 5mn",
                                     "set Jingles \"\"",
                                     "set Squelette perhaps",
                                     "answer maybe",
                                     "save \"a 21/11/2026 10:30 0",
                                     "Start",
                                     "KILL"};
  for (const std::string& order : bad)
    EXPECT_EQ(ErrorOf("+0 dump\n\n+0 " + order).substr(0, 9), "s.txt:3: ") << order;
}

TEST(Script, AnErrorNamesTheUnknownOrderOrSaysWhatWasExpected) {
  EXPECT_EQ(ErrorOf("10:00:00 play"), "s.txt:1: unknown order 'play'");
  EXPECT_EQ(ErrorOf("10:00:00 move 1"), "s.txt:1: cannot be read, expected: move ROW ROW");
  EXPECT_EQ(ErrorOf("10:00:00 insert x"),
            "s.txt:1: cannot be read, expected: insert music|jingle|spot|other CODE [ROW] or "
            "insert extract [ROW]");
  EXPECT_EQ(ErrorOf("10:00 start"), "s.txt:1: '10:00' is no time");
  EXPECT_EQ(ErrorOf("start"), "s.txt:1: 'start' is no time");
  EXPECT_EQ(ErrorOf("+1s start"), "s.txt:1: '+1s' is no time");
  EXPECT_EQ(ErrorOf("10:00:00"), "s.txt:1: no order behind the time");
}

TEST(Script, AnErrorSaysWhichNameOrValueIsNone) {
  EXPECT_EQ(ErrorOf("+0 set Nothing 1"), "s.txt:1: Cnf has no field 'Nothing'");
  EXPECT_EQ(ErrorOf("+0 set jingles many"), "s.txt:1: 'many' is no value of Jingles");
  EXPECT_EQ(ErrorOf("+0 check Nothing on"),
            "s.txt:1: no screen has a check box or check menu 'Nothing'");
}

TEST(Script, FieldsAndControlsAreNamedInAnyCaseAndOfScreensToComeToo) {
  EXPECT_EQ(Single("set FADEOUT -1").order, Order::kSet);
  EXPECT_EQ(Single("set squelette TRUE").order, Order::kSet);
  EXPECT_EQ(Single("set Squelette -1").order, Order::kSet);
  EXPECT_EQ(Single("check mnustartstop off").order, Order::kCheck);
  EXPECT_EQ(Single("check CheckDelPub on").order, Order::kCheck);
  EXPECT_EQ(Single("check Redondance on").order, Order::kCheck);
}

TEST(Script, TheWholeFileIsCheckedAlthoughItsFirstLinesAreGood) {
  EXPECT_EQ(ErrorOf("+0 start\n+1 stop\n+2 fly"), "s.txt:3: unknown order 'fly'");
}

TEST(Script, ATimeOfDayCountsFromTheLineBeforeAndTheFirstFromTheBegin) {
  const auto orders = Parse(
      "10:00:00 start\n"
      "10:00:01.250 next\n"
      "10:00:01.25 next\n"
      "09:00:00 stop\n"  // the next day
      "10:00:00 dump\n");
  ASSERT_EQ(orders.size(), 5u);
  EXPECT_EQ(orders[0].atMs, 0);
  EXPECT_EQ(orders[1].atMs, 1250);
  EXPECT_EQ(orders[2].atMs, 1250);
  EXPECT_EQ(orders[3].atMs, 23 * 3'600'000);
  EXPECT_EQ(orders[4].atMs, 24 * 3'600'000);
}

TEST(Script, APlusCountsSecondsAfterTheLineBeforeAndTheFirstAfterTheBegin) {
  const auto orders = Parse("+1.5 start\n10:00:10 next\n+0 dump\n+90 stop");
  ASSERT_EQ(orders.size(), 4u);
  EXPECT_EQ(orders[0].atMs, 1500);
  EXPECT_EQ(orders[1].atMs, 10'000);
  EXPECT_EQ(orders[2].atMs, 10'000);
  EXPECT_EQ(orders[3].atMs, 100'000);
}

TEST(Script, CommentsBlankLinesTabsAndBothLineEndsAreTaken) {
  const auto orders = Parse(
      "\xEF\xBB\xBF# a script\r\n"
      "\r\n"
      "  \t \n"
      "\t+1\tstart   # begins\r\n"
      "+1 delete 2 #here too\n"
      "#+1 dump\n");
  ASSERT_EQ(orders.size(), 2u);
  EXPECT_EQ(orders[0].order, Order::kStart);
  EXPECT_EQ(orders[1].order, Order::kDelete);
  EXPECT_EQ(orders[1].arguments, Words{"2"});
}

TEST(Script, LinesKeepTheirNumbers) {
  const auto orders = Parse("# one\n\n+0 start\r\n+0 dump");
  ASSERT_EQ(orders.size(), 2u);
  EXPECT_EQ(orders[0].line, 3);
  EXPECT_EQ(orders[1].line, 4);
}

TEST(Script, QuotesHoldBlanksAndCommentMarksAndMayBeEmpty) {
  EXPECT_EQ(Single("local \"A name\" \"# no comment\"").arguments,
            (Words{"A name", "# no comment"}));
  EXPECT_EQ(Single("set MESSAGESECURITE \"\"").arguments, (Words{"MESSAGESECURITE", ""}));
  EXPECT_EQ(Single("drop /music/a#1.wav b.wav").arguments, (Words{"/music/a#1.wav", "b.wav"}));
}

TEST(Script, ClipboardAndSqlTakeTheRestOfTheLineAsItStands) {
  EXPECT_EQ(Single("sql UPDATE t SET a = \"x  y\" -- # it's").arguments,
            Words{"UPDATE t SET a = \"x  y\" -- # it's"});
  EXPECT_EQ(Single("sql   SELECT 'open quote \" here'").arguments,
            Words{"SELECT 'open quote \" here'"});
  EXPECT_EQ(Single("clipboard \"quoted\"").arguments, Words{"\"quoted\""});
  EXPECT_EQ(Single("clipboard").arguments, Words{""});
}

TEST(Script, AnArgumentIsReadAsANumberAndAMissingOneIsZero) {
  const ScriptOrder order = Single("insert music 12");
  EXPECT_EQ(order.Number(1), 12);
  EXPECT_FALSE(order.Has(2));
  EXPECT_EQ(order.Number(2), 0);
}

TEST(Script, AnEmptyScriptHasNoOrders) {
  EXPECT_TRUE(Parse("").empty());
}

}  // namespace
}  // namespace zemo
