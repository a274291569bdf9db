// A station's base as a start leaves it, for benchmarks that fill it themselves.
#pragma once

#include <cstdlib>
#include <string>

#include "store/StationBase.h"

namespace zemo::bench {

// Open, with its tables, cursors and fixed rows; made where it is missing. A table that cannot be
// made ends the program.
inline void OpenWhole(StationBase& base) {
  base.OpenOrCreateDatabase();
  base.CreateMissingTables([](const std::string&, int, const std::string&) { std::abort(); });
  base.OpenAllTables();
  base.SeedFixedRows();
}

}  // namespace zemo::bench
