// Where a run on this machine stands, made where they are missing, and the output it was set to.
#pragma once

#include <string>

#include "platform/real/files/EngineLock.h"
#include "platform/real/sound/OutputSpec.h"

namespace zemo {

struct AirOptions;
struct StationOptions;

struct RunFolders {
  std::string station, machine;
  EngineLock lock;  // of the machine's
};

// Throws std::runtime_error without a station's folder, or where another engine has the machine's:
// before anything is written. A machine folder that cannot be made costs its values, not the air,
// and is told on standard error.
RunFolders MakeRunFolders(const StationOptions& options);

// The output by its words alone, for whoever looks at them ahead of all work. Throws UsageError.
OutputSpec AskedOutput(const AirOptions& options);
// The output that was asked for; a device without a name is the one that the machine's
// settings chose, none for the system's own. A choice that is only a number is remembered by its
// device from now on. Throws UsageError.
OutputSpec WantedOutput(const AirOptions& options, const std::string& machinePath);

}  // namespace zemo
