#include "reports/TodaysReport.h"

#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "station/Station.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

std::vector<BrowseRow> RowsSince(Station& station, double serial) {
  std::vector<BrowseRow> rows;
  station.base.Db().ReadRows(
      "SELECT Auteur, Titre, Genre, Variete FROM Rapport WHERE DATENUM >= ? "
      "ORDER BY DATENUM DESC, Code DESC",
      {serial}, [&](const RowView& row) {
        BrowseRow aired;
        for (int column = 0; column < 4; ++column)
          aired.cells[static_cast<size_t>(column)] = std::string(row.Text(column));
        rows.push_back(std::move(aired));
      });
  return rows;
}

}  // namespace

void LoadTodaysReport(Station& station) {
  try {
    const LocalDateTime today = station.Now();
    const std::vector<BrowseRow> rows =
        RowsSince(station, DaySerial(today.year, today.month, today.day));
    if (rows.empty()) return;
    station.browse.ListRech.sorted = false;
    station.browse.ListRech.rows = rows;
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadRapportDirectLive");
  }
}

}  // namespace zemo
