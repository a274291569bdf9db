#include "reports/ReportPurge.h"

#include <exception>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "platform/Folder.h"
#include "reports/KnownReport.h"
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

// A CODE up to which all rows up to the limit stand; none where there is none of these.
std::optional<int64_t> LastRowUpTo(Station& station, int64_t limit, bool known) {
  if (known) return station.knownReport->LastUpTo(static_cast<double>(limit));
  std::optional<int64_t> code;
  station.base.Db().ReadRows("SELECT TOP 1 CODE FROM Rapport WHERE DATENUM <= ? ORDER BY CODE DESC",
                             {limit}, [&](const RowView& row) { code = row.Int(0); });
  return code;
}

void DeleteUpTo(Database& db, int64_t limit, int64_t lastCode) {
  Transaction transaction(db);
  db.Execute("DELETE * FROM Rapport WHERE CODE <= ? AND DATENUM <= ?", {lastCode, limit});
  transaction.Commit();
}

}  // namespace

void PurgeReport(Station& station, int64_t days) {
  station.engine.reportPurgeLimit = LimitOf(station, days);
  PurgeReportOnceKnown(station);
}

// The limit stays that of the day on which the purge was due: until the report is known a preview
// may set another date.
void PurgeReportOnceKnown(Station& station) {
  if (!station.engine.reportPurgeLimit) return;
  try {
    const KnownReport::State state = LookAtReport(station);
    if (state == KnownReport::State::kBeingRead) return;
    const int64_t limit = *std::exchange(station.engine.reportPurgeLimit, std::nullopt);
    Database& db = station.base.Db();
    const auto last = LastRowUpTo(station, limit, state == KnownReport::State::kKnown);
    if (last) KeepLimit(station, limit);
    // A report without its moments says so: they are not guessed.
    if (last || !db.HasColumn("Rapport", "DATENUM")) DeleteUpTo(db, limit, last.value_or(0));
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
