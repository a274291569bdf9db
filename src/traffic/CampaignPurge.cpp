#include "traffic/CampaignPurge.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <string>
#include <vector>

#include "platform/EventLoop.h"
#include "station/Station.h"
#include "station/TimeForms.h"
#include "store/SeekCode.h"
#include "store/WholeTransaction.h"
#include "traffic/CampaignGrid.h"

namespace zemo {

namespace {

constexpr size_t kRowsATransaction = 200;

bool HasEnded(const std::string& campagneFin, const std::string& today) {
  return today > TurnedDate(campagneFin);
}

std::vector<int64_t> EndedCampaigns(Station& station, const std::string& today) {
  std::vector<int64_t> codes;
  const auto rows = station.base.Db().OpenRecordset("SELECT CODE, CAMPAGNEFIN FROM GrillePub");
  for (; !rows->Eof(); rows->MoveNext())
    if (HasEnded(rows->Text("CAMPAGNEFIN"), today)) codes.push_back(rows->Int("CODE"));
  return codes;
}

// Looks at each again: another machine may have given the campaign a new end.
void DeleteEnded(Station& station, const int64_t* first, const int64_t* last,
                 const std::string& today) {
  Database& db = station.base.Db();
  const auto table = db.OpenTable("GrillePub");
  WholeTransaction transaction(db);
  for (; first != last; ++first)
    if (SeekCode(*table, *first) && HasEnded(table->Text("CAMPAGNEFIN"), today)) table->Delete();
  transaction.Commit();
}

void DeleteEndedCampaigns(Station& station) {
  const std::string today = DateKey(station.Now());
  const std::vector<int64_t> codes = EndedCampaigns(station, today);
  for (size_t at = 0; at < codes.size(); at += kRowsATransaction) {
    if (at > 0) station.platform.loop.Yield();
    const size_t end = std::min(at + kRowsATransaction, codes.size());
    DeleteEnded(station, codes.data() + at, codes.data() + end, today);
  }
}

}  // namespace

void SuppresionPub(Station& station) {
  Label& info = station.screen.LblProgression;
  try {
    if (station.base.CountRecords("GrillePub") == 0) return;
    info = "ANALYSE DES PUBS - RUBRIQUES...";
    info.visible = true;
    station.base.Tables().GrillePub->SetIndex("PRIORITY");
    DeleteEndedCampaigns(station);
  } catch (const std::exception&) {
    LogCurrentException(station, "SuppresionPub");
  }
  info.visible = false;
}

}  // namespace zemo
