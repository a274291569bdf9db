// The controls of the settings screen that hold one value each: what each means, in which unit and
// range, and where it is stored. Everything that changes a control by the operator's hand.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "station/SettingsScreen.h"

namespace zemo {

class SettingsDevices;
struct Station;

inline constexpr int kJoystickPorts = 16;  // that can be chosen, from 1

enum class ControlKind { kSlider, kNumber, kText, kCheck, kOption, kColour };
enum class StoredIn { kCnf, kLocal, kAudio };

struct SettingsControl {
  using Number = int32_t SettingsScreen::*;
  using Typed = std::string SettingsScreen::*;

  const char* name;   // of the control
  const char* store;  // the field of Cnf, or the machine's value
  StoredIn in;
  int field;  // ordinal of Cnf; 0 for the machine's values
  ControlKind kind;
  std::variant<Number, Typed> place;
  int64_t most;      // highest number, or most characters of a text; the lowest number is 0
  const char* unit;  // "" for none
  const char* meaning;
};

// All of them, in the order of Cnf; the machine's values behind.
const std::vector<SettingsControl>& SettingsControls();
// By the control's name or by what it is stored as, without regard to case; null: there is none.
const SettingsControl* FindSettingsControl(std::string_view name);
const SettingsControl* FindSettingsControl(int field);

int64_t LowestNumber(const SettingsControl& control);
std::string DefaultText(const SettingsControl& control);
// The control's content as text; a number stands bare.
std::string ControlText(const SettingsScreen& screen, const SettingsControl& control);
// The same as a number: what is none is 0.
int64_t ControlNumber(const SettingsScreen& screen, const SettingsControl& control);
// What the screen shows beside or in the control: seconds beside the sliders of times ("1.6"), the
// share of the slider's maximum beside those of volumes ("50 %"), minutes in SpinOptimise ("50
// mn"). Empty for all others.
std::string ControlLabel(const SettingsScreen& screen, const SettingsControl& control);

// Puts a value into a control as the operator does, with all that hangs on it: see
// SettingsCouplings.h. nullopt when the control took it, else why not, in one line; the control is
// then unchanged. Faults behind the control are logged. Throws nothing.
std::optional<std::string> SetControl(Station& station, SettingsDevices& devices,
                                      const SettingsControl& control, std::string_view value);

}  // namespace zemo
