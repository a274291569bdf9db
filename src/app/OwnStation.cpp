#include "app/OwnStation.h"

#include <memory>

#include "app/CommandOptions.h"
#include "app/StationPaths.h"
#include "platform/real/decoders/LengthOnlyOpener.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/desktop/RealClock.h"
#include "settings/SideFiles.h"

namespace zemo {

SimStation MakeOwnStation(const StationOptions& asked, BaseLock::Kind kind) {
  SimFolders folders;
  folders.station = asked.station.empty() ? DefaultStationFolder() : asked.station;
  folders.machine = asked.machine.empty() ? DefaultMachineFolder() : asked.machine;
  folders.asProgram = kind == BaseLock::Kind::kProgram;
  RequireStation(folders.station);
  return SimStation(folders, RealClock().LocalNow(),
                    std::make_unique<LengthOnlyOpener>(std::make_unique<SoundFileOpener>()));
}

void OpenOwnBase(Station& station) {
  SetSideFileNames(station);
  station.base.OpenOrCreateDatabase();
  station.base.OpenAllTables();
}

}  // namespace zemo
