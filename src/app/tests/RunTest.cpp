// `zemoradio run` from outside, in real time: what it makes, shows and leaves, and how it ends.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <chrono>

#include "BlackBox.h"

namespace zemo {
namespace {

class RunOnAir : public BlackBox {
 protected:
  // Shell: run in the background, and wait until its first line is there.
  static std::string UntilOnAir() {
    return "$zemoradio run --station station --machine machine --output null >lines & "
           "i=0; until [ -s lines ] || [ $((i=i+1)) -gt 1000 ]; do sleep 0.01; done; ";
  }
  // Shell: on air until so many files were measured, and what was imported is dealt with.
  static std::string UntilMeasured(int files) {
    return UntilOnAir() +
           "i=0; until [ \"$(sqlite3 station/Triskin.MDB 'SELECT COUNT(*) FROM Mesures' "
           "2>/dev/null)\" = " +
           std::to_string(files) +
           " -a ! -e station/ExitsToFind.Txt ] || [ $((i=i+1)) -gt 600 ]; do sleep 0.1; done; "
           "kill -TERM $!; wait $!";
  }
  char OnOff() const { return ReadText(root_ / "station/ZemoOnOff.Dat").at(0); }
};

TEST_F(RunOnAir, AnEmptyFolderBecomesAStationAndTheRunEndsAfterItsTime) {
  const Result result = Run("run --station station --machine new/machine --output null --for 0");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(std::filesystem::exists(root_ / "station/Triskin.MDB"));
  EXPECT_TRUE(std::filesystem::exists(root_ / "new/machine/ZemoPlay.Ini"));
}

TEST_F(RunOnAir, TheStationOfTheUserIsMadeWhereNoneIsNamed) {
  const Result result = Run("run --machine machine --output null --for 0");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(
      std::filesystem::exists(root_ / "home/.local/share/ZemoKaluri/ZemoRadio/Triskin.MDB"));
}

TEST_F(RunOnAir, TheBareCommandWithoutADisplayAirsAllTheSameAndSaysSo) {
  // Without a duration only a signal ends it.
  const Result result = Shell(
      "unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM; $zemoradio --station station --machine "
      "machine & "
      "i=0; until [ -s station/ZemoOnOff.Dat ] || [ $((i=i+1)) -gt 1000 ]; do sleep 0.01; done; "
      "kill -TERM $!; wait $!");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err.rfind("zemoradio: there is no display", 0), 0u) << result.err;
}

TEST_F(RunOnAir, AnElementIsALineAndPlaysToItsEndWhenTheTimeIsOver) {
  MakeStation({3}, true);
  const Result result =
      Run("run --station station --machine machine --output file:air.wav --for 1");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  const auto lines = LinesOf(result.out);
  ASSERT_EQ(lines.size(), 3u) << result.out;
  EXPECT_EQ(lines[0].substr(8), "  Artist 1  Title 1  00:03");
  EXPECT_EQ(lines[1].substr(8), "  stopping: what is on air plays to its end");
  // Two seconds of the title, and what the output holds.
  EXPECT_EQ(lines[2].substr(8, 15), "  the file is 2") << result.out;
  EXPECT_NE(lines[2].find(" s longer than --for: what was on air has played to its end "
                          "(--for-exactly cuts it)"),
            std::string::npos)
      << result.out;
  EXPECT_TRUE(std::all_of(result.out.begin(), result.out.end(),
                          [](unsigned char byte) { return byte >= 0x20 || byte == '\n'; }));
  EXPECT_GE(std::filesystem::file_size(root_ / "air.wav"), 3u * 44100 * 4);
  EXPECT_EQ(OnOff(), '0');
}

// Ten times a second for the tick; a machine that is busy may need more than one look.
TEST_F(RunOnAir, WhileATitlePlaysItsThreadsWakeSeldom) {
  MakeStation({60}, true);
  const Result result = Shell(
      "sleeps() { cat /proc/$1/task/*/status | "
      "awk '/^voluntary/ { n += $2 } END { print n }'; }; " +
      UntilOnAir() +
      "run=$!; i=0; woke=9999; until [ $woke -le 40 ] || [ $((i=i+1)) -gt 20 ]; do "
      "before=$(sleeps $run); sleep 1; woke=$(($(sleeps $run) - before)); done; "
      "kill -KILL $run; echo $woke");
  ASSERT_NE(result.out, "");
  const int woke = std::stoi(result.out);
  EXPECT_GE(woke, 9);
  EXPECT_LE(woke, 40);
}

TEST_F(RunOnAir, WithALoudnessTargetTheLibraryIsMeasuredBesideTheAir) {
  MakeStation({3, 4}, true);
  Put("machine/Settings.Ini", "LoudnessTarget=-18\r\n");
  const Result result = Shell(UntilMeasured(2));
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(Shell("sqlite3 station/Triskin.MDB 'SELECT DUREE FROM Mesures ORDER BY DUREE'").out,
            "3000\n4000\n");
}

TEST_F(RunOnAir, WithoutOneOnlyTheExitPointsThatAnImportLeftAreFound) {
  MakeStation({3, 4}, true);
  Shell("sqlite3 station/Triskin.MDB 'UPDATE Discotheque SET POINTSORTIE = 1600'");
  const std::string file =
      Shell("sqlite3 station/Triskin.MDB 'SELECT FILENAME FROM Discotheque WHERE CODE = 2'").out;
  Put("station/ExitsToFind.Txt", "2\t1600\t" + file);
  const Result result = Shell(UntilMeasured(1));
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(Shell("sqlite3 station/Triskin.MDB 'SELECT DUREE FROM Mesures'").out, "4000\n");
  // Silence ends where the file does.
  EXPECT_EQ(Shell("sqlite3 station/Triskin.MDB 'SELECT POINTSORTIE FROM Discotheque'").out,
            "1600\n0\n");
  EXPECT_FALSE(std::filesystem::exists(root_ / "station/ExitsToFind.Txt"));
}

TEST_F(RunOnAir, ForExactlyCutsTheFileToTheFrameAndEndsInOrder) {
  MakeStation({30}, true);
  const Result result =
      Run("run --station station --machine machine --output file:air.wav --for-exactly 2");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(LinesOf(result.out).size(), 1u) << result.out;
  // The length of the samples stands in the four bytes behind "data".
  const std::string air = ReadText(root_ / "air.wav");
  const size_t data = air.find("data");
  ASSERT_NE(data, std::string::npos);
  EXPECT_EQ(air.size() - data - 8, 2u * 44100 * 4);
  EXPECT_EQ(OnOff(), '0');
  EXPECT_EQ(ReadText(root_ / "machine/ZemoPlay.Ini").substr(0, 7), "#FALSE#");
  EXPECT_EQ(Shell("sqlite3 station/Triskin.MDB 'SELECT TITRE FROM Rapport'").out, "Title 1\n");
}

// Its element sounds, but has no row yet: that comes behind the overlap.
TEST_F(RunOnAir, ForExactlyInsideAnOverlapHasTheRowOfTheElementThatBegan) {
  MakeStation({6, 6}, true);
  const Result result = Shell(
      "sqlite3 station/Triskin.MDB 'UPDATE Discotheque SET POINTSORTIE = 5000'; "
      "$zemoradio run --station station --machine machine --output file:air.wav --for-exactly 3");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  const std::string air = ReadText(root_ / "air.wav");
  ASSERT_NE(air.find("data"), std::string::npos);
  EXPECT_EQ(air.size() - air.find("data") - 8, 3u * 44100 * 4);
  EXPECT_EQ(LinesOf(result.out).size(), 2u) << result.out;  // elements
  EXPECT_EQ(Shell("sqlite3 station/Triskin.MDB 'SELECT COUNT(*) FROM Rapport'").out, "2\n");
  EXPECT_EQ(OnOff(), '0');
}

TEST_F(RunOnAir, ForExactlyWithoutAnythingToPlayIsAFileOfSilenceOfThatLength) {
  const Result result =
      Run("run --station station --machine machine --output file:air.wav --for-exactly 1");
  EXPECT_EQ(result.status, 0);
  const std::string air = ReadText(root_ / "air.wav");
  ASSERT_NE(air.find("data"), std::string::npos);
  EXPECT_EQ(air.size() - air.find("data") - 8, 44100u * 4);
}

TEST_F(RunOnAir, ARenderIsToTheFrameAsLongAsItsTime) {
  MakeStation({30}, true);
  const Result result = Run("render --station station --for 3 --audio air.wav --trace trace");
  EXPECT_EQ(result.status, 0) << result.err;
  const std::string air = ReadText(root_ / "air.wav");
  ASSERT_NE(air.find("data"), std::string::npos);
  EXPECT_EQ(air.size() - air.find("data") - 8, 3u * 44100 * 4);
}

TEST_F(RunOnAir, ForExactlyNeedsAFileAndNoOtherTime) {
  for (const char* words :
       {"--output null --for-exactly 1", "--for-exactly 1",
        "--output file:a.wav --for 1 --for-exactly 1", "--output file:a.wav --for-exactly soon"}) {
    const Result result = Run(std::string("run --station station --machine machine ") + words);
    EXPECT_EQ(result.status, 2) << words;
    ExpectOneError(result.err);
  }
}

TEST_F(RunOnAir, ARowThatCannotBePlayedIsALineOnStandardErrorAndInTheLog) {
  MakeStation({2}, true);
  // A request passes over what is gone already; this one goes behind its back.
  const Result result = Shell(
      "sqlite3 station/Triskin.MDB \"UPDATE Discotheque SET FILENAME = '/gone/title1.wav'\"; "
      "$zemoradio run --station station --machine machine --output null --for 2");
  EXPECT_EQ(result.status, 0);
  ExpectOneError(result.err);
  EXPECT_NE(result.err.find("\"Artist 1  Title 1\" cannot be played, its file is missing: "
                            "/gone/title1.wav; next: zemoradio check "),
            std::string::npos)
      << result.err;
  EXPECT_NE(ReadText(root_ / "station/Messages.Txt").find("/gone/title1.wav"), std::string::npos);
}

TEST_F(RunOnAir, WhatAStationDoesNotUseIsNotLoaded) {
  MakeStation({3}, true);
  const Result result = Shell(UntilOnAir() +
                              "grep -c libsqlite3 /proc/$!/maps; "
                              "grep -E 'libpq|libSDL|libxlsx' /proc/$!/maps; "
                              "kill -TERM $!; wait $!");
  for (const char* library : {"libpq", "libSDL", "libxlsx"})
    EXPECT_EQ(result.out.find(library), std::string::npos) << result.out;
  EXPECT_GT(std::atoi(result.out.c_str()), 0);  // the maps were read
}

TEST_F(RunOnAir, ATerminationStopsAndDrains) {
  MakeStation({2}, true);
  const Result result = Shell(UntilOnAir() + "kill -TERM $!; wait $!");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(OnOff(), '0');
  const Result report = Shell("sqlite3 station/Triskin.MDB 'SELECT TITRE FROM Rapport'");
  EXPECT_EQ(report.out, "Title 1\n");
}

TEST_F(RunOnAir, ASecondTerminationLeavesAtOnce) {
  MakeStation({900}, true);
  const auto begin = std::chrono::steady_clock::now();
  const Result result =
      Shell(UntilOnAir() + "while kill -TERM $! 2>/dev/null; do sleep 0.1; done; wait $!");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(120));  // of 900
  EXPECT_EQ(OnOff(), '0');
}

// What the base could not take is neither lost nor passed over by an end at once.
TEST_F(RunOnAir, ASecondTerminationTellsOfTheRowsThatTheBaseCouldNotTake) {
  MakeStation({5, 5, 5}, true);
  const Result result =
      Shell(UntilOnAir() +
            "run=$!; mkfifo hold; sqlite3 station/Triskin.MDB <hold & exec 3>hold; "
            "echo '.timeout 5000' >&3; echo 'BEGIN IMMEDIATE;' >&3; i=0; "
            "until [ -s machine/KeptRows-* ] || [ $((i=i+1)) -gt 1000 ]; do sleep 0.02; done; "
            "while kill -TERM $run 2>/dev/null; do sleep 0.1; done; wait $run");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("zemoradio: the base could not take "), std::string::npos)
      << result.err;
  EXPECT_NE(result.err.find(": they are written at the next start"), std::string::npos);
  EXPECT_NE(Shell("cat machine/KeptRows-*").out.find("Title"), std::string::npos);
}

TEST_F(RunOnAir, AStationKilledOnAirGoesOnAirByItself) {
  MakeStation({900, 900}, true);
  EXPECT_EQ(Shell(UntilOnAir() + "kill -KILL $!; wait $!").status, 137);
  const Result result = Shell("rm lines; " + UntilOnAir() +
                              "while kill -TERM $! 2>/dev/null; do sleep 0.1; done; wait $!");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_NE(ReadText(root_ / "lines").find("  15:00\n"), std::string::npos);
}

TEST_F(RunOnAir, TheTitleThatWasOnAirAtACrashGoesOnWhereItWas) {
  MakeStation({900, 900}, true);
  // Shell: until that many milliseconds of the element were heard.
  const auto heard = [](int ms) {
    return "i=0; until [ \"$(head -n 1 machine/OnAir.Dat 2>/dev/null | cut -d, -f3)\" -ge " +
           std::to_string(ms) + " ] 2>/dev/null || [ $((i=i+1)) -gt 600 ]; do sleep 0.1; done; ";
  };
  EXPECT_EQ(Shell(UntilOnAir() + heard(1500) + "kill -KILL $!; wait $!").status, 137);
  const std::string first = ReadText(root_ / "lines");
  const Result result = Shell("rm lines; " + UntilOnAir() + heard(2500) +
                              "cp machine/OnAir.Dat later; "
                              "while kill -TERM $! 2>/dev/null; do sleep 0.1; done; wait $!");
  EXPECT_EQ(result.status, 0) << result.err;
  const auto title = [](const std::string& lines) { return lines.substr(lines.find("  ")); };
  EXPECT_EQ(title(ReadText(root_ / "lines")).substr(0, 20), title(first).substr(0, 20));
  EXPECT_EQ(Shell("sqlite3 station/Triskin.MDB 'SELECT COUNT(*) FROM Rapport'").out, "1\n");
  EXPECT_FALSE(std::filesystem::exists(root_ / "machine/OnAir.Dat"));
}

TEST_F(RunOnAir, OnATerminalTheStatusLineIsRewrittenInPlace) {
  MakeStation({50}, true);
  const Result result = Shell(
      "script -qec \"timeout -k 1 3 $zemoradio run --station station --machine machine "
      "--output null\" /dev/null");
  EXPECT_NE(result.out.find("\r\033[K"), std::string::npos);
  EXPECT_NE(result.out.find("  -00:4"), std::string::npos)
      << result.out;  // of 50 s and the buffers
  EXPECT_NE(result.out.find("  Artist 1  Title 1"), std::string::npos) << result.out;
}

TEST_F(RunOnAir, WithoutATerminalASilenceThatLastsIsALine) {
  const Result result = Run("run --station station --machine machine --output null --for 5");
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.out.find("  silence on air\n"), std::string::npos) << result.out;
  EXPECT_EQ(result.out.find("sound again"), std::string::npos) << result.out;
}

TEST_F(RunOnAir, AReaderThatLeavesDoesNotEndTheAir) {
  MakeStation({2}, true);
  const Result result = Shell(
      "($zemoradio run --station station --machine machine --output null --for 1; echo $? >status) "
      "| "
      "true");
  EXPECT_EQ(ReadText(root_ / "status"), "0\n") << result.err;
}

TEST_F(RunOnAir, ABaseThatAnotherProgramHoldsIsOneLineAndStatusOne) {
  MakeStation({2}, true);
  sqlite3* holder = nullptr;
  ASSERT_EQ(sqlite3_open(Path("station/Triskin.MDB").c_str(), &holder), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(holder, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  for (const char* command : {"run --output null --for 0", "simulate --for 1"}) {
    const Result result = Run(std::string(command) + " --station station --machine machine");
    EXPECT_EQ(result.status, 1) << command;
    ExpectOneError(result.err);
    EXPECT_NE(result.err.find("station/Triskin.MDB is locked"), std::string::npos) << result.err;
  }
  sqlite3_close(holder);
}

TEST_F(RunOnAir, AnOutputThatCannotBeMadeIsOneLineAndStatusOne) {
  const Result result =
      Run("run --station station --machine machine --output file:no/such/folder/a.wav --for 0");
  EXPECT_EQ(result.status, 1);
  ExpectOneError(result.err);
}

TEST_F(RunOnAir, AStationFolderThatCannotBeMadeIsOneLineAndStatusOne) {
  std::filesystem::remove(root_ / "home");
  Put("home", "");
  const Result result = Run("run --machine machine --output null --for 0");
  EXPECT_EQ(result.status, 1);
  ExpectOneError(result.err);
  EXPECT_EQ(result.err.rfind("zemoradio: cannot make the station folder ", 0), 0u) << result.err;
}

TEST_F(RunOnAir, AMachineFolderThatCannotBeMadeCostsALineAndNotTheAir) {
  Put("file", "");
  MakeStation({2}, true);
  const Result result = Run("run --station station --machine file/machine --output null --for 1");
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.out.find("Title 1"), std::string::npos);
  EXPECT_EQ(result.err.rfind("zemoradio: cannot make the machine folder", 0), 0u) << result.err;
}

}  // namespace
}  // namespace zemo
