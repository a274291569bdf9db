// `zemoradio compact`: repairs and compacts a station's base as the monthly run at start does.
#include <filesystem>
#include <iostream>
#include <memory>

#include "app/Commands.h"
#include "app/SimStation.h"
#include "app/StationPaths.h"
#include "platform/real/decoders/LengthOnlyOpener.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/desktop/RealClock.h"
#include "platform/real/files/WholeFiles.h"
#include "station/BaseCompaction.h"

namespace zemo {

int RunCompactCommand(const StationOptions& options) {
  SimFolders folders;
  folders.station = options.station.empty() ? DefaultStationFolder() : options.station;
  folders.machine = options.machine.empty() ? DefaultMachineFolder() : options.machine;
  folders.asProgram = true;
  RequireStation(folders.station);
  SimStation sim(folders, RealClock().LocalNow(),
                 std::make_unique<LengthOnlyOpener>(std::make_unique<SoundFileOpener>()));
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
