#include "traffic/CampaignPurge.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <string>
#include <vector>

#include "platform/EventLoop.h"
#include "platform/Folder.h"
#include "station/Station.h"
#include "station/TimeForms.h"
#include "store/SeekCode.h"
#include "traffic/CampaignArchive.h"
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

// A row as it was archived.
struct Archived {
  int64_t code = 0;
  std::string record;
};

// One that cannot be kept stays in the table, and keeps no other one from its end.
bool IsArchived(Station& station, const CampaignForm& form) {
  try {
    ArchiveCampaign(station, form);
    return true;
  } catch (const FileError&) {
    LogCurrentException(station, "SuppresionPub", form.ChAnnonceur);
    return false;
  }
}

// Those of the numbers that are still there and ended, each kept before anything is deleted. The
// files wait for the disk: a yield behind each.
std::vector<Archived> Archive(Station& station, const int64_t* first, const int64_t* last,
                              const std::string& today) {
  std::vector<Archived> archived;
  const auto table = station.base.Db().OpenTable("GrillePub");
  for (; first != last; ++first) {
    if (!SeekCode(*table, *first) || !HasEnded(table->Text("CAMPAGNEFIN"), today)) continue;
    CampaignForm form;
    ReadCampaignRecord(*table, form);
    if (IsArchived(station, form)) archived.push_back({*first, CampaignRecordText(form)});
    station.platform.loop.Yield();
  }
  return archived;
}

// Looks at each again: another machine may have changed the campaign, which then waits for the next
// purge.
void Delete(Station& station, const std::vector<Archived>& archived) {
  Database& db = station.base.Db();
  const auto table = db.OpenTable("GrillePub");
  Transaction transaction(db);
  for (const Archived& row : archived) {
    if (!SeekCode(*table, row.code)) continue;
    CampaignForm form;
    ReadCampaignRecord(*table, form);
    if (CampaignRecordText(form) == row.record) table->Delete();
  }
  transaction.Commit();
}

void DeleteEndedCampaigns(Station& station) {
  const std::string today = DateKey(station.Now());
  const std::vector<int64_t> codes = EndedCampaigns(station, today);
  for (size_t at = 0; at < codes.size(); at += kRowsATransaction) {
    const size_t end = std::min(at + kRowsATransaction, codes.size());
    Delete(station, Archive(station, codes.data() + at, codes.data() + end, today));
  }
}

}  // namespace

void PurgeEndedCampaigns(Station& station) {
  auto& info = station.notices.progress;
  const bool shows = !info.visible;  // else a composition tells of itself there
  try {
    if (station.base.CountRecords("GrillePub") == 0) return;
    if (shows) {
      info.text = "ANALYSE DES PUBS - RUBRIQUES...";
      info.visible = true;
    }
    station.base.RequireTable("GrillePub");
    DeleteEndedCampaigns(station);
  } catch (const std::exception&) {
    LogCurrentException(station, "SuppresionPub");
  }
  if (shows) info.visible = false;
}

}  // namespace zemo
