// Whether this machine writes the broadcast report, or is one on which the station's programme is
// only prepared.
#include <exception>

#include "platform/Folder.h"
#include "platform/LocalValues.h"
#include "settings/SideFiles.h"
#include "station/Station.h"

namespace zemo {

namespace {

bool MarkedNoReport(Station& station) {
  try {
    return station.platform.machineFolder.Exists("NoRapport.txt");
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadMachineState");
    return false;
  }
}

bool MarkedProduction(Station& station) {
  try {
    return station.platform.localValues.GetBool("PCProduction", false);
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadMachineState");
    return false;
  }
}

}  // namespace

void LoadMachineState(Station& station) {
  const bool noReport = MarkedNoReport(station);
  if (noReport) {
    station.notices.noReport = true;
    station.notices.ticker = "NO RAPPORT  -  RAPPORT DISABLE  -  NO RAPPORT";
  }
  station.engine.PCProduction = MarkedProduction(station);
  station.engine.ReportsDisabled = noReport || station.engine.PCProduction;
}

}  // namespace zemo
