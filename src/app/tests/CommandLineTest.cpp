// The command line: what it is read as, and what is refused as wrong usage.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "app/Commands.h"

namespace zemo {
namespace {

using Words = std::vector<const char*>;

std::optional<std::function<int()>> Parse(Words words, std::span<const Command> commands) {
  words.insert(words.begin(), "zemoradio");
  return ParseCommandLine(static_cast<int>(words.size()), words.data(), commands);
}

// What the command would be run with.
template <typename Options>
using Declare = ReadTyped (*)(CLI::App& app, CommonOptions& common, Options& options);
template <typename Options>
Options Read(Declare<Options> declare, const std::string& name, Words words) {
  Options read;
  const auto keep = [&read](const Options& options) {
    read = options;
    return 0;
  };
  std::vector<Command> commands{MakeCommand<Options>(name, "", {}, declare, keep)};
  if (!name.empty())
    commands.push_back(
        MakeCommand<AirOptions>("", "", {}, DeclareAir, [](const AirOptions&) { return 1; }));
  if (!name.empty() && std::find(words.begin(), words.end(), name) == words.end())
    words.insert(words.begin(), name.c_str());
  EXPECT_EQ((*Parse(words, commands))(), 0);
  return read;
}

SimulateOptions Simulation(const Words& words) {
  return Read<SimulateOptions>(DeclareSimulate, "simulate", words);
}
CampaignOptions Campaign(const Words& words) {
  return Read<CampaignOptions>(DeclareCampaign, "campaign", words);
}
SettingsOptions Settings(const Words& words) {
  return Read<SettingsOptions>(DeclareSettings, "settings", words);
}

std::string ErrorOf(const Words& words) {
  try {
    Parse(words, Commands());
  } catch (const UsageError& error) {
    return error.what();
  }
  return "";
}

TEST(CommandLine, WithoutACommandItIsOnAir) {
  const auto screen = Read<AirOptions>(
      DeclareAir, "", {"--station", "/s", "--machine", "/m", "--output", "null", "--for", "90s"});
  EXPECT_EQ(screen.station, "/s");
  EXPECT_EQ(screen.machine, "/m");
  EXPECT_EQ(screen.output, "null");
  EXPECT_EQ(screen.forMs, 90'000);
}

TEST(CommandLine, RunTakesAnOutputAndADuration) {
  const auto run = Read<AirOptions>(
      DeclareAir, "run", {"--station", "/s", "--output", "device:Front", "--for", "45m"});
  EXPECT_EQ(run.station, "/s");
  EXPECT_EQ(run.output, "device:Front");
  EXPECT_EQ(run.forMs, 45 * 60'000);
}

TEST(CommandLine, RunWithoutMoreUsesTheDeviceAndRunsUntilTold) {
  const auto run = Read<AirOptions>(DeclareAir, "run", {});
  EXPECT_EQ(run.output, "device");
  EXPECT_EQ(run.forMs, std::nullopt);
  EXPECT_EQ(run.station, "");
}

TEST(CommandLine, SimulateTakesABeginAScriptAndATrace) {
  const auto simulation =
      Simulation({"--station", "/s", "--from", "2026-11-21 10:00:00", "--for", "1h", "--script",
                  "/a", "--trace", "/t", "--in-place", "--no-start"});
  EXPECT_EQ(simulation.station, "/s");
  EXPECT_EQ(simulation.from, (LocalDateTime{.year = 2026, .month = 11, .day = 21, .hour = 10}));
  EXPECT_EQ(simulation.forMs, 3'600'000);
  EXPECT_EQ(simulation.script, "/a");
  EXPECT_EQ(simulation.trace, "/t");
  EXPECT_TRUE(simulation.inPlace);
  EXPECT_TRUE(simulation.noStart);
}

TEST(CommandLine, SimulateTracesToStandardOutputOnAPrivateCopyAndStarts) {
  const auto simulation = Simulation({});
  EXPECT_EQ(Simulation({"--trace", "-"}).trace, "-");
  EXPECT_EQ(simulation.trace, "-");
  EXPECT_FALSE(simulation.inPlace);
  EXPECT_FALSE(simulation.noStart);
  EXPECT_EQ(simulation.from, std::nullopt);
}

TEST(CommandLine, RenderIsASimulationThatNeedsItsSoundFile) {
  const auto render = Read<RenderOptions>(
      DeclareRender, "render",
      {"--audio", "a.wav", "--from", "2026-11-21 10:00:00", "--for", "2m", "--machine", "/m"});
  EXPECT_EQ(render.audio, "a.wav");
  EXPECT_EQ(render.from, (LocalDateTime{.year = 2026, .month = 11, .day = 21, .hour = 10}));
  EXPECT_EQ(render.forMs, 120'000);
  EXPECT_EQ(render.machine, "/m");
  EXPECT_EQ(ErrorOf({"render", "--audio", "/a.b/c.FLAC"}), "");
  EXPECT_NE(ErrorOf({"render"}), "");
  EXPECT_NE(ErrorOf({"render", "--audio", "a.mp3"}), "");
  EXPECT_NE(ErrorOf({"render", "--audio", "wav"}), "");
  EXPECT_NE(ErrorOf({"simulate", "--audio", "a.wav"}), "");
}

TEST(CommandLine, DemoAndNewNeedTheirFolder) {
  for (const char* making : {"demo", "new"})
    EXPECT_EQ(Read<NewStationOptions>(DeclareNewStation, making, {"/d"}).folder, "/d");
  EXPECT_NE(ErrorOf({"demo"}), "");
  EXPECT_NE(ErrorOf({"new"}), "");
  EXPECT_NE(ErrorOf({"demo", "/a", "/b"}), "");
}

TEST(CommandLine, CheckTakesItsFolderAsOtherCommandsDoOrAlone) {
  const auto check = [](const Words& words) {
    return Read<StationOptions>(DeclareCheck, "check", words);
  };
  const StationOptions alone = check({"check", "/d", "--machine", "/m"});
  EXPECT_EQ(alone.station, "/d");
  EXPECT_EQ(alone.machine, "/m");
  EXPECT_EQ(check({"check", "--station", "/d"}).station, "/d");
  EXPECT_EQ(check({"--station", "/d", "check"}).station, "/d");
  EXPECT_EQ(check({}).station, "");
  EXPECT_EQ(ErrorOf({"check", "/a", "--station", "/b"}),
            "check takes DIR or --station DIR, not both");
  EXPECT_EQ(ErrorOf({"check", ""}), "DIR needs a name");
}

TEST(CommandLine, ModelsAreListedOrExportedToASpreadsheet) {
  const auto listed =
      Read<ModelsOptions>(DeclareModels, "models", {"models", "list", "--station", "/s"});
  EXPECT_EQ(listed.file, "");
  EXPECT_EQ(listed.station, "/s");
  const auto exported = Read<ModelsOptions>(
      DeclareModels, "models", {"models", "export", "/a/week.xlsx", "--machine", "/m"});
  EXPECT_EQ(exported.file, "/a/week.xlsx");
  EXPECT_EQ(exported.machine, "/m");
  for (const Words& words : {Words{"models"},
                             {"models", "export"},
                             {"models", "export", "a.xls"},
                             {"models", "export", ""},
                             {"models", "list", "a.xlsx"},
                             {"models", "list", "export", "a.xlsx"}})
    EXPECT_NE(ErrorOf(words), "") << words.back();
}

TEST(CommandLine, WhyAsksForACardAtAMomentOrForARowOfTheReport) {
  const auto card =
      Read<WhyOptions>(DeclareWhy, "why", {"--code", "3", "--at", "2026-11-21 10:00:00", "--json"});
  EXPECT_EQ(card.code, 3);
  EXPECT_EQ(card.at, (LocalDateTime{.year = 2026, .month = 11, .day = 21, .hour = 10}));
  EXPECT_TRUE(card.json);
  EXPECT_EQ(Read<WhyOptions>(DeclareWhy, "why", {"--report", "4"}).report, 4);
  EXPECT_EQ(ErrorOf({"why"}), "why needs --code or --report, one of them");
  EXPECT_EQ(ErrorOf({"why", "--code", "1", "--report", "2"}),
            "why needs --code or --report, one of them");
  EXPECT_EQ(ErrorOf({"why", "--report", "2", "--at", "2026-11-21 10:00:00"}),
            "--at goes with --code only");
}

TEST(CommandLine, ChoicesOfASimulationAreMadeByItAndReadByWhy) {
  EXPECT_EQ(Simulation({"--choices", "c"}).choices, "c");
  EXPECT_EQ(Read<WhyOptions>(DeclareWhy, "why", {"--choices", "c", "--report", "3"}).choices, "c");
  EXPECT_EQ(ErrorOf({"why", "--choices", "c", "--code", "3"}), "--choices goes with --report only");
  EXPECT_EQ(ErrorOf({"simulate", "--choices", ""}), "--choices needs a name");
}

TEST(CommandLine, AGridHasADayAndAnAffidavitTwo) {
  const LocalDateTime christmas{.year = 2026, .month = 12, .day = 24};
  EXPECT_EQ(Read<GridOptions>(DeclareGrid, "grid", {"--day", "2026-12-24"}).day, christmas);
  EXPECT_EQ(Read<GridOptions>(DeclareGrid, "grid", {}).day, std::nullopt);
  const auto affidavit = Read<AffidavitOptions>(
      DeclareAffidavit, "affidavit",
      {"--advertiser", "Bakery", "--from", "2026-12-01", "--to", "2026-12-24", "--xlsx", "b.xlsx"});
  EXPECT_EQ(affidavit.advertiser, "Bakery");
  EXPECT_EQ(affidavit.firstDay.day, 1);
  EXPECT_EQ(affidavit.lastDay, christmas);
  EXPECT_EQ(affidavit.xlsx, "b.xlsx");
  const auto errorOf = [](const char* from, const char* to, const char* xlsx) {
    return ErrorOf({"affidavit", "--advertiser", "x", "--from", from, "--to", to, "--xlsx", xlsx});
  };
  EXPECT_EQ(errorOf("2026-12-02", "2026-12-01", "a.xlsx"), "--to is before --from");
  EXPECT_EQ(errorOf("2026-12-32", "2026-12-01", "a.xlsx"),
            "--from: '2026-12-32' is no day YYYY-MM-DD");
  EXPECT_EQ(errorOf("2026-12-32", "2026-12-01", "a.ods"), "'a.ods' does not end in .xlsx");
}

TEST(CommandLine, SettingsAreListedUnlessOneIsNamed) {
  EXPECT_EQ(Settings({}).action, "list");
  EXPECT_EQ(Settings({"settings", "list", "--json"}).action, "list");
  const auto get = Settings({"settings", "get", "FadeOut", "--station", "/s"});
  EXPECT_EQ(get.action + " " + get.name, "get FadeOut");
  EXPECT_EQ(get.station, "/s");
  const auto set = Settings({"settings", "set", "--", "TexteV", "-x"});
  EXPECT_EQ(set.action + " " + set.name + " " + set.value, "set TexteV -x");
  EXPECT_NE(ErrorOf({"settings", "set", "FadeOut"}), "");
}

TEST(CommandLine, FoldersAndOutputMayStandBeforeTheCommand) {
  const auto run = Read<AirOptions>(
      DeclareAir, "run", {"--station", "/s", "--output", "null", "run", "--machine", "/m"});
  EXPECT_EQ(run.station, "/s");
  EXPECT_EQ(run.machine, "/m");
  EXPECT_EQ(run.output, "null");
  EXPECT_EQ(
      Read<AirOptions>(DeclareAir, "run", {"--station", "/a", "run", "--station", "/b"}).station,
      "/b");
  EXPECT_EQ(Campaign({"--station", "/s", "campaign", "list"}).station, "/s");
}

TEST(CommandLine, WhatIsNotKnownIsWrongUsageInOneLine) {
  for (const Words& words : {Words{"fly"},
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
  for (const Words& words : {Words{"--help"}, {"run", "--help"}, {"--version"}}) {
    testing::internal::CaptureStdout();
    EXPECT_FALSE(Parse(words, Commands()));
    EXPECT_NE(testing::internal::GetCapturedStdout(), "");
  }
}

TEST(CommandLine, ACampaignIsListedShownAddedOrRemoved) {
  const auto list = Campaign({"campaign", "list", "--station", "/s", "--json"});
  EXPECT_EQ(list.action, CampaignAction::kList);
  EXPECT_EQ(list.station, "/s");
  EXPECT_TRUE(list.json);
  const auto show = Campaign({"campaign", "show", "7", "--machine", "/m"});
  EXPECT_EQ(show.action, CampaignAction::kShow);
  EXPECT_EQ(show.code, 7);
  EXPECT_EQ(show.machine, "/m");
  const auto remove = Campaign({"campaign", "remove", "8"});
  EXPECT_EQ(remove.action, CampaignAction::kRemove);
  EXPECT_EQ(remove.code, 8);
}

TEST(CommandLine, ADatedCampaignHasItsDatesHoursAndMarks) {
  const CampaignOptions options =
      Campaign({"campaign", "add", "--file", "a.wav", "--from", "2026-12-30", "--to", "2027-01-02",
                "--hours", "7-9", "--marks", "0,15,45", "--kind", "news", "--priority", "20",
                "--cross", "2026-12-31 07:15"});
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
  const CampaignOptions options = Campaign({"campaign", "add", "--file", "a.wav", "--weekly",
                                            "--crosses", "1-2,7/8-9", "--cross", "3 07:15"});
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
  const CampaignOptions options = Campaign({"campaign", "add", "--file", "a.wav", "--weekly"});
  ASSERT_EQ(options.patterns.size(), 1u);
  EXPECT_EQ(std::count(options.patterns[0].hours.begin(), options.patterns[0].hours.end(), true),
            24);
}

TEST(CommandLine, WrongWordsOfACampaignAreRefused) {
  const auto add = [](Words more) {
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

TEST(CommandLine, AWordThatIsNearlyAnOptionOrACommandIsNamedWithIt) {
  EXPECT_NE(ErrorOf({"simulate", "--statoin", "x"}).find("did you mean --station?"),
            std::string::npos);
  EXPECT_NE(ErrorOf({"simulat"}).find("did you mean simulate?"), std::string::npos);
  EXPECT_NE(ErrorOf({"simulate", "--statoin=x"}).find("did you mean --station?"),
            std::string::npos);
  EXPECT_NE(ErrorOf({"simulate", "--machineXX"}).find("did you mean --machine?"),
            std::string::npos);
  EXPECT_EQ(ErrorOf({"simulate", "--machineXXX"}).find("did you mean"), std::string::npos);
  EXPECT_EQ(ErrorOf({"simulate", "--elephant"}).find("did you mean"), std::string::npos);
}

TEST(CommandLine, AnOptionOfTheScreenInFrontOfACommandIsRefusedAndAFolderIsNot) {
  EXPECT_EQ(ErrorOf({"--for", "10", "run"}),
            "--for stands behind its command: zemoradio run --for ...");
  EXPECT_EQ(ErrorOf({"--station", "somewhere", "run"}), "");
  EXPECT_EQ(ErrorOf({"--machine", "somewhere", "simulate"}), "");
  EXPECT_EQ(ErrorOf({"--output", "null", "run"}), "");
}

}  // namespace
}  // namespace zemo
