#include "reports/RollingReport.h"

#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "platform/LocalValues.h"
#include "settings/SideFileIo.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr const char* kFile = "rapportzemo.txt";
constexpr int kRowsByDefault = 20;
constexpr std::string_view kFields =
    "LADATE, Heure, Auteur, Titre, Genre, Variete, AuteurCompositeur, Label, Reference";
constexpr int kFieldCount = 9;

std::string TabbedLine(const RowView& row) {
  std::string line;
  for (int field = 0; field < kFieldCount; ++field) line += OneLine(row.Text(field)) + "\t";
  return line;
}

// Rows of one moment stand newest first as well.
std::vector<std::string> NewestLines(Station& station, int64_t count) {
  std::vector<std::string> lines;
  const std::string sql = "SELECT TOP ? " + std::string(kFields) +
                          " FROM Rapport WHERE Code > 0 ORDER BY DATENUM DESC, Code DESC";
  station.base.Db().ReadRows(sql, {count},
                             [&](const RowView& row) { lines.push_back(TabbedLine(row)); });
  return lines;
}

}  // namespace

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
