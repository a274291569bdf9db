// `zemoradio compact`: repairs and compacts a station's base as the monthly run at start does.
#include <iostream>

#include "app/Commands.h"
#include "app/OwnStation.h"
#include "platform/real/files/WholeFiles.h"
#include "station/BaseCompaction.h"

namespace zemo {

int RunCompactCommand(const StationOptions& options) {
  SimStation sim = MakeOwnStation(options, BaseLock::Kind::kProgram);
  Station& station = sim.station;
  const int64_t before = RegularFileSizeBytes(station.base.Path());
  RepairAndCompact(station);
  std::cout << station.base.Path() << ": ";
  if (station.base.IsFile())
    std::cout << before << " bytes, now " << RegularFileSizeBytes(station.base.Path()) << std::endl;
  else
    std::cout << "compacted on its server" << std::endl;
  KeepLastCompaction(station);
  return 0;
}

}  // namespace zemo
