#include "engine/BaseMaintenance.h"

#include <exception>

#include "station/Station.h"
#include "traffic/CampaignImport.h"

namespace zemo {

// Every base is of the present structure yet, and none is handed over by another machine.
void CheckStructures(Station&) {}
void CompactageTriskin(Station&) {}

void SurveilleNewBase(Station& station) {
  if (!station.base.IsOpen()) return;
  try {
    ImportExportPubs(station);
  } catch (const std::exception&) {
    LogCurrentException(station, "SurveilleNewBase");
  }
}

}  // namespace zemo
