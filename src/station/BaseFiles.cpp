#include "station/BaseFiles.h"

#include <algorithm>

#include "platform/BaseUse.h"
#include "platform/Folder.h"
#include "station/DayGrid.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/DatabaseFiles.h"
#include "store/Schema.h"
#include "store/StationFile.h"
#include "store/StoreError.h"
#include "store/TableDefs.h"

namespace zemo {

namespace {

void ForgetBase(Station& station) {
  station.base.CheckCnf();
  station.requests.reportInMemory = false;
  station.engine.rollingReport.known = false;
  // Its breaks keep firing until the tick has composed it anew.
  if (station.GPubJour.RowCount() > 0) station.GPubJour.SetCell(0, GridCol::kDateStamp, "");
}

void OpenTables(Station& station, const std::vector<std::string>& known = {}) {
  try {
    station.base.OpenAllTables();
  } catch (const StoreError&) {
    LogCurrentException(station, "OpenAllTables");
  }
  TellGaps(station, known);
}

// Not while a table is gone, which each use of it tells: it may come back as it was.
bool StructureIsOther(Station& station) {
  if (!station.base.IsOpen()) return false;
  try {
    TableDefs& tables = station.base.Db().Tables();
    return tables.ChangedSinceStandIns() &&
           std::all_of(SchemaTables().begin(), SchemaTables().end(),
                       [&](const TableDef& table) { return tables.Has(table.Name); });
  } catch (const StoreError&) {
    return false;  // locked: looked at again
  }
}

// Another tool changed tables of the open base: they are read as they are now.
void FollowStructure(Station& station) {
  if (!StructureIsOther(station)) return;
  const std::vector<std::string> known = station.base.Gaps();
  station.base.CheckCnf();
  OpenTables(station, known);
}

}  // namespace

std::string BaseFileName(const Station& station) {
  const std::string& path = station.base.Path();
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string DatedName(const Station& station, const std::string& head, const std::string& tail) {
  const LocalDateTime now = station.Now();
  return head + std::to_string(now.year) + '-' + TwoDigits(now.month) + '-' + TwoDigits(now.day) +
         ' ' + TwoDigits(now.hour) + TwoDigits(now.minute) + TwoDigits(now.second) + tail;
}

void TellGaps(Station& station, const std::vector<std::string>& known) {
  for (const std::string& gap : station.base.Gaps())
    if (std::find(known.begin(), known.end(), gap) == known.end())
      LogError(station, "OpenAllTables", kErrNoSuchField, gap);
}

std::string WhyNoBase(const Folder& folder, const std::string& name) {
  const std::string path = folder.PathOf(name);
  // A pipe would be waited for until somebody writes into it.
  if (!folder.Exists(name)) return path + " is not a regular file";
  return WhyNoStationBase(path);
}

BaseAlone::BaseAlone(Station& station, int waitMs) : station_(station) {
  BaseUse* use = station.platform.baseUse;
  if (use)
    if (const std::string other = use->TakeAlone(station.base.Path()); !other.empty())
      throw StoreError(kErrLocked, other);
  try {
    if (station.base.IsOpen()) station.base.Db().LetOthersIn();  // the holder below is one
    if (station.base.IsFile() && station.base.IsThere()) HeldDatabase(station.base.Path(), waitMs);
  } catch (const StoreError& error) {
    if (error.Number() != kErrLocked) return;  // whoever works on it will tell
    if (use) use->Share();
    throw;
  }
}

BaseAlone::~BaseAlone() {
  if (station_.platform.baseUse) station_.platform.baseUse->Share();
}

void RemoveBaseFile(Station& station, const std::string& name) {
  station.platform.stationFolder.Remove(name);
  station.platform.stationFolder.Remove(name + BaseFile::kJournal);
}

void SetBaseAside(Station& station) {
  Folder& folder = station.platform.stationFolder;
  const std::string name = BaseFileName(station);
  RemoveBaseFile(station, BaseFile::kBackup);
  const std::string journal = name + BaseFile::kJournal;
  if (folder.Exists(journal))
    folder.Rename(journal, std::string(BaseFile::kBackup) + BaseFile::kJournal);
  folder.Rename(name, BaseFile::kBackup);
}

void ForgetAnswers(Station& station) {
  station.requests.reportInMemory = false;
  station.requests.lastAnswers.reset();
  station.knownCards.reset();
  station.knownReport.reset();
}

void OpenBaseAgain(Station& station) {
  ForgetBase(station);
  if (!station.base.IsThere())
    throw StoreError(kErrNoSuchFile, station.base.Path() + " is missing: the base stays closed");
  station.base.OpenOrCreateDatabase();
  OpenTables(station);
}

bool OpenLostBase(Station& station) {
  const NoLockWait atOnce(station.base.Waiting());
  if (!station.base.OpenDatabaseIfLost()) {
    FollowStructure(station);
    return false;
  }
  ForgetBase(station);
  ForgetAnswers(station);
  OpenTables(station);
  return true;
}

}  // namespace zemo
