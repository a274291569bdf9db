#include "engine/BreakService.h"

#include "engine/TickMoment.h"
#include "scheduling/PercentageRequest.h"
#include "station/Station.h"
#include "station/TimeForms.h"
#include "traffic/BreakInsertion.h"

namespace zemo {

namespace {

// Row of the day's grid whose minute it is; 0 for none. A row passed over opens the guard, so that
// it only holds after a hit.
int DueGridRow(Station& station, const Moment& at) {
  const DayGrid& grid = station.GPubJour;
  const int rows = grid.RowCount();
  int row = 1;
  while (row < rows && grid.Cell(row, GridCol::kMoment) != at.hourMinute) ++row;
  if (row > 1) station.engine.LastGridCheckTimer = 0;
  return row < rows ? row : 0;
}

void InsertBreak(Station& station, const Moment& at, int row) {
  station.engine.LastGridCheckTimer = at.timer;
  if (station.GPubJour.IsSpots(row))
    InsertSpotBreak(station, row);
  else
    InsertNewsBreak(station, row);
  station.engine.IntroShown = false;
}

}  // namespace

// While the grid is being composed its rows are not whole yet: the minute's break waits for the
// tick behind the composition.
void ServeBreaks(Station& station, const Moment& at) {
  const EngineState& engine = station.engine;
  if (engine.OptionDirect || engine.HourBlockHandled || engine.composing ||
      WithinMinute(at, engine.LastGridCheckTimer))
    return;
  // Midnight: the change of the day, later in this tick, resets the guard.
  if (engine.IsAutomatic && at.now.day != engine.LastDay &&
      GuardIsAhead(at.timer, engine.LastGridCheckTimer))
    return;
  const int row = DueGridRow(station, at);
  if (row > 0) InsertBreak(station, at, row);
}

void PrepareLocalProgramme(Station& station, const Moment& at) {
  const EngineState& engine = station.engine;
  if (!engine.InputsAllowed || engine.composing || station.base.CnfInt(Cnf::kEntreSat) != 3) return;
  if (WithinMinute(at, engine.LastGridCheckTimer)) return;
  const int row = DueGridRow(station, at);
  if (row == 0) return;
  ForgetListOrder(station);
  station.PL.Clear();
  InsertBreak(station, at, row);
  AutomaticRequest(station);
}

}  // namespace zemo
