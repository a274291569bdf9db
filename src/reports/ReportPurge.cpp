#include "reports/ReportPurge.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <optional>
#include <string>

#include "platform/Folder.h"
#include "reports/ReportBound.h"
#include "settings/SideFileIo.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr const char* kPurgeRoutine = "PurgeRapport";
constexpr const char* kBeginFile = "ReportBegin.Txt";  // the day up to which nothing is left

int64_t LimitOf(Station& station, int64_t days) {
  const LocalDateTime now = station.Now();
  return static_cast<int64_t>(DaySerial(now.year, now.month, now.day)) - days;
}

// 0 where no purge kept one, or where it cannot be read.
int64_t KeptLimit(Station& station) {
  std::optional<std::string> text;
  try {
    text = ReadSideFile(station.platform.stationFolder, kBeginFile);
  } catch (const FileError&) {
    LogCurrentException(station, kPurgeRoutine);
  }
  const std::string day = text ? DateKeyOfText(text->substr(0, 10)) : std::string();
  if (day.empty()) return 0;
  return static_cast<int64_t>(
      DaySerial(ValInt(day.substr(0, 4)), ValInt(day.substr(4, 2)), ValInt(day.substr(6, 2))));
}

// A base that came from another station may have a longer report: only a later day is kept. The
// purge goes on without it.
void KeepLimit(Station& station, int64_t limit) {
  if (limit <= KeptLimit(station)) return;
  try {
    WriteSideFileDurably(station.platform.stationFolder, kBeginFile,
                         DateText(FromDateSerial(static_cast<double>(limit))) + "\r\n");
  } catch (const FileError&) {
    LogCurrentException(station, kPurgeRoutine);
  }
}

// What was looked for once in the older part of the report is not looked for there again.
bool HasRowsUpTo(Station& station, int64_t limit) {
  KeepReportBound(station, 0);
  const ReportBound& bound = station.requests.report;
  const bool all = bound.oldest <= static_cast<double>(limit);
  bool found = false;
  station.base.Db().ReadRows("SELECT TOP 1 CODE FROM Rapport WHERE CODE > ? AND DATENUM <= ?",
                             {all ? std::numeric_limits<int64_t>::min() : bound.code, limit},
                             [&](const RowView&) { found = true; });
  return found;
}

void NoteNoneUpTo(Station& station, int64_t limit) {
  double& oldest = station.requests.report.oldest;
  const auto last = static_cast<double>(limit);
  oldest = std::max(oldest, std::nextafter(last, last + 1));
}

}  // namespace

void PurgeReport(Station& station, int64_t days) {
  try {
    const int64_t limit = LimitOf(station, days);
    Database& db = station.base.Db();
    const bool found = HasRowsUpTo(station, limit);
    if (found) KeepLimit(station, limit);
    // A report without its moments says so: they are not guessed.
    if (found || !db.HasColumn("Rapport", "DATENUM")) {
      Transaction transaction(db);
      db.Execute("DELETE * FROM Rapport WHERE DATENUM <= ?", {limit});
      transaction.Commit();
    }
    NoteNoneUpTo(station, limit);
  } catch (const std::exception&) {
    LogCurrentException(station, kPurgeRoutine);
  }
}

ReportSpan::ReportSpan(Station& station) : first_(std::numeric_limits<double>::infinity()) {
  bool rowsAreGone = false;
  station.base.Db().ReadRows(
      "SELECT TOP 1 DATENUM, CODE FROM Rapport WHERE DATENUM > 0 "
      "ORDER BY DATENUM, CODE",
      [&](const RowView& row) {
        first_ = row.Real(0);
        rowsAreGone = row.Int(1) > 1;
      });
  limit_ = static_cast<double>(KeptLimit(station));
  if (limit_ == 0 && rowsAreGone)
    limit_ = static_cast<double>(LimitOf(station, station.base.CnfInt(Cnf::kPurgeRapport)));
}

}  // namespace zemo
