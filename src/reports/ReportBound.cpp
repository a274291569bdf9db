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

// Takes the rows in between in; none of them has a moment in an empty stretch.
void TakeIn(Database& db, ReportBound& bound, int64_t above, int64_t upTo) {
  db.ReadRows("SELECT MAX(DATENUM), MIN(DATENUM) FROM Rapport WHERE CODE > ? AND CODE <= ?",
              {above, upTo}, [&](const RowView& row) {
                if (row.IsNull(0)) return;
                bound.dateNum = std::max(bound.dateNum, row.Real(0));
                bound.oldest = std::min(bound.oldest, row.Real(1));
              });
  bound.code = upTo;
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
    constexpr double kNever = std::numeric_limits<double>::infinity();
    bound = {};
    bound.dateNum = -kNever;
    bound.oldest = kNever;
    TakeIn(db, bound, std::numeric_limits<int64_t>::min(), std::max<int64_t>(0, head - above));
    bound.known = true;
  } else if (head - bound.code > std::max(kWidestWindow, 4 * above)) {
    TakeIn(db, bound, bound.code, head - above);
  }
  bound.changeCounter = counter;
}

}  // namespace zemo
