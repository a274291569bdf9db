#include "reports/RollingReport.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/LocalValues.h"
#include "reports/BroadcastReport.h"
#include "reports/KnownReport.h"
#include "settings/SideFileIo.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr const char* kFile = "rapportzemo.txt";
constexpr int kRowsByDefault = 20;
constexpr std::string_view kFields =
    "LADATE, Heure, Auteur, Titre, Genre, Variete, AuteurCompositeur, Label, Reference, DATENUM, "
    "Code";
constexpr int kFieldCount = 9;  // of the file; the moment and the code stand behind them

using Rows = std::vector<RollingRows::Row>;

std::string TabbedLine(const RowView& row) {
  std::string line;
  for (int field = 0; field < kFieldCount; ++field) line += OneLine(row.Text(field)) + "\t";
  return line;
}

RollingRows::Row Taken(const RowView& row) {
  const double moment =
      row.IsNull(kFieldCount) ? -std::numeric_limits<double>::infinity() : row.Real(kFieldCount);
  return {moment, row.Int(kFieldCount + 1), TabbedLine(row)};
}

Rows ReadRows(Station& station, const std::string& top, const std::string& which,
              const Values& values) {
  Rows rows;
  station.base.Db().ReadRows(
      "SELECT " + top + std::string(kFields) + " FROM Rapport WHERE " + which, values,
      [&](const RowView& row) { rows.push_back(Taken(row)); });
  return rows;
}

Rows NewestAbove(Station& station, int64_t code, int64_t count) {
  return ReadRows(station, "TOP ? ", "Code > ? ORDER BY DATENUM DESC, Code DESC", {count, code});
}

// No older row is among the newest: there is none, or none of a later moment.
bool Proved(const Rows& rows, int64_t count, const OlderRows& older) {
  if (older.rows == 0) return true;
  return !older.odd && static_cast<int64_t>(rows.size()) == count &&
         rows.back().moment > older.newest;
}

// Of the last stretch of the report, of all of it only where older rows may be newer. What comes
// between the questions is there twice, not missing.
void ReadAnew(Station& station, RollingRows& rolling, int64_t count) {
  rolling.known = false;
  const KnownReport::State state = LookAtReport(station);
  const int64_t head = NewestReportCode(station.base.Db()).value_or(0);
  rolling.ahead = state == KnownReport::State::kBeingRead;
  const int64_t floor = rolling.ahead ? head - KnownReport::Sizes().window - count
                        : state == KnownReport::State::kKnown ? station.knownReport->Floor()
                                                              : KnownReport::kBelowAll;
  rolling.rows = NewestAbove(station, floor, count);
  if (state == KnownReport::State::kKnown &&
      !Proved(rolling.rows, count, station.knownReport->Older()))
    rolling.rows = NewestAbove(station, KnownReport::kBelowAll, count);
  rolling.head = head;
  rolling.count = count;
  rolling.known = true;
}

// False when one of them is gone or has another moment: older ones move up then.
bool ReadKnownAgain(Station& station, Rows& rows) {
  for (RollingRows::Row& row : rows) {
    Rows now = ReadRows(station, "", "Code = ?", {row.code});
    if (now.size() != 1 || now.front().moment != row.moment) return false;
    row.line = std::move(now.front().line);
  }
  return true;
}

// Rows of one moment stand newest first as well.
bool NewerThan(const RollingRows::Row& a, const RollingRows::Row& b) {
  return a.moment != b.moment ? a.moment > b.moment : a.code > b.code;
}

void TakeNewRows(Station& station, RollingRows& rolling) {
  for (RollingRows::Row& row :
       ReadRows(station, "", "Code > ? ORDER BY Code", {std::max<int64_t>(rolling.head, 0)})) {
    rolling.head = row.code;
    const auto place = std::lower_bound(rolling.rows.begin(), rolling.rows.end(), row, NewerThan);
    if (place != rolling.rows.end() && place->code == row.code) continue;
    rolling.rows.insert(place, std::move(row));
  }
  if (rolling.rows.size() > static_cast<size_t>(rolling.count))
    rolling.rows.resize(static_cast<size_t>(rolling.count));
}

// After the first time a row or two are read, however long the report is.
const Rows& NewestRows(Station& station, int64_t count) {
  RollingRows& rolling = station.engine.rollingReport;
  if (!rolling.known || rolling.count != count || !ReadKnownAgain(station, rolling.rows))
    ReadAnew(station, rolling, count);
  TakeNewRows(station, rolling);
  return rolling.rows;
}

std::vector<std::string> NewestLines(Station& station, int64_t count) {
  std::vector<std::string> lines;
  for (const RollingRows::Row& row : NewestRows(station, count)) lines.push_back(row.line);
  return lines;
}

}  // namespace

void ExportReportOnceKnown(Station& station) {
  RollingRows& rolling = station.engine.rollingReport;
  if (!rolling.ahead || LookAtReport(station) == KnownReport::State::kBeingRead) return;
  rolling.ahead = rolling.known = false;
  ExportReport(station);
}

void ExportReport(Station& station) {
  try {
    const int64_t count = station.platform.localValues.GetInt("XRapport", kRowsByDefault);
    if (count <= 0) return;
    WriteSideFile(station.platform.stationFolder, kFile, JoinLines(NewestLines(station, count)));
  } catch (const std::exception&) {
    LogCurrentException(station, "ExportRapport", "Problème de création du rapport de ");
  }
}

}  // namespace zemo
