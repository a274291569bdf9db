#include "settings/LineLists.h"

#include <exception>

#include "platform/Folder.h"
#include "settings/SideFileIo.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "store/RowView.h"

namespace zemo {

namespace {

// `where` is the routine that the log names.
void LoadSaveLines(Station& station, const char* where, std::string_view file,
                   std::string_view action, std::vector<std::string>& list) {
  Folder& folder = station.platform.stationFolder;
  try {
    if (IsSave(action)) WriteLinesInCapitals(folder, file, list);
    if (!IsLoad(action)) return;
    if (const auto text = ReadSideFile(folder, file)) list = SplitLines(*text);
  } catch (const std::exception&) {
    LogCurrentException(station, where);
  }
}

}  // namespace

void LoadSaveCategories(Station& station, std::string_view action, std::vector<std::string>& list) {
  LoadSaveLines(station, "LoadSaveCategories", station.files.Categori, action, list);
}

void LoadSaveLabels(Station& station, std::string_view action, std::vector<std::string>& list) {
  LoadSaveLines(station, "LoadSaveLabels", station.files.Labels, action, list);
}

void LoadSaveCD(Station& station, std::string_view action, std::vector<std::string>& list) {
  LoadSaveLines(station, "LoadSaveCD", station.files.CD, action, list);
}

void LoadVarieties(Station& station, std::string_view action, std::vector<std::string>& list) {
  if (!IsLoad(action)) return;
  try {
    std::vector<std::string> names;
    station.base.Db().ReadRows("SELECT VARIETE FROM Variete",
                               [&](const RowView& row) { names.emplace_back(row.Text(0)); });
    list = std::move(names);
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadVarietes");
  }
}

}  // namespace zemo
