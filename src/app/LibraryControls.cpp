// The library screen as a script drives it: its controls, tab by tab.
#include <utility>

#include "app/OfficeDesk.h"
#include "app/Orders.h"
#include "library/HourPips.h"
#include "library/LibraryPrint.h"
#include "library/LibraryScreen.h"
#include "library/LibraryTexts.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr int kDays = HourMasks::kDays, kHours = HourMasks::kHours;
constexpr int32_t kHighestKey = 9;  // of the numeric pad

// Puts the controls of the screen together: each beside the tab on which it is seen.
class LibraryTable {
 public:
  explicit LibraryTable(OfficeDesk& desk)
      : desk_(desk), station_(desk.station), editor_(desk.library) {}

  OfficeScreen Made() {
    screen_.name = "library";
    screen_.title = CaptionOf("title");
    screen_.open = [office = &desk_] {
      Library::Discotheque_Click(office->station, office->library);
    };
    screen_.isOpen = [&editor = editor_] { return editor.open; };
    screen_.close = [office = &desk_] { Library::Form_Unload(office->station, office->library); };
    AddFrame();
    AddMenus();
    AddHours();
    AddMusic();
    AddMusicLists();
    AddJingle();
    AddShortElement();
    AddLists();
    AddPips();
    return std::move(screen_);
  }

 private:
  using Seen = std::function<bool()>;

  Seen On(LibraryTab tab) const {
    return [&editor = editor_, tab] { return editor.TabStrip1 == tab; };
  }
  Seen OnCards() const {
    return [&editor = editor_] { return editor.OnCards(); };
  }
  Seen OnHours() const {
    return [&editor = editor_] {
      return editor.TabStrip1 == LibraryTab::kMusic || editor.TabStrip1 == LibraryTab::kJingles;
    };
  }
  std::function<std::string()> CaptionOf(std::string name) const {
    return CaptionIn(screen_, LibraryCaptions(), std::move(name));
  }
  OfficeControl& Add(OfficeControl control, Seen on) {
    control.on = std::move(on);
    return screen_.controls.emplace_back(std::move(control));
  }
  void Text(const char* name, std::string& text, const Seen& on) { Add(TextBox(name, text), on); }
  // A button whose routine works on the editor.
  template <typename Routine>
  OfficeControl& Pressed(const char* name, const Seen& on, Routine routine) {
    return Add(
        Button(name, CaptionOf(name),
               [&station = station_, &editor = editor_, routine] { routine(station, editor); }),
        on);
  }
  // A group of boxes or options: one value and one hand for all of its elements.
  OfficeControl& Group(const char* name, int first, int last, std::function<ControlValue()> value,
                       const std::function<void(int element, bool on)>& ticked, Seen seen) {
    OfficeControl group;
    group.name = name;
    group.first = first;
    group.last = last;
    group.value = std::move(value);
    group.put = [ticked](int element, const std::string& text) { ticked(element, OnOrOff(text)); };
    group.press = [ticked](int element, bool) { ticked(element, true); };
    return Add(std::move(group), std::move(seen));
  }
  // Of an option group the one that is on.
  static ControlValue OneOf(int first, int last, int chosen) {
    std::vector<bool> options;
    for (int option = first; option <= last; ++option) options.push_back(option == chosen);
    return options;
  }

  void AddFrame();
  void AddMenus();
  void AddHours();
  void AddMusic();
  void AddMusicLists();
  void AddWindowDay(const char* name, std::string& text, int mode, LibraryTab tab);
  void AddExitPoint(const char* slider, const char* label, int32_t& ms, LibraryTab tab);
  void AddFreeList(const char* name, std::string& text, Library::FreeList list);
  // A list without free entry; `offer` are its entries.
  void AddClosedList(const char* name, std::string& text, std::vector<std::string>& offer,
                     LibraryTab tab);
  void AddFileButton(const char* name, LibraryTab tab);
  void AddJingle();
  void AddShortElement();
  void AddLists();
  void AddCardList(const char* name, CardList& list, int columns, LibraryTab tab,
                   std::function<void(const std::vector<size_t>& rows)> choose);
  void AddHiddenList(const char* name, std::vector<std::string>& list);
  void AddPips();

  OfficeDesk& desk_;
  Station& station_;
  LibraryEditor& editor_;
  OfficeScreen screen_;
};

void LibraryTable::AddFrame() {
  OfficeControl tabs;
  tabs.name = "TabStrip1";
  tabs.value = [langue = screen_.langue, &editor = editor_] {
    return Caption(LibraryCaptions(),
                   "TabStrip1." + std::to_string(static_cast<int>(editor.TabStrip1)), *langue);
  };
  tabs.put = [&station = station_, &editor = editor_](int, const std::string& text) {
    Library::TabStrip1_Click(station, editor, static_cast<LibraryTab>(NumberBetween(text, 1, 4)));
  };
  screen_.controls.push_back(tabs);

  OfficeControl slider = Slider("Slider1", editor_.Slider1, 0, 0);
  slider.put = [&station = station_, &editor = editor_](int, const std::string& text) {
    Library::Slider1_Change(station, editor, NumberBetween(text, INT32_MIN, INT32_MAX));
  };
  Add(slider, [&editor = editor_] { return editor.Slider1Max > 0; });
  Pressed("BtnPlus", OnCards(), Library::BtnPlus_Click);
  Pressed("BtnMoins", OnCards(), Library::BtnMoins_Click);
  Pressed("BtnClear", OnCards(), [](Station&, LibraryEditor& e) { Library::BtnClear_Click(e); });
  Group(
      "OptionTri", 0, 5, [&editor = editor_] { return OneOf(0, 5, editor.OptionTri); },
      [&station = station_, &editor = editor_](int option, bool on) {
        if (on) Library::OptionTri_Click(station, editor, option);
      },
      On(LibraryTab::kMusic));
}

void LibraryTable::AddMenus() {
  Pressed("Nouveau", OnCards(), Library::Nouveau_Click);
  Pressed("Ajouter", OnCards(), Library::Ajouter_Click);
  Pressed(
      "Replacer", [&e = editor_] { return e.ReplacerEnabled; }, Library::Replacer_Click);
  Pressed(
      "MnuDelete", [&e = editor_] { return e.MnuDeleteEnabled; }, Library::MnuDelete_Click);
  Pressed("MnuListe", On(LibraryTab::kMusic), Library::MnuListe_Click);
  Pressed("MnuTxt", On(LibraryTab::kMusic), Library::MnuTxt_Click);
  Pressed("MnuInitDate", nullptr, Library::MnuInitDate_Click);
  Pressed("MnuImp", nullptr, [](Station& station, LibraryEditor& editor) {
    PrintedPages printed = Library::MnuImp_Click(station, editor);
    if (!printed.pages.empty()) station.events.Print(printed.title, std::move(printed.pages));
  });
  Pressed("MnuExporter", nullptr, [&desk = desk_](Station& station, LibraryEditor& editor) {
    if (const auto path = desk.PickPath())
      Library::MnuExporter_Click(station, editor, *path, desk.spreadsheets);
  });
}

void LibraryTable::AddHours() {
  Group(
      "Tranche", 0, kHours - 1,
      [&editor = editor_] {
        return std::vector<bool>(editor.masks.Tranche.begin(), editor.masks.Tranche.end());
      },
      [&editor = editor_](int hour, bool on) {
        editor.masks.Tranche[static_cast<size_t>(hour)] = on;
      },
      OnHours())
      .press = [&editor = editor_](int hour, bool) {
    bool& box = editor.masks.Tranche[static_cast<size_t>(hour)];
    box = !box;
  };
  Group(
      "JourSem", 1, kDays, [&editor = editor_] { return OneOf(1, kDays, editor.masks.JourSem()); },
      [&editor = editor_](int day, bool on) {
        if (on) Library::JourSem_Click(editor, day);
      },
      OnHours());
  const auto copies = [&editor = editor_, shown = OnHours()] {
    return shown() && Library::HourBoxesOn(editor);
  };
  Pressed("BtnCopy", copies,
          [](Station& s, const LibraryEditor& e) { Library::BtnCopy_Click(s, e); });
  Pressed("BtnColler", copies, Library::BtnColler_Click);
  Add(Label("FrameAutorisation", CaptionOf("FrameAutorisation")), OnHours());
}

void LibraryTable::AddWindowDay(const char* name, std::string& text, int mode, LibraryTab tab) {
  OfficeControl& label = Add(Label(name, [&text] { return text; }), On(tab));
  label.press = [&desk = desk_, &text, mode](int, bool right) {
    if (right) return text.clear();
    if (const auto day = desk.PickDay()) Library::PickDay(desk.library, mode, day->month, day->day);
  };
}

void LibraryTable::AddExitPoint(const char* slider, const char* label, int32_t& ms,
                                LibraryTab tab) {
  Add(Slider(slider, ms, 0, kLatestExitMs), On(tab));
  Add(Label(label, [&ms] { return SecondsText(ms); }), On(tab));
}

void LibraryTable::AddFreeList(const char* name, std::string& text, Library::FreeList list) {
  OfficeControl& box = Add(TextBox(name, text), On(LibraryTab::kMusic));
  box.put = [&desk = desk_, list](int, const std::string& typed) {
    Library::FreeEntry_Change(desk.station, desk.library, list, typed);
  };
  box.key = [&desk = desk_, list](ControlKey key) {
    if (key == ControlKey::kEnter) Library::FreeEntry_KeyEnter(desk.station, desk.library, list);
    if (key == ControlKey::kDelete) Library::FreeEntry_KeyDelete(desk.station, desk.library, list);
  };
}

void LibraryTable::AddClosedList(const char* name, std::string& text,
                                 std::vector<std::string>& offer, LibraryTab tab) {
  OfficeControl& box = Add(TextBox(name, text), On(tab));
  box.put = [&text, &offer, name](int, const std::string& chosen) {
    for (const std::string& entry : offer)
      if (EqualNoCase(entry, chosen)) {
        text = entry;
        return;
      }
    if (!chosen.empty()) throw OrderError(std::string(name) + " has no entry " + chosen);
    text.clear();
  };
}

void LibraryTable::AddFileButton(const char* name, LibraryTab tab) {
  Pressed(name, On(tab), [&desk = desk_](Station& station, LibraryEditor& editor) {
    desk.ChooseFiles(
        Library::FileForSelector(station, editor), editor.List1Tmp,
        [&](const std::vector<std::string>& files) { Library::TakeFiles(station, editor, files); });
  });
}

void LibraryTable::AddMusic() {
  MusicCard& card = editor_.music;
  const Seen on = On(LibraryTab::kMusic);
  Add(Label("lblNumero", [&card] { return card.lblNumero; }), on);
  Add(Label("LblInfoMus",
            [&editor = editor_] { return Library::InfoText(editor, LibraryTab::kMusic); }),
      on);
  AddFileButton("CmdFileMusique", LibraryTab::kMusic);
  Text("ChFileName", card.ChFileName, on);
  Text("Longeur", card.Longeur, on);
  Add(Label("LblTemp", [&card] { return FormatDuration(ValInt(card.Longeur)); }), on);
  Text("ChIntro", card.ChIntro, on);
  Text("ChAuteur", card.ChAuteur, on);
  Text("ChTitre", card.ChTitre, on);
  Text("ChAnne", card.ChAnne, on);
  Text("ChNbPassJour", card.ChNbPassJour, on);
  Text("ChEcartMinutes", card.ChEcartMinutes, on);
  Text("ChEcartJours", card.ChEcartJours, on);
  Text("ChEcartArtiste", card.ChEcartArtiste, on);
  Text("ChCommentaire", card.ChCommentaire, on);
  Text("ChAuteurCompositeur", card.ChAuteurCompositeur, on);
  Text("ChRefAlbum", card.ChRefAlbum, on);
  AddExitPoint("PointSortie", "LblPMix", card.PointSortie, LibraryTab::kMusic);
  AddWindowDay("LblMMJJDebut", card.LblMMJJDebut, 7, LibraryTab::kMusic);
  AddWindowDay("LblMMJJFin", card.LblMMJJFin, 8, LibraryTab::kMusic);

  OfficeControl plays;
  plays.name = "ChDiffusion";
  plays.first = 1;
  plays.last = static_cast<int>(kPlaysKept);
  plays.value = [&card] {
    return std::vector<std::string>(card.ChDiffusion.begin(), card.ChDiffusion.end());
  };
  plays.put = [&card](int play, const std::string& text) {
    card.ChDiffusion[static_cast<size_t>(play - 1)] = text;
  };
  Add(plays, on);
}

void LibraryTable::AddMusicLists() {
  MusicCard& card = editor_.music;
  AddFreeList("ChGenre", card.ChGenre, Library::FreeList::kGenre);
  AddFreeList("ChLabel", card.ChLabel, Library::FreeList::kLabel);
  AddFreeList("ChCD", card.ChCD, Library::FreeList::kCD);
  AddClosedList("ChVariete", card.ChVariete, editor_.ChVarieteList, LibraryTab::kMusic);
}

void LibraryTable::AddJingle() {
  JingleCard& card = editor_.jingle;
  const Seen on = On(LibraryTab::kJingles);
  Add(Label("LblInfoJingle",
            [&editor = editor_] { return Library::InfoText(editor, LibraryTab::kJingles); }),
      on);
  AddFileButton("CmdFileJingle", LibraryTab::kJingles);
  Text("ChFileJingle", card.ChFileJingle, on);
  Text("longeurJingle", card.longeurJingle, on);
  Add(Label("lblTempJingle", [&card] { return FormatDuration(ValInt(card.longeurJingle)); }), on);
  Text("ChLibJingle", card.ChLibJingle, on);
  Add(CheckBox("CheckSurimpression", card.CheckSurimpression), on);
  OfficeControl& linked = Add(Slider("CodeAssocie", card.CodeAssocie, 0, 0), on);
  linked.put = [&desk = desk_](int, const std::string& text) {
    Library::CodeAssocie_Change(desk.station, desk.library, NumberBetween(text, 0, INT32_MAX));
  };
  OfficeControl& artist =
      Add(Label("LblArtisteAssocie", [&card] { return card.LblArtisteAssocie; }), on);
  artist.put = [&desk = desk_](int, const std::string& text) {
    Library::LblArtisteAssocie_Change(desk.station, desk.library, text);
  };
  Add(Label("LblDiff", [&card] { return card.LblDiff; }), on);
  AddClosedList("GenreAssocie", card.GenreAssocie, editor_.ChGenreList, LibraryTab::kJingles);
  Add(CheckBox("EndofTitre", card.EndofTitre), on);
  AddExitPoint("SliderPSJ", "LblPSJ", card.SliderPSJ, LibraryTab::kJingles);
  Text("ChAuteurJingle", card.ChAuteurJingle, on);
  Add(CheckBox("JingleExtraitYN", card.JingleExtraitYN), on);
  AddWindowDay("LblMMJJDebutJ", card.LblMMJJDebutJ, 9, LibraryTab::kJingles);
  AddWindowDay("LblMMJJFinJ", card.LblMMJJFinJ, 10, LibraryTab::kJingles);
  Pressed("BtnRechJingles", on, Library::BtnRechJingles_Click);
}

void LibraryTable::AddShortElement() {
  ShortElementCard& card = editor_.other;
  const Seen on = On(LibraryTab::kShortElements);
  Add(Label("LblInfoVirgule",
            [&editor = editor_] { return Library::InfoText(editor, LibraryTab::kShortElements); }),
      on);
  AddFileButton("CmdFileVirgules", LibraryTab::kShortElements);
  Text("ChFileVirgule", card.ChFileVirgule, on);
  Text("LongeurVirgule", card.LongeurVirgule, on);
  Add(Label("lblTempVirgule", [&card] { return FormatDuration(ValInt(card.LongeurVirgule)); }), on);
  Text("ChLibVirgule", card.ChLibVirgule, on);
  AddExitPoint("PSAutre", "LblPSAutre", card.PSAutre, LibraryTab::kShortElements);
  Add(CheckBox("CheckJingleRacro", card.CheckJingleRacro), on);
  Add(Label("CadreTouche", CaptionOf("CadreTouche")), on);
  Add(Slider("Tch", card.Tch, 0, kHighestKey), on);
  Pressed("BtnFindAutre", on, Library::BtnFindAutre_Click);
}

void LibraryTable::AddCardList(const char* name, CardList& list, int columns, LibraryTab tab,
                               std::function<void(const std::vector<size_t>& rows)> choose) {
  OfficeList cards;
  cards.name = name;
  cards.rows = [&list, columns] {
    Rows rows;
    for (size_t row = 0; row < list.Count(); ++row) {
      rows.emplace_back();
      for (int column = 0; column < columns; ++column)
        rows.back().emplace_back(list.Cell(row, column));
    }
    return rows;
  };
  cards.on = [&list, shown = On(tab)] { return shown() && list.visible; };
  cards.choose = [&list, choose = std::move(choose)](const std::vector<std::string>& values) {
    std::vector<size_t> rows;
    for (const std::string& value : values)
      rows.push_back(
          static_cast<size_t>(NumberBetween(value, 1, static_cast<int32_t>(list.Count())) - 1));
    choose(rows);
  };
  screen_.lists.push_back(std::move(cards));
}

// A list that the window does not show.
void LibraryTable::AddHiddenList(const char* name, std::vector<std::string>& list) {
  OfficeList hidden;
  hidden.name = name;
  hidden.rows = [&list] {
    Rows rows;
    for (const std::string& text : list) rows.push_back({text});
    return rows;
  };
  hidden.on = [] { return false; };
  screen_.lists.push_back(std::move(hidden));
}

void LibraryTable::AddLists() {
  Station& station = station_;
  LibraryEditor& editor = editor_;
  AddCardList(
      "PLDisco", editor.PLDisco, DiscoCol::kCount, LibraryTab::kMusic,
      [&](const std::vector<size_t>& rows) { Library::PLDisco_Click(station, editor, rows); });
  AddCardList("PLJingles", editor.PLJingles, Library::kJingleListColumns, LibraryTab::kJingles,
              [&](const std::vector<size_t>& rows) {
                Library::PLJingles_Click(station, editor, rows.back());
              });
  AddCardList("PLAutre", editor.PLAutre, Library::kShortElementListColumns,
              LibraryTab::kShortElements, [&](const std::vector<size_t>& rows) {
                Library::PLAutre_Click(station, editor, rows.back());
              });
  AddHiddenList("ListLot", editor.ListLot);
  AddHiddenList("List1Tmp", editor.List1Tmp);
}

void LibraryTable::AddPips() {
  constexpr int kPipColumns = 4, kFileColumn = 1;
  OfficeGrid pips;
  pips.name = "GTopH";
  pips.on = On(LibraryTab::kHourPips);
  pips.rows = [&editor = editor_] {
    Rows rows;
    for (size_t hour = 0; hour < editor.GTopH.size(); ++hour) {
      rows.emplace_back();
      for (int column = 0; column < kPipColumns; ++column)
        rows.back().push_back(HourPipCell(editor, hour, column));
    }
    return rows;
  };
  pips.click = [&desk = desk_](const CellClick& click) {
    LibraryEditor& editor = desk.library;
    if (click.row >= kHours || click.column >= kPipColumns)
      throw OrderError("GTopH has no such cell");
    if (click.right) return;
    Library::GTopH_Click(editor, static_cast<size_t>(click.row), click.column);
    if (!click.twice || click.column != kFileColumn) return;
    desk.ChooseFiles(Library::FileForSelector(desk.station, editor), {},
                     [&desk, hour = click.row](const std::vector<std::string>& files) {
                       desk.library.pipHour = hour;
                       Library::TakeFiles(desk.station, desk.library, files);
                     });
  };
  pips.put = [&editor = editor_](int hour, int column, const std::string& text) {
    if (hour >= kHours || column < kFileColumn || column >= kPipColumns)
      throw OrderError("GTopH has no such cell");
    Library::GTopH_Change(editor, static_cast<size_t>(hour), column, text);
  };
  screen_.grids.push_back(std::move(pips));
}

}  // namespace

OfficeScreen LibraryScreenOf(OfficeDesk& desk) {
  return LibraryTable(desk).Made();
}

}  // namespace zemo
