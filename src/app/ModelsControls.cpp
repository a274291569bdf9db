// The model editor as a script drives it: its days, its grids, and the pop-ups that these open.
#include <utility>

#include "app/OfficeDesk.h"
#include "app/Orders.h"
#include "scheduling/ModelEditor.h"
#include "scheduling/ModelScreen.h"
#include "scheduling/ModelTexts.h"
#include "scheduling/WeekModel.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

Rows SingleColumn(const std::vector<std::string>& entries) {
  Rows rows;
  for (const std::string& entry : entries) rows.push_back({entry});
  return rows;
}

const std::string& EntryOf(const std::vector<std::string>& entries, const char* popUp,
                           const std::string& text) {
  for (const std::string& entry : entries)
    if (EqualNoCase(entry, text)) return entry;
  throw OrderError(std::string(popUp) + " has no entry " + text);
}

// Puts the controls of the screen together.
class ModelsTable {
 public:
  explicit ModelsTable(OfficeDesk& desk)
      : desk_(desk), station_(desk.station), editor_(desk.station.modelEditor) {}

  OfficeScreen Made() {
    screen_.name = "models";
    screen_.title = [&editor = editor_] { return editor.Caption; };
    screen_.open = [&station = station_] { Models::MnuModel_Click(station); };
    screen_.isOpen = [&editor = editor_] { return editor.open; };
    screen_.close = [&station = station_] {
      if (Models::Form_QueryUnload(station)) Models::Form_Unload(station);
    };
    AddDays();
    AddButtons();
    AddStats();
    AddPopUps();
    AddGrid("Models", editor_.Models, Models::Models_Click).key = [&station =
                                                                       station_](ControlKey key) {
      if (key == ControlKey::kInsert) Models::Models_KeyInsert(station);
      if (key == ControlKey::kDelete) Models::Models_KeyDelete(station);
    };
    AddGrid("ModelSquelette", editor_.ModelSquelette, Models::ModelSquelette_Click).key =
        [&station = station_](ControlKey key) {
          if (key == ControlKey::kInsert) Models::ModelSquelette_KeyInsert(station);
          if (key == ControlKey::kDelete) Models::ModelSquelette_KeyDelete(station);
        };
    AddGrid("GVariete", editor_.GVariete, Models::GVariete_Click);
    screen_.grids[0].on = [&editor = editor_] { return !editor.skeleton; };
    screen_.grids[1].on = [&editor = editor_] { return editor.skeleton; };
    return std::move(screen_);
  }

 private:
  std::function<std::string()> CaptionOf(std::string name) const {
    return CaptionIn(screen_, ModelCaptions(), std::move(name));
  }
  void AddButton(const char* name, std::function<void()> pressed) {
    screen_.controls.push_back(Button(name, CaptionOf(name), std::move(pressed)));
  }

  void AddDays();
  void AddButtons();
  void AddStats();
  void AddPopUps();
  void AddPopUp(const char* name, std::function<Rows()> rows, std::function<bool()> on,
                std::function<void(const std::string& entry)> choose);
  OfficeGrid& AddGrid(const char* name, const TextGrid& grid, bool (*click)(Station&, GridPlace));

  OfficeDesk& desk_;
  Station& station_;
  ModelEditor& editor_;
  OfficeScreen screen_;
};

void ModelsTable::AddDays() {
  OfficeControl days;
  days.name = "JourSemaine";
  days.first = 1;
  days.last = kDaysOfWeek;
  days.value = [&editor = editor_] {
    std::vector<bool> selected;
    for (int day = 1; day <= kDaysOfWeek; ++day) selected.push_back(day == editor.JourSemaine);
    return selected;
  };
  days.put = [&station = station_](int day, const std::string& text) {
    if (!OnOrOff(text)) throw OrderError("a day goes off by another one");
    Models::JourSemaine_Click(station, day);
  };
  days.press = [&station = station_](int day, bool) { Models::JourSemaine_Click(station, day); };
  screen_.controls.push_back(std::move(days));
}

void ModelsTable::AddButtons() {
  AddButton("BtnSave", [&station = station_] { Models::BtnSave_Click(station); });
  AddButton("BtnImport", [&station = station_] { Models::BtnImport_Click(station); });
  AddButton("MnuCompteur", [&station = station_] { Models::MnuCompteur_Click(station); });
  screen_.controls.back().on = [&editor = editor_] { return editor.skeleton; };
  AddButton("MnuExport", [&desk = desk_] {
    if (const auto path = desk.PickPath())
      Models::MnuExport_Click(desk.station, *path, desk.spreadsheets);
  });
  for (const char* menu : {"MnuCopierJour", "MasterGenre", "MasterPourCent"})
    screen_.controls.push_back(Label(menu, CaptionOf(menu)));
}

void ModelsTable::AddStats() {
  OfficeList stats;
  stats.name = "Stats";
  stats.rows = [&editor = editor_] {
    Rows rows;
    for (const ModelEditor::GenreCount& line : editor.Stats) {
      rows.push_back({line.genre, line.count});
      if (editor.skeleton) rows.back().push_back(line.positions);
    }
    return rows;
  };
  screen_.lists.push_back(std::move(stats));
}

void ModelsTable::AddPopUp(const char* name, std::function<Rows()> rows, std::function<bool()> on,
                           std::function<void(const std::string& entry)> choose) {
  OfficeList popUp;
  popUp.name = name;
  popUp.rows = std::move(rows);
  popUp.on = std::move(on);
  // One entry, which may have commas.
  popUp.choose = [choose = std::move(choose)](const std::vector<std::string>& parts) {
    std::string entry = parts.front();
    for (size_t part = 1; part < parts.size(); ++part) entry += "," + parts[part];
    choose(entry);
  };
  screen_.lists.push_back(std::move(popUp));
}

void ModelsTable::AddPopUps() {
  Station& station = station_;
  ModelEditor& editor = editor_;
  AddPopUp(
      "PopGenre", [&editor] { return SingleColumn(editor.PopGenre); },
      [&editor] { return Models::OpenedPopUp(editor) == Models::PopUp::kGenre; },
      [&station, &editor](const std::string& genre) {
        Models::PopGenre_Click(station, EntryOf(editor.PopGenre, "PopGenre", genre));
      });
  AddPopUp(
      "PopPourCent", [&editor] { return SingleColumn(editor.PopPourCent); },
      [&editor] { return Models::OpenedPopUp(editor) == Models::PopUp::kPourCent; },
      [&station, &editor](const std::string& percent) {
        Models::PopPourCent_Click(station,
                                  ValInt(EntryOf(editor.PopPourCent, "PopPourCent", percent)));
      });
  std::vector<std::function<std::string()>> days;
  for (int day = 1; day <= kDaysOfWeek; ++day)
    days.push_back(CaptionOf("JourSemaine." + std::to_string(day)));
  AddPopUp(
      "PopJour",
      [captions = std::move(days)] {
        Rows rows;
        for (const auto& caption : captions) rows.push_back({caption()});
        return rows;
      },
      nullptr,
      [&station](const std::string& day) {
        Models::PopJour_Click(station, NumberBetween(day, 1, kDaysOfWeek));
      });
}

// A click where the screen has no such cell is none.
OfficeGrid& ModelsTable::AddGrid(const char* name, const TextGrid& grid,
                                 bool (*click)(Station&, GridPlace)) {
  OfficeGrid shown;
  shown.name = name;
  shown.rows = [&grid] { return GridRows(grid); };
  shown.click = [&station = station_, name, click](const CellClick& cell) {
    if (!click(station, {cell.row, cell.column}))
      throw OrderError(std::string(name) + " has no such cell");
  };
  return screen_.grids.emplace_back(std::move(shown));
}

}  // namespace

OfficeScreen ModelsScreenOf(OfficeDesk& desk) {
  return ModelsTable(desk).Made();
}

}  // namespace zemo
