#include "station/NewList.h"

#include "station/Station.h"

namespace zemo {

void BeginNewList(Station& station) {
  StoredListEditor& editor = station.storedList;
  station.PL.Clear();
  editor.LblDate = StoredListEditor().LblDate;
  editor.ChHeure = StoredListEditor().ChHeure;
  editor.LblCodePL = 0;
  editor.ComboPLS = {};
  editor.OptPls = 0;
}

}  // namespace zemo
