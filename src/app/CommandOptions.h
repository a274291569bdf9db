// What can be asked of each command of the program, and how it is written. A command's words are
// declared to the parser; what comes back reads what was typed, once all was parsed, and throws
// UsageError. It touches nothing but the options.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/Clock.h"

namespace CLI {
class App;
}

namespace zemo {

// Wrong usage; what() is one line.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct StationOptions {
  std::string station, machine;  // folders; empty: the default ones
};

// What may stand before the command's name as well as behind it.
struct CommonOptions : StationOptions {
  std::string output = "device";
};

// On air, with or without a screen.
struct AirOptions : CommonOptions {
  std::optional<int64_t> forMs;  // none: until told
  bool cut = false;              // sharply then, in a file
};

struct SimulateOptions : StationOptions {
  std::optional<LocalDateTime> from;  // none: now
  std::optional<int64_t> forMs;       // none: see Simulation.cpp
  std::string script, choices;        // files; empty: none
  std::string trace = "-";
  bool inPlace = false, noStart = false;
};
struct RenderOptions : SimulateOptions {
  std::string audio;  // file
};

// A station that is to be made.
struct NewStationOptions {
  std::string folder;
};

struct WhyOptions : StationOptions {
  std::optional<int32_t> code;      // the card asked about, or ...
  std::optional<int32_t> report;    // ... the row of the report, one of the two
  std::optional<LocalDateTime> at;  // of `code`; none: now
  std::string choices;              // file of a simulation, of `report`; empty: the station's
  bool json = false;
};

struct ModelsOptions : StationOptions {
  std::string file;  // the spreadsheet; empty: lines
};

struct GridOptions : StationOptions {
  std::optional<LocalDateTime> day;  // none: today
  bool json = false;
};

struct AffidavitOptions : StationOptions {
  std::string advertiser;
  LocalDateTime firstDay, lastDay;
  std::string csv, xlsx;  // files; empty: none
  bool json = false;
};

struct ReportOptions : StationOptions {
  LocalDateTime firstDay, lastDay;
  std::string artist, genre, variety;  // beginnings; empty: all
  bool stats = false, json = false;
  std::string txt, xlsx;  // files; empty: none
};

struct SettingsOptions : StationOptions {
  std::string action = "list";  // or "get", "set"
  std::string name, value;
  bool json = false;
};

struct ImportOptions : StationOptions {
  std::string kind = "music";  // or "jingle", "other"
  std::vector<std::string> paths;
  bool dryRun = false, json = false;
};

struct CtlOptions {
  std::string machine;             // empty: the default one
  std::vector<std::string> words;  // a question, or an order with its arguments; empty: status
  bool json = false;
};

inline constexpr char kMoveToFile[] = "file";
struct MoveOptions : StationOptions {
  std::string to;  // "file", or a server's URL
};

struct RightsOptions : StationOptions {
  std::string rights;  // "read", "work" or "own"
  std::string role;    // of the server
};

struct DevicesOptions {
  std::string machine;  // empty: the default one
  bool json = false;
};

using ReadTyped = std::function<void()>;
ReadTyped DeclareAir(CLI::App& app, CommonOptions& common, AirOptions& options);
ReadTyped DeclareSimulate(CLI::App& app, CommonOptions& common, SimulateOptions& options);
ReadTyped DeclareRender(CLI::App& app, CommonOptions& common, RenderOptions& options);
ReadTyped DeclareNewStation(CLI::App& app, CommonOptions& common, NewStationOptions& options);
ReadTyped DeclareCheck(CLI::App& app, CommonOptions& common, StationOptions& options);
ReadTyped DeclareWhy(CLI::App& app, CommonOptions& common, WhyOptions& options);
ReadTyped DeclareModels(CLI::App& app, CommonOptions& common, ModelsOptions& options);
ReadTyped DeclareGrid(CLI::App& app, CommonOptions& common, GridOptions& options);
ReadTyped DeclareAffidavit(CLI::App& app, CommonOptions& common, AffidavitOptions& options);
ReadTyped DeclareReport(CLI::App& app, CommonOptions& common, ReportOptions& options);
ReadTyped DeclareSettings(CLI::App& app, CommonOptions& common, SettingsOptions& options);
ReadTyped DeclareImport(CLI::App& app, CommonOptions& common, ImportOptions& options);
ReadTyped DeclareDevices(CLI::App& app, CommonOptions& common, DevicesOptions& options);
ReadTyped DeclareCompact(CLI::App& app, CommonOptions& common, StationOptions& options);
ReadTyped DeclareCtl(CLI::App& app, CommonOptions& common, CtlOptions& options);
ReadTyped DeclareMove(CLI::App& app, CommonOptions& common, MoveOptions& options);
ReadTyped DeclareRights(CLI::App& app, CommonOptions& common, RightsOptions& options);

// The folders that most commands take.
void AddFolders(CLI::App& app, CommonOptions& common);
void TakeFolders(const CommonOptions& common, StationOptions& options);

}  // namespace zemo
