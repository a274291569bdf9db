// The broadcast report: one row of Rapport for every element that went on air.
#pragma once

#include "station/EngineEvents.h"

namespace zemo {

struct Station;

// The row's date, time and DATENUM for now; the other fields empty.
ReportRow NewReportRow(const Station& station);

// By table cursor: markers, jingles, spots, news, pips and other short elements.
void AppendReportRow(Station& station, ReportRow row);
// By query in a transaction: music.
void InsertReportRow(Station& station, ReportRow row);

// Deletes what is older than midnight at the beginning of the day `days` days ago, that midnight
// included. A table that cannot be written stays as it was, for the next call to try again; the
// fault is logged.
void PurgeRapport(Station& station, int64_t days);

}  // namespace zemo
