#include "settings/SettingsScreen.h"

#include <algorithm>
#include <exception>
#include <string>

#include "platform/Desktop.h"
#include "platform/Folder.h"
#include "platform/LocalValues.h"
#include "platform/SettingsDevices.h"
#include "settings/SerialInput.h"
#include "settings/SettingsControls.h"
#include "settings/SettingsCouplings.h"
#include "settings/SettingsTexts.h"
#include "settings/SideFileIo.h"
#include "settings/SideFiles.h"
#include "station/RecordMerge.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

constexpr const char* kNotStored =
    "Les paramètres n'ont pas pu être enregistrés.\r\nFermer quand même ?";

// The local values of a choice of output.
struct AudioValue {
  const char* number;
  const char* key;
};
constexpr AudioValue kAirValue{"AudioOutID", "AudioOutName"};
constexpr AudioValue kPrelistenValue{"AudioOutPFLID", "AudioOutPFLName"};

// A step whose fault is logged and stops nothing behind it.
template <typename Work>
bool Guarded(Station& station, const char* where, Work work) {
  try {
    work();
    return true;
  } catch (const std::exception&) {
    LogCurrentException(station, where);
    return false;
  }
}

void PutNumber(SettingsScreen& screen, const SettingsControl& control, int32_t number) {
  if (const auto* place = std::get_if<SettingsControl::Number>(&control.place))
    screen.** place = number;
  else
    screen.*std::get<SettingsControl::Typed>(control.place) = std::to_string(number);
}

// A file name is taken only where there is one; so is the screen saver's text. A number in a text
// box stands there as it is stored.
void PutStored(SettingsScreen& screen, const SettingsControl& control, const Value& value) {
  if (const auto* typed = std::get_if<SettingsControl::Typed>(&control.place)) {
    if (control.kind != ControlKind::kText || !Trim(AsText(value)).empty())
      screen.** typed = AsText(value);
  } else {
    PutNumber(screen, control,
              control.storedAsYesNo ? AsBool(value) : static_cast<int32_t>(AsInt(value)));
  }
}

void ReadFields(Station& station, LoadStep step) {
  for (const SettingsControl* control : FieldsOf(step)) {
    const bool held = Guarded(station, "SettingsLoad", [&] {
      station.base.RequireCnf();
      PutStored(station.settings, *control, station.base.ReadCnfField(control->field));
    });
    station.settings.fieldHeld.set(static_cast<size_t>(control->field), held);
  }
}

std::vector<std::string> DayNames(int64_t langue) {
  switch (langue) {
    case 1:  // the fourth day reads as the second does
      return {"Monday", "Tuesday", "Wednesday", "Tuesday", "Friday", "Saturday", "Sunday"};
    case 2:
      return {"Segunda", "Terça", "Quarta", "Quinta", "Sexta", "Sábado", "Domingo"};
    case 3:
      return {"Lunes", "Martes", "Miércoles", "Jueves", "Viernes", "Sábado", "Domingo"};
    default:
      return {"Lundi", "Mardi", "Mercredi", "Jeudi", "Vendredi", "Samedi", "Dimanche"};
  }
}

// The entry of a stored choice. Its number is that of the day when it was chosen; what it is known
// by finds it among the devices of today. One that is not there stands at their end, so that it
// stays chosen. Another program may have written the numbers, and then they count.
int32_t ChosenEntry(Station& station, int32_t number, const AudioValue& value) {
  SettingsScreen& screen = station.settings;
  const LocalValues& local = station.platform.localValues;
  const std::string key = local.GetText(value.key, "");
  if (number < 0 || key.empty() || local.GetInt(value.number, -1) != number) return number;
  std::vector<std::string>& keys = screen.PlayKeys;
  const auto found = std::find(keys.begin(), keys.end(), key);
  if (found != keys.end()) return static_cast<int32_t>(found - keys.begin());
  if (keys.empty()) return number;  // nobody knows the devices here
  keys.push_back(key);
  screen.PlayNames.push_back(key);
  return static_cast<int32_t>(keys.size()) - 1;
}

void LoadAudio(Station& station, SettingsDevices& devices) {
  SettingsScreen& screen = station.settings;
  Guarded(station, "SettingsLoad", [&] {
    screen.PlayNames = devices.OutputNames();
    screen.PlayKeys = devices.OutputKeys();
  });
  screen.audioHeld = CanRead(station.platform.machineFolder, station.files.ZemoAudio);
  LoadSaveAudio(station, "Load");
  screen.PlayCombo = ChosenEntry(station, station.lists.AudioOutID, kAirValue);
  screen.PlayPreecoute = ChosenEntry(station, station.lists.AudioOutPFLID, kPrelistenValue);
}

void LoadDays(Station& station) {
  int64_t langue = 0;
  Guarded(station, "SettingsLoad", [&] { langue = station.base.CnfInt(Cnf::kLangue); });
  station.settings.JourSemaineNames = DayNames(langue);
  Settings::ChooseWeekday(station, CurrentWeekday(station.Now()) - 1);
}

// The screen has its own copy: the fitting reads the file anew into the engine's.
void LoadInstru(Station& station) {
  station.settings.instruHeld = CanRead(station.platform.stationFolder, station.files.Instrumental);
  LoadSaveInstrumental(station, "Load");
  station.settings.Instru = station.lists.Instru;
  Guarded(station, "SettingsLoad", [&] {
    station.settings.instruFromFile =
        station.platform.stationFolder.Exists(station.files.Instrumental);
  });
}

void LoadJoystickPorts(SettingsScreen& screen) {
  for (int port = 0; port <= kJoystickPorts; ++port)
    screen.JoystickPorts.push_back(std::to_string(port));
}

void LoadFiltre(Station& station) {
  SettingsScreen& screen = station.settings;
  screen.filtreHeld = CanRead(station.platform.stationFolder, station.files.Exclusion);
  LoadSaveExclusion(station, "Load");
  const auto& periods = station.lists.Exclusion;
  for (size_t row = 0; row < screen.Filtre.size() && row < periods.size(); ++row)
    screen.Filtre[row] = periods[row];
}

int32_t LocalNumber(const LocalValues& local, const SettingsControl& control) {
  const int byDefault = ValInt(control.byDefault);
  switch (control.form) {
    case LocalForm::kWord:
      return local.GetBool(control.store, byDefault != 0);
    case LocalForm::kAboveZero:
      return local.GetInt(control.store, byDefault) > 0;
    case LocalForm::kNotZero:
      return local.GetInt(control.store, byDefault) != 0;
    case LocalForm::kNumber:
      break;
  }
  return local.GetInt(control.store, byDefault);
}

void LoadLocalValues(Station& station) {
  for (const SettingsControl& control : SettingsControls())
    if (control.in == StoredIn::kLocal)
      PutNumber(station.settings, control, LocalNumber(station.platform.localValues, control));
}

// A text as it stands, anything else as its number: what is none is 0.
Value StoredValue(const SettingsScreen& screen, const SettingsControl& control) {
  if (control.kind == ControlKind::kText) return ControlText(screen, control);
  return ControlNumber(screen, control);
}

void SetField(Station& station, Recordset& row, const SettingsControl& control) {
  row.Set(control.store, StoredValue(station.settings, control));
  if (control.stored) control.stored(station);
}

bool IsHeld(const Station& station, const SettingsControl& control) {
  return station.settings.fieldHeld.test(static_cast<size_t>(control.field));
}

void SaveFields(Station& station) {
  const auto row = station.base.Table("Cnf");
  row->Edit();
  for (const SettingsControl* control : FieldsToWrite())
    if (IsHeld(station, *control))
      Guarded(station, "SettingsSave", [&] { SetField(station, *row, *control); });
  row->Update();
  station.base.CheckCnf();
}

void WriteFilesOfFields(Station& station) {
  for (const SettingsControl* control : FieldsToWrite())
    if (control->alsoWritten && IsHeld(station, *control))
      Guarded(station, "SettingsSave", [&] { control->alsoWritten(station); });
}

void SaveAudio(Station& station) {
  SettingsScreen& screen = station.settings;
  station.lists.AudioOutID = screen.PlayCombo;
  station.lists.AudioOutPFLID = screen.PlayPreecoute;
  LoadSaveAudio(station, "Save");
}

// What a number stands for, where that is known; a key of an earlier choice does not outlive it.
void SaveAudioValue(Station& station, int32_t number, const AudioValue& value) {
  LocalValues& local = station.platform.localValues;
  const std::vector<std::string>& keys = station.settings.PlayKeys;
  const bool known = number >= 0 && static_cast<size_t>(number) < keys.size();
  const bool same = keys.empty() && local.GetInt(value.number, -1) == number;
  const std::string key = known ? keys[static_cast<size_t>(number)] : "";
  if (!same && local.GetText(value.key, "") != key) local.Set(value.key, key);
  local.Set(value.number, std::to_string(number));
}

void SaveAudioValues(Station& station) {
  SaveAudioValue(station, station.settings.PlayCombo, kAirValue);
  SaveAudioValue(station, station.settings.PlayPreecoute, kPrelistenValue);
}

void SaveLocalSwitches(Station& station) {
  for (const SettingsControl& control : SettingsControls())
    if (control.in == StoredIn::kLocal && control.kind == ControlKind::kCheck)
      SaveControl(station, control);
}

// --- beside what others store ---

std::string FieldText(const SettingsScreen& screen, const SettingsControl& control) {
  return AsText(StoredValue(screen, control));
}

std::vector<std::string> FieldTexts(const SettingsScreen& screen) {
  std::vector<std::string> texts;
  for (const SettingsControl* control : FieldsToWrite())
    texts.push_back(FieldText(screen, *control));
  return texts;
}

void KeepAsLoaded(SettingsScreen& screen, const SettingsControl& control) {
  const std::vector<const SettingsControl*> fields = FieldsToWrite();
  for (size_t field = 0; field < screen.loadedFields.size(); ++field)
    if (fields[field]->field == control.field)
      screen.loadedFields[field] = FieldText(screen, control);
}

struct FieldVersions {
  std::vector<std::string> loaded, theirs, mine;
  RecordForms Forms() { return {FieldsOf(loaded), FieldsOf(theirs), FieldsOf(mine)}; }

 private:
  static RecordFields FieldsOf(std::vector<std::string>& texts) {
    const std::vector<const SettingsControl*> controls = FieldsToWrite();
    RecordFields fields;
    for (size_t field = 0; field < texts.size(); ++field)
      fields.push_back({controls[field]->name, &texts[field]});
    return fields;
  }
};

// What could not be read when the screen was loaded is nobody's change. Throws StoreError.
FieldVersions FieldsNow(Station& station) {
  station.base.CheckCnf();
  station.base.RequireCnf();
  SettingsScreen stored;
  for (const SettingsControl* control : FieldsToWrite())
    PutStored(stored, *control, station.base.ReadCnfField(control->field));
  FieldVersions fields{station.settings.loadedFields, FieldTexts(stored),
                       FieldTexts(station.settings)};
  fields.loaded.resize(fields.theirs.size());
  const std::vector<const SettingsControl*> controls = FieldsToWrite();
  for (size_t field = 0; field < controls.size(); ++field)
    if (!IsHeld(station, *controls[field])) fields.loaded[field] = fields.theirs[field];
  return fields;
}

// Only those that are others than on the screen.
void PutTexts(Station& station, const std::vector<std::string>& texts) {
  SettingsScreen& screen = station.settings;
  const std::vector<const SettingsControl*> controls = FieldsToWrite();
  for (size_t field = 0; field < controls.size(); ++field) {
    const SettingsControl& control = *controls[field];
    if (!IsHeld(station, control) || FieldText(screen, control) == texts[field]) continue;
    if (const auto* typed = std::get_if<SettingsControl::Typed>(&control.place))
      screen.** typed = texts[field];
    else
      PutNumber(screen, control, ValInt(texts[field]));
  }
}

std::string WordOf(Station& station, const char* control) {
  return SettingsCaption(control, static_cast<int>(station.base.CnfInt(Cnf::kLangue)));
}

// False: nothing is to be stored. Throws StoreError.
bool MergeSettings(Station& station) {
  SettingsScreen& screen = station.settings;
  RecordMerge merge;
  for (;;) {
    const int64_t counter = station.base.Db().ForeignCounter();
    if (counter == screen.counter) return true;
    FieldVersions fields = FieldsNow(station);
    const auto step = merge.Next(station, fields.Forms(),
                                 [&](const char* control) { return WordOf(station, control); });
    if (step == RecordMerge::Step::kLeave) return false;
    if (step == RecordMerge::Step::kReadAgain) continue;
    PutTexts(station, fields.mine);
    screen.loadedFields = std::move(fields.loaded);
    screen.counter = counter;
    return true;
  }
}

// What the base did not take would go with the screen.
bool StaysOpen(Station& station) {
  return station.platform.messages.Show("Alerte", kNotStored, Buttons::kYesNo) != Answer::kYes;
}

}  // namespace

void SettingsLoad(Station& station, SettingsDevices& devices) {
  station.settings = SettingsScreen{};
  Guarded(station, "SettingsLoad",
          [&] { station.settings.counter = station.base.Db().ForeignCounter(); });
  station.settings.Setting = LineSetting(station);
  station.base.CheckCnf();
  ReadFields(station, LoadStep::kBeforeOutputs);
  LoadAudio(station, devices);
  LoadDays(station);
  ReadFields(station, LoadStep::kBehindDays);
  LoadInstru(station);
  ReadFields(station, LoadStep::kBehindHours);
  LoadJoystickPorts(station.settings);
  ReadFields(station, LoadStep::kBehindPorts);
  LoadFiltre(station);
  station.settings.LangueNames = {"Français", "English", "Português", "Español"};
  ReadFields(station, LoadStep::kBehindFilter);
  Guarded(station, "SettingsLoad", [&] { LoadLocalValues(station); });
  station.settings.loadedFields = FieldTexts(station.settings);
}

bool SettingsSave(Station& station) {
  const SettingsScreen& screen = station.settings;
  const bool stored = Guarded(station, "SettingsSave", [&] { SaveFields(station); });
  if (screen.audioHeld) SaveAudio(station);
  SaveDayTimes(station, false);
  WriteFilesOfFields(station);
  if (screen.instruHeld) SaveInstru(station);
  if (screen.filtreHeld) SaveFiltre(station);
  if (screen.audioHeld) Guarded(station, "SettingsSave", [&] { SaveAudioValues(station); });
  Guarded(station, "SettingsSave", [&] { SaveLocalSwitches(station); });
  return stored;
}

void Settings::MnuParametrage_Click(Station& station, SettingsDevices& devices) {
  if (station.engine.ScreenLocked || station.settings.open) return;
  SettingsLoad(station, devices);
  station.settings.open = true;
}

void Settings::TakeOver(Station& station) {
  SettingsScreen& screen = station.settings;
  if (!screen.open) return;
  FieldVersions fields = FieldsNow(station);
  if (TakeOverFields(fields.Forms())) PutTexts(station, fields.mine);
  screen.loadedFields = std::move(fields.loaded);
}

void Settings::Form_Unload(Station& station) {
  if (!station.settings.open) return;
  bool merged = true;
  Guarded(station, "SettingsSave", [&] { merged = MergeSettings(station); });
  if (!merged) return;
  station.settings.open = SettingsSave(station) ? false : StaysOpen(station);
}

void SaveControl(Station& station, const SettingsControl& control) {
  if (control.in == StoredIn::kLocal) {
    station.platform.localValues.Set(control.store,
                                     std::to_string(ControlNumber(station.settings, control)));
  } else if (control.in == StoredIn::kAudio) {
    SaveAudio(station);
    SaveAudioValues(station);
  } else {
    const auto row = station.base.Table("Cnf");
    row->Edit();
    SetField(station, *row, control);
    row->Update();
    station.base.CheckCnf();
    KeepAsLoaded(station.settings, control);
    if (control.alsoWritten) control.alsoWritten(station);
  }
}

void SaveInstru(Station& station) {
  station.lists.Instru = station.settings.Instru;
  LoadSaveInstrumental(station, "Save");
}

void SaveFiltre(Station& station) {
  const auto& rows = station.settings.Filtre;
  auto& periods = station.lists.Exclusion;
  periods.assign(rows.begin(), rows.end());
  while (!periods.empty() && periods.back().first.empty() && periods.back().second.empty())
    periods.pop_back();
  LoadSaveExclusion(station, "Save");
}

}  // namespace zemo
