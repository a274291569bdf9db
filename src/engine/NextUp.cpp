#include "engine/NextUp.h"

#include <algorithm>
#include <cstdlib>

#include "library/OnAirRows.h"
#include "station/PlanTimes.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

constexpr int kHourSec = 3600;
constexpr int64_t kDayMs = 24LL * kHourSec * 1000;
constexpr int64_t kSamePlanMs = 2000;

int SecondOfDay(const LocalDateTime& now) {
  return now.hour * kHourSec + now.minute * 60 + now.second;
}

// The first row that takes the air; null: none does. A voice track lies over the element on air.
const OnAirRow* NextRow(const OnAirList& list) {
  for (const OnAirRow& row : list)
    if (!row.file.empty() && row.code != Element::kVoiceTrack) return &row;
  return nullptr;
}

// ms since midnight
int64_t NextStartMs(const Station& station, const LocalDateTime& now) {
  return SecondOfDay(now) * 1000LL + MsToNextStart(station.engine);
}

void FindElement(const Station& station, const LocalDateTime& now, int64_t planShiftMs,
                 NextUp& next) {
  const OnAirRow* row = NextRow(station.PL);
  if (!row) return;
  next.elementCode = row->code;
  next.elementTitle = TitleOf(*row);
  if (!station.engine.IsRunning) return;
  const bool planned = row->plannedMs && !HasListTime(station.storedList);
  const auto atMs =
      planned ? static_cast<int64_t>(*row->plannedMs) + planShiftMs : NextStartMs(station, now);
  next.elementAt = ClockText((atMs + kDayMs) % kDayMs);
}

void FindBreak(const Station& station, const LocalDateTime& now, NextUp& next) {
  if (station.engine.OptionDirect) return;  // no break comes then
  const DayGrid& grid = station.GPubJour;
  const int row = NextBreakRow(grid, TimeText(now).substr(0, 5));
  if (row == 0) return;
  const std::string& moment = grid.Cell(row, GridCol::kMoment);
  next.breakAt = moment;
  next.breakIsSpots = grid.IsSpots(row);
  next.breakLength = grid.Cell(row, GridCol::kLength);
  const int atSec = ValInt(moment) * kHourSec + ValInt(std::string_view(moment).substr(3)) * 60;
  next.breakInSec = atSec - SecondOfDay(now);
}

void FindPipTime(const LocalDateTime& now, NextUp& next) {
  next.pipAt = TwoDigits((now.hour + 1) % 24) + ":00:00";
  next.pipInSec = kHourSec - now.minute * 60 - now.second;
}

}  // namespace

int NextBreakRow(const DayGrid& grid, const std::string& minute) {
  for (int row = 1; row < grid.RowCount(); ++row)
    if (grid.Cell(row, GridCol::kMoment) > minute) return row;
  return 0;
}

int64_t MsToNextStart(const EngineState& engine) {
  return std::max<int64_t>(
      0, engine.RemainingMs - static_cast<int64_t>(static_cast<float>(engine.MixPointMs)));
}

int64_t PlanShiftMs(const Station& station, const LocalDateTime& now, int64_t shownMs) {
  const OnAirRow* row = NextRow(station.PL);
  if (!row || !row->plannedMs || !station.engine.IsRunning || HasListTime(station.storedList))
    return 0;
  const int64_t shiftMs = NextStartMs(station, now) - static_cast<int64_t>(*row->plannedMs);
  return std::abs(shiftMs - shownMs) < kSamePlanMs ? shownMs : shiftMs;
}

NextUp LookAhead(const Station& station, const LocalDateTime& now, bool pipAtNextHour,
                 int64_t planShiftMs) {
  NextUp next;
  FindElement(station, now, planShiftMs, next);
  FindBreak(station, now, next);
  if (pipAtNextHour) FindPipTime(now, next);
  return next;
}

}  // namespace zemo
