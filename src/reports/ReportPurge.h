// The report kept to size.
#pragma once

#include <cstdint>
#include <optional>

namespace zemo {

struct Station;

// Deletes the rows up to midnight of the day that lies that many days back, 0 being today, and
// keeps that day in "ReportBegin.Txt" before. A report that is not known yet
// (reports/KnownReport.h) is left for later. A fault is logged and leaves the table as it was.
// Thread: the logic's.
void PurgeReport(Station& station, int64_t days);
// What PurgeReport left for later, up to the day of then. For each tick that has read on.
void PurgeReportOnceKnown(Station& station);

// What the report has left of the past.
class ReportSpan {
 public:
  // A report that was purged before its begin was kept tells it by the number of its first row.
  // Throws StoreError and FileError.
  explicit ReportSpan(Station& station);
  // False where what aired at that moment, a day serial, is gone by a purge.
  bool Covers(double serial) const { return serial > limit_ || serial >= first_; }

 private:
  double first_;      // DATENUM of the first row
  double limit_ = 0;  // up to it a purge took all rows
};

}  // namespace zemo
