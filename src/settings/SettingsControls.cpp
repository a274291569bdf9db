// The rows of the settings as a table, and what a control takes.
#include "settings/SettingsControls.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "settings/SettingsCouplings.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/Schema.h"
#include "store/StationBase.h"

namespace zemo {

namespace {

constexpr int64_t kMost16 = std::numeric_limits<int16_t>::max();
constexpr int64_t kMost32 = std::numeric_limits<int32_t>::max();
constexpr int64_t kMostColour = 0xFFFFFF;

// --- what the rows are written in ---

using S = SettingsScreen;
using K = ControlKind;
using enum LoadStep;

struct Control : SettingsControl {
  Control Refused(decltype(refused) why) const { return With(&SettingsControl::refused, why); }
  Control Changed(decltype(changed) then) const { return With(&SettingsControl::changed, then); }
  Control Stored(decltype(stored) then) const { return With(&SettingsControl::stored, then); }
  Control AlsoWritten(decltype(alsoWritten) file) const {
    return With(&SettingsControl::alsoWritten, file);
  }

 private:
  template <typename Hook>
  Control With(Hook SettingsControl::*which, Hook hook) const {
    Control control = *this;
    control.*which = hook;
    return control;
  }
};

Control Slider(const char* name, SettingsControl::Number place, int64_t most, const char* unit,
               const char* meaning) {
  return {{name, K::kSlider, place, 0, most, unit, meaning}};
}
Control Number(const char* name, SettingsControl::Typed place, int64_t most, const char* unit,
               const char* meaning) {
  return {{name, K::kNumber, place, 0, most, unit, meaning}};
}
Control TextBox(const char* name, SettingsControl::Typed place, const char* meaning) {
  return {{name, K::kText, place, 0, 0, "", meaning}};
}
Control Check(const char* name, SettingsControl::Number place, const char* meaning) {
  return {{name, K::kCheck, place, 0, 1, "", meaning}};
}
Control Option(const char* name, SettingsControl::Number place, int64_t most, const char* meaning) {
  return {{name, K::kOption, place, 0, most, "", meaning}};
}
Control Colour(const char* name, SettingsControl::Number place, const char* meaning) {
  return {{name, K::kColour, place, 0, kMostColour, "", meaning}};
}
LoadPlace In(LoadStep step, int place) {
  return {step, place};
}

// --- the rows ---

SettingsControl OfCnf(Cnf::Field field, LoadPlace read, int written, SettingsControl control) {
  const Field& stored = FindSchemaTable("Cnf")->Fields[static_cast<size_t>(field) - 1];
  control.in = StoredIn::kCnf;
  control.store = stored.Name.c_str();
  control.field = field;
  control.storedAsYesNo = control.kind == K::kCheck || stored.Type == FieldType::kBool;
  control.byDefault = AsText(stored.DefaultValue);
  if (control.kind == K::kText) control.most = stored.Size;
  control.read = read;
  control.written = written;
  return control;
}

SettingsControl OfMachine(const char* value, int byDefault, LocalForm form,
                          SettingsControl control) {
  control.in = StoredIn::kLocal;
  control.store = value;
  control.byDefault = std::to_string(byDefault);
  control.form = form;
  return control;
}

SettingsControl OfOutput(const char* value, SettingsControl control) {
  control.in = StoredIn::kAudio;
  control.store = value;
  control.lowest = -1;
  control.byDefault = "-1";
  return control;
}

std::vector<SettingsControl> MakeControls() {
  std::vector<SettingsControl> controls;
#define SETTING(field, type, read, written, control) \
  controls.push_back(OfCnf(Cnf::k##field, read, written, control));
#define MACHINE(value, byDefault, form, control) \
  controls.push_back(OfMachine(#value, byDefault, LocalForm::form, control));
#define OUTPUT(value, control) controls.push_back(OfOutput(#value, control));
#include "store/SettingRows.inc"
  return controls;
}

bool IsTimeSlider(const SettingsControl& control) {
  return control.kind == ControlKind::kSlider && std::string_view(control.unit) == "ms";
}

std::string Refusal(const SettingsControl& control, std::string_view value,
                    const std::string& why) {
  return std::string(control.name) + ": \"" + FirstCharacters(OneLine(value), 40) + "\" " + why;
}

size_t Characters(std::string_view utf8) {
  size_t count = 0;
  for (const char byte : utf8) count += (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
  return count;
}

std::optional<std::string> WhyNoText(const SettingsControl& control, std::string_view value) {
  if (!IsValidUtf8(value) || value.find('\0') != std::string_view::npos)
    return std::string(control.name) + ": that is no text";
  if (Characters(value) > static_cast<size_t>(control.most))
    return Refusal(control, value,
                   "is longer than " + std::to_string(control.most) + " characters");
  return std::nullopt;
}

std::optional<std::string> WhyNoNumber(const SettingsControl& control, std::string_view value) {
  const double number = Val(value);
  const double whole = std::trunc(number);
  if (whole >= static_cast<double>(control.lowest) && whole <= static_cast<double>(control.most))
    return std::nullopt;
  const std::string unit = *control.unit ? " " + std::string(control.unit) : "";
  return Refusal(control, value,
                 "is outside " + std::to_string(control.lowest) + " to " +
                     std::to_string(control.most) + unit);
}

void Put(SettingsScreen& screen, const SettingsControl& control, std::string_view value) {
  if (const auto* number = std::get_if<SettingsControl::Number>(&control.place))
    screen.** number = ValInt(value);
  else
    screen.*std::get<SettingsControl::Typed>(control.place) = value;
  if (control.in == StoredIn::kCnf) screen.fieldHeld.set(static_cast<size_t>(control.field));
  if (control.in == StoredIn::kAudio) screen.audioHeld = true;
}

}  // namespace

const std::vector<SettingsControl>& SettingsControls() {
  static const std::vector<SettingsControl> controls = MakeControls();
  return controls;
}

bool IsSpinner(const SettingsControl& control) {
  return control.kind == ControlKind::kNumber && std::string_view(control.name).starts_with("Spin");
}

const SettingsControl* FindSettingsControl(std::string_view name) {
  for (const SettingsControl& control : SettingsControls())
    if (EqualNoCase(name, control.name) || EqualNoCase(name, control.store)) return &control;
  return nullptr;
}

std::vector<const SettingsControl*> FieldsOf(LoadStep step) {
  std::vector<const SettingsControl*> fields;
  for (const SettingsControl& control : SettingsControls())
    if (control.in == StoredIn::kCnf && control.read.step == step) fields.push_back(&control);
  std::sort(fields.begin(), fields.end(), [](const SettingsControl* a, const SettingsControl* b) {
    return a->read.place < b->read.place;
  });
  return fields;
}

std::vector<const SettingsControl*> FieldsToWrite() {
  std::vector<const SettingsControl*> fields;
  for (const SettingsControl& control : SettingsControls())
    if (control.in == StoredIn::kCnf) fields.push_back(&control);
  std::sort(fields.begin(), fields.end(), [](const SettingsControl* a, const SettingsControl* b) {
    return a->written < b->written;
  });
  return fields;
}

std::string ControlText(const SettingsScreen& screen, const SettingsControl& control) {
  if (const auto* number = std::get_if<SettingsControl::Number>(&control.place))
    return std::to_string(screen.**number);
  return screen.*std::get<SettingsControl::Typed>(control.place);
}

int64_t ControlNumber(const SettingsScreen& screen, const SettingsControl& control) {
  return ValInt(ControlText(screen, control));
}

std::string ControlLabel(const SettingsScreen& screen, const SettingsControl& control) {
  const auto number = static_cast<double>(ControlNumber(screen, control));
  char text[32] = "";
  if (IsTimeSlider(control))
    std::snprintf(text, sizeof text, "%g", number / 1000);
  else if (control.kind == ControlKind::kSlider)
    std::snprintf(text, sizeof text, "%.0f %%", number * 100 / static_cast<double>(control.most));
  else if (std::string_view(control.unit) == "minute")  // of the hour, and no length
    std::snprintf(text, sizeof text, "%.0f mn", number);
  return text;
}

std::optional<std::string> SetControl(Station& station, SettingsDevices& devices,
                                      const SettingsControl& control, std::string_view value) {
  const bool text = control.kind == ControlKind::kText;
  if (auto why = text ? WhyNoText(control, value) : WhyNoNumber(control, value)) return why;
  if (control.refused)
    if (auto why = control.refused(station.settings, value))
      return std::string(control.name) + ": " + *why;
  Put(station.settings, control, value);
  if (control.changed) control.changed(station, devices);
  return std::nullopt;
}

}  // namespace zemo
