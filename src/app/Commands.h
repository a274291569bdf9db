// The commands of the program, each in its own file. They give the exit status, and throw
// UsageError for wrong usage and std::exception with one line for work that failed.
#pragma once

namespace zemo {

struct CommandLine;

int OpenScreen(const CommandLine& line);
int RunOnAir(const CommandLine& line);
int RunSimulate(const CommandLine& line);
int RunRender(const CommandLine& line);
int RunDemoCommand(const CommandLine& line);
int RunCheckCommand(const CommandLine& line);
int RunWhyCommand(const CommandLine& line);
int RunGridCommand(const CommandLine& line);
int RunAffidavitCommand(const CommandLine& line);
int RunModelsExport(const CommandLine& line);
int RunModelsList(const CommandLine& line);
int RunSettingsCommand(const CommandLine& line);
int RunDevicesCommand(const CommandLine& line);
int RunCampaignCommand(const CommandLine& line);
int RunCompactCommand(const CommandLine& line);

}  // namespace zemo
