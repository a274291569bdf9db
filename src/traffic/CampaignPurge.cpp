#include "traffic/CampaignPurge.h"

#include <exception>

#include "station/Station.h"
#include "station/TimeForms.h"
#include "traffic/CampaignGrid.h"

namespace zemo {

namespace {

void DeleteEndedCampaigns(Station& station) {
  Recordset& table = *station.base.Tables().GrillePub;
  table.SetIndex("PRIORITY");
  const std::string today = DateKey(station.Now());
  for (table.MoveFirst(); !table.Eof(); table.MoveNext())
    if (today > TurnedDate(table.Text("CAMPAGNEFIN"))) table.Delete();
}

}  // namespace

void SuppresionPub(Station& station) {
  Label& info = station.screen.LblProgression;
  try {
    if (station.base.CountRecords("GrillePub") == 0) return;
    info = "ANALYSE DES PUBS - RUBRIQUES...";
    info.visible = true;
    DeleteEndedCampaigns(station);
  } catch (const std::exception&) {
    LogCurrentException(station, "SuppresionPub");
  }
  info.visible = false;
}

}  // namespace zemo
