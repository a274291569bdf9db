// "Exclusion.Txt": the periods of the day in which the automaton's inputs are off, a start and an
// end a line with a tab between them. A line that lacks either keeps its place.
#include <algorithm>
#include <exception>

#include "platform/Folder.h"
#include "settings/SideFileIo.h"
#include "settings/SideFiles.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {
constexpr size_t kMostRows = 80;
}

void LoadSaveExclusion(Station& station, std::string_view action) {
  Folder& folder = station.platform.stationFolder;
  auto& periods = station.lists.Exclusion;
  try {
    if (IsSave(action)) {
      std::vector<std::string> lines;
      for (const auto& [from, to] : periods)
        if (lines.size() < kMostRows) lines.push_back(OneLine(from) + "\t" + OneLine(to));
      WriteSideFileDurably(folder, station.files.Exclusion, JoinLines(lines));
    }
    if (!IsLoad(action)) return;
    const auto text = ReadSideFile(folder, station.files.Exclusion);
    if (!text) return;
    std::vector<std::string> lines = SplitLines(*text);
    lines.resize(std::min(lines.size(), kMostRows));
    periods.clear();
    for (const std::string_view line : lines) {
      const size_t tab = std::min(line.find('\t'), line.size());
      const size_t end = std::min(line.find('\t', std::min(tab + 1, line.size())), line.size());
      periods.emplace_back(Trim(line.substr(0, tab)),
                           tab < end ? Trim(line.substr(tab + 1, end - tab - 1)) : std::string());
    }
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadSaveExclusion");
  }
}

}  // namespace zemo
