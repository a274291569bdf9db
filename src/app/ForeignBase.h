// A station's base as another program changes it: in SQLite's own dialect, each time by a
// connection of its own. Both throw OrderError with SQLite's number.
#pragma once

#include <string>

namespace zemo {

struct Field;

void ExecuteFromOutside(const std::string& basePath, const std::string& statement);
void SetCnfFromOutside(const std::string& basePath, const Field& field, const std::string& value);

}  // namespace zemo
