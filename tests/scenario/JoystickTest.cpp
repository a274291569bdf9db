// The joystick's four buttons, alone and beside the automaton: a held button is a held contact.
#include <gtest/gtest.h>

#include "engine/ExternalTriggers.h"
#include "engine/MainScreenPicture.h"
#include "engine/StartStop.h"
#include "engine/Startup.h"
#include "engine/StateDump.h"
#include "scenario/TriggerStation.h"

namespace zemo::test {
namespace {

// Routines that hold the tick over a start begin its interval anew.
constexpr int64_t kJoystickTickMs = 100;
constexpr const char* kJoystickNoon = "2026-11-21 12:00:00";
const Settings kJoystick = {{"JoystiquePort", 1}};

TEST(Joystick, IsCapturedAtTheStartWhenItsPortIsNamed) {
  TriggerStation on(kJoystickNoon, {{"JoystiquePort", 3}});
  on.Load();
  EXPECT_TRUE(on.station.engine.JoystickInUse);
  EXPECT_EQ(on.joystick.Port(), 3);
  EXPECT_TRUE(PictureOf(on.station).LedJoystique.visible);
  EXPECT_EQ(PictureOf(on.station).LedJoystique.text, "Joy");
  EXPECT_TRUE(EndInOrder(on.station));
  EXPECT_EQ(on.joystick.Port(), 0);
}

TEST(Joystick, DoesNothingWithoutAPort) {
  TriggerStation on(kJoystickNoon, {});
  on.Load();
  on.AppendTitle(60000);
  on.Button(3000, 1, true);
  on.At(4000, [&] { JoystickButtonDown(on.station, 4); });
  on.RunUntil(6000);
  EXPECT_FALSE(on.station.engine.JoystickInUse);
  EXPECT_FALSE(PictureOf(on.station).LedJoystique.visible);
  EXPECT_EQ(PictureOf(on.station).LedJoystique.text, "");
  EXPECT_EQ(on.EngineTurns(), "");
  EXPECT_TRUE(on.Starts().empty());
}

TEST(Joystick, TheIndicatorShowsTheButtonHeld) {
  TriggerStation on(kJoystickNoon, kJoystick);
  on.Load();
  const auto led = [&on] { return PictureOf(on.station).LedJoystique; };
  for (int button = 1; button <= 4; ++button) {
    on.joystick.Press(button);
    EXPECT_EQ(led().text, "Joy" + std::to_string(button));
    EXPECT_EQ(led().colour, 65280U);
    on.joystick.Release(button);
    EXPECT_EQ(led().text, "");
    EXPECT_EQ(led().colour, 32768U);
  }
}

TEST(Joystick, ButtonOneStartsAndLettingItGoStopsWithAFade) {
  TriggerStation on(kJoystickNoon, kJoystick);
  on.Load();
  on.AppendTitle(60000);
  on.Button(5000, 1, true);
  on.Button(20000, 1, false);
  on.RunUntil(30000);
  EXPECT_EQ(on.EngineTurns(), "5000 on; 20000 off") << on.Describe();
  EXPECT_EQ(on.First("fade")->atMs, 20000);
  EXPECT_EQ(on.First("end")->atMs, 21600);
}

TEST(Joystick, ButtonTwoTakesTheAirAndGivesItBackAtOnce) {
  TriggerStation on(kJoystickNoon, kJoystick);  // whatever EntreSat says
  on.Load();
  on.MakeModels();
  on.AddTitles(30);
  on.AddLinkingElement(4000);
  on.AppendTitle(600000);
  on.Start();
  on.Button(20000, 2, true);
  on.Button(60000, 2, false);
  on.RunUntil(60150);  // before the linking element asks for more
  EXPECT_EQ(on.EngineTurns(), "0 on; 20000 off; 60000 on") << on.Describe();
  EXPECT_EQ(on.Words(), "20000 Info Sat On; 60000 Fin Info Sat");
  EXPECT_EQ(on.First("fade")->atMs, 20000);
  ASSERT_EQ(on.Events("request").size(), 1U) << on.Describe();
  EXPECT_EQ(on.First("request")->atMs, 21600);
  ASSERT_EQ(on.Starts().size(), 2U);
  EXPECT_LE(on.Starts()[1].atMs, 60000 + kJoystickTickMs);
  EXPECT_EQ(on.Starts()[1]["code"], "-5");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport WHERE GENRE = 'INFO SAT'"), "1");
}

TEST(Joystick, AReturnBeforeTheOldElementHasFadedCutsItByTheLinkingElement) {
  TriggerStation on(kJoystickNoon, kJoystick);
  on.Load();
  on.AddLinkingElement(4000);
  on.AppendTitle(600000);
  on.Start();
  on.Button(20000, 2, true);
  on.Button(20500, 2, false);
  on.RunUntil(21000);
  ASSERT_EQ(on.Starts().size(), 2U) << on.Describe();
  EXPECT_LE(on.Starts()[1].atMs, 20500 + kJoystickTickMs);
  EXPECT_EQ(on.Starts()[1]["code"], "-5");
}

TEST(Joystick, ButtonThreeIsTheLocalProgrammeOfThatSettingOnly) {
  for (int setting : {2, 3}) {
    TriggerStation on(kJoystickNoon, {{"JoystiquePort", 1}, {"EntreSat", setting}});
    on.Load();
    on.AppendTitle(60000);
    on.Button(5000, 3, true);
    on.Button(10000, 3, false);
    on.RunUntil(12000);
    EXPECT_EQ(on.Words(), setting == 3 ? "5000 Prg Local On; 10000 Prg Local Off" : "") << setting;
    EXPECT_EQ(on.EngineTurns(), setting == 3 ? "5000 on; 10000 off" : "") << setting;
  }
}

TEST(Joystick, ButtonFourPlaysOneElement) {
  TriggerStation on(kJoystickNoon, kJoystick);
  on.Load();
  on.AddLinkingElement(2000);
  on.AppendTitle(60000);
  on.Button(5000, 4, true);  // held: one element all the same
  on.RunUntil(20000);
  ASSERT_EQ(on.Starts().size(), 1U) << on.Describe();
  EXPECT_EQ(on.Starts()[0].atMs, 5000);
  EXPECT_EQ(on.Starts()[0]["code"], "-5");
  EXPECT_EQ(on.station.PL.Count(), 1);
  EXPECT_EQ(on.stationFolder.Read("ZemoOnOff.Dat"), "0");
}

TEST(Joystick, AnExclusionBarsButtonsTwoToFourAndNotButtonOne) {
  TriggerStation on(kJoystickNoon, {{"JoystiquePort", 1}, {"EntreSat", 3}});
  on.MakeFile("Exclusion.Txt", "12:00\t12:00\r\n");
  on.Load();
  on.AppendTitle(60000);
  for (int button : {2, 3, 4}) {
    on.Button(button * 5000, button, true);
    on.Button(button * 5000 + 1000, button, false);
  }
  on.RunUntil(25000);
  EXPECT_EQ(on.Words(), "");
  EXPECT_EQ(on.EngineTurns(), "");
  EXPECT_TRUE(on.Starts().empty());
  on.Button(30000, 1, true);
  on.RunUntil(31000);
  EXPECT_EQ(on.EngineTurns(), "30000 on");
}

TEST(Joystick, AButtonHeldIntoTheEndOfAnExclusionIsNotServed) {
  TriggerStation on(kJoystickNoon, kJoystick);
  on.MakeFile("Exclusion.Txt", "12:00\t12:00\r\n");
  on.Load();
  on.Button(30000, 2, true);
  on.RunUntil(90000);
  EXPECT_EQ(on.Words(), "");  // only its press is an event
}

TEST(Joystick, TheStoppedTickRecomputesInputsAllowedAndLeavesTheIndicator) {
  TriggerStation on("2026-11-21 12:00:30", kJoystick);
  on.MakeFile("Exclusion.Txt", "12:01\t12:01\r\n");
  on.Load();
  std::string states;
  for (int64_t atMs : {29950, 30050, 89950, 90050})
    on.At(atMs, [&] { states += on.station.engine.InputsAllowed ? '1' : '0'; });
  on.RunUntil(91000);
  EXPECT_EQ(states, "1001");
  EXPECT_EQ(PictureOf(on.station).LedJoystique.text, "Joy");
}

TEST(Joystick, ATakeOverGoesOverTheHourAndMidnight) {
  TriggerStation on("2026-11-21 23:59:30", kJoystick);
  on.Load();
  on.MakeModels();
  on.AddTitles(30);
  on.AppendTitle(600000);
  on.Start();
  on.Button(10000, 2, true);
  on.Button(50000, 2, false);
  on.RunUntil(52000);
  EXPECT_EQ(on.Words(), "10000 Info Sat On; 50000 Fin Info Sat");
  EXPECT_GE(on.Starts().back().atMs, 50000) << on.Describe();
  EXPECT_LE(on.Starts().back().atMs, 50000 + kJoystickTickMs);
  EXPECT_EQ(on.station.engine.LastHour, 0);
}

// --- beside the automaton ---

TEST(JoystickAndAutomaton, AnOpenContactGivesBackAtItsNextPollWhatTheButtonTook) {
  TriggerStation on(kJoystickNoon, {{"JoystiquePort", 1}, {"PortCom", 1}, {"EntreSat", 2}});
  on.Load();
  on.AppendTitle(600000);
  on.AppendTitle(600000);
  on.Start();
  on.Button(20000, 2, true);
  on.Button(30000, 2, false);
  on.RunUntil(31000);
  const auto words = on.Events("clipboard");
  ASSERT_EQ(words.size(), 2U) << on.Describe();
  EXPECT_EQ(words[1]["text"], "Fin Info Sat");
  EXPECT_LE(words[1].atMs, 20000 + kJoystickTickMs);
  EXPECT_TRUE(on.station.engine.IsRunning);
}

TEST(JoystickAndAutomaton, AButtonLetGoGivesBackAndAClosedContactTakesAgain) {
  TriggerStation on(kJoystickNoon, {{"JoystiquePort", 1}, {"PortCom", 1}, {"EntreSat", 2}});
  on.Load();
  on.AppendTitle(600000);
  on.Start();
  on.Contact(20000, 1, true);
  on.Button(30000, 2, true);
  on.Button(40000, 2, false);
  on.Contact(50000, 1, false);
  on.RunUntil(51000);
  EXPECT_EQ(on.WordTexts(), "Info Sat On; Fin Info Sat; Info Sat On; Fin Info Sat");
  EXPECT_LE(on.Events("clipboard")[2].atMs, 40000 + kJoystickTickMs);
  EXPECT_FALSE(on.station.engine.SatelliteTaking);
  EXPECT_TRUE(on.station.engine.IsRunning);
}

TEST(JoystickAndAutomaton, EachStartsWhatTheOtherStopped) {
  TriggerStation on(kJoystickNoon, {{"JoystiquePort", 1}, {"PortCom", 1}, {"EntreSat", 3}});
  on.Load();
  on.AppendTitle(600000);
  on.AppendTitle(600000);
  on.Contact(5000, 2, true);
  on.Button(10000, 3, true);   // on already
  on.Button(15000, 3, false);  // off; the closed contact turns it on again
  on.Contact(20000, 2, false);
  on.RunUntil(21000);
  EXPECT_EQ(on.WordTexts(), "Prg Local On; Prg Local Off; Prg Local On; Prg Local Off");
  EXPECT_LE(on.Events("clipboard")[2].atMs, 15000 + kJoystickTickMs);
}

TEST(InputState, EveryVariableIsInTheDumpByItsName) {
  TriggerStation on(kJoystickNoon,
                    {{"JoystiquePort", 1}, {"PortCom", 1}, {"TempsMaxiImPulsion", 3}});
  on.Load();
  on.automaton.SetContact(1, true);
  PollInputs(on.station);
  on.joystick.Press(2);
  const Event dump = DumpState(on.station);
  std::map<std::string, NamedValues::value_type::second_type> flags;
  for (const auto& [name, value] : dump.members)
    if (name == "flags")
      for (const auto& [flag, held] : std::get<NamedValues>(value)) flags[flag] = held;
  EXPECT_EQ(std::get<bool>(flags.at("SerialInputOpen")), true);
  EXPECT_EQ(std::get<bool>(flags.at("JoystickInUse")), true);
  EXPECT_EQ(std::get<bool>(flags.at("InputsAllowed")), true);
  EXPECT_EQ(std::get<bool>(flags.at("SatelliteTaking")), true);
  EXPECT_EQ(std::get<bool>(flags.at("LocalProgrammeOn")), false);
  EXPECT_EQ(std::get<bool>(flags.at("TopagePending")), false);
  EXPECT_EQ(std::get<double>(flags.at("TempsMaxiImPulsion")), 3);
  EXPECT_EQ(std::get<double>(flags.at("LastTopageTimer")), 0);
  EXPECT_EQ(std::get<std::string>(flags.at("LedJoystique")), "Joy2");
  EXPECT_EQ(std::get<std::vector<int32_t>>(flags.at("LedSat")),
            (std::vector<int32_t>{32768, 65280, 32768, 32768}));
}

}  // namespace
}  // namespace zemo::test
