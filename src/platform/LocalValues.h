// Values that belong to this machine and not to the station: what the registry and the per-user
// settings store hold, kept as NAME=VALUE lines in "Settings.Ini" of the machine folder.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zemo {

class Folder;

// Reads the file at each call, so that a change by hand or by another program is seen at once.
// Names are compared without regard to case; lines that are no NAME=VALUE are kept as they stand.
// Thread: the logic's.
class LocalValues {
 public:
  explicit LocalValues(Folder& machine) : machine_(machine) {}  // not owned

  std::optional<std::string> Get(std::string_view name) const;  // nullopt: never set
  std::string GetText(std::string_view name, std::string_view fallback) const;
  int GetInt(std::string_view name, int fallback) const;     // fallback also where it is no number
  bool GetBool(std::string_view name, bool fallback) const;  // "True", "Vrai", "-1", "1", "on", ...
  void Set(std::string_view name, std::string_view value);   // throws FileError

 private:
  Folder& machine_;
};

}  // namespace zemo
