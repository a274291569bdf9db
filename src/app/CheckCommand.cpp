// `zemoradio check DIR`: says what is missing or broken in a station.
#include <iostream>

#include "app/Commands.h"
#include "app/StationPaths.h"
#include "app/check/Check.h"

namespace zemo {

int RunCheckCommand(const StationCheckOptions& asked) {
  CheckOptions options;
  options.station = asked.folder;
  options.machine = asked.machine.empty() ? DefaultMachineFolder() : asked.machine;
  options.machineNamed = !asked.machine.empty();
  return RunCheck(options, std::cout);
}

}  // namespace zemo
