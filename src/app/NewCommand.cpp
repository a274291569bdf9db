// `zemoradio new DIR`: makes a station without music, and says what comes next.
#include <iostream>

#include "app/Commands.h"
#include "app/demo/NewStation.h"

namespace zemo {

int RunNewCommand(const NewStationOptions& options) {
  const std::string folder = MakeNewStation(options.folder);
  std::cout << "new: the station stands in " << folder << "\n"
            << "new: next give it music, files and folders of them:\n"
            << "    zemoradio import --station '" << folder << "' FOLDER\n"
            << "new: then look it over and put it on air:\n"
            << "    zemoradio check '" << folder << "'\n"
            << "    zemoradio --station '" << folder << "'" << std::endl;
  return 0;
}

}  // namespace zemo
