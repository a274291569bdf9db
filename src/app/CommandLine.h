// The command line: what was asked of the program, checked as far as it can be without touching
// anything.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>

#include "app/CampaignOptions.h"
#include "platform/Clock.h"

namespace zemo {

enum class Command {
  kScreen,
  kRun,
  kSimulate,
  kRender,
  kDemo,
  kCheck,
  kWhy,
  kGrid,
  kSettings,
  kCampaign,
  kModelsExport,
  kModelsList,
  kAffidavit,
  kDevices,
  kCompact
};

struct CommandLine {
  Command command = Command::kScreen;
  std::string station;  // folder; empty: the default one
  std::string machine;  // folder; empty: the default one, for a simulation an empty one of its own
  std::string output = "device";
  std::optional<LocalDateTime> from;  // begin of a simulation; none: now
  std::optional<int64_t> forMs;  // how long; none: until told, a simulation see SimulateCommand
  std::string script;            // file; empty: none
  std::string trace = "-";
  std::string choices;  // file: of a simulation to be made, of why to be read; empty: none
  std::string audio;    // file of render
  std::string file;     // spreadsheet of models export and affidavit
  std::string folder;   // of demo and check
  bool inPlace = false;
  bool noStart = false;
  std::optional<int32_t> code;       // of why: the card asked about, or ...
  std::optional<int32_t> report;     // ... the row of the report, one of the two
  std::optional<LocalDateTime> at;   // of why; none: now
  std::optional<LocalDateTime> day;  // of grid; none: today
  std::string advertiser;            // of affidavit, and its days, which it needs
  std::optional<LocalDateTime> firstDay, lastDay;
  std::string csv;            // file of affidavit; empty: none
  std::string settingAction;  // of settings: "get", "set" or "list"
  std::string settingName, settingValue;
  bool json = false;
  CampaignOptions campaign;
};

// Wrong usage; what() is one line.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// nullopt when help or the version was asked for, and shown. Throws UsageError.
std::optional<CommandLine> ParseCommandLine(int argc, const char* const* argv);

}  // namespace zemo
