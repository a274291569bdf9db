// The whole state of a station as one event, for the trace.
#pragma once

#include "station/EngineEvents.h"

namespace zemo {

struct Station;

Event DumpState(const Station& station);

}  // namespace zemo
