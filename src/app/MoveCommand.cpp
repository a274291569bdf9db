// `zemoradio move`: carries a station's base to a server, or back into its file.
#include <cstdio>
#include <iostream>
#include <stdexcept>

#include "app/Commands.h"
#include "app/ErrorLine.h"
#include "app/OwnStation.h"
#include "app/ServerLink.h"
#include "platform/Folder.h"
#include "reports/AirWriteJournal.h"
#include "station/BaseMove.h"
#include "station/BasePlaces.h"

namespace zemo {

namespace {

void TellTable(const TableSum& sum) {
  char checksum[20];
  std::snprintf(checksum, sizeof checksum, "%016llx",
                static_cast<unsigned long long>(sum.checksum));
  std::cout << sum.table << ": " << sum.rows << " rows, checksum " << checksum << std::endl;
}

// They are kept for a base of this name, and it is about to have another one.
void RefuseKeptRows(const Station& station) {
  if (station.platform.machineFolder.Exists(JournalName(station)))
    throw std::runtime_error("the base has still to take rows that were aired, in " +
                             station.platform.machineFolder.PathOf(JournalName(station)) +
                             ": start the station once");
}

// They are in the replica of a base that is about to be another one.
void RefuseWaitingWrites(const Station& station) {
  const BasePlace place = PlaceOfBase(station.platform.stationFolder);
  if (place.isFile || !place.fault.empty()) return;
  if (const int64_t waiting = ServerLink::WaitingIn(station.platform.machineFolder.Path(), place);
      waiting > 0)
    throw std::runtime_error("the server has still to take " + std::to_string(waiting) +
                             " writes of this machine: start the station once");
}

}  // namespace

int RunMoveCommand(const MoveOptions& options) {
  SimStation sim = MakeOwnStation(options, BaseLock::Kind::kProgram);
  RefuseKeptRows(sim.station);
  RefuseWaitingWrites(sim.station);
  const MovedBase moved = options.to == kMoveToFile
                              ? MoveBaseToFile(sim.station, TellTable)
                              : MoveBaseToServer(sim.station, options.to, TellTable);
  std::cout << "the base is now " << moved.to << "; as it was it is kept as " << moved.backup
            << std::endl;
  if (!moved.notice.empty()) PrintError(moved.notice);
  return 0;
}

}  // namespace zemo
