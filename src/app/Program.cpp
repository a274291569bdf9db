#include "app/Program.h"

#include <exception>

#include "app/CommandLine.h"
#include "app/Commands.h"
#include "app/ErrorLine.h"

namespace zemo {

namespace {
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

int Dispatch(const CommandLine& line) {
  switch (line.command) {
    case Command::kScreen:
      return OpenScreen(line);
    case Command::kRun:
      return RunOnAir(line);
    case Command::kSimulate:
      return RunSimulate(line);
    case Command::kRender:
      return RunRender(line);
    case Command::kDemo:
      return RunDemoCommand(line);
    case Command::kCheck:
      return RunCheckCommand(line);
    case Command::kWhy:
      return RunWhyCommand(line);
    case Command::kGrid:
      return RunGridCommand(line);
    case Command::kAffidavit:
      return RunAffidavitCommand(line);
    case Command::kModelsExport:
      return RunModelsExport(line);
    case Command::kModelsList:
      return RunModelsList(line);
    case Command::kSettings:
      return RunSettingsCommand(line);
    case Command::kDevices:
      return RunDevicesCommand(line);
    case Command::kCampaign:
      return RunCampaignCommand(line);
    case Command::kCompact:
      return RunCompactCommand(line);
  }
  return kWrongUsage;
}
}  // namespace

int RunProgram(int argc, const char* const* argv) {
  try {
    const auto line = ParseCommandLine(argc, argv);
    return line ? Dispatch(*line) : 0;
  } catch (const UsageError& error) {
    PrintError(error.what());
    return kWrongUsage;
  } catch (const std::exception& error) {
    PrintError(error.what());
    return kFailed;
  }
}

}  // namespace zemo
