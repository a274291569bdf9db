#include "settings/GenreList.h"

#include <algorithm>
#include <exception>

#include "platform/Folder.h"
#include "settings/SideFileIo.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr const char* kInstrumental = "INSTRUMENTAL";

void Save(Station& station, const std::vector<std::string>& genres) {
  WriteLinesInCapitals(station.platform.stationFolder, station.files.Genre, genres);
}

}  // namespace

void LoadSaveGenres(Station& station, std::string_view action, std::vector<std::string>& genres) {
  try {
    if (IsSave(action)) Save(station, genres);
    if (!IsLoad(action)) return;
    if (const auto text = ReadSideFile(station.platform.stationFolder, station.files.Genre)) {
      genres = SplitLines(*text);
      const bool listed = std::any_of(genres.begin(), genres.end(), [](const std::string& genre) {
        return EqualNoCase(Trim(genre), kInstrumental);
      });
      if (!listed) genres.emplace_back(kInstrumental);
    } else if (genres.empty()) {
      genres = {kInstrumental, "STARTER",  "PLAYLIST", "GOLD N-1",
                "GOLD N-2",    "GOLD N-3", "GOLD N-4"};
      Save(station, genres);
    }
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadSaveGenres");
  }
}

}  // namespace zemo
