#include "reports/ReportPurge.h"

#include <exception>
#include <string>

#include "station/Station.h"
#include "station/TimeForms.h"

namespace zemo {

void PurgeRapport(Station& station, int64_t days) {
  try {
    const LocalDateTime now = station.Now();
    const auto limit = static_cast<int64_t>(DaySerial(now.year, now.month, now.day)) - days;
    Database& db = station.base.Db();
    Transaction transaction(db);
    db.Execute("DELETE * FROM Rapport WHERE DATENUM <= " + std::to_string(limit));
    transaction.Commit();
  } catch (const std::exception&) {
    LogCurrentException(station, "PurgeRapport");
  }
}

}  // namespace zemo
