// The program from outside: exit statuses, errors in one line, what a simulation touches and
// leaves.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "BlackBox.h"

namespace zemo {
namespace {

using Json = nlohmann::json;

class Program : public BlackBox {
 protected:
  // A minute of a new, empty station at a fixed moment.
  static std::string Minute(const std::string& more) {
    return "simulate --station station --from '2026-11-21 10:00:00' --for 1m " + more;
  }

  static std::vector<Json> Events(const std::string& trace) {
    std::vector<Json> events;
    for (const std::string& line : LinesOf(trace)) events.push_back(Json::parse(line));
    return events;
  }

  static std::vector<Json> EventsNamed(const std::string& trace, const std::string& name) {
    std::vector<Json> found;
    for (Json& event : Events(trace))
      if (event["event"] == name) found.push_back(std::move(event));
    return found;
  }
};

TEST_F(Program, WrongUsageIsStatusTwoAndOneLine) {
  for (const char* arguments :
       {"fly", "--fly", "simulate --for never", "simulate --from yesterday",
        "render --station station", "simulate --from '2026-02-29 10:00:00'",
        "simulate --from '2026-03-29 02:30:00'", "render --audio a.mp3", "run --output loud",
        "demo", "new", "check a --station b", "simulate --script missing.txt", "run --for"}) {
    const Result result = Run(arguments);
    EXPECT_EQ(result.status, 2) << arguments;
    EXPECT_EQ(result.out, "") << arguments;
    ExpectOneError(result.err);
  }
}

TEST_F(Program, AnErrorIsOneLineHoweverLongOrStrangeTheWordsAre) {
  const Result lengthy = Run("grid --day " + std::string(5000, 'x') + " é");
  EXPECT_EQ(lengthy.status, 2);
  ExpectOneError(lengthy.err);
  EXPECT_LE(lengthy.err.size(), 1100U);
  // An escape, a return, and NEL as UTF-8 has it.
  Put("orders.txt", "+0 a\x1b[2Jb\rc\xc2\x85\n");
  const Result strange = Run(Minute("--script orders.txt"));
  EXPECT_EQ(strange.status, 2);
  EXPECT_EQ(strange.err, "zemoradio: orders.txt:1: unknown order 'a [2Jb c '\n");
}

TEST_F(Program, HelpIsNoError) {
  const Result result = Run("simulate --help");
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.out.find("--in-place"), std::string::npos);
  EXPECT_EQ(result.err, "");
}

TEST_F(Program, AScriptThatCannotBeReadIsStatusTwoWithItsLineBeforeAnythingRuns) {
  Put("orders.txt", "+0 dump\n+1 jump\n");
  const Result result = Run(Minute("--script orders.txt"));
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "zemoradio: orders.txt:2: unknown order 'jump'\n");
  EXPECT_EQ(result.out, "");
  EXPECT_TRUE(Files("station").empty());
}

TEST_F(Program, AMissingStationFolderIsStatusOne) {
  for (const char* arguments :
       {"simulate --station nowhere", "render --station nowhere --audio a.wav"}) {
    const Result result = Run(arguments);
    EXPECT_EQ(result.status, 1) << arguments;
    ExpectOneError(result.err);
    EXPECT_NE(result.err.find("nowhere"), std::string::npos);
  }
}

TEST_F(Program, AFileThatIsNoDatabaseIsStatusOneAndNamesTheStationsFile) {
  Put("station/Triskin.MDB", "this is no database, however long one looks at it, and never was");
  const Result result = Run(Minute(""));
  EXPECT_EQ(result.status, 1);
  ExpectOneError(result.err);
  EXPECT_NE(result.err.find("station/Triskin.MDB"), std::string::npos) << result.err;
  EXPECT_EQ(result.err.find(Path("tmp")), std::string::npos) << result.err;
  EXPECT_TRUE(Files("tmp").empty());
}

TEST_F(Program, ASimulationOfADamagedBaseAirsTheEmergencyFolderAndCompactsNothing) {
  Put("station/Triskin.MDB", "this is no database, however long one looks at it, and never was");
  std::filesystem::create_directory(Path("machine/Secours"));
  PutWav("machine/Secours/a.wav", 8);
  const Result result = Run(Minute("--machine machine"));
  ASSERT_EQ(result.status, 0) << result.err;
  const auto starts = EventsNamed(result.out, "start");
  ASSERT_FALSE(starts.empty()) << result.out;
  EXPECT_EQ(starts[0]["file"], Path("machine/Secours/a.wav"));
  const auto errors = EventsNamed(result.out, "error");
  ASSERT_FALSE(errors.empty());
  EXPECT_EQ(errors[0]["text"], Path("station/Triskin.MDB") + " is not a database");
  for (const auto& error : errors) EXPECT_NE(error["where"], "CompactageTriskin");
}

TEST_F(Program, ANewStationIsMadeAndStartedAndStaysSilent) {
  const Result result = Run(Minute(""));
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  const auto bases = EventsNamed(result.out, "base");
  ASSERT_FALSE(bases.empty());
  EXPECT_EQ(bases[0]["state"], "created");
  const auto engines = EventsNamed(result.out, "engine");
  ASSERT_EQ(engines.size(), 1u);
  EXPECT_EQ(engines[0]["running"], true);
  EXPECT_EQ(engines[0]["at"], "2026-11-21T10:00:00.000");
  EXPECT_TRUE(EventsNamed(result.out, "start").empty());
}

TEST_F(Program, NoStartLeavesTheEngineStopped) {
  const Result result = Run(Minute("--no-start"));
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_TRUE(EventsNamed(result.out, "engine").empty());
}

TEST_F(Program, APrivateCopyLeavesStationAndMachineUntouchedAndNothingBehind) {
  ASSERT_EQ(Run(Minute("--in-place --machine machine")).status, 0);
  const auto station = Files("station");
  const auto machine = Files("machine");
  Put("orders.txt",
      "+1 set FadeOut 2345\n"
      "+1 local XRapport 7\n"
      "+1 drop orders.txt New.txt\n"
      "+1 remove LectureBase.Txt\n"
      "+1 dump\n");
  const Result result = Run(Minute("--machine machine --script orders.txt"));
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_TRUE(EventsNamed(result.out, "error").empty());
  EXPECT_EQ(Files("station"), station);
  EXPECT_EQ(Files("machine"), machine);
  EXPECT_TRUE(std::filesystem::is_empty(root_ / "tmp"));
}

TEST_F(Program, InPlaceWorksOnTheStationAndTheMachineThemselves) {
  Put("orders.txt",
      "+0 sql UPDATE Cnf SET FadeOut = 2345\n"
      "+0 set Squelette yes\n"
      "+0 local XRapport 7\n"
      "+0 drop orders.txt Dropped.txt\n"
      "+1 remove LectureBase.Txt\n");
  const Result result = Run(Minute("--in-place --machine machine --script orders.txt"));
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_TRUE(EventsNamed(result.out, "error").empty()) << result.out;
  const auto station = Files("station");
  EXPECT_EQ(station.count("Triskin.MDB"), 1u);
  EXPECT_EQ(station.count("LectureBase.Txt"), 0u);
  ASSERT_EQ(station.count("Dropped.txt"), 1u);
  EXPECT_EQ(station.at("Dropped.txt"), ReadText(root_ / "orders.txt"));
  const auto machine = Files("machine");
  EXPECT_EQ(machine.count("ZemoPlay.Ini"), 1u);
  EXPECT_NE(machine.at("Settings.Ini").find("XRapport=7"), std::string::npos);
  const Result stored = Shell("sqlite3 station/Triskin.MDB 'SELECT FadeOut, Squelette FROM Cnf'");
  EXPECT_EQ(stored.out, "2345|-1\n") << stored.err;
}

TEST_F(Program, TwoRunsGiveTheSameTraceByteForByte) {
  MakeStation({20, 30});
  Put("orders.txt",
      "+0 insert music 1\n+0 insert music 2\n+5 next\n+5 mode live\n+5 insert music 1\n"
      "+1 insert extract 1\n+1 insert music 99\n+1 clipboard Zemo Play Now\n"
      "+1 sql UPDATE Nothing SET x = 1\n+60 dump\n+1 stop\n");
  const std::string run =
      "simulate --station station --from '2026-11-21 10:00:00' --for 10m --script orders.txt";
  const Result first = Run(run);
  const Result second = Run(run);
  ASSERT_EQ(first.status, 0) << first.err;
  EXPECT_EQ(EventsNamed(first.out, "start").size(), 3u);
  EXPECT_EQ(first.out.size(), second.out.size());
  EXPECT_TRUE(first.out == second.out);
  EXPECT_EQ(first.out.find(Path("tmp")), std::string::npos);
}

TEST_F(Program, AFileRemovedOrDroppedInThePrivateCopyIsSeenUnderItsCardsPath) {
  MakeStation({20, 30});
  const auto station = Files("station");
  PutWav("other.wav", 40);
  Put("orders.txt",
      "+0 remove title1.wav\n+0 drop other.wav title2.wav\n+0 insert music 1\n+0 insert music 2\n");
  const Result result = Run(Minute("--script orders.txt"));
  ASSERT_EQ(result.status, 0) << result.err;
  const auto skips = EventsNamed(result.out, "skip");
  ASSERT_EQ(skips.size(), 1u);
  EXPECT_EQ(skips[0]["file"], Path("station/title1.wav"));
  EXPECT_EQ(skips[0]["reason"], "missing");
  const auto starts = EventsNamed(result.out, "start");
  ASSERT_EQ(starts.size(), 1u);
  EXPECT_EQ(starts[0]["file"], Path("station/title2.wav"));
  EXPECT_EQ(starts[0]["length_ms"], 40'000);
  EXPECT_EQ(Files("station"), station);
}

TEST_F(Program, ATraceCanGoToAFile) {
  const Result result = Run(Minute("--trace trace.jsonl"));
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(ReadText(root_ / "trace.jsonl"), Run(Minute("")).out);
}

TEST_F(Program, ATraceThatCannotBeWrittenIsStatusOne) {
  const Result result = Run(Minute("--trace no/such/folder/trace"));
  EXPECT_EQ(result.status, 1);
  ExpectOneError(result.err);
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full on this system";
  const Result full = Run(Minute("--trace /dev/full"));
  EXPECT_EQ(full.status, 1);
  ExpectOneError(full.err);
}

TEST_F(Program, ASimulationEndsWithoutAWordWhenItsReaderLeaves) {
  MakeStation({1, 1, 1}, true);
  const Result result = Shell(
      "(timeout -s KILL 60 $zemoradio simulate --station station --for 365d; echo $? >status) | "
      "head -n 1");
  EXPECT_EQ(LinesOf(result.out).size(), 1u);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(ReadText(root_ / "status"), "0\n");
  EXPECT_TRUE(std::filesystem::is_empty(root_ / "tmp"));
}

// The station, or a file beside the trace, is what it was run for.
TEST_F(Program, AReaderThatLeavesEndsNoRunOfWhichMoreStaysThanItsTrace) {
  MakeStation({60, 60, 60, 60}, true);
  const std::string words = "simulate --station station --from '2026-11-21 10:00:00' --for 1h ";
  const Result whole = Run(words + "--trace trace --choices whole");
  ASSERT_EQ(whole.status, 0) << whole.err;
  const Result left = Shell("($zemoradio " + words + "--choices left; echo $? >status) | true");
  EXPECT_EQ(left.err, "");
  EXPECT_EQ(ReadText(root_ / "status"), "0\n");
  EXPECT_EQ(ReadText(root_ / "left"), ReadText(root_ / "whole"));
  EXPECT_NE(ReadText(root_ / "left"), "");
  EXPECT_EQ(Shell("$zemoradio " + words + "--in-place | true").err, "");
  EXPECT_EQ(Shell("sqlite3 station/Triskin.MDB 'SELECT COUNT(*) FROM Rapport'").out,
            Shell("grep -c '\"event\":\"report\"' trace").out);
}

TEST_F(Program, AKillEndsTheProcessAtOnceWithStatus137AndTheTraceUpToIt) {
  Put("orders.txt", "+10 dump\n+0 kill\n+0 dump\n");
  const Result result = Run(Minute("--script orders.txt --trace trace"));
  EXPECT_EQ(result.status, 137);
  EXPECT_EQ(result.err, "");
  const auto events = Events(ReadText(root_ / "trace"));
  ASSERT_FALSE(events.empty());
  EXPECT_EQ(events.back()["event"], "state");
  EXPECT_EQ(events.back()["at"], "2026-11-21T10:00:10.000");
  EXPECT_TRUE(std::filesystem::is_empty(root_ / "tmp"));
}

TEST_F(Program, AStationKilledOnAirGoesOnAirByItselfAtItsNextStart) {
  Put("orders.txt", "+10 kill\n");
  const std::string inPlace = "--in-place --machine machine ";
  EXPECT_EQ(Run(Minute(inPlace + "--script orders.txt")).status, 137);
  const Result result = Run(Minute(inPlace + "--no-start"));
  ASSERT_EQ(result.status, 0) << result.err;
  const auto engines = EventsNamed(result.out, "engine");
  ASSERT_EQ(engines.size(), 1u);
  EXPECT_EQ(engines[0]["running"], true);
}

TEST_F(Program, OrdersAreServedAtTheirMomentsAndThoseOfTheBeginBeforeTheFirstTick) {
  Put("orders.txt", "+0 dump\n10:00:01.234 dump\n+58.766 dump\n+1 dump\n");
  const Result result = Run(Minute("--script orders.txt"));
  ASSERT_EQ(result.status, 0) << result.err;
  const auto states = EventsNamed(result.out, "state");
  ASSERT_EQ(states.size(), 3u);  // the last order lies behind the end
  EXPECT_EQ(states[0]["at"], "2026-11-21T10:00:00.000");
  EXPECT_EQ(states[1]["at"], "2026-11-21T10:00:01.234");
  EXPECT_EQ(states[2]["at"], "2026-11-21T10:01:00.000");
}

TEST_F(Program, AnOrderThatFailsIsAnErrorEventAndTheRunGoesOn) {
  Put("orders.txt",
      "+1 sql UPDATE Nothing SET x = 1\n+1 insert music 77\n+1 load 77\n"
      "+1 drop /no/such/file a.txt\n+1 check CheckTest on\n+1 set FadeOut 40000\n+1 dump\n");
  const Result result = Run(Minute("--script orders.txt"));
  ASSERT_EQ(result.status, 0) << result.err;
  std::vector<std::string> places;
  for (const Json& error : EventsNamed(result.out, "error")) places.push_back(error["where"]);
  EXPECT_EQ(places, (std::vector<std::string>{"sql", "insert", "load", "drop", "check", "set"}));
  EXPECT_EQ(EventsNamed(result.out, "state").size(), 1u);
}

TEST_F(Program, AScriptThatNamesWhatIsNotThereEndsBeforeTheRunBegins) {
  for (const char* order : {"set Nothing 1", "set FadeOut soon", "check Nothing on"}) {
    Put("orders.txt", std::string("+1 start\n+1 ") + order + "\n");
    const Result result = Run(Minute("--script orders.txt --trace told"));
    EXPECT_EQ(result.status, 2) << order;
    ExpectOneError(result.err);
    EXPECT_NE(result.err.find("orders.txt:2: "), std::string::npos) << result.err;
    EXPECT_FALSE(std::filesystem::exists(root_ / "told")) << order;
  }
}

TEST_F(Program, AnInterruptedSimulationLeavesNothingBehind) {
  // A hundred years: the signal comes long before the end, on whatever machine.
  const Result result = Shell(
      "$zemoradio simulate --station station --from '2026-11-21 10:00:00' --for 36500d & "
      "i=0; until [ -n \"$(ls tmp)\" ] || [ $((i=i+1)) -gt 1000 ]; do sleep 0.01; done; "
      "kill -TERM $!; wait $!");
  EXPECT_EQ(result.status, 143);
  EXPECT_TRUE(std::filesystem::is_empty(root_ / "tmp"));
}

TEST_F(Program, RenderWritesTheSoundOfTheWholeRun) {
  const Result result = Run(
      "render --station station --from '2026-11-21 10:00:00' --for 10 --audio air.wav --trace t");
  ASSERT_EQ(result.status, 0) << result.err;
  // 10 s of 16-bit stereo at 44.1 kHz behind the header.
  const auto bytes = std::filesystem::file_size(root_ / "air.wav");
  EXPECT_GE(bytes, 10u * 44100 * 4);
  EXPECT_LE(bytes, 10u * 44100 * 4 + 200);
}

TEST_F(Program, TheDefaultFoldersAreTheUsersOwn) {
  const Result result = Run("simulate --no-start --for 1");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find(Path("home/.local/share/ZemoKaluri/ZemoRadio")), std::string::npos)
      << result.err;
  const Result named =
      Shell("XDG_DATA_HOME=" + Path("data") + " $zemoradio simulate --no-start --for 1");
  EXPECT_NE(named.err.find(Path("data/ZemoKaluri/ZemoRadio")), std::string::npos) << named.err;
}

}  // namespace
}  // namespace zemo
