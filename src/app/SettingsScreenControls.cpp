// The settings screen as a script drives it: the rows of the settings as controls, and the lists,
// the grid and the buttons beside them.
#include <algorithm>
#include <utility>

#include "app/OfficeDesk.h"
#include "app/Orders.h"
#include "settings/SettingsControls.h"
#include "settings/SettingsCouplings.h"
#include "settings/SettingsScreen.h"
#include "settings/SettingsTexts.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

using Entries = std::function<std::vector<std::string>()>;

// An entry of a combo box by its text, else by its number from 0.
int32_t EntryGiven(const std::vector<std::string>& entries, const std::string& text) {
  const auto found = std::find(entries.begin(), entries.end(), text);
  if (found != entries.end()) return static_cast<int32_t>(found - entries.begin());
  return NumberBetween(text, 0, static_cast<int32_t>(entries.size()) - 1);
}

std::string EntryText(const std::vector<std::string>& entries, int32_t entry) {
  const auto place = static_cast<size_t>(entry);
  return entry >= 0 && place < entries.size() ? entries[place] : std::string();
}

void RequireTaken(const std::optional<std::string>& why) {
  if (why) throw OrderError(*why);
}

void Give(OfficeDesk& desk, const SettingsControl& control, const std::string& value) {
  RequireTaken(SetControl(desk.station, desk.devices, control, value));
}

// Puts the controls of the screen together.
class SettingsTable {
 public:
  explicit SettingsTable(OfficeDesk& desk)
      : desk_(desk), station_(desk.station), editor_(desk.station.settings) {}

  OfficeScreen Made() {
    screen_.name = "settings";
    screen_.title = CaptionOf("title");
    screen_.open = [&desk = desk_] { Settings::MnuParametrage_Click(desk.station, desk.devices); };
    screen_.isOpen = [&editor = editor_] { return editor.open; };
    screen_.close = [&station = station_] { Settings::Form_Unload(station); };
    for (const SettingsControl& control : SettingsControls()) AddSetting(control);
    AddTabs();
    AddNotes();
    AddButtons();
    AddDay();
    AddHours();
    AddFilter();
    return std::move(screen_);
  }

 private:
  std::function<std::string()> CaptionOf(std::string name) const {
    return CaptionIn(screen_, SettingsCaptions(), std::move(name));
  }
  OfficeControl& Add(OfficeControl control) {
    return screen_.controls.emplace_back(std::move(control));
  }
  void AddShown(const char* name, const std::string& text) {
    Add(Label(name, [&text] { return text; }));
  }
  template <typename Pressed>
  void AddButton(const char* name, Pressed pressed) {
    Add(Button(name, CaptionOf(name), std::move(pressed)));
  }

  void AddSetting(const SettingsControl& control);
  void AddCheck(const SettingsControl& control);
  void AddOptions(const SettingsControl& control, int last);
  void AddCombo(const SettingsControl& control, const Entries& entries);
  void AddColour(const SettingsControl& control);
  void AddNumber(const SettingsControl& control);
  void AddTabs();
  void AddNotes();
  void AddButtons();
  void AddFileButton(const char* name, const char* box);
  void AddDay();
  void AddTimes(const char* name, Settings::TimeList list);
  void AddHours();
  void AddFilter();

  OfficeDesk& desk_;
  Station& station_;
  SettingsScreen& editor_;
  OfficeScreen screen_;
};

void SettingsTable::AddSetting(const SettingsControl& control) {
  SettingsScreen& editor = editor_;
  const std::string_view name = control.name;
  if (control.kind == ControlKind::kCheck) return AddCheck(control);
  if (control.kind == ControlKind::kColour) return AddColour(control);
  if (name == "Langue") return AddCombo(control, [&editor] { return editor.LangueNames; });
  if (control.in == StoredIn::kAudio)
    return AddCombo(control, [&editor] { return editor.PlayNames; });
  if (name == "ComboJoystiquePort")
    return AddCombo(control, [&editor] { return editor.JoystickPorts; });
  if (control.kind == ControlKind::kOption)
    return AddOptions(control, static_cast<int>(control.most));
  AddNumber(control);
}

void SettingsTable::AddCheck(const SettingsControl& control) {
  OfficeControl box;
  box.name = control.name;
  box.value = [&editor = editor_, &control] { return ControlNumber(editor, control) != 0; };
  box.put = [&desk = desk_, &control](int, const std::string& text) {
    Give(desk, control, OnOrOff(text) ? "1" : "0");
  };
  box.press = [&desk = desk_, &control](int, bool) {
    Give(desk, control, ControlNumber(desk.station.settings, control) != 0 ? "0" : "1");
  };
  Add(std::move(box));
}

void SettingsTable::AddOptions(const SettingsControl& control, int last) {
  OfficeControl group;
  group.name = control.name;
  group.first = 0;
  group.last = last;
  group.value = [&editor = editor_, &control, last] {
    std::vector<bool> options;
    for (int option = 0; option <= last; ++option)
      options.push_back(option == ControlNumber(editor, control));
    return options;
  };
  group.put = [&desk = desk_, &control](int option, const std::string& text) {
    if (!OnOrOff(text)) throw OrderError("an option goes off by another one");
    Give(desk, control, std::to_string(option));
  };
  group.press = [&desk = desk_, &control](int option, bool) {
    Give(desk, control, std::to_string(option));
  };
  Add(std::move(group));
}

void SettingsTable::AddCombo(const SettingsControl& control, const Entries& entries) {
  OfficeControl combo;
  combo.name = control.name;
  combo.value = [&editor = editor_, &control, entries] {
    return EntryText(entries(), static_cast<int32_t>(ControlNumber(editor, control)));
  };
  combo.put = [&desk = desk_, &control, entries](int, const std::string& text) {
    Give(desk, control, std::to_string(EntryGiven(entries(), text)));
  };
  Add(std::move(combo));
}

void SettingsTable::AddColour(const SettingsControl& control) {
  OfficeControl box;
  box.name = control.name;
  box.value = [&editor = editor_, &control] {
    return static_cast<double>(ControlNumber(editor, control));
  };
  box.press = [&desk = desk_, &control](int, bool) {
    if (const auto colour = desk.PickColour()) Give(desk, control, std::to_string(*colour));
  };
  Add(std::move(box));
}

// A slider or spinner, a text box, and the label beside a slider.
void SettingsTable::AddNumber(const SettingsControl& control) {
  OfficeControl box;
  box.name = control.name;
  box.value = [&editor = editor_, &control]() -> ControlValue {
    std::string text = ControlText(editor, control);
    if (text.empty() || !(control.kind == ControlKind::kSlider || IsSpinner(control))) return text;
    return static_cast<double>(ControlNumber(editor, control));
  };
  box.put = [&desk = desk_, &control](int, const std::string& text) { Give(desk, control, text); };
  Add(std::move(box));
  if (control.kind == ControlKind::kSlider)
    Add(Label("Lbl" + std::string(control.name),
              [&editor = editor_, &control] { return ControlLabel(editor, control); }));
}

// All tabs at once: each shows its caption.
void SettingsTable::AddTabs() {
  Add(CaptionGroup(screen_, SettingsCaptions(), "Config", kSettingsTabs));
}

void SettingsTable::AddNotes() {
  for (const char* name :
       {"LblNextStart", "StartAuto", "ArretSystem", "FrameJoystique", "FrameTopage"})
    Add(Label(name, CaptionOf(name)));
  Add(TextBox("Setting", editor_.Setting));
  AddShown("InfoERR", editor_.InfoERR);
  AddShown("LblJoystique", editor_.LblJoystique);
}

void SettingsTable::AddFileButton(const char* name, const char* box) {
  const SettingsControl& control = *FindSettingsControl(box);
  AddButton(name, [&desk = desk_, &control] {
    desk.ChooseFiles(ControlText(desk.station.settings, control), {},
                     [&desk, &control](const std::vector<std::string>& files) {
                       if (!files.empty()) Give(desk, control, files.front());
                     });
  });
}

void SettingsTable::AddButtons() {
  Station& station = station_;
  SettingsScreen& editor = editor_;
  AddFileButton("CmdFileAvant", "FileAvantPub");
  AddFileButton("CmdFileApres", "FileApresPub");
  AddButton("BtnSave", [&station] { Settings::BtnSaveTopage_Click(station); });
  AddButton("BtnInti", [&station] { RequireTaken(Settings::BtnInti_Click(station)); });
  AddButton("BtnIndex", [&station] { Settings::BtnIndex_Click(station); });
  AddButton("BtnRech", [&station] { Settings::BtnRech_Click(station); });
  AddButton("BtnAjouter", [&station, &editor] {
    RequireTaken(Settings::BtnAjouter_Click(station, editor.ChEdit));
  });
  OfficeControl& typed = Add(TextBox("ChEdit", editor.ChEdit));
  typed.key = [&station, &editor](ControlKey key) {
    if (key == ControlKey::kEnter) RequireTaken(Settings::ChEdit_KeyEnter(station, editor.ChEdit));
  };
}

void SettingsTable::AddDay() {
  OfficeControl day;
  day.name = "JourSemaine";
  day.value = [&editor = editor_] {
    return EntryText(editor.JourSemaineNames, editor.JourSemaine);
  };
  day.put = [&station = station_, &editor = editor_](int, const std::string& text) {
    Settings::ChooseWeekday(station, EntryGiven(editor.JourSemaineNames, text));
    editor.timeChosen = {};
    editor.timeTyped = {};
  };
  Add(std::move(day));
  AddTimes("ComboHeure", Settings::TimeList::kComboHeure);
  AddTimes("HeureArretSystem", Settings::TimeList::kHeureArretSystem);
  AddTimes("Topage", Settings::TimeList::kTopage);

  OfficeControl boxes;
  boxes.name = "ChDecoupe";
  boxes.first = 0;
  boxes.last = static_cast<int>(editor_.ChDecoupe.size()) - 1;
  boxes.value = [&editor = editor_] {
    return std::vector<std::string>(editor.ChDecoupe.begin(), editor.ChDecoupe.end());
  };
  boxes.put = [&editor = editor_](int box, const std::string& text) {
    editor.ChDecoupe[static_cast<size_t>(box)] = text;
  };
  Add(std::move(boxes));
}

// The list, and under the same name what is typed for it.
void SettingsTable::AddTimes(const char* name, Settings::TimeList list) {
  const auto which = static_cast<size_t>(list);
  std::string& typed = editor_.timeTyped[which];
  std::optional<size_t>& chosen = editor_.timeChosen[which];
  OfficeControl& box = Add(TextBox(name, typed));
  box.key = [&station = station_, &typed, &chosen, list](ControlKey key) {
    if (key == ControlKey::kDelete && chosen) {
      Settings::DeleteTime(station, list, *chosen);
      chosen.reset();
      typed.clear();
    } else if (key == ControlKey::kEnter) {
      RequireTaken(Settings::EnterTime(station, list, typed));
    }
  };
  OfficeList rows;
  rows.name = name;
  rows.rows = [&station = station_, list] {
    Rows times;
    for (const std::string& time : Settings::TimesOf(station, list)) times.push_back({time});
    return times;
  };
  rows.choose = [&station = station_, &typed, &chosen,
                 list](const std::vector<std::string>& given) {
    const std::vector<std::string>& times = Settings::TimesOf(station, list);
    for (const std::string& row : given) {
      chosen = static_cast<size_t>(NumberBetween(row, 1, static_cast<int32_t>(times.size())) - 1);
      typed = times[*chosen];
    }
  };
  screen_.lists.push_back(std::move(rows));
}

// An hour's entry, and whether it is ticked.
void SettingsTable::AddHours() {
  OfficeList hours;
  hours.name = "Instru";
  hours.rows = [&editor = editor_] {
    Rows rows;
    for (size_t hour = 0; hour < editor.Instru.size(); ++hour)
      rows.push_back({Settings::InstruEntry(editor, hour), editor.Instru[hour] ? "on" : "off"});
    return rows;
  };
  hours.choose = [&station = station_](const std::vector<std::string>& given) {
    std::vector<size_t> ticked;
    for (const std::string& row : given)
      if (!row.empty()) ticked.push_back(static_cast<size_t>(NumberBetween(row, 1, 24) - 1));
    Settings::TickHours(station, ticked);
  };
  screen_.lists.push_back(std::move(hours));
}

void SettingsTable::AddFilter() {
  SettingsScreen& editor = editor_;
  OfficeControl& typed = Add(TextBox("ChFiltre", editor.ChFiltre));
  typed.key = [&station = station_, &editor](ControlKey key) {
    if (key == ControlKey::kEnter)
      RequireTaken(Settings::ChFiltre_KeyEnter(station, editor.ChFiltre));
  };
  OfficeGrid grid;
  grid.name = "Filtre";
  grid.rows = [&editor, from = CaptionOf("Filtre.0"), to = CaptionOf("Filtre.1")] {
    Rows rows = {{from(), to()}};
    for (const auto& [begin, end] : editor.Filtre) rows.push_back({begin, end});
    return rows;
  };
  grid.click = [&editor](const CellClick& cell) {
    const auto rows = static_cast<int>(editor.Filtre.size());
    if (cell.row < 1 || cell.row > rows || cell.column < 0 || cell.column > 1)
      throw OrderError("Filtre has no cell " + std::to_string(cell.row) + " " +
                       std::to_string(cell.column));
    editor.FiltreRow = cell.row - 1;
    editor.FiltreColumn = cell.column;
  };
  screen_.grids.push_back(std::move(grid));
}

}  // namespace

OfficeScreen SettingsScreenOf(OfficeDesk& desk) {
  return SettingsTable(desk).Made();
}

}  // namespace zemo
