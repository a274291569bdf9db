#include "app/GridReport.h"

#include "engine/HourPip.h"
#include "platform/Folder.h"
#include "platform/SoundLengths.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "traffic/BreakInsertion.h"
#include "traffic/DayGridComposition.h"

namespace zemo {

namespace {

class CompositionSink : public EventSink {
 public:
  explicit CompositionSink(CompositionTold& told) : told_(told) {}
  void OnEvent(const Event& event) override {
    if (event.name == "error") told_.faults.push_back(event.Text("text"));
    if (event.name != "grid") return;
    told_.spots = event.Number("spots");
    told_.news = event.Number("news");
    told_.composed = true;
  }

 private:
  CompositionTold& told_;
};

int32_t SecondsOfMoment(const std::string& moment) {
  const size_t colon = moment.find(':');
  const int32_t minutes = colon == std::string::npos ? 0 : ValInt(moment.substr(colon + 1));
  return (ValInt(moment) * 60 + minutes) * 60;
}

GridElement ReadElement(Station& station, int row, int column) {
  const DayGrid& grid = station.GPubJour;
  GridElement element{grid.Cell(row, column), grid.Cell(row, column + GridCol::kFileOffset)};
  element.lengthMs = station.platform.lengths.LengthMs(element.file);
  if (!station.platform.soundFiles.Exists(element.file))
    element.state = GridElement::State::kMissing;
  else if (element.lengthMs == 0)
    element.state = GridElement::State::kUnreadable;
  return element;
}

double AirSeconds(Station& station, int row, const PlannedBreak& planned) {
  double seconds = static_cast<double>(planned.lengthMs) / 1000;
  if (planned.type == "Pubs")
    ComputeBreakAirTime(station, seconds, row);
  else  // news stand without jingles
    seconds -= static_cast<double>(planned.elements.size()) *
               static_cast<double>(station.base.CnfInt(Cnf::kPmixPubs)) / 1000;
  return seconds;
}

// From the break to the pip of its hour; none where the hour has no pip.
std::optional<GridGap> GapToPip(Station& station, int32_t beginSec) {
  LocalDateTime now = station.Now();
  now.hour = beginSec / 3600;
  if (now.hour > 23 || FindPip(station, now).file.empty()) return std::nullopt;
  const int32_t pipSec =
      now.hour * 3600 + 59 * 60 + static_cast<int32_t>(station.base.CnfInt(Cnf::kOffsetTopH));
  return GridGap{true, TwoDigits((now.hour + 1) % 24) + ":00", pipSec - beginSec};
}

std::optional<GridGap> SmallestGap(Station& station, int row) {
  const DayGrid& grid = station.GPubJour;
  const int32_t beginSec = SecondsOfMoment(grid.Cell(row, GridCol::kMoment));
  std::optional<GridGap> gap = GapToPip(station, beginSec);
  if (row + 1 >= grid.RowCount()) return gap;
  const std::string& next = grid.Cell(row + 1, GridCol::kMoment);
  const int32_t seconds = SecondsOfMoment(next) - beginSec;
  if (!gap || seconds < gap->seconds) gap = GridGap{false, next, seconds};
  return gap;
}

PlannedBreak ReadBreakOfRow(Station& station, int row) {
  const DayGrid& grid = station.GPubJour;
  PlannedBreak planned;
  planned.moment = grid.Cell(row, GridCol::kMoment);
  planned.type = grid.Cell(row, GridCol::kType);
  for (int column = GridCol::kFirstElement; column <= GridCol::kLastElement; ++column) {
    if (grid.Cell(row, column).empty()) continue;
    planned.elements.push_back(ReadElement(station, row, column));
    planned.lengthMs += planned.elements.back().lengthMs;
  }
  for (int column = GridCol::kLastElement + 1;
       column < GridCol::kFirstElement + GridCol::kFileOffset; ++column)
    if (!grid.Cell(row, column).empty()) planned.notAired.push_back(grid.Cell(row, column));
  planned.airSec = AirSeconds(station, row, planned);
  const auto gap = SmallestGap(station, row);
  if (gap && planned.airSec > gap->seconds) planned.tooLongFor = gap;
  return planned;
}

}  // namespace

CompositionTold ComposeAndListen(Station& station) {
  CompositionTold told;
  CompositionSink sink(told);
  station.events.SetSink(&sink);
  ComposeDayGrid(station);
  station.events.SetSink(nullptr);
  return told;
}

std::vector<PlannedBreak> ReadPlannedBreaks(Station& station) {
  std::vector<PlannedBreak> breaks;
  for (int row = 1; row < station.GPubJour.RowCount(); ++row)
    breaks.push_back(ReadBreakOfRow(station, row));
  return breaks;
}

}  // namespace zemo
