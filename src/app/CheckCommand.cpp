// `zemoradio check`: says what is missing or broken in a station.
#include <iostream>

#include "app/Commands.h"
#include "app/StationPaths.h"
#include "app/check/Check.h"

namespace zemo {

int RunCheckCommand(const StationOptions& asked) {
  CheckOptions options;
  options.station = asked.station.empty() ? DefaultStationFolder() : asked.station;
  options.machine = AskedMachineFolder(asked.machine);
  return RunCheck(options, std::cout);
}

}  // namespace zemo
