// The settings by name, for whoever has no screen: every control, the fields that have none, and
// the lists, each as one text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zemo {

class SettingsDevices;
struct Station;

struct NamedSetting {
  std::string name;  // of the control; the lists of a weekday with their day, "Topage.0" for Monday
  std::string store;                       // field of Cnf, value of the machine, or file
  std::string value;                       // entries of a list with commas between
  std::string unit;                        // "" for none
  std::optional<int64_t> lowest, highest;  // of numbers
  std::optional<int64_t> longest;          // of texts, in characters
  std::string byDefault;
  std::string meaning;
  bool settable = true;
};

// All of them as they stand now; station.settings is loaded for it. What cannot be read is logged.
std::vector<NamedSetting> ListSettings(Station& station, SettingsDevices& devices);
// One, by either of its names without regard to case.
std::optional<NamedSetting> GetSetting(Station& station, SettingsDevices& devices,
                                       std::string_view name);

// Gives a setting a value, with what hangs on it, and stores it at once. nullopt when it was taken,
// else why not, in one line; nothing is stored then. Throws StoreError and FileError; what fails in
// a list's file is logged.
std::optional<std::string> SetSetting(Station& station, SettingsDevices& devices,
                                      std::string_view name, std::string_view value);

}  // namespace zemo
