// The command line: what it is read as, and what is refused as wrong usage.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/CommandLine.h"

namespace zemo {
namespace {

std::optional<CommandLine> Parse(std::vector<const char*> words) {
  words.insert(words.begin(), "zemoradio");
  return ParseCommandLine(static_cast<int>(words.size()), words.data());
}

std::string ErrorOf(const std::vector<const char*>& words) {
  try {
    Parse(words);
  } catch (const UsageError& error) {
    return error.what();
  }
  return "";
}

TEST(CommandLine, NoCommandIsTheScreen) {
  const auto line = Parse({"--station", "/s", "--machine", "/m"});
  EXPECT_EQ(line->command, Command::kScreen);
  EXPECT_EQ(line->station, "/s");
  EXPECT_EQ(line->machine, "/m");
}

TEST(CommandLine, RunTakesAnOutputAndADuration) {
  const auto line = Parse({"run", "--station", "/s", "--output", "device:Front", "--for", "45m"});
  EXPECT_EQ(line->command, Command::kRun);
  EXPECT_EQ(line->station, "/s");
  EXPECT_EQ(line->output, "device:Front");
  EXPECT_EQ(line->forMs, 45 * 60'000);
}

TEST(CommandLine, RunWithoutMoreUsesTheDeviceAndRunsUntilTold) {
  const auto line = Parse({"run"});
  EXPECT_EQ(line->output, "device");
  EXPECT_EQ(line->forMs, std::nullopt);
  EXPECT_EQ(line->station, "");
}

TEST(CommandLine, SimulateTakesABeginAScriptAndATrace) {
  const auto line = Parse({"simulate", "--station", "/s", "--from", "2026-11-21 10:00:00", "--for",
                           "1h", "--script", "/a", "--trace", "/t", "--in-place", "--no-start"});
  EXPECT_EQ(line->command, Command::kSimulate);
  EXPECT_EQ(line->from, (LocalDateTime{.year = 2026, .month = 11, .day = 21, .hour = 10}));
  EXPECT_EQ(line->forMs, 3'600'000);
  EXPECT_EQ(line->script, "/a");
  EXPECT_EQ(line->trace, "/t");
  EXPECT_TRUE(line->inPlace);
  EXPECT_TRUE(line->noStart);
}

TEST(CommandLine, SimulateTracesToStandardOutputOnAPrivateCopyAndStarts) {
  const auto line = Parse({"simulate", "--trace", "-"});
  EXPECT_EQ(line->trace, "-");
  EXPECT_EQ(Parse({"simulate"})->trace, "-");
  EXPECT_FALSE(line->inPlace);
  EXPECT_FALSE(line->noStart);
  EXPECT_EQ(line->from, std::nullopt);
}

TEST(CommandLine, RenderNeedsItsSoundFile) {
  EXPECT_EQ(Parse({"render", "--audio", "a.wav"})->audio, "a.wav");
  EXPECT_EQ(Parse({"render", "--audio", "/a.b/c.FLAC"})->audio, "/a.b/c.FLAC");
  EXPECT_NE(ErrorOf({"render"}), "");
  EXPECT_NE(ErrorOf({"render", "--audio", "a.mp3"}), "");
  EXPECT_NE(ErrorOf({"render", "--audio", "wav"}), "");
  EXPECT_NE(ErrorOf({"simulate", "--audio", "a.wav"}), "");
}

TEST(CommandLine, DemoAndCheckNeedTheirFolder) {
  EXPECT_EQ(Parse({"demo", "/d"})->folder, "/d");
  EXPECT_EQ(Parse({"check", "/d", "--machine", "/m"})->machine, "/m");
  EXPECT_NE(ErrorOf({"demo"}), "");
  EXPECT_NE(ErrorOf({"check"}), "");
  EXPECT_NE(ErrorOf({"demo", "/a", "/b"}), "");
}

TEST(CommandLine, ModelsAreListedOrExportedToASpreadsheet) {
  EXPECT_EQ(Parse({"models", "list", "--station", "/s"})->command, Command::kModelsList);
  const auto line = Parse({"models", "export", "/a/week.xlsx", "--machine", "/m"});
  EXPECT_EQ(line->command, Command::kModelsExport);
  EXPECT_EQ(line->file, "/a/week.xlsx");
  EXPECT_EQ(line->machine, "/m");
  for (const std::vector<const char*>& words : {std::vector<const char*>{"models"},
                                                {"models", "export"},
                                                {"models", "export", "a.xls"},
                                                {"models", "list", "a.xlsx"},
                                                {"models", "list", "export", "a.xlsx"}})
    EXPECT_NE(ErrorOf(words), "") << words.back();
}

TEST(CommandLine, ChoicesOfASimulationAreMadeByItAndReadByWhy) {
  EXPECT_EQ(Parse({"simulate", "--choices", "c"})->choices, "c");
  EXPECT_EQ(Parse({"why", "--choices", "c", "--report", "3"})->choices, "c");
  EXPECT_NE(ErrorOf({"why", "--choices", "c", "--code", "3"}), "");
  EXPECT_NE(ErrorOf({"simulate", "--choices", ""}), "");
}

TEST(CommandLine, TheStationMayStandBeforeTheCommand) {
  EXPECT_EQ(Parse({"--station", "/s", "run"})->station, "/s");
}

TEST(CommandLine, WhatIsNotKnownIsWrongUsageInOneLine) {
  for (const std::vector<const char*>& words : {std::vector<const char*>{"fly"},
                                                {"--fly"},
                                                {"run", "--fly"},
                                                {"run", "simulate"},
                                                {"simulate", "--from"},
                                                {"simulate", "--for"},
                                                {"run", "more"},
                                                {"simulate", "--for", "1w"},
                                                {"run", "--for", "soon"},
                                                {"simulate", "--from", "2026-02-30 10:00:00"},
                                                {"simulate", "--from", "10:00:00"},
                                                {"run", "--station", ""},
                                                {"--station", "", "run"},
                                                {"demo", ""},
                                                {"simulate", "--script", ""},
                                                {"simulate", "--for", ""},
                                                {"simulate", "--for=-5"},
                                                {"simulate", "--in-place=maybe"}}) {
    const std::string error = ErrorOf(words);
    EXPECT_NE(error, "") << words.front();
    EXPECT_EQ(error.find('\n'), std::string::npos) << error;
  }
}

TEST(CommandLine, HelpAndVersionAreShownAndLeaveNothingToDo) {
  for (const std::vector<const char*>& words :
       {std::vector<const char*>{"--help"}, {"run", "--help"}, {"--version"}}) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(Parse(words), std::nullopt);
    EXPECT_NE(testing::internal::GetCapturedStdout(), "");
  }
}

}  // namespace
}  // namespace zemo
