#include "engine/BaseMaintenance.h"

#include "station/Station.h"

namespace zemo {

// Every base is of the present structure yet, and none is handed over by another machine.
void CheckStructures(Station&) {}
void CompactageTriskin(Station&) {}
void SurveilleNewBase(Station&) {}

}  // namespace zemo
