#include "settings/SettingsScreen.h"

#include <algorithm>
#include <exception>
#include <string>

#include "platform/Folder.h"
#include "platform/LocalValues.h"
#include "platform/SettingsDevices.h"
#include "settings/SerialInput.h"
#include "settings/SettingsControls.h"
#include "settings/SettingsCouplings.h"
#include "settings/SideFileIo.h"
#include "settings/SideFiles.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

using namespace Cnf;

constexpr const char* kLangueFile = "Langue.Txt";

// The local values of a choice of output.
struct AudioValue {
  const char* number;
  const char* key;
};
constexpr AudioValue kAirValue{"AudioOutID", "AudioOutName"};
constexpr AudioValue kPrelistenValue{"AudioOutPFLID", "AudioOutPFLName"};

// The order in which the controls are read, by steps; between them stands what is no field.
constexpr int kFirstFields[] = {kPmixDef,           kPmixPubs,
                                kPmixToph,          kPmixJingles,
                                kFadeOut,           kJingles,
                                kJinglesIntro,      kVolumeMusique,
                                kVolumeMusiqueSous, kVolumeMusiqueSurImpression,
                                kVolumePubs,        kPrioritePubs,
                                kBuffers,           kCycleMaxi,
                                kJingleAvantPubs,   kJingleApresPubs,
                                kPurgeRapport,      kPrioriteRubriques};
constexpr int kMiddleFields[] = {kPortCom,
                                 kEntreSat,
                                 kNbrBuffers,
                                 kJingleCourt,
                                 kGraphiqueMini,
                                 kJingleEnFinIntro,
                                 kTempRequette,
                                 kVeille,
                                 kTextVeille,
                                 kMiniFinHeure,
                                 kOptimiseToph,
                                 kHOptimise,
                                 kTempsMaxiImPulsion,
                                 kSuppressionPub,
                                 kOffsetTopH,
                                 kSquelette,
                                 kInstrumental};
constexpr int kBehindInstru[] = {kEcartArtiste, kPubAvecTopH, kVolumeRubriques, kCheckNational,
                                 kJingleExtraitYN};
constexpr int kBehindJoystick[] = {kDecalDiff, kExtraitAuto, kInExtrait, kOutExtrait};

// The order in which they are written.
constexpr int kSaveOrder[] = {kPmixDef,
                              kPmixPubs,
                              kPmixToph,
                              kPmixJingles,
                              kJingles,
                              kJinglesIntro,
                              kVolumeMusique,
                              kVolumeMusiqueSous,
                              kVolumeMusiqueSurImpression,
                              kVolumePubs,
                              kVolumeRubriques,
                              kFadeOut,
                              kPrioritePubs,
                              kBuffers,
                              kCycleMaxi,
                              kJingleAvantPubs,
                              kJingleApresPubs,
                              kPurgeRapport,
                              kPrioriteRubriques,
                              kPortCom,
                              kEntreSat,
                              kNbrBuffers,
                              kJingleCourt,
                              kGraphiqueMini,
                              kJingleEnFinIntro,
                              kTempRequette,
                              kVeille,
                              kTextVeille,
                              kMiniFinHeure,
                              kOptimiseToph,
                              kHOptimise,
                              kTempsMaxiImPulsion,
                              kSuppressionPub,
                              kOffsetTopH,
                              kSquelette,
                              kLangue,
                              kInstrumental,
                              kEcartArtiste,
                              kPubAvecTopH,
                              kCouleurdesCompteur,
                              kCheckNational,
                              kJingleExtraitYN,
                              kJoystiquePort,
                              kDecalDiff,
                              kExtraitAuto,
                              kInExtrait,
                              kOutExtrait};

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

// A file name is taken only where there is one; so is the screen saver's text.
void ReadField(Station& station, int field) {
  SettingsScreen& screen = station.settings;
  const SettingsControl& control = *FindSettingsControl(field);
  const bool held = Guarded(station, "SettingsLoad", [&] {
    station.base.RequireCnf();
    const Value& value = station.base.ReadCnfField(field);
    const auto* number = std::get_if<SettingsControl::Number>(&control.place);
    if (number && control.kind == ControlKind::kCheck)
      screen.** number = AsBool(value) ? 1 : 0;
    else if (number && (field == kOptimiseToph || field == kSquelette))
      screen.** number = AsBool(value) ? 1 : 0;  // stored as yes or no
    else if (number)
      screen.** number = static_cast<int32_t>(AsInt(value));
    else if (control.kind != ControlKind::kText || !Trim(AsText(value)).empty())
      screen.*std::get<SettingsControl::Typed>(control.place) = AsText(value);
  });
  screen.fieldHeld.set(static_cast<size_t>(field), held);
}

template <size_t Count>
void ReadFields(Station& station, const int (&fields)[Count]) {
  for (const int field : fields) ReadField(station, field);
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
  Guarded(station, "SettingsLoad", [&] { langue = station.base.CnfInt(kLangue); });
  station.settings.JourSemaineNames = DayNames(langue);
  ChooseJourSemaine(station, JourSemaineCourant(station.Now()) - 1);
}

// The screen has its own copy: the fitting reads the file anew into the engine's.
void LoadInstru(Station& station) {
  station.settings.instruHeld = CanRead(station.platform.stationFolder, station.files.Instrumental);
  LoadSaveInstrumental(station, "Load");
  station.settings.Instru = station.lists.Instru;
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

void LoadLocalSwitches(Station& station) {
  const LocalValues& local = station.platform.localValues;
  SettingsScreen& screen = station.settings;
  screen.CheckAutoPlay = local.GetBool("AutoPlay", false) ? 1 : 0;
  screen.RapportSquelette = local.GetInt("RapportSquelette", 0) > 0 ? 1 : 0;
  screen.CheckDoublonYN = local.GetInt("CheckDoublonYN", 0) != 0 ? 1 : 0;
  screen.SpinRapportDiff = std::to_string(local.GetInt("XRapport", kDefaultXRapport));
}

// A text as it stands, anything else as its number: what is none is 0.
Value StoredValue(const SettingsScreen& screen, const SettingsControl& control) {
  if (control.kind == ControlKind::kText) return ControlText(screen, control);
  return ControlNumber(screen, control);
}

void SaveLangue(Station& station) {
  WriteSideFileDurably(station.platform.stationFolder, kLangueFile,
                       std::to_string(station.settings.Langue) + "\r\n");
}

void SetField(Station& station, Recordset& row, const SettingsControl& control) {
  row.Set(control.store, StoredValue(station.settings, control));
  if (control.field == kTempsMaxiImPulsion)
    station.engine.TempsMaxiImPulsion =
        static_cast<int32_t>(ControlNumber(station.settings, control));
}

void SaveFields(Station& station) {
  const auto row = station.base.Table("Cnf");
  row->Edit();
  for (const int field : kSaveOrder)
    if (station.settings.fieldHeld.test(static_cast<size_t>(field)))
      Guarded(station, "SettingsSave",
              [&] { SetField(station, *row, *FindSettingsControl(field)); });
  row->Update();
  station.base.CheckCnf();
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

}  // namespace

void SettingsLoad(Station& station, SettingsDevices& devices) {
  station.settings = SettingsScreen{};
  station.settings.Setting = LineSetting(station);
  station.base.CheckCnf();
  ReadFields(station, kFirstFields);
  LoadAudio(station, devices);
  LoadDays(station);
  ReadFields(station, kMiddleFields);
  LoadInstru(station);
  ReadFields(station, kBehindInstru);
  LoadJoystickPorts(station.settings);
  ReadField(station, kJoystiquePort);
  ReadFields(station, kBehindJoystick);
  LoadFiltre(station);
  station.settings.LangueNames = {"Français", "English", "Português", "Español"};
  ReadField(station, kLangue);
  ReadField(station, kCouleurdesCompteur);
  Guarded(station, "SettingsLoad", [&] { LoadLocalSwitches(station); });
}

void SettingsSave(Station& station) {
  const SettingsScreen& screen = station.settings;
  Guarded(station, "SettingsSave", [&] { SaveFields(station); });
  if (screen.audioHeld) SaveAudio(station);
  if (screen.timesHeld) LoadSaveStartStop(station, "Save", screen.JourSemaine, false);
  if (screen.topageHeld) LoadSaveTopage(station, "Save", screen.JourSemaine, false);
  if (screen.fieldHeld.test(kLangue))
    Guarded(station, "SettingsSave", [&] { SaveLangue(station); });
  if (screen.instruHeld) SaveInstru(station);
  if (screen.filtreHeld) SaveFiltre(station);
  if (screen.audioHeld) Guarded(station, "SettingsSave", [&] { SaveAudioValues(station); });
  Guarded(station, "SettingsSave", [&] { SaveLocalSwitches(station); });
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
    if (control.field == kLangue) SaveLangue(station);
  }
}

void SaveInstru(Station& station) {
  station.lists.Instru = station.settings.Instru;
  LoadSaveInstrumental(station, "Save");
}

void SaveFiltre(Station& station) {
  station.lists.Exclusion.clear();
  for (const auto& row : station.settings.Filtre)
    if (!row.first.empty()) station.lists.Exclusion.push_back(row);
  LoadSaveExclusion(station, "Save");
}

}  // namespace zemo
