#include "app/AskedStation.h"

#include <filesystem>
#include <stdexcept>

#include "app/CommandLine.h"
#include "app/PrivateCopy.h"
#include "app/StationPaths.h"
#include "settings/SideFiles.h"

namespace zemo {

AskedStation::AskedStation(const CommandLine& line)
    : from_(line.station.empty() ? DefaultStationFolder() : line.station),
      machine_(line.machine.empty() ? DefaultMachineFolder() : line.machine) {
  RequireStation(from_);
  if (!line.machine.empty() && !std::filesystem::is_directory(machine_))
    throw std::runtime_error("there is no machine folder " + machine_);
  folders_.station = temp_.MakeFolder("station");
  folders_.machine = temp_.MakeFolder("machine");
  folders_.changed = temp_.MakeFolder("changed") + "/";
  folders_.copiedFrom = LocalFolder(from_).Path();
  CopyStation(from_, folders_.station);
  CopyFiles(machine_, folders_.machine);
}

ShownPaths AskedStation::Paths() const {
  return {{folders_.station + "/", folders_.copiedFrom},
          {folders_.machine + "/", LocalFolder(machine_).Path()}};
}

void OpenForQuestion(Station& station) {
  SetSideFileNames(station);
  station.base.OpenOrCreateDatabase();
  station.base.Db().Execute("PRAGMA synchronous = OFF");
  station.base.CreateMissingTables([](const std::string&, int, const std::string&) {});
  station.base.OpenAllTables();
  station.base.SeedFixedRows();
}

}  // namespace zemo
