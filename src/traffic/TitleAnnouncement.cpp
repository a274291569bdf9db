#include "traffic/TitleAnnouncement.h"

#include <cstdint>
#include <vector>

#include "scheduling/JingleSelection.h"
#include "settings/ExtractMarks.h"
#include "station/Station.h"

namespace zemo {

namespace {

constexpr size_t kTitlesAnnounced = 2;

bool HasExtract(Station& station, const OnAirElement& row) {
  if (row.code <= 0) return false;
  if (station.base.CnfInt(Cnf::kExtraitAuto) == 1) return true;
  const auto marks = ReadExtractMarks(station, row.file);
  return marks && marks->startMs > 0;
}

}  // namespace

int AnnounceComingTitles(Station& station, int position) {
  std::vector<OnAirElement> titles;
  for (const OnAirElement& row : station.PL) {
    if (titles.size() == kTitlesAnnounced) break;
    if (HasExtract(station, row)) titles.push_back(row);
  }
  if (titles.empty()) return 0;
  const int before = station.PL.Count();
  for (auto title = titles.rbegin(); title != titles.rend(); ++title)
    station.PL.Insert(position, *title);
  FindExtractJingle(station, static_cast<int16_t>(position));
  return station.PL.Count() - before;
}

}  // namespace zemo
