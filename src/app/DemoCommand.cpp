// `zemoradio demo DIR`: makes a demo station.
#include <iostream>

#include "app/CommandLine.h"
#include "app/Commands.h"
#include "app/StationPaths.h"
#include "app/demo/Demo.h"

namespace zemo {

int RunDemoCommand(const CommandLine& line) {
  RefuseIrregularBase(line.folder);
  return RunDemo(line.folder, std::cout, std::cerr);
}

}  // namespace zemo
