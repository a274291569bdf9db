#include "settings/SettingsCouplings.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "platform/Desktop.h"
#include "platform/Joystick.h"
#include "platform/LocalValues.h"
#include "platform/SettingsDevices.h"
#include "settings/GenreList.h"
#include "settings/SerialInput.h"
#include "settings/SettingsScreen.h"
#include "settings/SideFileIo.h"
#include "settings/SideFiles.h"
#include "station/BaseCompaction.h"
#include "station/OutputBuffers.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr int kDayHours = 24;

// A tick that must come off when another control is ticked.
void Untick(SettingsScreen& screen, int32_t SettingsScreen::*check, int field) {
  screen.*check = 0;
  screen.fieldHeld.set(static_cast<size_t>(field));
}

// Runs the choice of an output; what fails is logged under the control's name.
template <typename Choice>
void ChooseOutput(Station& station, const char* control, Choice choice) {
  try {
    choice();
  } catch (const DeviceError&) {
    LogCurrentException(station, control);
  }
}

std::optional<std::string> WhyTooFar(int64_t bytes, int64_t buffers) {
  const std::string why = WhyTooManyBuffers(bytes, buffers);
  return why.empty() ? std::nullopt : std::optional(why);
}

// What a list takes; empty for no time. A stop may say what it does besides.
std::string TimeTyped(std::string_view typed, Settings::TimeList list) {
  std::string entry = UpperAscii(Trim(typed));
  if (list == Settings::TimeList::kTopage) return IsClockTime(entry) ? entry : std::string();
  return IsDayTime(entry, list == Settings::TimeList::kHeureArretSystem) ? entry : std::string();
}

std::string NoTime(const char* where, std::string_view typed) {
  return std::string(where) + ": \"" + FirstCharacters(OneLine(typed), 40) +
         "\" is no time of day hh:mm";
}

const char* ListName(Settings::TimeList list) {
  switch (list) {
    case Settings::TimeList::kComboHeure:
      return "ComboHeure";
    case Settings::TimeList::kHeureArretSystem:
      return "HeureArretSystem";
    case Settings::TimeList::kTopage:
      break;
  }
  return "Topage";
}

// A list that could not be read would lose what it holds by being written.
std::string Unread(const char* where) {
  return std::string(where) + ": its file cannot be read";
}

// The minutes of the boxes that are not empty; the first box that holds none is told.
std::optional<std::string> ReadBoxes(const SettingsScreen& screen, std::vector<int>& minutes) {
  for (const std::string& box : screen.ChDecoupe) {
    if (Trim(box).empty()) continue;
    const double minute = Val(box);
    if (!(minute >= 0 && minute < 60))
      return "ChDecoupe: \"" + FirstCharacters(OneLine(box), 40) + "\" is outside 0 to 59 minutes";
    minutes.push_back(static_cast<int>(minute));
  }
  return std::nullopt;
}

// The genres of the library that the list lacks, in capitals and each once.
int AddGenres(Station& station, std::vector<std::string>& genres) {
  std::vector<std::string> known;
  for (const std::string& genre : genres) known.push_back(UpperLatin(Trim(genre)));
  int added = 0;
  station.base.Db().ReadRows("SELECT GENRE FROM Discotheque ", [&](const RowView& row) {
    std::string genre = UpperLatin(Trim(OneLine(row.Text(0))));
    if (genre.empty() || std::find(known.begin(), known.end(), genre) != known.end()) return;
    known.push_back(genre);
    genres.push_back(std::move(genre));
    ++added;
  });
  return added;
}

// The engine's lists are today's, whatever day the screen shows.
void RenewTodaysTimes(Station& station) {
  const int today = CurrentWeekday(station.Now()) - 1;
  if (station.settings.JourSemaine != today) return;
  station.lists.dayTimesStamp.clear();
  ReloadDayTimes(station, today);
}

}  // namespace

void SaveDayTimes(Station& station, bool changedOnly) {
  SettingsScreen& screen = station.settings;
  auto& [starts, stops, markers] = screen.timesRead;
  const bool times =
      !changedOnly || screen.ComboHeure != starts || screen.HeureArretSystem != stops;
  const bool topage = !changedOnly || screen.Topage != markers;
  bool saved = false;
  if (screen.timesHeld && times && LoadSaveStartStop(station, "Save", screen.JourSemaine, false)) {
    starts = screen.ComboHeure;
    stops = screen.HeureArretSystem;
    saved = true;
  }
  if (screen.topageHeld && topage && LoadSaveTopage(station, "Save", screen.JourSemaine, false)) {
    markers = screen.Topage;
    saved = true;
  }
  if (saved) RenewTodaysTimes(station);
}

void Settings::CheckInstrumental_Click(Station& station, SettingsDevices&) {
  SettingsScreen& screen = station.settings;
  if (screen.CheckInstrumental != 0)
    Untick(screen, &SettingsScreen::CheckPubToph, Cnf::kPubAvecTopH);
}

void Settings::CheckPubToph_Click(Station& station, SettingsDevices&) {
  constexpr int32_t kTooLate = 53, kInstead = 48;  // minutes
  SettingsScreen& screen = station.settings;
  if (screen.CheckPubToph == 0) return;
  Untick(screen, &SettingsScreen::CheckInstrumental, Cnf::kInstrumental);
  if (ValInt(screen.SpinOptimise) < kTooLate) return;
  screen.SpinOptimise = std::to_string(kInstead);
  screen.fieldHeld.set(Cnf::kHOptimise);
}

// Nothing is shown where nothing was done.
void Settings::ChoosePort(Station& station, SettingsDevices&) {
  SettingsScreen& screen = station.settings;
  std::string told = PortCom_Click(station, screen.PortCom, screen.Setting);
  if (!told.empty()) screen.InfoERR = std::move(told);
}

void Settings::ChooseJoystick(Station& station, SettingsDevices&) {
  const bool answers = UseJoystick(station, station.settings.ComboJoystiquePort);
  station.settings.LblJoystique = answers ? "Yes" : "No";
}

void Settings::ChooseAirOutput(Station& station, SettingsDevices& devices) {
  ChooseOutput(station, "PlayCombo", [&] {
    if (station.Sound().State() == OutputState::kStarted) return;
    devices.SelectOutput(station.settings.PlayCombo);
    station.lists.AudioOutID = station.settings.PlayCombo;
  });
}

void Settings::ChoosePrelistenOutput(Station& station, SettingsDevices& devices) {
  ChooseOutput(station, "PlayPréecoute", [&] {
    if (!devices.PrelistenClosed()) return;
    devices.SelectPrelisten(station.settings.PlayPreecoute);
    station.lists.AudioOutPFLID = station.settings.PlayPreecoute;
  });
}

void Settings::PaintCounters(Station& station, SettingsDevices&) {
  station.notices.counterColour = static_cast<uint32_t>(station.settings.PictureColor);
}

void Settings::StoreXRapport(Station& station, SettingsDevices&) {
  try {
    station.platform.localValues.Set("XRapport",
                                     std::to_string(ValInt(station.settings.SpinRapportDiff)));
  } catch (const std::exception&) {
    LogCurrentException(station, "SpinRapportDiff");
  }
}

std::optional<std::string> Settings::BuffersOfThisSize(const SettingsScreen& screen,
                                                       std::string_view bytes) {
  return WhyTooFar(ValInt(bytes), ValInt(screen.NbrBuffers));
}

std::optional<std::string> Settings::ThatManyBuffers(const SettingsScreen& screen,
                                                     std::string_view buffers) {
  return WhyTooFar(ValInt(screen.Buffers), ValInt(buffers));
}

void Settings::TakeLongestImpulse(Station& station) {
  station.engine.TempsMaxiImPulsion = ValInt(station.settings.SpinImpulsion);
}

void Settings::WriteLanguage(Station& station) {
  WriteSideFileDurably(station.platform.stationFolder, "Langue.Txt",
                       std::to_string(station.settings.Langue) + "\r\n");
}

void Settings::ChooseWeekday(Station& station, int day) {
  constexpr int kDaysOfWeek = 7;
  if (day < 0 || day >= kDaysOfWeek) return;
  const Folder& folder = station.platform.stationFolder;
  SettingsScreen& screen = station.settings;
  SaveDayTimes(station, true);
  screen.JourSemaine = day;
  screen.ComboHeure.clear();
  screen.HeureArretSystem.clear();
  screen.Topage.clear();
  screen.timesHeld = CanRead(folder, "StartStop." + std::to_string(day));
  screen.topageHeld = CanRead(folder, "Topage." + std::to_string(day));
  LoadSaveStartStop(station, "Load", day, false);
  LoadSaveTopage(station, "Load", day, false);
  screen.timesRead = {screen.ComboHeure, screen.HeureArretSystem, screen.Topage};
}

std::vector<std::string>& Settings::TimesOf(Station& station, Settings::TimeList list) {
  SettingsScreen& screen = station.settings;
  if (list == Settings::TimeList::kComboHeure) return screen.ComboHeure;
  return list == Settings::TimeList::kHeureArretSystem ? screen.HeureArretSystem : screen.Topage;
}

std::optional<std::string> Settings::EnterTime(Station& station, Settings::TimeList list,
                                               std::string_view typed) {
  const std::string time = TimeTyped(typed, list);
  if (time.empty()) return NoTime(ListName(list), typed);
  const SettingsScreen& screen = station.settings;
  const bool held = list == Settings::TimeList::kTopage ? screen.topageHeld : screen.timesHeld;
  if (!held) return Unread(ListName(list));
  TimesOf(station, list).push_back(time);
  return std::nullopt;
}

void Settings::DeleteTime(Station& station, Settings::TimeList list, size_t selected) {
  std::vector<std::string>& times = TimesOf(station, list);
  if (selected < times.size()) times.erase(times.begin() + static_cast<std::ptrdiff_t>(selected));
}

std::optional<std::string> Settings::BtnAjouter_Click(Station& station, std::string_view ChEdit) {
  return EnterTime(station, Settings::TimeList::kTopage, ChEdit);
}

std::optional<std::string> Settings::ChEdit_KeyEnter(Station& station, std::string_view ChEdit) {
  if (station.settings.Topage.size() >= Settings::kMostTopage) return std::nullopt;
  return BtnAjouter_Click(station, ChEdit);
}

void Settings::BtnSaveTopage_Click(Station& station) {
  SettingsScreen& screen = station.settings;
  if (!screen.topageHeld || !LoadSaveTopage(station, "Save", screen.JourSemaine, false)) return;
  screen.timesRead[2] = screen.Topage;
  RenewTodaysTimes(station);
}

std::optional<std::string> Settings::BtnInti_Click(Station& station) {
  SettingsScreen& screen = station.settings;
  std::vector<int> minutes;
  if (auto why = ReadBoxes(screen, minutes)) return why;
  screen.Topage.clear();
  for (int hour = 0; hour < kDayHours; ++hour)
    for (const int minute : minutes)
      screen.Topage.push_back(TwoDigits(hour) + ":" + TwoDigits(minute));
  screen.topageHeld = true;
  return std::nullopt;
}

std::string Settings::InstruEntry(const SettingsScreen& screen, size_t hour) {
  return TwoDigits(static_cast<int>(hour)) + (screen.instruFromFile ? "h00" : "");
}

void Settings::TickHours(Station& station, const std::vector<size_t>& hours) {
  SettingsScreen& screen = station.settings;
  screen.Instru.fill(false);
  for (const size_t hour : hours)
    if (hour < screen.Instru.size()) screen.Instru[hour] = true;
  screen.instruHeld = true;
}

std::optional<std::string> Settings::ChFiltre_KeyEnter(Station& station, std::string_view typed) {
  SettingsScreen& screen = station.settings;
  const std::string time = Trim(typed);
  if (!time.empty() && !IsClockTime(time)) return NoTime("ChFiltre", typed);
  const auto row = static_cast<size_t>(screen.FiltreRow);
  if (row >= screen.Filtre.size()) return std::nullopt;
  if (!screen.filtreHeld) return Unread("Filtre");
  (screen.FiltreColumn == 0 ? screen.Filtre[row].first : screen.Filtre[row].second) = time;
  return std::nullopt;
}

void Settings::BtnIndex_Click(Station& station) {
  const Answer answer = station.platform.messages.Show(
      "Alerte", "Vous devez être tout seul sur la base pour\r\néxecuter cette opération",
      Buttons::kOkCancel, Icon::kStop);
  if (answer == Answer::kOk) CompactStationBase(station);
}

void Settings::BtnRech_Click(Station& station) {
  try {
    // A list that cannot be read would lose its genres by being saved.
    ReadSideFile(station.platform.stationFolder, station.files.Genre);
    std::vector<std::string> genres;
    LoadSaveGenres(station, "Load", genres);
    const int added = AddGenres(station, genres);
    LoadSaveGenres(station, "Save", genres);
    LoadSaveGenres(station, "Load", genres);
    station.platform.messages.Show(
        "Alerte", std::to_string(added) + " Genres ont étés ajoutés a la liste", Buttons::kOk);
  } catch (const std::exception&) {
    LogCurrentException(station, "BtnRech");
  }
}

}  // namespace zemo
