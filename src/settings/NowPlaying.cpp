#include "settings/NowPlaying.h"

#include <array>
#include <cstdint>
#include <exception>
#include <string>
#include <vector>

#include "platform/Folder.h"
#include "settings/SideFileIo.h"
#include "station/OnAirColumns.h"
#include "station/SideFileText.h"
#include "station/Station.h"

namespace zemo {

namespace {

constexpr size_t kRowsTold = 4;

std::string TabbedLine(const OnAirRow& row) {
  std::string line;
  for (const int column : {Col::kTitle, Col::kSecond, Col::kLength, Col::kGenre})
    line += OneLine(ColumnText(row, column)) + "\t";
  return line + std::to_string(static_cast<int64_t>(row.TakenMs()) / 1000) + "\t" +
         OneLine(ColumnText(row, Col::kPlanned));
}

}  // namespace

void SaveAssociatedData(Station& station, std::string_view comment) {
  Folder& folder = station.platform.stationFolder;
  try {
    std::vector<std::string> lines = {""};
    std::string artistAndTitle = " - ";
    for (const OnAirRow& row : station.PL) {
      if (lines.size() > kRowsTold) break;
      if (row.code <= 0) continue;
      if (lines.size() == 1) artistAndTitle = OneLine(row.title) + " - " + OneLine(row.secondLine);
      lines.push_back(TabbedLine(row));
    }
    lines.resize(1 + kRowsTold, "\t\t\t\t0\t");
    lines.push_back(OneLine(comment));
    WriteSideFile(folder, station.files.DonneesAssociees, JoinLines(lines));
    WriteSideFile(folder, station.files.ArtisteTitre, JoinLines({artistAndTitle}));
  } catch (const std::exception&) {
    LogCurrentException(station, "SaveDonnes_Associees");
  }
}

}  // namespace zemo
