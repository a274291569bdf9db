// The command line: what it is read as, and what is refused as wrong usage.
#include <gtest/gtest.h>

#include <algorithm>
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

TEST(CommandLine, ACampaignIsListedShownAddedOrRemoved) {
  const auto list = Parse({"campaign", "list", "--station", "/s", "--json"});
  EXPECT_EQ(list->command, Command::kCampaign);
  EXPECT_EQ(list->campaign.action, CampaignAction::kList);
  EXPECT_EQ(list->station, "/s");
  EXPECT_TRUE(list->json);
  const auto show = Parse({"campaign", "show", "7", "--machine", "/m"});
  EXPECT_EQ(show->campaign.action, CampaignAction::kShow);
  EXPECT_EQ(show->campaign.code, 7);
  EXPECT_EQ(show->machine, "/m");
  const auto remove = Parse({"campaign", "remove", "8"});
  EXPECT_EQ(remove->campaign.action, CampaignAction::kRemove);
  EXPECT_EQ(remove->campaign.code, 8);
}

TEST(CommandLine, ADatedCampaignHasItsDatesHoursAndMarks) {
  const auto line = Parse({"campaign", "add", "--file", "a.wav", "--from", "2026-12-30", "--to",
                           "2027-01-02", "--hours", "7-9", "--marks", "0,15,45", "--kind", "news",
                           "--priority", "20", "--cross", "2026-12-31 07:15"});
  const CampaignOptions& options = line->campaign;
  EXPECT_EQ(options.action, CampaignAction::kAdd);
  EXPECT_EQ(options.from + options.to, "30/12/202602/01/2027");
  EXPECT_EQ(options.hours, (std::pair(7, 9)));
  EXPECT_EQ(options.marks, (std::vector<int>{0, 15, 45}));
  EXPECT_TRUE(options.news);
  EXPECT_EQ(options.priority, 20);
  EXPECT_TRUE(options.patterns.empty());
  ASSERT_EQ(options.crosses.size(), 1u);
  EXPECT_EQ(options.crosses[0].day + options.crosses[0].moment, "31/12/202607:15");
}

TEST(CommandLine, AWeeklyCampaignTakesPatternsOfWeekdaysAndHours) {
  const auto line = Parse({"campaign", "add", "--file", "a.wav", "--weekly", "--crosses",
                           "1-2,7/8-9", "--cross", "3 07:15"});
  const CampaignOptions& options = line->campaign;
  EXPECT_TRUE(options.Weekly());
  ASSERT_EQ(options.patterns.size(), 1u);
  EXPECT_EQ(options.patterns[0].weekdays,
            (std::array<bool, 7>{true, true, false, false, false, false, true}));
  for (size_t hour = 0; hour < 24; ++hour)
    EXPECT_EQ(options.patterns[0].hours[hour], hour == 8 || hour == 9) << hour;
  EXPECT_EQ(options.crosses[0].weekday, 3);
  EXPECT_EQ(options.hours, std::nullopt);
  EXPECT_EQ(options.marks, std::nullopt);
}

TEST(CommandLine, ACampaignWithoutCrossesIsCrossedEverywhere) {
  const auto line = Parse({"campaign", "add", "--file", "a.wav", "--weekly"});
  ASSERT_EQ(line->campaign.patterns.size(), 1u);
  EXPECT_EQ(std::count(line->campaign.patterns[0].hours.begin(),
                       line->campaign.patterns[0].hours.end(), true),
            24);
}

TEST(CommandLine, WrongWordsOfACampaignAreRefused) {
  const auto add = [](std::vector<const char*> more) {
    more.insert(more.begin(), {"campaign", "add", "--file", "a.wav"});
    return ErrorOf(more);
  };
  EXPECT_NE(ErrorOf({"campaign"}), "");
  EXPECT_NE(ErrorOf({"campaign", "show"}), "");
  EXPECT_NE(ErrorOf({"campaign", "add", "--weekly"}), "");
  EXPECT_EQ(ErrorOf({"campaign", "list", "--station", ""}), "--station needs a name");
  EXPECT_EQ(add({}), "a campaign is either --weekly or has --from and --to");
  EXPECT_EQ(add({"--weekly", "--from", "2026-01-01"}),
            "a campaign is either --weekly or has --from and --to");
  EXPECT_EQ(add({"--from", "2026-01-01"}), "--from and --to go together");
  EXPECT_EQ(add({"--from", "2026-02-30", "--to", "2026-03-01"}),
            "--from: '2026-02-30' is no day YYYY-MM-DD");
  EXPECT_EQ(add({"--from", "2026-01-02", "--to", "2026-01-01"}), "--to lies before --from");
  EXPECT_EQ(add({"--from", "2026-01-01", "--to", "2026-12-31"}), "");
  EXPECT_EQ(add({"--from", "2026-01-01", "--to", "2027-01-01"}),
            "--to: a campaign has 365 days at most");
  EXPECT_EQ(add({"--weekly", "--hours", "9-7"}), "--hours: '9-7' is no span of hours (7-20)");
  EXPECT_EQ(add({"--weekly", "--hours", "7-24"}), "--hours: '7-24' is no span of hours (7-20)");
  EXPECT_EQ(add({"--weekly", "--marks", "0,60"}),
            "--marks: '0,60' is no list of minutes (0,15,30,45)");
  EXPECT_EQ(add({"--weekly", "--marks", "0,1,2,3,4,5,6,7,8"}),
            "--marks: an hour has eight marks at most");
  EXPECT_EQ(add({"--weekly", "--kind", "jingle"}), "--kind: 'jingle' is neither spot nor news");
  EXPECT_EQ(add({"--weekly", "--priority", "15"}), "--priority: 10 to 300 in steps of 10");
  EXPECT_EQ(add({"--weekly", "--crosses", "8/7"}),
            "--crosses: '8/7' is no pattern (all, or WEEKDAYS/HOURS as in 1-5/7-9,17)");
  EXPECT_EQ(add({"--weekly", "--cross", "2026-01-01 07:15"}),
            "--cross: '2026-01-01 07:15' is no 'WEEKDAY hh:mm' with 1 for Monday to 7");
}

}  // namespace
}  // namespace zemo
