// The report screen as a script drives it: its controls and its two lists.
#include <utility>

#include "app/OfficeDesk.h"
#include "app/Orders.h"
#include "platform/real/files/WholeFiles.h"
#include "reports/ReportScreen.h"
#include "reports/ReportTexts.h"
#include "station/Station.h"

namespace zemo {

namespace {

// Puts the controls of the screen together.
class ReportTable {
 public:
  explicit ReportTable(OfficeDesk& desk)
      : desk_(desk), station_(desk.station), editor_(desk.report) {}

  OfficeScreen Made() {
    screen_.name = "report";
    screen_.title = CaptionOf("title");
    screen_.open = [&station = station_, &editor = editor_] {
      Report::MnuRapport_Click(station, editor);
    };
    screen_.isOpen = [&editor = editor_] { return editor.open; };
    screen_.close = [&editor = editor_] { Report::Form_Unload(editor); };
    AddSpan();
    AddFilters();
    AddOutputs();
    AddList("ListRap", editor_.ListRap, RapCol::kCount, Report::ListRap_ColumnClick);
    AddList("ListStat", editor_.ListStat, StatCol::kCount, Report::ListStat_ColumnClick);
    return std::move(screen_);
  }

 private:
  std::function<std::string()> CaptionOf(std::string name) const {
    return CaptionIn(screen_, ReportCaptions(), std::move(name));
  }
  OfficeControl& Add(OfficeControl control) {
    return screen_.controls.emplace_back(std::move(control));
  }
  void AddLabel(const char* name, const std::string& text) {
    Add(Label(name, [&text] { return text; }));
  }
  template <typename Pressed>
  OfficeControl& AddButton(const char* name, Pressed pressed) {
    return Add(Button(name, CaptionOf(name),
                      [&desk = desk_, pressed] { pressed(desk, desk.station, desk.report); }));
  }
  void AddFilter(const char* name, const std::string& text,
                 void (*change)(Station&, ReportEditor&, const std::string&)) {
    OfficeControl filter = Label(name, [&text] { return text; });
    filter.put = [&station = station_, &editor = editor_, change](int, const std::string& typed) {
      change(station, editor, typed);
    };
    Add(std::move(filter));
  }
  // Of a list that something is put out of.
  template <typename Routine>
  void AddExport(const char* name, const Routine& routine, std::function<size_t()> listed) {
    AddButton(name, [routine, listed = std::move(listed)](OfficeDesk& desk, Station& station,
                                                          ReportEditor& editor) {
      if (!Report::AnyListed(station, listed())) return;
      if (const auto path = desk.PickPath()) routine(station, editor, *path, {ReplaceFileInParts});
    });
  }
  void AddPrint(const char* name, PrintedPages (*routine)(Station&, ReportEditor&)) {
    AddButton(name, [routine](OfficeDesk&, Station& station, ReportEditor& editor) {
      PrintedPages printed = routine(station, editor);
      if (!printed.pages.empty()) station.events.Print(printed.title, std::move(printed.pages));
    });
  }

  void AddSpan();
  void AddFilters();
  void AddOutputs();
  template <typename List>
  void AddList(const char* name, List& list, int columns,
               void (*sort)(Station&, ReportEditor&, int column));

  OfficeDesk& desk_;
  Station& station_;
  ReportEditor& editor_;
  OfficeScreen screen_;
};

void ReportTable::AddSpan() {
  AddLabel("LblDate", editor_.LblDate);
  AddLabel("LblDateFin", editor_.LblDateFin);
  AddButton("CmdCalend", [](OfficeDesk& desk, Station& station, ReportEditor& editor) {
    if (const auto day = desk.PickDay()) Report::CmdCalend_Click(station, editor, *day);
  });
  OfficeControl& last = Add(Label("BtnDateFin", CaptionOf("BtnDateFin")));
  last.press = [&desk = desk_](int, bool right) {
    if (right) return Report::BtnDateFin_RightClick(desk.station, desk.report);
    if (const auto day = desk.PickDay()) Report::BtnDateFin_Click(desk.station, desk.report, *day);
  };
  AddButton("VoirRapport", [](OfficeDesk&, Station& station, ReportEditor& editor) {
    Report::VoirRapport(station, editor);
  });
  AddLabel("LblCompteur", editor_.LblCompteur);
}

void ReportTable::AddFilters() {
  AddFilter("FiltreArtiste", editor_.FiltreArtiste, Report::FiltreArtiste_Change);
  AddFilter("FiltreGenre", editor_.FiltreGenre, Report::FiltreGenre_Change);
  AddFilter("FiltreVariete", editor_.FiltreVariete, Report::FiltreVariete_Change);
}

void ReportTable::AddOutputs() {
  AddButton("BtnStats", [](OfficeDesk&, Station& station, ReportEditor& editor) {
    Report::BtnStats_Click(station, editor);
  });
  AddLabel("LblStat", editor_.LblStat);
  AddExport("BtnExport", Report::BtnExport_Click,
            [&list = editor_.ListRap] { return list.Count(); });
  AddExport("ExportStat", Report::ExportStat, [&list = editor_.ListStat] { return list.Count(); });
  AddPrint("BtnImprimer", Report::BtnImprimer_Click);
  AddPrint("ImprimeStat", Report::ImprimeStat);
  AddButton("BtnIntoPlaylist", [](OfficeDesk&, Station& station, ReportEditor& editor) {
    Report::BtnIntoPlaylist_Click(station, editor);
  });
}

// The list, and its heads under the same name.
template <typename List>
void ReportTable::AddList(const char* name, List& list, int columns,
                          void (*sort)(Station&, ReportEditor&, int column)) {
  OfficeControl heads = CaptionGroup(screen_, ReportCaptions(), name, columns);
  heads.press = [&station = station_, &editor = editor_, sort](int column, bool right) {
    if (!right) sort(station, editor, column);
  };
  Add(std::move(heads));

  OfficeList rows;
  rows.name = name;
  rows.rows = [&list, columns] {
    Rows cells;
    for (size_t line = 0; line < list.Count(); ++line) {
      cells.emplace_back();
      for (int column = 0; column < columns; ++column)
        cells.back().push_back(list.Cell(line, column));
    }
    return cells;
  };
  rows.choose = [&list](const std::vector<std::string>& values) {
    for (const std::string& value : values)
      list.chosen =
          static_cast<size_t>(NumberBetween(value, 1, static_cast<int32_t>(list.Count())) - 1);
  };
  screen_.lists.push_back(std::move(rows));
}

}  // namespace

OfficeScreen ReportScreenOf(OfficeDesk& desk) {
  return ReportTable(desk).Made();
}

}  // namespace zemo
