// `zemoradio demo DIR`: makes a demo station.
#include <iostream>

#include "app/Commands.h"
#include "app/StationPaths.h"
#include "app/demo/Demo.h"

namespace zemo {

int RunDemoCommand(const NewStationOptions& options) {
  RefuseIrregularBase(options.folder);
  return RunDemo(options.folder, std::cout, std::cerr);
}

}  // namespace zemo
