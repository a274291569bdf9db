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

}  // namespace zemo
