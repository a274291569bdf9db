// The commands of the program, each in its own file, and the one table of them. They give the exit
// status, and throw UsageError for wrong usage and std::exception with one line for work that
// failed.
#pragma once

#include <span>

#include "app/CampaignOptions.h"
#include "app/CommandLine.h"

namespace zemo {

std::span<const Command> Commands();

int OpenScreen(const AirOptions& options);
int RunOnAir(const AirOptions& options);
int RunSimulate(const SimulateOptions& options);
int RunRender(const RenderOptions& options);
int RunDemoCommand(const NewStationOptions& options);
int RunNewCommand(const NewStationOptions& options);
int RunCheckCommand(const StationOptions& asked);
int RunWhyCommand(const WhyOptions& options);
int RunModelsCommand(const ModelsOptions& options);
int RunGridCommand(const GridOptions& options);
int RunImportCommand(const ImportOptions& options);
int RunAffidavitCommand(const AffidavitOptions& options);
int RunReportCommand(const ReportOptions& options);
int RunSettingsCommand(const SettingsOptions& options);
int RunDevicesCommand(const DevicesOptions& options);
int RunCtlCommand(const CtlOptions& options);
int RunCampaignCommand(const CampaignOptions& options);
int RunCompactCommand(const StationOptions& options);
int RunMoveCommand(const MoveOptions& options);
int RunRightsCommand(const RightsOptions& options);

}  // namespace zemo
