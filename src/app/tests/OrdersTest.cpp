// The table of the orders, and who can carry them out.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "app/Orders.h"
#include "support/BaseLock.h"
#include "support/ReadmeTable.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

GivenOrder Given(const std::string& text) {
  return ReadOrder(Orders(), text);
}

// Why it cannot be carried out on a station that is no simulation; empty: it was.
std::string Refusal(Station& station, const std::string& text) {
  try {
    CarryOut(station, Given(text));
  } catch (const OrderError& error) {
    return error.what();
  }
  return "";
}

struct OperatorOrders : testing::Test {
  OperatorOrders() : on("2026-11-21 12:00:00") { on.Load(); }
  TestStation on;
  Station& station = on.station;
};

TEST_F(OperatorOrders, StartAndStopAnyStation) {
  EXPECT_EQ(Refusal(station, "start"), "");
  EXPECT_TRUE(station.engine.IsRunning);
  EXPECT_EQ(Refusal(station, "stop"), "");
  EXPECT_FALSE(station.engine.IsRunning);
}

TEST_F(OperatorOrders, TickTheControlsOfItsScreen) {
  EXPECT_EQ(Refusal(station, "check CheckNoJingle on"), "");
  EXPECT_TRUE(station.engine.CheckNoJingle);
  EXPECT_EQ(Refusal(station, "check CheckNoJingle off"), "");
  EXPECT_FALSE(station.engine.CheckNoJingle);
}

TEST_F(OperatorOrders, ChangeItsBaseAndItsMachine) {
  EXPECT_EQ(Refusal(station, "set FadeOut 1234"), "");
  EXPECT_EQ(Refusal(station, "set Squelette yes"), "");
  EXPECT_EQ(Refusal(station, "local XRapport 7"), "");
  EXPECT_EQ(on.SqlText("SELECT FadeOut || ' ' || Squelette FROM Cnf"), "1234 -1");
  EXPECT_EQ(on.localValues.Get("XRapport"), "7");
}

TEST_F(OperatorOrders, MoveARowOfItsListFromTheFirstPlaceNamedToTheSecond) {
  for (const char* title : {"A", "B", "C"}) on.Append({.code = -1, .title = title});
  EXPECT_EQ(Refusal(station, "move 3 1"), "");
  EXPECT_EQ(station.PL.Row(1).title, "C");
  EXPECT_EQ(station.PL.Row(2).title, "A");
}

TEST_F(OperatorOrders, PlayAKeyOrACardOverWhatIsOnAir) {
  station.lists.Touches = {{"3", on.MakeSound("three.wav", 2000)}};
  on.AppendCard(on.AddCard({.file = on.MakeSound("card.wav", 60000)}));
  EXPECT_EQ(Refusal(station, "start"), "");
  on.RunUntil(1000);
  EXPECT_EQ(Refusal(station, "overlay 3"), "");
  EXPECT_EQ(station.engine.OverlayKey, "3");
  EXPECT_EQ(Refusal(station, "overlay 4"), "no sound is on key 4");
  EXPECT_EQ(Refusal(station, "overlay music 1"), "");
  EXPECT_EQ(Refusal(station, "overlay jingle 9"), "the library holds no jingle 9");
  const auto heard = on.Events("overlay");
  ASSERT_EQ(heard.size(), 2u) << on.Describe();
  EXPECT_EQ(heard[0]["file"], on.stationDir.Path() + "/three.wav");
  EXPECT_EQ(heard[1]["file"], on.stationDir.Path() + "/card.wav");
  EXPECT_EQ(heard[1]["reason"], "key");
}

TEST_F(OperatorOrders, FromElsewhereAreAllButThoseOfTheMachineItself) {
  EXPECT_EQ(WhyNotFromElsewhere(*Given("next").order), "");
  EXPECT_EQ(WhyNotFromElsewhere(*Given("overlay 3").order), "");
  EXPECT_EQ(WhyNotFromElsewhere(*Given("kill").order), "only a simulation has the order kill");
  EXPECT_EQ(WhyNotFromElsewhere(*Given("preview 2026-12-24").order),
            "the order preview sets the clock of the machine: only who sits at it can give it");
}

// Blanks, quotes and comment marks are a word's own there.
TEST_F(OperatorOrders, MayBeGivenAsWords) {
  const GivenOrder given = OrderOfWords(Orders(), {"save", "a \"b\" # c", "", "", "0"});
  EXPECT_EQ(given.arguments, (std::vector<std::string>{"a \"b\" # c", "", "", "0"}));
  EXPECT_EQ(OrderOfWords(Orders(), {"insert", "music", "12"}).Number(1), 12);
  EXPECT_THROW(OrderOfWords(Orders(), {"insert", "music"}), UnreadableOrder);
  EXPECT_THROW(OrderOfWords(Orders(), {"nxet"}), UnreadableOrder);
  EXPECT_THROW(OrderOfWords(Orders(), {}), UnreadableOrder);
}

// Another program has the base: the order waits no longer than the tick's grant leaves.
TEST_F(OperatorOrders, WaitForABaseInUseAsLongAsTheTickDoes) {
  const BaseLock other(station.base.Path());
  station.base.Waiting().LetAllWait(30);
  EXPECT_EQ(Refusal(station, "set FadeOut 1234"), "database is locked");
  EXPECT_EQ(station.base.Waiting().LeftMs(), 0);
}

TEST_F(OperatorOrders, AreRefusedWithTheReason) {
  EXPECT_EQ(Refusal(station, "load 3"), "there is no stored list 3");
  EXPECT_EQ(Refusal(station, "insert spot 9"), "the library holds no spot 9");
  EXPECT_EQ(Refusal(station, "break 9"), "the day's grid has no row 9");
  EXPECT_EQ(Refusal(station, "set FadeOut 99999"),
            "CHECK constraint failed: Cnf.FadeOut holds whole numbers from -32768 to 32767");
}

TEST_F(OperatorOrders, AreNotThoseOfASimulation) {
  for (const char* text :
       {"keydown 32", "keyup 32", "contact 1 on", "joystick 1 down", "clipboard text",
        "sql SELECT 1", "drop /a b", "remove b", "answer yes", "kill"}) {
    const GivenOrder given = Given(text);
    EXPECT_EQ(Refusal(station, text),
              "only a simulation has the order " + std::string(given.order->Name()));
  }
}

TEST(Orders, EachHasAFormOfItsOwnAndSaysWhatItDoes) {
  std::set<std::string_view> forms;
  for (const Order& order : Orders()) {
    EXPECT_TRUE(forms.insert(order.form).second) << order.form;
    EXPECT_NE(order.Name(), "");
    EXPECT_NE(order.help, "") << order.form;
  }
}

TEST(Orders, StandInReadmeAsInTheirTable) {
  std::string rows;
  for (const Order& order : Orders())
    rows += ReadmeRow(std::string(order.form), std::string(order.help));
  EXPECT_EQ(ReadmeTable(ZEMO_README, "| Order | What it does |"), rows);
}

TEST(Orders, AnEmptyOneIsNone) {
  EXPECT_THROW(Given(""), UnreadableOrder);
  EXPECT_THROW(Given("  # nothing"), UnreadableOrder);
}

}  // namespace
}  // namespace zemo::test
