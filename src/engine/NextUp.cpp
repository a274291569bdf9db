#include "engine/NextUp.h"

#include <algorithm>
#include <cstdlib>

#include "library/OnAirRows.h"
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

// The moment that the list shows, where it is the same but for the second that ticks between.
int64_t PlannedStart(const OnAirElement& row, int64_t reckonedMs) {
  const auto plannedMs = static_cast<int64_t>(row.plannedMs.value_or(-kDayMs));
  const bool same = std::abs(plannedMs - reckonedMs) < kSamePlanMs;
  return (same ? plannedMs : reckonedMs) % kDayMs;
}

void FindElement(const Station& station, const LocalDateTime& now, NextUp& next) {
  const OnAirRow* row = nullptr;
  for (const OnAirRow& candidate : station.PL)
    // A voice track lies over the element on air.
    if (!candidate.file.empty() && candidate.code != Element::kVoiceTrack) {
      row = &candidate;
      break;
    }
  if (!row) return;
  next.elementCode = row->code;
  next.elementTitle = TitleOf(*row);
  const EngineState& engine = station.engine;
  if (!engine.IsRunning) return;
  next.elementAt = ClockText(PlannedStart(*row, SecondOfDay(now) * 1000LL + MsToNextStart(engine)));
}

void FindBreak(const Station& station, const LocalDateTime& now, NextUp& next) {
  if (station.engine.OptionDirect) return;  // no break comes then
  const DayGrid& grid = station.GPubJour;
  const int row = NextBreakRow(grid, TimeText(now).substr(0, 5));
  if (row == 0) return;
  const std::string& moment = grid.Cell(row, GridCol::kMoment);
  next.breakAt = moment;
  next.breakIsSpots = grid.Cell(row, GridCol::kType) == "Pubs";
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

NextUp LookAhead(const Station& station, const LocalDateTime& now, bool pipAtNextHour) {
  NextUp next;
  FindElement(station, now, next);
  FindBreak(station, now, next);
  if (pipAtNextHour) FindPipTime(now, next);
  return next;
}

}  // namespace zemo
