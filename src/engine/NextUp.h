// What the presenter waits for: the next element, the next break and the next hour pip, and when.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Clock.h"

namespace zemo {

class DayGrid;
struct EngineState;
struct Station;

// Times of day "hh:mm:ss", of breaks "hh:mm"; countdowns in whole seconds, -1 where nothing is to
// come or no moment is known.
struct NextUp {
  int32_t elementCode = 0;
  std::string elementTitle;  // empty: nothing is in the list
  std::string elementAt;     // empty while the engine is stopped
  std::string breakAt;       // empty: no break for the rest of the day
  bool breakIsSpots = false;
  std::string breakLength;
  int breakInSec = -1;
  std::string pipAt;  // empty: no pip at the next hour
  int pipInSec = -1;
};

// Until the first row of PL takes the air, as it is heard; 0 behind the exit point.
int64_t MsToNextStart(const EngineState& engine);

// The first row of the day's grid behind that minute, "hh:mm"; 0: none for the rest of the day.
int NextBreakRow(const DayGrid& grid, const std::string& minute);

// By how much the planned times of PL are late by now, ms: they are reckoned at an order and at a
// start, the element on air goes on. `shownMs` is what is shown; it stays where less than two
// seconds differ. 0 while the engine is stopped, and in the editor while a list has a time of its
// own.
int64_t PlanShiftMs(const Station& station, const LocalDateTime& now, int64_t shownMs);

// Looks only at the state, never at the base; `pipAtNextHour` is what FindPip said. The next
// element is told with the moment that its row shows.
NextUp LookAhead(const Station& station, const LocalDateTime& now, bool pipAtNextHour,
                 int64_t planShiftMs);

}  // namespace zemo
