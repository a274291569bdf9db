// The broadcast report: one row of Rapport for every element that went on air.
#pragma once

#include <cstdint>
#include <optional>

#include "station/EngineEvents.h"

namespace zemo {

class Database;
class Recordset;
struct Station;

// The row's date, time and DATENUM for now; the other fields empty.
ReportRow NewReportRow(const Station& station);

// The highest CODE of the report, nothing where it has no row; throws StoreError.
std::optional<int64_t> NewestReportCode(Database& db);

void SetMoment(ReportRow& row, const Station& station);  // to now
// The texts of a music title's row, from its card.
ReportRow ReportOfCard(const Recordset& card);

// Write the row and return it with its CODE; throw StoreError.
// By table cursor: markers, jingles, spots, news, pips and other short elements.
ReportRow AppendReportRow(Station& station, ReportRow row);
// By query: music.
ReportRow InsertReportRow(Station& station, ReportRow row);

}  // namespace zemo
