// The campaign editor as a script drives it: its controls, its overview and its grid.
#include <utility>

#include "app/OfficeDesk.h"
#include "app/Orders.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "traffic/CampaignMarking.h"
#include "traffic/CampaignSheet.h"
#include "traffic/CampaignTexts.h"

namespace zemo {

namespace {

constexpr int kOverviewColumns = 7;
constexpr int kStartDay = 1, kEndDay = 2;  // modes of the calendar

// Puts the controls of the screen together.
class CampaignTable {
 public:
  explicit CampaignTable(OfficeDesk& desk)
      : desk_(desk), station_(desk.station), editor_(desk.campaigns) {}

  OfficeScreen Made() {
    screen_.name = "campaigns";
    screen_.title = CaptionOf("title");
    screen_.open = [&station = station_, &editor = editor_] {
      Campaigns::MnuHPubs_Click(station, editor);
    };
    screen_.isOpen = [&editor = editor_] { return editor.open; };
    screen_.close = [&station = station_, &editor = editor_] {
      Campaigns::Form_Unload(station, editor);
    };
    AddRecord();
    AddDates();
    AddDivision();
    AddKind();
    AddRecordButtons();
    AddGridButtons();
    AddOverview();
    AddGrid("GPub", editor_.GPub);
    AddGrid("GPubReference", editor_.GPubReference);
    return std::move(screen_);
  }

 private:
  std::function<std::string()> CaptionOf(std::string name) const {
    return CaptionIn(screen_, CampaignCaptions(), std::move(name));
  }
  OfficeControl& Add(OfficeControl control) {
    return screen_.controls.emplace_back(std::move(control));
  }
  void AddLabel(const char* name, const std::string& text) {
    Add(Label(name, [&text] { return text; }));
  }
  template <typename Routine>
  OfficeControl& AddButton(const char* name, Routine routine) {
    return Add(Button(name, CaptionOf(name), [&station = station_, &editor = editor_, routine] {
      routine(station, editor);
    }));
  }
  // One that is off at times.
  template <typename Routine>
  void AddButton(const char* name, bool& enabled, Routine routine) {
    AddButton(name, routine).on = [&enabled] { return enabled; };
  }

  void AddRecord();
  void AddDates();
  void AddDivision();
  void AddKind();
  void AddClosedList(const char* name, std::string& text, std::vector<std::string>& offer);
  void AddRecordButtons();
  void AddGridButtons();
  void AddOverview();
  void AddGrid(const char* name, TextGrid& grid);

  OfficeDesk& desk_;
  Station& station_;
  CampaignEditor& editor_;
  OfficeScreen screen_;
};

void CampaignTable::AddRecord() {
  AddLabel("LblCode", editor_.LblCode);
  Add(TextBox("FichierAudio", editor_.FichierAudio));
  Add(TextBox("Longeur", editor_.Longeur)).put = [&editor = editor_](int, const std::string& text) {
    Campaigns::Longeur_Change(editor, text);
  };
  AddLabel("LblTemp", editor_.LblTemp);
  Add(TextBox("ChAnnonceur", editor_.ChAnnonceur));
  Add(TextBox("Categorie", editor_.Categorie)).key = [&station = station_,
                                                      &editor = editor_](ControlKey key) {
    if (key == ControlKey::kEnter) Campaigns::Categorie_KeyEnter(station, editor);
    if (key == ControlKey::kDelete) Campaigns::Categorie_KeyDelete(station, editor);
  };
  AddClosedList("ComboPriority", editor_.ComboPriority, editor_.ComboPriorityList);
  Add(TextBox("ChContact", editor_.ChContact));
  AddClosedList("GenreAssocie", editor_.GenreAssocie, editor_.GenreAssocieList);
  AddLabel("LblInfoPub", editor_.LblInfoPub);
  AddLabel("LblTotalMsg", editor_.LblTotalMsg);
  AddLabel("LblTotalJours", editor_.LblTotalJours);
  AddButton("CmdLoadFile", [&desk = desk_](Station& station, CampaignEditor& editor) {
    desk.ChooseFiles(Campaigns::FileForSelector(station, editor), {},
                     [&](const std::vector<std::string>& files) {
                       Campaigns::TakeFiles(station, editor, files);
                     });
  });
}

void CampaignTable::AddDates() {
  const auto pick = [&desk = desk_](int mode) {
    if (const auto day = desk.PickDay())
      Campaigns::PickDay(desk.station, desk.campaigns, mode, DateText(*day));
  };
  AddLabel("LblDepartPub", editor_.LblDepartPub);
  screen_.controls.back().press = [&desk = desk_, pick](int, bool right) {
    if (right) return Campaigns::LblDepartPub_RightClick(desk.station, desk.campaigns);
    pick(kStartDay);
  };
  AddLabel("LblFinPub", editor_.LblFinPub);
  screen_.controls.back().press = [pick](int, bool right) {
    if (!right) pick(kEndDay);
  };
}

void CampaignTable::AddDivision() {
  Add(TextBox("HDepPub", editor_.HDepPub));
  Add(TextBox("HFinPub", editor_.HFinPub));
  OfficeControl marks;
  marks.name = "DecoupagePub";
  marks.first = 0;
  marks.last = static_cast<int>(editor_.DecoupagePub.size()) - 1;
  marks.value = [&boxes = editor_.DecoupagePub] {
    return std::vector<std::string>(boxes.begin(), boxes.end());
  };
  marks.put = [&boxes = editor_.DecoupagePub](int box, const std::string& text) {
    boxes[static_cast<size_t>(box)] = text;
  };
  Add(std::move(marks));
}

void CampaignTable::AddKind() {
  OfficeControl kind;
  kind.name = "OptPub";
  kind.first = 0;
  kind.last = 1;
  kind.value = [&options = editor_.OptPub] {
    return std::vector<bool>(options.begin(), options.end());
  };
  kind.put = [&editor = editor_](int option, const std::string& text) {
    if (OnOrOff(text)) Campaigns::OptPub_Click(editor, option);
  };
  kind.press = [&editor = editor_](int option, bool) { Campaigns::OptPub_Click(editor, option); };
  Add(std::move(kind));
}

void CampaignTable::AddClosedList(const char* name, std::string& text,
                                  std::vector<std::string>& offer) {
  Add(TextBox(name, text)).put = [&text, &offer, name](int, const std::string& chosen) {
    for (const std::string& entry : offer)
      if (EqualNoCase(entry, chosen)) {
        text = entry;
        return;
      }
    if (!chosen.empty()) throw OrderError(std::string(name) + " has no entry " + chosen);
    text.clear();
  };
}

void CampaignTable::AddRecordButtons() {
  AddButton("BtnNew", editor_.BtnNewEnabled, Campaigns::BtnNew_Click);
  AddButton("BtnAjouter", editor_.BtnAjouterEnabled, Campaigns::BtnAjouter_Click);
  AddButton("BtnReplacer", editor_.BtnReplacerEnabled, Campaigns::BtnReplacer_Click);
  AddButton("BtnDelete", editor_.BtnDeleteEnabled, Campaigns::BtnDelete_Click);
  AddButton("BtnDebut", Campaigns::BtnDebut_Click);
  AddButton("BtnMoins", Campaigns::BtnMoins_Click);
  AddButton("BtnPlus", Campaigns::BtnPlus_Click);
  AddButton("BtnFin", Campaigns::BtnFin_Click);
  AddButton("BtnRecherhe", Campaigns::BtnRecherhe_Click);
  AddButton("ImgMemo",
            [](Station& station, CampaignEditor&) { Campaigns::ImgMemo_Click(station); });
  AddButton("BtnImprimer", [](Station& station, CampaignEditor& editor) {
    PrintedPages printed = Campaigns::BtnImprimer_Click(station, editor);
    station.events.Print(printed.title, std::move(printed.pages));
  });
}

void CampaignTable::AddGridButtons() {
  AddButton("CmdInitGrille", Campaigns::CmdInitGrille_Click);
  AddButton("BtnCopyGrille",
            [](Station&, CampaignEditor& editor) { Campaigns::BtnCopyGrille_Click(editor); });
  AddButton("BtnCollerGrille",
            [](Station&, CampaignEditor& editor) { Campaigns::BtnCollerGrille_Click(editor); });
  AddButton("BtnDecalY",
            [](Station&, CampaignEditor& editor) { Campaigns::BtnDecalY_Click(editor); });
}

// The list, and its heads under the same name.
void CampaignTable::AddOverview() {
  const auto shown = [&editor = editor_] { return editor.PLPubVisible; };
  OfficeControl heads = CaptionGroup(screen_, CampaignCaptions(), "PLPub", kOverviewColumns);
  heads.on = shown;
  heads.press = [&editor = editor_](int column, bool right) {
    if (!right) Campaigns::PLPub_ColumnClick(editor, column);
  };
  Add(std::move(heads));

  OfficeList lines;
  lines.name = "PLPub";
  lines.on = shown;
  lines.rows = [&editor = editor_] {
    Rows rows;
    for (const CampaignEditor::OverviewLine& line : editor.PLPub) {
      rows.push_back({line.text});
      rows.back().insert(rows.back().end(), line.subItems.begin(), line.subItems.end());
    }
    return rows;
  };
  lines.choose = [&station = station_, &editor = editor_](const std::vector<std::string>& values) {
    const auto most = static_cast<int32_t>(editor.PLPub.size());
    const int32_t line = NumberBetween(values.back(), 1, most);
    Campaigns::PLPub_DblClick(station, editor, static_cast<size_t>(line - 1));
  };
  screen_.lists.push_back(std::move(lines));
}

// The copy is never seen.
void CampaignTable::AddGrid(const char* name, TextGrid& grid) {
  OfficeGrid shown;
  shown.name = name;
  shown.rows = [&grid] { return GridRows(grid); };
  if (&grid == &editor_.GPubReference) shown.on = [] { return false; };
  shown.click = [&station = station_, &editor = editor_, &grid](const CellClick& click) {
    if (click.row >= grid.RowCount() || click.column >= GridColumns(grid))
      throw OrderError("GPub has no such cell");
    Campaigns::GPub_MouseUp(station, editor, click.right ? MouseButton::kRight : MouseButton::kLeft,
                            click.shift, click.ctrl, {click.row, click.column});
  };
  screen_.grids.push_back(std::move(shown));
}

}  // namespace

OfficeScreen CampaignScreenOf(OfficeDesk& desk) {
  return CampaignTable(desk).Made();
}

}  // namespace zemo
