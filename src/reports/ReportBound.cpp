#include "reports/ReportBound.h"

#include <algorithm>
#include <limits>

#include "reports/BroadcastReport.h"
#include "station/Station.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr int64_t kFewestAbove = 512;     // rows, where there are as many
constexpr int64_t kWidestWindow = 16384;  // above this the bound moves up

double HighestMoment(Database& db, int64_t above, int64_t upTo) {
  double highest = -std::numeric_limits<double>::infinity();
  db.ReadRows("SELECT MAX(DATENUM) FROM Rapport WHERE CODE > ? AND CODE <= ?", {above, upTo},
              [&](const RowView& row) {
                if (!row.IsNull(0)) highest = row.Real(0);
              });
  return highest;
}

}  // namespace

// Reads the bound anew, or moves it up behind the growing report.
void KeepReportBound(Station& station, int64_t rowsAbove) {
  Database& db = station.base.Db();
  ReportBound& bound = station.requests.report;
  const int64_t above = std::max(kFewestAbove, rowsAbove);
  const int64_t head = NewestReportCode(db).value_or(0);
  const int64_t counter = db.ChangeCounter();
  if (!bound.known || counter < bound.changeCounter || head < bound.code) {
    bound.code = std::max<int64_t>(0, head - above);
    bound.dateNum = HighestMoment(db, std::numeric_limits<int64_t>::min(), bound.code);
    bound.known = true;
  } else if (head - bound.code > std::max(kWidestWindow, 4 * above)) {
    const int64_t code = head - above;
    bound.dateNum = std::max(bound.dateNum, HighestMoment(db, bound.code, code));
    bound.code = code;
  }
  bound.changeCounter = counter;
}

}  // namespace zemo
