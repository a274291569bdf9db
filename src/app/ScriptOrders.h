// The orders of a script, carried out on a simulated station as its operator, its neighbours and
// its wires would.
#pragma once

#include "app/Script.h"

namespace zemo {

class SimStation;

// Serves one order but kKill, which is the caller's. Never throws but the end of the simulation: an
// order that cannot be carried out is one event `error` with the order as its place.
void ServeOrder(SimStation& sim, const ScriptOrder& order);

}  // namespace zemo
