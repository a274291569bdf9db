#include "app/CommandOptions.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <initializer_list>
#include <memory>
#include <string_view>

#include "app/Moments.h"
#include "store/postgres/ServerUrl.h"

namespace zemo {

namespace {

// An option as it was typed, before it is read.
struct TypedOption {
  std::string text;
  const CLI::Option* option = nullptr;
  bool Given() const { return option->count() > 0; }
};
using Typed = std::shared_ptr<TypedOption>;

Typed AddTyped(CLI::App& app, const char* name, const char* help, const char* type) {
  auto typed = std::make_shared<TypedOption>();
  typed->option = app.add_option(name, typed->text, help)->type_name(type);
  return typed;
}

bool EndsWithOneOf(const std::string& path, std::initializer_list<std::string_view> endings) {
  std::string ending = path.substr(std::min(path.rfind('.'), path.size()));
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return std::find(endings.begin(), endings.end(), ending) != endings.end();
}

void RequireSpreadsheet(const std::string& file) {
  if (!file.empty() && !EndsWithOneOf(file, {".xlsx"}))
    throw UsageError("'" + file + "' does not end in .xlsx");
}

void AddMachine(CLI::App& app, CommonOptions& common) {
  app.add_option("--machine", common.machine, "Folder of what belongs to this machine")
      ->type_name("DIR");
}

Typed AddDuration(CLI::App& app) {
  return AddTyped(app, "--for", "How long: 90, 90s, 45m, 24h or 7d", "DURATION");
}

std::optional<int64_t> ReadDuration(const TypedOption& typed) {
  if (!typed.Given()) return std::nullopt;
  const auto forMs = ParseDuration(typed.text);
  if (!forMs)
    throw UsageError(typed.option->get_name() + ": '" + typed.text +
                     "' is no duration (90, 90s, 45m, 24h, 7d)");
  return forMs;
}

void ReadEnd(const TypedOption& duration, const TypedOption& exactly, AirOptions& options) {
  options.forMs = ReadDuration(duration.Given() ? duration : exactly);
  options.cut = exactly.Given();
  if (!options.cut) return;
  if (duration.Given()) throw UsageError("--for and --for-exactly: one of them");
  if (!options.output.starts_with("file:"))
    throw UsageError("--for-exactly goes with --output file:PATH only");
}

std::optional<LocalDateTime> ReadMoment(const char* name, const TypedOption& typed) {
  if (!typed.Given()) return std::nullopt;
  const auto moment = ParseMoment(typed.text);
  if (!moment || !LocalClockShows(*moment))
    throw UsageError(std::string(name) + ": '" + typed.text +
                     "' is no local time YYYY-MM-DD hh:mm:ss");
  return moment;
}

Typed AddDay(CLI::App& app, const char* name, const char* help) {
  const Typed day = AddTyped(app, name, help, "DAY");
  app.get_option(name)->required();
  return day;
}

LocalDateTime ReadDay(const char* name, const TypedOption& typed) {
  const auto day = ParseDay(typed.text);
  if (!day) throw UsageError(std::string(name) + ": '" + typed.text + "' is no day YYYY-MM-DD");
  return *day;
}

void ReadDays(const TypedOption& first, const TypedOption& last, LocalDateTime& firstDay,
              LocalDateTime& lastDay) {
  firstDay = ReadDay("--from", first);
  lastDay = ReadDay("--to", last);
  if (last.text < first.text) throw UsageError("--to is before --from");
}

}  // namespace

void AddFolders(CLI::App& app, CommonOptions& common) {
  app.add_option("--station", common.station,
                 "Folder of the station: Triskin.MDB or Base.Ini, and the side files")
      ->type_name("DIR");
  AddMachine(app, common);
}

void TakeFolders(const CommonOptions& common, StationOptions& options) {
  options.station = common.station;
  options.machine = common.machine;
}

ReadTyped DeclareAir(CLI::App& app, CommonOptions& common, AirOptions& options) {
  AddFolders(app, common);
  app.add_option("--output", common.output, "device, device:NAME, null or file:PATH (device)")
      ->type_name("SPEC");
  const Typed duration = AddTyped(
      app, "--for", "How long: 90, 90s, 45m, 24h or 7d; what is on air then plays to its end",
      "DURATION");
  const Typed exactly =
      AddTyped(app, "--for-exactly",
               "How long; the run then ends at once, and the file of --output is exactly that long",
               "DURATION");
  return [&common, &options, duration, exactly] {
    static_cast<CommonOptions&>(options) = common;
    ReadEnd(*duration, *exactly, options);
  };
}

ReadTyped DeclareSimulate(CLI::App& app, CommonOptions& common, SimulateOptions& options) {
  AddFolders(app, common);
  const Typed from =
      AddTyped(app, "--from", "Begin, local time \"YYYY-MM-DD hh:mm:ss\" (now)", "T");
  const Typed duration = AddDuration(app);
  app.add_option("--script", options.script, "Orders, one a line")->type_name("FILE");
  app.add_option("--trace", options.trace, "Where the events go, - for standard output (-)")
      ->type_name("FILE|-");
  app.add_option("--choices", options.choices, "Where what the requests saw goes, for why")
      ->type_name("FILE");
  app.add_flag("--in-place", options.inPlace, "Work on the station itself, not on a private copy");
  app.add_flag("--no-start", options.noStart, "Do not start the engine");
  return [&common, &options, from, duration] {
    TakeFolders(common, options);
    options.forMs = ReadDuration(*duration);
    options.from = ReadMoment("--from", *from);
  };
}

ReadTyped DeclareRender(CLI::App& app, CommonOptions& common, RenderOptions& options) {
  const ReadTyped readSimulation = DeclareSimulate(app, common, options);
  app.add_option("--audio", options.audio, "WAV or FLAC file of the sound, by its ending")
      ->type_name("FILE")
      ->required();
  return [&options, readSimulation] {
    if (!EndsWithOneOf(options.audio, {".wav", ".flac"}))
      throw UsageError("--audio: '" + options.audio + "' ends neither in .wav nor in .flac");
    readSimulation();
  };
}

ReadTyped DeclareNewStation(CLI::App& app, CommonOptions&, NewStationOptions& options) {
  app.add_option("DIR", options.folder, "Folder of the new station")->required();
  return [] {};
}

ReadTyped DeclareCheck(CLI::App& app, CommonOptions& common, StationOptions& options) {
  AddFolders(app, common);
  const Typed folder = AddTyped(app, "DIR", "The same as --station DIR", "");
  return [&common, &options, folder] {
    TakeFolders(common, options);
    if (!folder->Given()) return;
    if (!options.station.empty()) throw UsageError("check takes DIR or --station DIR, not both");
    options.station = folder->text;
  };
}

ReadTyped DeclareWhy(CLI::App& app, CommonOptions& common, WhyOptions& options) {
  AddFolders(app, common);
  app.add_option("--code", options.code, "May the music title of this CODE play, and if not, why")
      ->type_name("N");
  const Typed at = AddTyped(app, "--at", "Moment, local time \"YYYY-MM-DD hh:mm:ss\" (now)", "T");
  app.add_option("--report", options.report, "What brought the element of this CODE of the report")
      ->type_name("CODE");
  app.add_option("--choices", options.choices,
                 "Choices that a simulation kept, instead of a station")
      ->type_name("FILE");
  app.add_flag("--json", options.json, "The answer as one JSON object");
  return [&common, &options, at] {
    TakeFolders(common, options);
    options.at = ReadMoment("--at", *at);
    if (options.code.has_value() == options.report.has_value())
      throw UsageError("why needs --code or --report, one of them");
    if (options.report && options.at) throw UsageError("--at goes with --code only");
    if (options.code && !options.choices.empty())
      throw UsageError("--choices goes with --report only");
  };
}

ReadTyped DeclareModels(CLI::App& app, CommonOptions& common, ModelsOptions& options) {
  app.require_subcommand(1);
  CLI::App& exported = *app.add_subcommand("export", "As a spreadsheet file");
  CLI::App& listed = *app.add_subcommand("list", "As lines, cells between tabs");
  for (CLI::App* command : {&exported, &listed}) AddFolders(*command, common);
  exported.add_option("FILE", options.file, "Spreadsheet file, its name ending in .xlsx")
      ->required();
  return [&common, &options] {
    TakeFolders(common, options);
    RequireSpreadsheet(options.file);
  };
}

ReadTyped DeclareGrid(CLI::App& app, CommonOptions& common, GridOptions& options) {
  AddFolders(app, common);
  const Typed day = AddTyped(app, "--day", "The day, YYYY-MM-DD (today)", "DAY");
  app.add_flag("--json", options.json, "The breaks as one JSON object");
  return [&common, &options, day] {
    TakeFolders(common, options);
    if (day->Given()) options.day = ReadDay("--day", *day);
  };
}

ReadTyped DeclareAffidavit(CLI::App& app, CommonOptions& common, AffidavitOptions& options) {
  AddFolders(app, common);
  app.add_option("--advertiser", options.advertiser, "Whose crosses")
      ->type_name("NAME")
      ->required();
  const Typed first = AddDay(app, "--from", "First day, YYYY-MM-DD");
  const Typed last = AddDay(app, "--to", "Last day, YYYY-MM-DD");
  app.add_option("--csv", options.csv, "The same into a file of comma-separated values")
      ->type_name("FILE");
  app.add_option("--xlsx", options.xlsx, "The same into a spreadsheet, its name ending in .xlsx")
      ->type_name("FILE");
  app.add_flag("--json", options.json, "The answer as one JSON object");
  return [&common, &options, first, last] {
    TakeFolders(common, options);
    RequireSpreadsheet(options.xlsx);
    ReadDays(*first, *last, options.firstDay, options.lastDay);
  };
}

ReadTyped DeclareReport(CLI::App& app, CommonOptions& common, ReportOptions& options) {
  AddFolders(app, common);
  const Typed first = AddDay(app, "--from", "First day, YYYY-MM-DD");
  const Typed last = AddDay(app, "--to", "Last day, YYYY-MM-DD");
  const auto filter = [&app](const char* name, std::string& begin, const char* help) {
    app.add_option(name, begin, help)->type_name("T");
  };
  filter("--artist", options.artist, "Rows whose artist begins so");
  filter("--genre", options.genre, "Rows whose genre begins so");
  filter("--variety", options.variety, "Rows whose variety begins so");
  app.add_flag("--stats", options.stats,
               "How often each title ran and the shares of the varieties, in place of the rows");
  app.add_flag("--json", options.json, "The answer as one JSON object");
  app.add_option("--txt", options.txt, "The same into a text file, cells between tabs")
      ->type_name("FILE");
  app.add_option("--xlsx", options.xlsx,
                 "The same into a spreadsheet; .xlsx is put behind a name without it")
      ->type_name("FILE");
  return [&common, &options, first, last] {
    TakeFolders(common, options);
    ReadDays(*first, *last, options.firstDay, options.lastDay);
  };
}

ReadTyped DeclareSettings(CLI::App& app, CommonOptions& common, SettingsOptions& options) {
  AddFolders(app, common);
  app.require_subcommand(0, 1);
  const auto action = [&](const char* word, const char* text) -> CLI::App& {
    CLI::App& added = *app.add_subcommand(word, text)->fallthrough();
    added.callback([&options, word] { options.action = word; });
    return added;
  };
  CLI::App& get = action("get", "One setting's value");
  CLI::App& set = action("set", "Give a setting a value");
  CLI::App& list = action("list", "All settings: meaning, unit, range, default");
  for (CLI::App* one : {&get, &set})
    one->add_option("NAME", options.name, "As its control or its field is called")->required();
  set.add_option("VALUE", options.value, "Its new value")->required();
  for (CLI::App* told : {&get, &list}) told->add_flag("--json", options.json, "As JSON");
  return [&common, &options] { TakeFolders(common, options); };
}

ReadTyped DeclareImport(CLI::App& app, CommonOptions& common, ImportOptions& options) {
  AddFolders(app, common);
  app.add_option("--kind", options.kind, "Which cards they become: music, jingle or other (music)")
      ->type_name("KIND")
      ->check(CLI::IsMember({"music", "jingle", "other"}));
  app.add_flag("--dry-run", options.dryRun, "Say what would be done, and do nothing");
  app.add_flag("--json", options.json, "The files as one JSON array");
  app.add_option("paths", options.paths, "Sound files, and folders with all that is in them")
      ->type_name("PATH")
      ->required();
  return [&common, &options] { TakeFolders(common, options); };
}

ReadTyped DeclareDevices(CLI::App& app, CommonOptions& common, DevicesOptions& options) {
  AddMachine(app, common);
  app.add_flag("--json", options.json, "The answer as one JSON object");
  return [&common, &options] { options.machine = common.machine; };
}

ReadTyped DeclareCtl(CLI::App& app, CommonOptions& common, CtlOptions& options) {
  AddMachine(app, common);
  app.add_flag("--json", options.json, "The answer as it comes, one JSON object");
  app.add_option("words", options.words,
                 "status, metrics or watch, or an order of a script with its arguments")
      ->type_name("ORDER [ARGS]");
  return [&common, &options] { options.machine = common.machine; };
}

ReadTyped DeclareCompact(CLI::App& app, CommonOptions& common, StationOptions& options) {
  AddFolders(app, common);
  return [&common, &options] { TakeFolders(common, options); };
}

ReadTyped DeclareMove(CLI::App& app, CommonOptions& common, MoveOptions& options) {
  AddFolders(app, common);
  app.add_option("--to", options.to, "The server's URL, postgresql://USER@HOST/BASE, or file")
      ->type_name("URL|file")
      ->required();
  return [&common, &options] {
    TakeFolders(common, options);
    if (options.to == kMoveToFile) return;
    if (const std::string why = WhyNoServerUrl(options.to); !why.empty())
      throw UsageError("--to " + why + ", and is not the word file");
  };
}

ReadTyped DeclareRights(CLI::App& app, CommonOptions& common, RightsOptions& options) {
  AddFolders(app, common);
  app.add_option("RIGHTS", options.rights, "What the role may do: read, work or own")
      ->type_name("read|work|own")
      ->check(CLI::IsMember({"read", "work", "own"}))
      ->required();
  app.add_option("ROLE", options.role, "A role of the server, which is there already")->required();
  return [&common, &options] { TakeFolders(common, options); };
}

}  // namespace zemo
