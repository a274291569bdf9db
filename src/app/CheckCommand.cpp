// `zemoradio check DIR`: says what is missing or broken in a station.
#include <iostream>

#include "app/CommandLine.h"
#include "app/Commands.h"
#include "app/StationPaths.h"
#include "app/check/Check.h"

namespace zemo {

int RunCheckCommand(const CommandLine& line) {
  CheckOptions options;
  options.station = line.folder;
  options.machine = line.machine.empty() ? DefaultMachineFolder() : line.machine;
  options.machineNamed = !line.machine.empty();
  return RunCheck(options, std::cout);
}

}  // namespace zemo
