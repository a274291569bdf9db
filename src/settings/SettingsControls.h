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

// The load reads the fields in five groups; each stands behind something else that it reads.
enum class LoadStep { kBeforeOutputs, kBehindDays, kBehindHours, kBehindPorts, kBehindFilter };
struct LoadPlace {
  LoadStep step = LoadStep::kBeforeOutputs;
  int place = 0;  // among those of the step
};

// How a value of the machine is read: as a yes or no in any of its words, as a number that is yes
// above 0 or wherever it is not 0, as a number.
enum class LocalForm { kWord, kAboveZero, kNotZero, kNumber };

// One row of store/SettingRows.inc.
struct SettingsControl {
  using Number = int32_t SettingsScreen::*;
  using Typed = std::string SettingsScreen::*;

  const char* name;  // of the control
  ControlKind kind;
  std::variant<Number, Typed> place;
  int64_t lowest, most;  // number; or most characters of a text
  const char* unit;      // "" for none
  const char* meaning;

  StoredIn in = StoredIn::kCnf;
  const char* store = "";               // the field of Cnf, or the machine's value
  int field = Cnf::kNoField;            // of Cnf
  bool storedAsYesNo = false;           // read as one of two whatever number stands there
  std::string byDefault = {};           // as text
  LoadPlace read = {};                  // of a field
  int written = 0;                      // its place among the fields that are written
  LocalForm form = LocalForm::kNumber;  // of a machine's value

  // What hangs on it, see SettingsCouplings.h; null for nothing. One line why a value is not taken
  // although it is in range; what follows the operator's hand; what of the engine takes the stored
  // value at once; a file that is written with the field (throws FileError).
  std::optional<std::string> (*refused)(const SettingsScreen& screen,
                                        std::string_view value) = nullptr;
  void (*changed)(Station& station, SettingsDevices& devices) = nullptr;
  void (*stored)(Station& station) = nullptr;
  void (*alsoWritten)(Station& station) = nullptr;
};

// A number that is stepped through as well as typed.
bool IsSpinner(const SettingsControl& control);
// All of them, in the order of Cnf; the machine's values behind.
const std::vector<SettingsControl>& SettingsControls();
// By the control's name or by what it is stored as, without regard to case; null: there is none.
const SettingsControl* FindSettingsControl(std::string_view name);
// The fields of a step of the load, and all that are written, each in their order.
std::vector<const SettingsControl*> FieldsOf(LoadStep step);
std::vector<const SettingsControl*> FieldsToWrite();

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
