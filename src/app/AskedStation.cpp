#include "app/AskedStation.h"

#include <filesystem>
#include <stdexcept>

#include "app/CommandOptions.h"
#include "app/PrivateCopy.h"
#include "app/StationPaths.h"
#include "platform/real/decoders/LengthOnlyOpener.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "settings/SideFiles.h"

namespace zemo {

namespace {
void OpenForQuestion(Station& station) {
  SetSideFileNames(station);
  station.base.OpenOrCreateDatabase();
  station.base.Db().Execute("PRAGMA synchronous = OFF");
  station.base.CreateMissingTables([](const std::string&, int, const std::string&) {});
  station.base.OpenAllTables();
  station.base.SeedFixedRows();
}
}  // namespace

AskedStation::AskedStation(const std::string& station, const std::string& machine)
    : machine_(machine) {
  RequireStation(station);
  folders_.station = temp_.MakeFolder("station");
  folders_.machine = temp_.MakeFolder("machine");
  folders_.changed = temp_.MakeFolder("changed") + "/";
  folders_.copiedFrom = LocalFolder(station).Path();
  CopyStation(station, folders_.station, machine);
  CopyMachine(machine, folders_.machine);
}

AskedStation::AskedStation(const StationOptions& asked)
    : AskedStation(asked.station.empty() ? DefaultStationFolder() : asked.station,
                   AskedMachineFolder(asked.machine)) {}

ShownPaths AskedStation::Paths() const {
  return {{folders_.station + "/", folders_.copiedFrom},
          {folders_.machine + "/", LocalFolder(machine_).Path()}};
}

std::unique_ptr<SimStation> OpenAsked(const AskedStation& asked, const LocalDateTime& at) {
  auto sim = std::make_unique<SimStation>(
      asked.Folders(), at, std::make_unique<LengthOnlyOpener>(std::make_unique<SoundFileOpener>()));
  OpenForQuestion(sim->station);
  return sim;
}

}  // namespace zemo
