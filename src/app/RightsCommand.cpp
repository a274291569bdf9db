// `zemoradio rights`: what a role of the server may do with the station's base.
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "app/Commands.h"
#include "app/ErrorLine.h"
#include "app/StationPaths.h"
#include "platform/real/files/LocalFolder.h"
#include "station/BasePlaces.h"
#include "store/postgres/PostgresDatabase.h"
#include "store/replica/ServerUpkeep.h"

namespace zemo {

namespace {
constexpr int kRightsWaitMs = 5000;  // for others who write
}  // namespace

int RunRightsCommand(const RightsOptions& options) {
  static const std::map<std::string_view, Rights> kByName = {
      {"read", Rights::kRead}, {"work", Rights::kWork}, {"own", Rights::kOwn}};
  const std::string station = options.station.empty() ? DefaultStationFolder() : options.station;
  RequireStation(station);
  const BasePlace place = PlaceOfBase(LocalFolder(station));
  if (!place.fault.empty()) throw std::runtime_error(place.fault);
  if (place.isFile)
    throw std::runtime_error("the base of " + station + " is a file: its rights are the folder's");
  const auto base = ClosedPostgresDatabase(place.url, std::make_shared<LockWait>(kRightsWaitMs));
  // Who works can make no table: all of them are there from now on.
  std::vector<std::string> told;
  BringBaseUpToDate(place.url, [&told](const std::string& line) { told.push_back(line); });
  base->Open(false);
  base->GiveRights(kByName.at(options.rights), options.role);
  for (const std::string& line : told) PrintError(line);
  std::cout << options.role << " may " << options.rights << " " << place.name << std::endl;
  return 0;
}

}  // namespace zemo
