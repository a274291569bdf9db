#include "settings/LineLists.h"

#include <exception>

#include "platform/Folder.h"
#include "settings/SideFileIo.h"
#include "station/SideFileText.h"
#include "station/Station.h"

namespace zemo {

void LoadSaveCategories(Station& station, std::string_view action,
                        std::vector<std::string>& categories) {
  Folder& folder = station.platform.stationFolder;
  try {
    if (IsSave(action)) WriteLinesInCapitals(folder, station.files.Categori, categories);
    if (!IsLoad(action)) return;
    if (const auto text = ReadSideFile(folder, station.files.Categori))
      categories = SplitLines(*text);
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadSaveCategories");
  }
}

}  // namespace zemo
