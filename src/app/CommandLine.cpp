#include "app/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <initializer_list>
#include <iostream>
#include <string_view>

#include "app/Moments.h"

namespace zemo {

namespace {
// Option texts as they were typed, before they are read.
struct Typed {
  std::string duration;
  std::string from;
  std::string at;
  std::string day;
  std::string firstDay, lastDay;
};

std::string OneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char byte) { return byte < 0x20; }, ' ');
  return text;
}

bool EndsWithOneOf(const std::string& path, std::initializer_list<std::string_view> endings) {
  std::string ending = path.substr(std::min(path.rfind('.'), path.size()));
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return std::find(endings.begin(), endings.end(), ending) != endings.end();
}

void AddMachine(CLI::App& app, CommandLine& line) {
  app.add_option("--machine", line.machine, "Folder of what belongs to this machine")
      ->type_name("DIR");
}

void AddFolders(CLI::App& app, CommandLine& line) {
  app.add_option("--station", line.station, "Folder of the station: Triskin.MDB and the side files")
      ->type_name("DIR");
  AddMachine(app, line);
}

void AddOutput(CLI::App& app, CommandLine& line) {
  app.add_option("--output", line.output, "device, device:NAME, null or file:PATH (device)")
      ->type_name("SPEC");
}

void AddDuration(CLI::App& app, Typed& typed) {
  app.add_option("--for", typed.duration, "How long: 90, 90s, 45m, 24h or 7d")
      ->type_name("DURATION");
}

void AddSimulation(CLI::App& app, CommandLine& line, Typed& typed) {
  AddFolders(app, line);
  app.add_option("--from", typed.from, "Begin, local time \"YYYY-MM-DD hh:mm:ss\" (now)")
      ->type_name("T");
  AddDuration(app, typed);
  app.add_option("--script", line.script, "Orders, one a line")->type_name("FILE");
  app.add_option("--trace", line.trace, "Where the events go, - for standard output (-)")
      ->type_name("FILE|-");
  app.add_option("--choices", line.choices, "Where what the requests saw goes, for why")
      ->type_name("FILE");
  app.add_flag("--in-place", line.inPlace, "Work on the station itself, not on a private copy");
  app.add_flag("--no-start", line.noStart, "Do not start the engine");
}

void AddWhy(CLI::App& app, CommandLine& line, Typed& typed) {
  AddFolders(app, line);
  app.add_option("--code", line.code, "May the music title of this CODE play, and if not, why")
      ->type_name("N");
  app.add_option("--at", typed.at, "Moment, local time \"YYYY-MM-DD hh:mm:ss\" (now)")
      ->type_name("T");
  app.add_option("--report", line.report, "What brought the element of this CODE of the report")
      ->type_name("CODE");
  app.add_option("--choices", line.choices, "Choices that a simulation kept, instead of a station")
      ->type_name("FILE");
  app.add_flag("--json", line.json, "The answer as one JSON object");
}

void AddGrid(CLI::App& app, CommandLine& line, Typed& typed) {
  AddFolders(app, line);
  app.add_option("--day", typed.day, "The day, YYYY-MM-DD (today)")->type_name("DAY");
  app.add_flag("--json", line.json, "The breaks as one JSON object");
}

// The two commands below `models`.
struct ModelsCommands {
  CLI::App* exported;
  CLI::App* listed;
};
ModelsCommands AddModels(CLI::App& app, CommandLine& line) {
  CLI::App& models = *app.add_subcommand("models", "The week's models, out of the station");
  models.require_subcommand(1);
  ModelsCommands commands{models.add_subcommand("export", "As a spreadsheet file"),
                          models.add_subcommand("list", "As lines, cells between tabs")};
  for (CLI::App* command : {commands.exported, commands.listed}) AddFolders(*command, line);
  commands.exported->add_option("FILE", line.file, "Spreadsheet file, its name ending in .xlsx")
      ->required();
  return commands;
}

void AddAffidavit(CLI::App& app, CommandLine& line, Typed& typed) {
  AddFolders(app, line);
  app.add_option("--advertiser", line.advertiser, "Whose crosses")->type_name("NAME")->required();
  app.add_option("--from", typed.firstDay, "First day, YYYY-MM-DD")->type_name("DAY")->required();
  app.add_option("--to", typed.lastDay, "Last day, YYYY-MM-DD")->type_name("DAY")->required();
  app.add_option("--csv", line.csv, "The same into a file of comma-separated values")
      ->type_name("FILE");
  app.add_option("--xlsx", line.file, "The same into a spreadsheet, its name ending in .xlsx")
      ->type_name("FILE");
  app.add_flag("--json", line.json, "The answer as one JSON object");
}

void AddSettings(CLI::App& app, CommandLine& line) {
  AddFolders(app, line);
  app.require_subcommand(0, 1);
  const auto action = [&](const char* word, const char* text) -> CLI::App& {
    CLI::App& added = *app.add_subcommand(word, text)->fallthrough();
    added.callback([&line, word] { line.settingAction = word; });
    return added;
  };
  CLI::App& get = action("get", "One setting's value");
  CLI::App& set = action("set", "Give a setting a value");
  CLI::App& list = action("list", "All settings: meaning, unit, range, default");
  for (CLI::App* one : {&get, &set})
    one->add_option("NAME", line.settingName, "As its control or its field is called")->required();
  set.add_option("VALUE", line.settingValue, "Its new value")->required();
  for (CLI::App* told : {&get, &list}) told->add_flag("--json", line.json, "As JSON");
}

std::optional<LocalDateTime> ReadMoment(const CLI::App& chosen, const char* name,
                                        const std::string& text) {
  const CLI::Option* option = chosen.get_option_no_throw(name);
  if (!option || option->count() == 0) return std::nullopt;
  const auto moment = ParseMoment(text);
  if (!moment || !LocalClockShows(*moment))
    throw UsageError(std::string(name) + ": '" + text + "' is no local time YYYY-MM-DD hh:mm:ss");
  return moment;
}

LocalDateTime ReadDay(const char* name, const std::string& text) {
  const auto day = ParseDay(text);
  if (!day) throw UsageError(std::string(name) + ": '" + text + "' is no day YYYY-MM-DD");
  return *day;
}

void ReadAffidavitDays(CommandLine& line, const Typed& typed) {
  line.firstDay = ReadDay("--from", typed.firstDay);
  line.lastDay = ReadDay("--to", typed.lastDay);
  if (typed.lastDay < typed.firstDay) throw UsageError("--to is before --from");
}

void CheckWhy(const CommandLine& line) {
  if (line.command != Command::kWhy) return;
  if (line.code.has_value() == line.report.has_value())
    throw UsageError("why needs --code or --report, one of them");
  if (line.report && line.at) throw UsageError("--at goes with --code only");
  if (line.code && !line.choices.empty()) throw UsageError("--choices goes with --report only");
}

// What the words do not tell by themselves.
void ReadTyped(CommandLine& line, const Typed& typed, const CLI::App& app, const CLI::App& chosen) {
  for (const CLI::App* level : {&app, &chosen})
    for (const char* name :
         {"--station", "--machine", "--script", "--trace", "--audio", "--choices", "DIR", "FILE"}) {
      const CLI::Option* option = level->get_option_no_throw(name);
      if (option && option->count() > 0 && option->as<std::string>().empty())
        throw UsageError(std::string(name) + " needs a name");
    }
  if (!line.audio.empty() && !EndsWithOneOf(line.audio, {".wav", ".flac"}))
    throw UsageError("--audio: '" + line.audio + "' ends neither in .wav nor in .flac");
  if (!line.file.empty() && !EndsWithOneOf(line.file, {".xlsx"}))
    throw UsageError("'" + line.file + "' does not end in .xlsx");
  if (const CLI::Option* option = chosen.get_option_no_throw("--for"); option && option->count()) {
    line.forMs = ParseDuration(typed.duration);
    if (!line.forMs)
      throw UsageError("--for: '" + typed.duration + "' is no duration (90, 90s, 45m, 24h, 7d)");
  }
  if (line.command == Command::kAffidavit) return ReadAffidavitDays(line, typed);
  line.from = ReadMoment(chosen, "--from", typed.from);
  line.at = ReadMoment(chosen, "--at", typed.at);
  if (const CLI::Option* option = chosen.get_option_no_throw("--day"); option && option->count())
    line.day = ReadDay("--day", typed.day);
  CheckWhy(line);
}
}  // namespace

std::optional<CommandLine> ParseCommandLine(int argc, const char* const* argv) {
  CommandLine line;
  Typed typed;
  CLI::App app("Zemo Radio: a station's air, automated", "zemoradio");
  app.set_version_flag("--version", std::string("Zemo Radio " ZEMO_VERSION));
  app.require_subcommand(0, 1);
  AddFolders(app, line);
  AddOutput(app, line);
  AddDuration(app, typed);

  CLI::App& run = *app.add_subcommand("run", "Go on air without a screen, until interrupted");
  AddFolders(run, line);
  AddOutput(run, line);
  AddDuration(run, typed);

  CLI::App& simulate = *app.add_subcommand("simulate", "The air on a virtual clock");
  AddSimulation(simulate, line, typed);

  CLI::App& render = *app.add_subcommand("render", "As simulate, with the sound in a file");
  AddSimulation(render, line, typed);
  render.add_option("--audio", line.audio, "WAV or FLAC file of the sound, by its ending")
      ->type_name("FILE")
      ->required();

  CLI::App& demo = *app.add_subcommand("demo", "Make a demo station");
  demo.add_option("DIR", line.folder, "Folder of the new station")->required();

  CLI::App& check = *app.add_subcommand("check", "Say what is missing or broken in a station");
  check.add_option("DIR", line.folder, "Folder of the station")->required();
  AddMachine(check, line);

  CLI::App& why = *app.add_subcommand("why", "Say why a title may not play, or why it did");
  AddWhy(why, line, typed);
  const ModelsCommands models = AddModels(app, line);

  CLI::App& grid = *app.add_subcommand("grid", "The spot and news breaks of a day");
  AddGrid(grid, line, typed);

  CLI::App& affidavit =
      *app.add_subcommand("affidavit", "What became of every cross of an advertiser");
  AddAffidavit(affidavit, line, typed);

  CLI::App& settings = *app.add_subcommand("settings", "Show and change the settings");
  AddSettings(settings, line);

  CLI::App& devices = *app.add_subcommand("devices", "The sound devices of this machine");
  AddMachine(devices, line);
  devices.add_flag("--json", line.json, "The answer as one JSON object");

  CLI::App& campaign =
      *app.add_subcommand("campaign", "List, show, add or remove advertisers' campaigns");
  const auto readCampaign = AddCampaignCommand(campaign, line.campaign, line.json,
                                               [&](CLI::App& its) { AddFolders(its, line); });

  CLI::App& compact = *app.add_subcommand("compact", "Repair and compact a station's base");
  AddFolders(compact, line);

  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& shown) {
    app.exit(shown, std::cout, std::cerr);
    return std::nullopt;
  } catch (const CLI::ParseError& error) {
    throw UsageError(OneLine(error.what()));
  }

  const std::vector<std::pair<const CLI::App*, Command>> commands{
      {&run, Command::kRun},
      {&simulate, Command::kSimulate},
      {&render, Command::kRender},
      {&demo, Command::kDemo},
      {&check, Command::kCheck},
      {&why, Command::kWhy},
      {&grid, Command::kGrid},
      {&affidavit, Command::kAffidavit},
      {&settings, Command::kSettings},
      {&devices, Command::kDevices},
      {&campaign, Command::kCampaign},
      {&compact, Command::kCompact},
      {models.exported, Command::kModelsExport},
      {models.listed, Command::kModelsList}};
  const CLI::App* chosen = &app;
  for (const auto& [subcommand, command] : commands)
    if (subcommand->parsed()) {
      chosen = subcommand;
      line.command = command;
    }
  ReadTyped(line, typed, app, *chosen);
  if (line.command == Command::kCampaign) readCampaign();
  return line;
}

}  // namespace zemo
