// The figures of a station on air, in the text form that Prometheus reads. docs/monitoring.md tells
// each of them.
#pragma once

#include <cstdint>
#include <string>

#include "app/ControlSources.h"
#include "platform/ControlLine.h"

namespace zemo {

struct Station;

// Thread: the logic's. Looks at the state alone. `uptimeMs` of the program.
std::string MetricsText(Station& station, const SoundHealth& output, const FreeSpace& space,
                        const ControlFigures& control, int64_t uptimeMs);

}  // namespace zemo
