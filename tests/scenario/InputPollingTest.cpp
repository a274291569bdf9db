// The automaton's wire: polls, answers, level and pulse contacts, exclusions, relays.
#include <gtest/gtest.h>

#include <array>

#include "engine/ExternalTriggers.h"
#include "scenario/TriggerStation.h"
#include "settings/SerialInput.h"

namespace zemo::test {
namespace {

constexpr const char* kNoon = "2026-11-21 12:00:00";

// --- the wire, polled by hand while the clock stands ---

class AutomatonWire : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  // The next answer on the line is these bytes.
  void AnswerIs(const std::string& bytes) {
    on.automaton.onAnswer = [this, bytes](const std::string&) { on.automaton.Arrive(bytes); };
  }
  void Poll() { PollInputs(on.station); }
  std::string Leds() const {
    std::string text;
    for (int contact = 0; contact < 4; ++contact) text += on.Led(contact) ? '1' : '0';
    return text;
  }
  TriggerStation on{kNoon, {{"PortCom", 1}}};
};

TEST_F(AutomatonWire, EachPollAsksOnceAheadOfTheNext) {
  Poll();
  EXPECT_EQ(on.automaton.received, "EE");  // the first has nothing asked for yet
  Poll();
  EXPECT_EQ(on.automaton.received, "EEE");
  Poll();
  EXPECT_EQ(on.automaton.received, "EEEE");
}

TEST_F(AutomatonWire, BitIIsContactIAndHigherBitsAreNone) {
  for (int contact = 0; contact < 4; ++contact) {
    AnswerIs({'E', static_cast<char>(1 << contact)});
    Poll();
    Poll();
    std::string expected = "0000";
    expected[static_cast<size_t>(contact)] = '1';
    EXPECT_EQ(Leds(), expected);
  }
  AnswerIs("E\xF5");
  Poll();
  Poll();
  EXPECT_EQ(Leds(), "1010");
  AnswerIs("E\xF0");
  Poll();
  Poll();
  EXPECT_EQ(Leds(), "0000");
}

TEST_F(AutomatonWire, AnAnswerOfAnotherLengthOrLetterChangesNothing) {
  AnswerIs("E\x05");
  Poll();
  Poll();
  ASSERT_EQ(Leds(), "1010");
  for (const char* answer : {"E\x0A"
                             "E\x0A",
                             "EE\x0A",
                             "E\x0A"
                             "x",
                             "X\x0A",
                             "\x0A"
                             "E",
                             "e\x0A"}) {
    AnswerIs(answer);
    Poll();
    Poll();
    EXPECT_EQ(Leds(), "1010") << answer;
  }
  AnswerIs("E\x0A");
  Poll();
  Poll();
  EXPECT_EQ(Leds(), "0101");
}

TEST_F(AutomatonWire, ATornAnswerIsAwaitedWithoutAnotherPoll) {
  AnswerIs("E");
  Poll();
  Poll();
  Poll();
  EXPECT_EQ(on.automaton.received, "E");
  EXPECT_EQ(Leds(), "0000");
  on.automaton.Arrive("\x04");
  Poll();
  EXPECT_EQ(Leds(), "0010");
  EXPECT_EQ(on.automaton.received, "EE");
}

TEST_F(AutomatonWire, AMissingAnswerIsAskedForAgainAfterFivePolls) {
  AnswerIs("");
  for (int poll = 1; poll <= 4; ++poll) Poll();
  EXPECT_EQ(on.automaton.received, "E");
  Poll();
  EXPECT_EQ(on.automaton.received, "EE");
  for (int poll = 6; poll <= 9; ++poll) Poll();
  EXPECT_EQ(on.automaton.received, "EE");
  Poll();
  EXPECT_EQ(on.automaton.received, "EEE");
}

TEST_F(AutomatonWire, AnAnswerLaterThanItsPollsCountsWhenItComes) {
  AnswerIs("");
  for (int poll = 1; poll <= 5; ++poll) Poll();
  on.automaton.Arrive("E\x08");
  Poll();
  EXPECT_EQ(Leds(), "0001");
}

TEST_F(AutomatonWire, RelaysAreTheLetterSAndTheSumOfTheirWeights) {
  SetRelays(on.station, true, false, true, true);
  EXPECT_EQ(on.automaton.received, "S\x0D");
  EXPECT_EQ(on.automaton.Relays(), 13);
  EXPECT_EQ(on.station.engine.automaton.relays, (std::array<bool, 4>{true, false, true, true}));
  SetRelays(on.station, false, true, false, false);
  EXPECT_EQ(on.automaton.Relays(), 2);
  SetRelays(on.station, false, false, false, false);
  EXPECT_EQ(on.automaton.Relays(), 0);
}

TEST_F(AutomatonWire, NoPollGoesOutWhileARelayCommandIsSent) {
  on.station.engine.automaton.pollHeld = true;
  Poll();
  EXPECT_EQ(on.automaton.received, "");
  SetRelays(on.station, true, false, false, false);  // releases the poll at its end
  Poll();
  EXPECT_EQ(on.automaton.received, std::string("S\x01") + "EE");
}

TEST_F(AutomatonWire, RelaysOfAClosedPortAreOneErrorAndTheStatesAreKept) {
  zemo::Settings::PortCom_Click(on.station, 0, "");
  SetRelays(on.station, true, true, false, false);
  ASSERT_EQ(on.Events("error").size(), 1U) << on.Describe();
  EXPECT_EQ((*on.First("error"))["where"], "SetRelays");
  EXPECT_TRUE(on.station.engine.automaton.relays[1]);
  EXPECT_FALSE(on.station.engine.automaton.pollHeld);
}

// --- the port ---

TEST(AutomatonPort, IsOpenedAtTheFirstActivationWithTheStandardLineParameters) {
  TriggerStation on(kNoon, {{"PortCom", 2}});
  on.Load();
  EXPECT_TRUE(on.station.engine.SerialInputOpen);
  EXPECT_TRUE(on.automaton.IsOpen());
  EXPECT_EQ(on.automaton.Setting(), "4800,N,8,1");
}

TEST(AutomatonPort, TakesTheLineParametersOfTheMachine) {
  TriggerStation on(kNoon, {{"PortCom", 1}});
  on.localValues.Set("PortComSetting", "9600,E,7,2");
  on.Load();
  EXPECT_EQ(on.automaton.Setting(), "9600,E,7,2");
}

TEST(AutomatonPort, StaysClosedOnOptionZeroAndIsNotPolled) {
  TriggerStation on(kNoon, {{"PortCom", 0}, {"EntreSat", 1}});
  on.Load();
  on.Contact(3000, 0, true);
  on.RunUntil(10000);
  EXPECT_FALSE(on.station.engine.SerialInputOpen);
  EXPECT_EQ(on.automaton.received, "");
  EXPECT_EQ(on.EngineTurns(), "");
}

TEST(AutomatonPort, TheOptionsOfTheSettingsOpenAndCloseIt) {
  TriggerStation on(kNoon, {});
  on.Load();
  EXPECT_EQ(zemo::Settings::PortCom_Click(on.station, 3, "9600,N,8,1"), "Init 9600,N,8,1 Ok");
  EXPECT_TRUE(on.station.engine.SerialInputOpen);
  EXPECT_EQ(zemo::Settings::PortCom_Click(on.station, 4, "300,N,8,1"),
            "");  // one is open: nothing happens
  EXPECT_EQ(on.automaton.Setting(), "9600,N,8,1");
  EXPECT_EQ(zemo::Settings::PortCom_Click(on.station, 0, "300,N,8,1"), "Port COM Close OK !");
  EXPECT_FALSE(on.station.engine.SerialInputOpen);
  EXPECT_FALSE(on.automaton.IsOpen());
}

TEST(AutomatonPort, ALostLineIsOneErrorAMinuteAndTheAirGoesOn) {
  TriggerStation on(kNoon, {{"PortCom", 1}});
  on.Load();
  on.AppendTitle(20000);
  on.AppendTitle(60000);
  on.Start();
  on.Contact(3000, 2, true);
  on.At(5000, [&] { on.automaton.lost = true; });
  on.Contact(6000, 2, false);
  bool whileLost = false;
  on.At(29000, [&] { whileLost = on.Led(2); });
  on.At(30000, [&] { on.automaton.lost = false; });
  on.RunUntil(31000);
  EXPECT_TRUE(whileLost);  // the state stands
  EXPECT_FALSE(on.Led(2));
  ASSERT_EQ(on.Events("error").size(), 1U) << on.Describe();
  EXPECT_EQ((*on.First("error"))["where"], "PollInputs");
  EXPECT_EQ(on.Starts().size(), 2U);
}

// --- contact 0 ---

TEST(EngineContact, StartsAndStopsTheEngine) {
  TriggerStation on(kNoon, {{"PortCom", 1}, {"EntreSat", 1}});
  on.Load();
  on.AppendTitle(60000);
  on.Contact(3000, 0, true);
  on.Contact(10000, 0, false);
  on.RunUntil(70000);
  EXPECT_EQ(on.EngineTurns(), "3100 on; 10100 off");
  ASSERT_EQ(on.Starts().size(), 1U);
  EXPECT_EQ(on.Starts()[0].atMs, 3000 + kPolledMs);
  EXPECT_EQ(on.First("end")->atMs, 63100);  // not cut
  EXPECT_TRUE(on.Events("fade").empty());
}

TEST(EngineContact, AnOpenOneStopsAnEngineThatTheOperatorStarts) {
  TriggerStation on(kNoon, {{"PortCom", 1}, {"EntreSat", 1}});
  on.Load();
  on.AppendTitle(60000);
  on.Start();
  on.RunUntil(1000);
  EXPECT_EQ(on.EngineTurns(), "0 on; 100 off");
}

TEST(EngineContact, MeansNothingWithAnotherSetting) {
  for (int setting : {0, 2, 3, 4}) {
    TriggerStation on(kNoon, {{"PortCom", 1}, {"EntreSat", setting}});
    on.Load();
    on.Contact(3000, 0, true);
    on.RunUntil(5000);
    EXPECT_EQ(on.EngineTurns(), "") << setting;
    EXPECT_TRUE(on.Led(0)) << setting;
  }
}

// --- pulses ---

class PulseContacts : public testing::Test {
 protected:
  // Closed for one poll.
  void Pulse(int64_t atMs, int contact) {
    on.Contact(atMs, contact, true);
    on.Contact(atMs + 50, contact, false);
  }
  TriggerStation on{kNoon, {{"PortCom", 1}, {"TempsMaxiImPulsion", 2}}};
};

TEST_F(PulseContacts, APulseTogglesAndASecondOneWithinTwoSecondsIsIgnored) {
  on.Load();
  std::string states;
  const auto look = [&] { states += on.Led(1) ? '1' : '0'; };
  Pulse(3000, 1);  // read at 3100
  on.At(3600, look);
  Pulse(4000, 1);
  on.At(4600, look);
  Pulse(5000, 1);  // read at 5100: two seconds, and not more
  on.At(5600, look);
  Pulse(5700, 1);  // read at 5800
  on.At(6600, look);
  on.RunUntil(7000);
  EXPECT_EQ(states, "1110");
}

TEST_F(PulseContacts, AHeldContactTogglesEachTimeTheTimeHasPassed) {
  on.Load();
  on.Contact(3000, 2, true);  // read at 3100, 5200, 7300
  std::string states;
  for (int64_t atMs : {3150, 5150, 5250, 7250, 7350})
    on.At(atMs, [&] { states += on.Led(2) ? '1' : '0'; });
  on.RunUntil(8000);
  EXPECT_EQ(states, "11001");
}

TEST_F(PulseContacts, BothContactsShareTheTimeOfTheLastPulse) {
  on.Load();
  Pulse(3000, 1);
  Pulse(4000, 2);  // shut out by the pulse of contact 1
  on.RunUntil(4500);
  EXPECT_TRUE(on.Led(1));
  EXPECT_FALSE(on.Led(2));
  Pulse(6000, 1);
  Pulse(6000, 2);  // in one poll both count
  on.RunUntil(6500);
  EXPECT_FALSE(on.Led(1));
  EXPECT_TRUE(on.Led(2));
}

TEST_F(PulseContacts, ContactsZeroAndThreeFollowTheirBit) {
  on.Load();
  on.Contact(3000, 0, true);
  on.Contact(3000, 3, true);
  on.RunUntil(3200);
  EXPECT_TRUE(on.Led(0) && on.Led(3));
  on.automaton.SetContact(0, false);
  on.automaton.SetContact(3, false);
  on.RunUntil(3500);
  EXPECT_FALSE(on.Led(0) || on.Led(3));
}

TEST_F(PulseContacts, TheLimitIsKeptInMemoryFromTheStart) {
  on.Load();
  on.Set("TempsMaxiImPulsion", "0");
  Pulse(3000, 1);
  on.RunUntil(4000);
  EXPECT_TRUE(on.Led(1));  // a level contact would be open again
}

TEST(PulsesOverMidnight, AreTakenByTheTimeThatHasPassed) {
  TriggerStation on("2026-11-21 23:59:50", {{"PortCom", 1}, {"TempsMaxiImPulsion", 2}});
  on.Load();
  std::string states;
  for (int64_t atMs : {9000, 10500, 12000}) {  // 23:59:59, 00:00:00.5, 00:00:02
    on.Contact(atMs, 1, true);
    on.Contact(atMs + 50, 1, false);
    on.At(atMs + 300, [&] { states += on.Led(1) ? '1' : '0'; });
  }
  on.RunUntil(13000);
  EXPECT_EQ(states, "110");
}

// --- exclusions ---

TEST(Exclusions, BothEndsOfAPeriodAreInside) {
  TriggerStation on("2026-11-21 11:59:00", {{"PortCom", 1}});
  on.MakeFile("Exclusion.Txt", "\t09:00\r\n12:00\t12:01\r\n");
  on.Load();
  std::string states;
  for (int64_t atMs : {59950, 60050, 179950, 180050})  // around 12:00 and 12:02
    on.At(atMs, [&] { states += on.station.engine.InputsAllowed ? '1' : '0'; });
  on.RunUntil(181000);
  EXPECT_EQ(states, "1001");
}

TEST(Exclusions, ARowWithoutAStartHoldsNoMinute) {
  TriggerStation on("2026-11-21 11:59:00", {{"PortCom", 1}});
  on.MakeFile("Exclusion.Txt", "\t23:59\r\n");
  on.Load();
  on.RunUntil(1000);
  EXPECT_TRUE(on.station.engine.InputsAllowed);
}

TEST(Exclusions, APeriodThatEndsBeforeItBeginsHoldsNoMinute) {
  TriggerStation on("2026-11-21 23:59:50", {{"PortCom", 1}});
  on.MakeFile("Exclusion.Txt", "23:59\t00:01\r\n");
  on.Load();
  on.RunUntil(20000);
  for (const Seen& flag : on.Events("flag")) {
    if (flag["name"] != "InputsAllowed") continue;
    EXPECT_EQ(flag["value"], "true");
  }
  EXPECT_TRUE(on.station.engine.InputsAllowed);
}

// --- contact 3 ---

class StartPulseContact : public testing::TestWithParam<int> {};

TEST_P(StartPulseContact, PlaysOneElementWhateverTheSettingSays) {
  TriggerStation on(kNoon, {{"PortCom", 1}, {"EntreSat", GetParam()}});
  on.Load();
  on.AddLinkingElement(2000);
  on.AppendTitle(60000);
  on.AppendTitle(60000);
  on.Contact(3000, 3, true);
  on.Contact(4000, 3, false);
  std::string whilePlaying;
  on.At(3500, [&] { whilePlaying = *on.stationFolder.Read("ZemoOnOff.Dat"); });
  on.RunUntil(20000);
  ASSERT_EQ(on.Starts().size(), 1U) << on.Describe();
  EXPECT_EQ(on.Starts()[0].atMs, 3000 + kPolledMs);
  EXPECT_EQ(on.Starts()[0]["code"], "-5");
  EXPECT_EQ(whilePlaying, "1");
  EXPECT_EQ(on.stationFolder.Read("ZemoOnOff.Dat"), "0");
  EXPECT_EQ(on.First("output", "state", "close")->atMs, 7600);  // 3100 + 2000, and the drain
  EXPECT_EQ(on.station.PL.Count(), 2);
  EXPECT_EQ(on.EngineTurns(), "");
  EXPECT_EQ(on.SqlText("SELECT GENRE FROM Rapport"), "AUTRES");
}

INSTANTIATE_TEST_SUITE_P(EntreSat, StartPulseContact, testing::Values(0, 2, 3, 4));

TEST(StartPulse, WithoutALinkingElementPlaysTheFirstRow) {
  TriggerStation on(kNoon, {{"PortCom", 1}});
  on.Load();
  on.AppendTitle(5000);
  on.Contact(3000, 3, true);
  on.Contact(4000, 3, false);
  on.RunUntil(20000);
  ASSERT_EQ(on.Starts().size(), 1U) << on.Describe();
  EXPECT_EQ(on.Starts()[0]["code"], "1");
  EXPECT_TRUE(on.station.PL.Empty());
}

TEST(StartPulse, AHeldContactPlaysAnElementAfterEachDrain) {
  TriggerStation on(kNoon, {{"PortCom", 1}});
  on.Load();
  on.AppendTitle(2000);
  on.AppendTitle(2000);
  on.AppendTitle(2000);
  on.Contact(3000, 3, true);
  on.RunUntil(12000);
  // 3100 to 5100, drained at 7600; the poll of 7700 finds the output silent again.
  ASSERT_EQ(on.Starts().size(), 2U) << on.Describe();
  EXPECT_EQ(on.Starts()[1].atMs, 7700);
}

TEST(StartPulse, DoesNothingWithoutARowOrWhileTheEngineRuns) {
  TriggerStation on(kNoon, {{"PortCom", 1}});
  on.Load();
  on.Contact(3000, 3, true);
  on.RunUntil(4000);
  EXPECT_EQ(on.stationFolder.Read("ZemoOnOff.Dat"), "0");
  on.Contact(4000, 3, false);
  on.RunUntil(5000);
  on.AppendTitle(60000);
  on.AppendTitle(60000);
  on.Start();
  on.Contact(6000, 3, true);
  on.RunUntil(20000);
  EXPECT_EQ(on.Starts().size(), 1U) << on.Describe();
}

TEST(StartPulse, WaitsForTheEndOfAnExclusion) {
  TriggerStation on("2026-11-21 12:00:30", {{"PortCom", 1}});
  on.MakeFile("Exclusion.Txt", "12:00\t12:00\r\n");
  on.Load();
  on.AppendTitle(2000);
  on.Contact(10000, 3, true);
  on.RunUntil(35000);
  ASSERT_EQ(on.Starts().size(), 1U) << on.Describe();
  EXPECT_EQ(on.Starts()[0].atMs, 30000);
}

TEST(StartPulse, OfALostFileLeavesNoOneInTheOnOffFile) {
  TriggerStation on(kNoon, {{"PortCom", 1}});
  on.Load();
  OnAirElement lost;
  lost.title = "LOST";
  lost.file = "/nowhere/lost.wav";
  lost.code = -1;
  on.Append(lost);
  on.Contact(3000, 3, true);
  on.Contact(3050, 3, false);
  on.RunUntil(5000);
  EXPECT_EQ((*on.First("skip"))["reason"], "missing") << on.Describe();
  EXPECT_TRUE(on.station.PL.Empty());
  EXPECT_EQ(on.stationFolder.Read("ZemoOnOff.Dat"), "0");
}

}  // namespace
}  // namespace zemo::test
