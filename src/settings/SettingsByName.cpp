#include "settings/SettingsByName.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "settings/SettingsControls.h"
#include "settings/SettingsCouplings.h"
#include "settings/SettingsScreen.h"
#include "settings/SideFiles.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/Schema.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr int kDaysOfWeek = 7;
constexpr size_t kHoursOfDay = 24;

// The lists of a weekday.
struct DayList {
  const char* name;
  const char* file;
  Settings::TimeList list;
  const char* meaning;
};
constexpr DayList kDayLists[] = {
    {"ComboHeure", "StartStop", Settings::TimeList::kComboHeure,
     "start times of the weekday (0 for Monday), hh:mm"},
    {"HeureArretSystem", "StartStop", Settings::TimeList::kHeureArretSystem,
     "stop times of the weekday (0 for Monday), hh:mm; with -F the element fades, with -Q the "
     "machine shuts down"},
    {"Topage", "Topage", Settings::TimeList::kTopage,
     "times of the weekday (0 for Monday), hh:mm, at which the air goes to another program"}};

std::string Joined(const std::vector<std::string>& entries) {
  std::string text;
  for (const std::string& entry : entries) text += (text.empty() ? "" : ",") + entry;
  return text;
}

// The entries between commas, without blanks around them and without empty ones.
std::vector<std::string> Entries(std::string_view text) {
  std::vector<std::string> entries;
  for (size_t at = 0; at <= text.size();) {
    const size_t comma = std::min(text.find(',', at), text.size());
    if (std::string entry = Trim(text.substr(at, comma - at)); !entry.empty())
      entries.push_back(std::move(entry));
    at = comma + 1;
  }
  return entries;
}

NamedSetting OfControl(const SettingsScreen& screen, const SettingsControl& control) {
  NamedSetting setting;
  setting.name = control.name;
  setting.store = control.store;
  setting.value = ControlText(screen, control);
  setting.unit = control.unit;
  if (control.kind == ControlKind::kText) {
    setting.longest = control.most;
  } else {
    setting.lowest = control.lowest;
    setting.highest = control.most;
  }
  setting.byDefault = control.byDefault;
  setting.meaning = control.meaning;
  return setting;
}

// A field that the program keeps for itself, or that nothing uses.
NamedSetting OfField(Station& station, int field, const char* meaning) {
  const Field& described = FindSchemaTable("Cnf")->Fields[static_cast<size_t>(field) - 1];
  NamedSetting setting;
  setting.name = setting.store = described.Name;
  setting.byDefault = AsText(described.DefaultValue);
  setting.meaning = meaning;
  setting.settable = false;
  try {
    setting.value = station.base.CnfText(field);
  } catch (const StoreError&) {
    LogCurrentException(station, "SettingsLoad");
  }
  return setting;
}

NamedSetting OfInstru(const Station& station) {
  std::vector<std::string> hours, all;
  for (size_t hour = 0; hour < kHoursOfDay; ++hour) {
    all.push_back(TwoDigits(static_cast<int>(hour)));
    if (station.settings.Instru[hour]) hours.push_back(all.back());
  }
  NamedSetting setting;
  setting.name = "Instru";
  setting.store = station.files.Instrumental;
  setting.value = Joined(hours);
  setting.byDefault = Joined(all);
  setting.meaning = "hours in which instrumentals play, 00 to 23";
  return setting;
}

NamedSetting OfFiltre(const Station& station) {
  std::vector<std::string> rows;
  for (const auto& [from, to] : station.settings.Filtre)
    if (!from.empty()) rows.push_back(from + "-" + to);
  NamedSetting setting;
  setting.name = "Filtre";
  setting.store = station.files.Exclusion;
  setting.value = Joined(rows);
  setting.meaning = "times of day between which the controller's inputs are off, hh:mm-hh:mm";
  return setting;
}

NamedSetting OfDay(Station& station, const DayList& list, int day) {
  const std::string suffix = "." + std::to_string(day);
  NamedSetting setting;
  setting.name = list.name + suffix;
  setting.store = list.file + suffix;
  setting.value = Joined(Settings::TimesOf(station, list.list));
  setting.meaning = list.meaning;
  return setting;
}

// --- setting ---

std::string Refused(std::string_view name, std::string_view value, const std::string& why) {
  return std::string(name) + ": \"" + FirstCharacters(OneLine(value), 40) + "\" " + why;
}

bool IsWholeNumber(std::string_view text) {
  int64_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

// A box also takes the words.
std::string NumberWord(const SettingsControl& control, std::string_view value) {
  if (control.kind == ControlKind::kCheck) {
    for (const char* on : {"on", "true", "yes"})
      if (EqualNoCase(value, on)) return "1";
    for (const char* off : {"off", "false", "no"})
      if (EqualNoCase(value, off)) return "0";
  }
  return Trim(value);
}

std::optional<std::string> StoreControl(Station& station, SettingsDevices& devices,
                                        const SettingsControl& control, std::string_view value) {
  std::string given(value);
  if (control.kind != ControlKind::kText) {
    given = NumberWord(control, value);
    if (!IsWholeNumber(given)) return Refused(control.name, value, "is no whole number");
  }
  const SettingsScreen before = station.settings;
  if (auto why = SetControl(station, devices, control, given)) return why;
  Transaction transaction(station.base.Db());  // what hangs together is stored together
  for (const SettingsControl& other : SettingsControls())
    if (&other == &control || ControlText(before, other) != ControlText(station.settings, other))
      SaveControl(station, other);
  transaction.Commit();
  station.base.CheckCnf();
  return std::nullopt;
}

std::optional<std::string> StoreInstru(Station& station, std::string_view value) {
  std::array<bool, kHoursOfDay> hours{};
  for (const std::string& entry : Entries(value)) {
    if (!IsWholeNumber(entry) || Val(entry) < 0 || Val(entry) >= kHoursOfDay)
      return Refused("Instru", entry, "is no hour 00 to 23");
    hours[static_cast<size_t>(ValInt(entry))] = true;
  }
  station.settings.Instru = hours;
  SaveInstru(station);
  return std::nullopt;
}

std::optional<std::string> StoreFiltre(Station& station, std::string_view value) {
  const std::vector<std::string> entries = Entries(value);
  if (entries.size() > SettingsScreen::kFilterRows)
    return "Filtre: more than " + std::to_string(SettingsScreen::kFilterRows) + " rows";
  decltype(station.settings.Filtre) rows;
  for (size_t row = 0; row < entries.size(); ++row) {
    const size_t dash = std::min(entries[row].find('-'), entries[row].size());
    const std::string from = Trim(entries[row].substr(0, dash));
    const std::string to = dash < entries[row].size() ? Trim(entries[row].substr(dash + 1)) : "";
    if (!IsClockTime(from) || !IsClockTime(to))
      return Refused("Filtre", entries[row], "is no period hh:mm-hh:mm");
    rows[row] = {from, to};
  }
  station.settings.Filtre = rows;
  SaveFiltre(station);
  return std::nullopt;
}

std::optional<std::string> StoreDay(Station& station, const DayList& list, int day,
                                    std::string_view value) {
  Settings::ChooseWeekday(station, day);
  const SettingsScreen& screen = station.settings;
  if (!(list.list == Settings::TimeList::kTopage ? screen.topageHeld : screen.timesHeld))
    return std::nullopt;  // logged; the file keeps what it holds
  std::vector<std::string>& times = Settings::TimesOf(station, list.list);
  times.clear();
  for (const std::string& entry : Entries(value))
    if (auto why = Settings::EnterTime(station, list.list, entry)) return why;
  if (list.list == Settings::TimeList::kTopage)
    LoadSaveTopage(station, "Save", day, false);
  else
    LoadSaveStartStop(station, "Save", day, false);
  return std::nullopt;
}

}  // namespace

std::vector<NamedSetting> ListSettings(Station& station, SettingsDevices& devices) {
  SettingsLoad(station, devices);
  std::vector<NamedSetting> settings;
  for (const SettingsControl& control : SettingsControls())
    settings.push_back(OfControl(station.settings, control));
#define KEPT(field, type, meaning) settings.push_back(OfField(station, Cnf::k##field, meaning));
#include "store/SettingRows.inc"
  settings.push_back(OfInstru(station));
  settings.push_back(OfFiltre(station));
  for (int day = 0; day < kDaysOfWeek; ++day) {
    Settings::ChooseWeekday(station, day);
    for (const DayList& list : kDayLists) settings.push_back(OfDay(station, list, day));
  }
  return settings;
}

std::optional<NamedSetting> GetSetting(Station& station, SettingsDevices& devices,
                                       std::string_view name) {
  for (NamedSetting& setting : ListSettings(station, devices))
    if (EqualNoCase(name, setting.name)) return std::move(setting);
  // A file of two lists names neither.
  if (const SettingsControl* control = FindSettingsControl(name))
    return OfControl(station.settings, *control);
  return std::nullopt;
}

std::optional<std::string> SetSetting(Station& station, SettingsDevices& devices,
                                      std::string_view name, std::string_view value) {
  const auto setting = GetSetting(station, devices, name);
  if (!setting) return "there is no setting " + OneLine(name);
  if (!setting->settable) return setting->name + " is not set by hand";
  if (setting->name == "Instru") return StoreInstru(station, value);
  if (setting->name == "Filtre") return StoreFiltre(station, value);
  if (const SettingsControl* control = FindSettingsControl(setting->name))
    return StoreControl(station, devices, *control, value);
  for (const DayList& list : kDayLists)
    for (int day = 0; day < kDaysOfWeek; ++day)
      if (setting->name == list.name + ("." + std::to_string(day)))
        return StoreDay(station, list, day, value);
  return setting->name + " cannot be set";
}

}  // namespace zemo
