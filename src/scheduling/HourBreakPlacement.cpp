// Where the hour's break goes: the walks along the list, in milliseconds since midnight.
#include "scheduling/HourBreakPlacement.h"

#include <string>

#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "traffic/BreakInsertion.h"

namespace zemo {

namespace {

// Seconds of "mm:ss".
double SecondsOfLength(const std::string& text) {
  const size_t colon = text.find(':');
  return Val(text) * 60 + (colon == std::string::npos ? 0 : Val(text.substr(colon + 1)));
}

// Seconds since midnight of "hh:mm".
double SecondsOfMoment(const std::string& text) {
  return SecondsOfLength(text) * 60;
}

// Row of the break, 0 for none. A row of this hour that is past opens the guard of breaks.
int FindHourBreak(Station& station) {
  const std::string now = TimeText(station.Now()).substr(0, 5);
  const DayGrid& grid = station.GPubJour;
  for (int row = 1; row < grid.RowCount(); ++row) {
    const std::string& moment = grid.Cell(row, 0);
    if (moment.compare(0, 2, now, 0, 2) != 0) continue;
    if (Trim(moment) >= now) return row;
    station.engine.LastGridCheckTimer = 0;
  }
  return 0;
}

// The moment at which the first row would start when the element on air ran out.
double ListStartMs(const Station& station) {
  return static_cast<double>(station.Timer()) * 1000 + station.engine.RemainingMs;
}

int PositionByMoment(const Station& station, double momentSec, double lengthSec, double pipSec) {
  double startMs = ListStartMs(station);
  int row = 1;
  for (; row <= station.PL.Count(); ++row) {
    if (startMs / 1000 >= momentSec) {
      if (startMs / 1000 + lengthSec > pipSec && row >= 2) --row;
      break;
    }
    startMs += station.PL.Row(row).AirMs();
  }
  return row;
}

int PositionByPip(const Station& station, double lengthSec, double pipSec) {
  double startMs = ListStartMs(station);
  int row = 1;
  for (; row <= station.PL.Count(); ++row) {
    if (startMs / 1000 + lengthSec > pipSec) break;
    startMs += station.PL.Row(row).AirMs();
  }
  return row;
}

}  // namespace

int HourOfPip(const Station& station) {
  return (station.Now().hour + 1) % 24;
}

bool PlaceHourBreak(Station& station, BreakForm form) {
  // 1
  const int gridRow = FindHourBreak(station);
  if (gridRow == 0) return false;
  const std::string moment = Trim(station.GPubJour.Cell(gridRow, 0));
  const std::string type = station.GPubJour.Cell(gridRow, 2);
  // 2
  double lengthSec = SecondsOfLength(station.GPubJour.Cell(gridRow, 1));
  if (form == BreakForm::kSpotsByPip) ComputeBreakAirTime(station, lengthSec, gridRow);
  // 3 to 5
  const double pipSec = HourOfPip(station) * 3600.0;
  const int position = form == BreakForm::kInstrumental
                           ? PositionByMoment(station, SecondsOfMoment(moment), lengthSec, pipSec)
                           : PositionByPip(station, lengthSec, pipSec);
  // 6
  const int rowsBefore = station.PL.Count();
  InsertBreakForFitting(station, gridRow, position, type == "Pubs" ? "PUBS" : "RUBRIQUES");
  station.events.Break("AjoutPubRubFinHeure", moment, type, position,
                       station.PL.Count() - rowsBefore);
  station.engine.LastGridCheckTimer = station.Timer();
  station.engine.HourBlockHandled = true;
  return true;
}

}  // namespace zemo
