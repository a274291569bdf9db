// A station's base as another program changes it: in SQLite's own dialect, each time by a
// connection of its own. Both throw OrderError with SQLite's number.
#pragma once

#include <string>

namespace zemo {

struct Field;
class StationBase;

void ExecuteFromOutside(StationBase& base, const std::string& statement);
void SetCnfFromOutside(StationBase& base, const Field& field, const std::string& value);

}  // namespace zemo
