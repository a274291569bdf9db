// Scripts: every order of the table, the times of the lines, and what ends a run before it begins.
#include <gtest/gtest.h>

#include <cstdlib>

#include "app/Orders.h"
#include "app/Script.h"

namespace zemo {
namespace {

const LocalDateTime kBegin{.year = 2026, .month = 11, .day = 21, .hour = 10};

std::vector<ScriptOrder> Parse(const std::string& text) {
  return ParseScript(text, kBegin, "s.txt", Orders());
}

// The only order of a script of one line.
GivenOrder Single(const std::string& order) {
  const auto orders = Parse("+0 " + order);
  EXPECT_EQ(orders.size(), 1u) << order;
  return orders.empty() ? GivenOrder{} : orders[0].given;
}

// The form that it was read by.
std::string_view FormOf(const GivenOrder& given) {
  return given.order ? given.order->form : std::string_view("none");
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
  const char* form;
  Words arguments;
};

TEST(Script, EveryOrderIsReadWithItsArguments) {
  const std::vector<Example> examples{
      {"start", "start", {}},
      {"stop", "stop", {}},
      {"next", "next", {}},
      {"keydown 32", "keydown VK", {"32"}},
      {"keyup 105", "keyup VK", {"105"}},
      {"mode auto", "mode auto|live", {"auto"}},
      {"mode live", "mode auto|live", {"live"}},
      {"request", "request", {}},
      {"compose", "compose", {}},
      {"load 7", "load CODE", {"7"}},
      {"save \"La liste\" 21/11/2026 10:30 3",
       "save LABEL DATE TIME OPTION",
       {"La liste", "21/11/2026", "10:30", "3"}},
      {"new", "new", {}},
      {"insert music 12", "insert music|jingle|spot|other CODE [ROW]", {"music", "12"}},
      {"insert jingle 1 4", "insert music|jingle|spot|other CODE [ROW]", {"jingle", "1", "4"}},
      {"insert spot 2", "insert music|jingle|spot|other CODE [ROW]", {"spot", "2"}},
      {"insert other 3 1", "insert music|jingle|spot|other CODE [ROW]", {"other", "3", "1"}},
      {"insert extract", "insert extract [ROW]", {}},
      {"insert extract 2", "insert extract [ROW]", {"2"}},
      {"move 3 1", "move ROW ROW", {"3", "1"}},
      {"delete 2", "delete ROW", {"2"}},
      {"rightclick 2", "rightclick ROW", {"2"}},
      {"break 5", "break ROW [at ROW]", {"5"}},
      {"break 5 at 2", "break ROW [at ROW]", {"5", "2"}},
      {"preview 2026-12-24", "preview DAY", {"2026-12-24"}},
      {"local XRapport 10", "local NAME VALUE", {"XRapport", "10"}},
      {"check OptionDirect on", "check CONTROL on|off", {"OptionDirect", "on"}},
      {"check CheckExtrait off", "check CONTROL on|off", {"CheckExtrait", "off"}},
      {"contact 0 on", "contact CONTACT on|off", {"0", "on"}},
      {"contact 3 off", "contact CONTACT on|off", {"3", "off"}},
      {"joystick 1 down", "joystick BUTTON down|up", {"1", "down"}},
      {"joystick 4 up", "joystick BUTTON down|up", {"4", "up"}},
      {"clipboard Zemo Play Now", "clipboard TEXT...", {"Zemo Play Now"}},
      {"sql UPDATE Cnf SET Jingles = 0", "sql STATEMENT...", {"UPDATE Cnf SET Jingles = 0"}},
      {"drop \"/a b/New.mdb\" New.mdb", "drop FILE FILENAME", {"/a b/New.mdb", "New.mdb"}},
      {"remove MajGrillePub.txt", "remove FILENAME", {"MajGrillePub.txt"}},
      {"set FadeOut 2000", "set FIELD VALUE", {"FadeOut", "2000"}},
      {"answer yes", "answer yes|no|ok|cancel", {"yes"}},
      {"answer cancel", "answer yes|no|ok|cancel", {"cancel"}},
      {"open report", "open campaigns|library|models|report|settings", {"report"}},
      {"open voicetrack 2", "open voicetrack ROW", {"2"}},
      {"close library", "close campaigns|library|models|report|settings|voicetrack", {"library"}},
      {"show selector",
       "show campaigns|library|models|report|settings|selector|voicetrack",
       {"selector"}},
      {"put ChTitre \"Two words\"", "put CONTROL VALUE", {"ChTitre", "Two words"}},
      {"put Tranche.3 \"\"", "put CONTROL VALUE", {"Tranche.3", ""}},
      {"press Ajouter", "press CONTROL [left|right]", {"Ajouter"}},
      {"press LblMMJJFin right", "press CONTROL [left|right]", {"LblMMJJFin", "right"}},
      {"key ChGenre delete", "key CONTROL enter|delete|insert", {"ChGenre", "delete"}},
      {"cell GTopH 0 23", "cell GRID NUMBER NUMBER [left|right|shift|ctrl]", {"GTopH", "0", "23"}},
      {"cell GTopH 1 2 ctrl",
       "cell GRID NUMBER NUMBER [left|right|shift|ctrl]",
       {"GTopH", "1", "2", "ctrl"}},
      {"cell GTopH 1 2 right shift",
       "cell GRID NUMBER NUMBER left|right shift|ctrl",
       {"GTopH", "1", "2", "right", "shift"}},
      {"choose PLDisco 1,3", "choose LIST VALUE", {"PLDisco", "1,3"}},
      {"files a.wav \"b c.wav\"", "files FILE+", {"a.wav", "b c.wav"}},
      {"files all /music", "files all FOLDER", {"/music"}},
      {"files open a.wav", "files open FILE", {"a.wav"}},
      {"day 2026-12-24", "day DAY", {"2026-12-24"}},
      {"path out.xlsx", "path FILE", {"out.xlsx"}},
      {"colour FF8000", "colour COLOUR", {"FF8000"}},
      {"dump", "dump", {}},
      {"kill", "kill", {}},
  };
  for (const Example& example : examples) {
    const GivenOrder given = Single(example.line);
    EXPECT_EQ(FormOf(given), example.form) << example.line;
    EXPECT_EQ(given.arguments, example.arguments) << example.line;
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
                                     "open cellar",
                                     "show",
                                     "put ChTitre",
                                     "press",
                                     "press Ajouter twice",
                                     "key ChGenre escape",
                                     "cell GTopH 1",
                                     "cell GTopH -1 0",
                                     "cell GTopH 1 2 shift right",
                                     "files",
                                     "day 24/12/2026",
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
  EXPECT_EQ(ErrorOf(std::string("10:00:00 start\n\0\1", 17)),
            "s.txt:2: a zero character: this is no text");
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
  EXPECT_EQ(FormOf(Single("set FADEOUT -1")), "set FIELD VALUE");
  EXPECT_EQ(FormOf(Single("set squelette TRUE")), "set FIELD VALUE");
  EXPECT_EQ(FormOf(Single("set Squelette -1")), "set FIELD VALUE");
  EXPECT_EQ(FormOf(Single("check mnustartstop off")), "check CONTROL on|off");
  EXPECT_EQ(FormOf(Single("check CheckDelPub on")), "check CONTROL on|off");
  EXPECT_EQ(FormOf(Single("check Redondance on")), "check CONTROL on|off");
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
  EXPECT_EQ(FormOf(orders[0].given), "start");
  EXPECT_EQ(FormOf(orders[1].given), "delete ROW");
  EXPECT_EQ(orders[1].given.arguments, Words{"2"});
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
  const GivenOrder order = Single("insert music 12");
  EXPECT_EQ(order.Number(1), 12);
  EXPECT_FALSE(order.Has(2));
  EXPECT_EQ(order.Number(2), 0);
}

TEST(Script, AnEmptyScriptHasNoOrders) {
  EXPECT_TRUE(Parse("").empty());
}

}  // namespace
}  // namespace zemo
