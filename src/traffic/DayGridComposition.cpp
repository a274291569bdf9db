#include "traffic/DayGridComposition.h"

#include "station/Station.h"
#include "station/TimeForms.h"

namespace zemo {

// No campaign is read yet: the grid holds its date stamp, by which a new day is told, and no break.
void MakePubduJour(Station& station) {
  station.GPubJour.Clear();
  station.GPubJour.SetCell(0, 53, ShortDateText(station.Now()));
}

}  // namespace zemo
