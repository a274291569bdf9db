// The frame of the library screen: opening, tabs, moving through the cards, adding, replacing and
// deleting them.
#include <algorithm>
#include <exception>
#include <limits>
#include <utility>

#include "library/CardMerge.h"
#include "library/CardTabs.h"
#include "library/HotKeys.h"
#include "library/HourPips.h"
#include "library/LibraryHandler.h"
#include "library/LibraryMessages.h"
#include "library/LibraryScreen.h"
#include "library/SelectedCards.h"
#include "platform/Desktop.h"
#include "platform/EventLoop.h"
#include "settings/GenreList.h"
#include "settings/LineLists.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/WaitPointer.h"
#include "store/SeekCode.h"

namespace zemo {

namespace {

void HideLists(LibraryEditor& editor) {
  editor.PLDisco.visible = editor.PLJingles.visible = editor.PLAutre.visible = false;
}

void ForgetLot(LibraryEditor& editor) {
  editor.lotMode = false;
  editor.ListLot.clear();
}

void LoadLists(Station& station, LibraryEditor& editor) {
  LoadSaveGenres(station, "Load", editor.ChGenreList);
  LoadSaveLabels(station, "Load", editor.ChLabelList);
  LoadSaveCD(station, "Load", editor.ChCDList);
  LoadVarieties(station, "Load", editor.ChVarieteList);
}

// To the card before or behind the one shown, wherever that is now. Where it is gone the one behind
// has its former place.
void Step(Station& station, LibraryEditor& editor, int steps) {
  ShowPosition(station, editor);
  const std::vector<int32_t>& codes = CodesInOrder(station, editor);
  const bool gone =
      editor.Code() > 0 && std::find(codes.begin(), codes.end(), editor.Code()) == codes.end();
  ShowPlace(station, editor, int64_t{editor.Position()} + (gone && steps > 0 ? 0 : steps));
}

void ShowTab(Station& station, LibraryEditor& editor, LibraryTab tab) {
  Library::StopListening(station, editor);
  editor.TabStrip1 = tab;
  HideLists(editor);
  ForgetLot(editor);
  if (editor.OnCards()) return ShowPlace(station, editor, std::max(editor.Position(), 1));
  LoadTopH(station, editor, "Load");
  editor.ReplacerEnabled = false;
  editor.MnuDeleteEnabled = true;
  editor.Slider1 = editor.Slider1Max = 0;
}

// Behind an addition the slider stands on the new count, in whatever order the cards are.
void ShowCountAsPosition(LibraryEditor& editor) {
  editor.Position() = editor.Slider1 = editor.Slider1Max;
}

// Orders of the operator are served between two files; the last card added is shown where they left
// the screen as it was.
void AddLot(Station& station, LibraryEditor& editor) {
  const LibraryWork work(editor);
  const WaitPointer wait(station.notices);
  const LibraryTab tab = editor.TabStrip1;
  const int32_t shown = editor.Code();
  const std::vector<std::string> files = std::move(editor.ListLot);
  ForgetLot(editor);
  int32_t last = 0, added = 0;
  for (size_t file = 0; file < files.size(); ++file) {
    if (file > 0) station.platform.loop.Yield();
    try {
      const int32_t code = AddFileOfLot(station, tab, files[file]);
      if (code == 0) continue;
      last = code;
      ++added;
    } catch (const std::exception&) {
      LogCurrentException(station, "Ajouter", files[file]);
    }
  }
  if (last == 0 || editor.TabStrip1 != tab || editor.Code() != shown) return;
  ShowCode(station, editor, last);
  ShowCountAsPosition(editor);
  editor.stored = {added, last};
}

bool Confirmed(Station& station, const std::string& question, Buttons buttons) {
  return station.platform.messages.Show("Alerte", question, buttons) == Answer::kYes;
}

std::string DeleteQuestion(Station& station, const LibraryEditor& editor) {
  switch (editor.TabStrip1) {
    case LibraryTab::kJingles:
      return LibraryText::kConfirmDelete + editor.jingle.ChLibJingle;
    case LibraryTab::kShortElements:
      return LibraryText::kConfirmDelete + editor.other.ChLibVirgule;
    default:
      return LibraryText::ConfirmDeleteSelection(station);
  }
}

bool HasSelection(const LibraryEditor& editor) {
  const std::vector<bool>& selected = editor.PLDisco.selected;
  return editor.TabStrip1 == LibraryTab::kMusic && editor.PLDisco.visible &&
         std::find(selected.begin(), selected.end(), true) != selected.end();
}

void DeleteCode(Station& station, LibraryTab tab, int32_t code) {
  const auto table = OpenCards(station, tab);
  if (SeekCode(*table, code)) table->Delete();
}

void RemoveLine(CardList& list, int32_t code) {
  for (size_t row = 0; row < list.Count(); ++row) {
    if (list.Code(row) == code) return list.Remove(row);
  }
}

// Orders of the operator are served between two cards.
void DeleteAll(Station& station, LibraryEditor& editor, const std::vector<int32_t>& codes) {
  const LibraryTab tab = editor.TabStrip1;
  for (size_t i = 0; i < codes.size(); ++i) {
    if (i > 0) station.platform.loop.Yield();
    DeleteCode(station, tab, codes[i]);
    if (tab == LibraryTab::kMusic) RemoveLine(editor.PLDisco, codes[i]);
  }
}

void DeleteCards(Station& station, LibraryEditor& editor) {
  const LibraryWork work(editor);
  const LibraryTab tab = editor.TabStrip1;
  const int32_t shown = editor.Code();
  const std::vector<int32_t> before = CodesInOrder(station, editor);
  DeleteAll(station, editor,
            HasSelection(editor) ? Library::SelectedCards(editor) : std::vector{editor.Code()});
  if (tab == LibraryTab::kShortElements) LoadHotKeys(station);
  if (editor.TabStrip1 != tab || editor.Code() != shown) return;
  for (auto next = std::find(before.begin(), before.end(), shown); next != before.end(); ++next)
    if (ShowCode(station, editor, *next)) return;
  ShowPlace(station, editor, std::numeric_limits<int32_t>::max());
}

}  // namespace

void Library::Discotheque_Click(Station& station, LibraryEditor& editor) {
  HandleControl(station, "Discotheque", [&] {
    if (station.engine.ScreenLocked || editor.open) return;
    editor.Empty();
    editor.open = true;
    LoadLists(station, editor);
    ShowTab(station, editor, LibraryTab::kMusic);
  });
}

bool Library::OpenOnCard(Station& station, LibraryEditor& editor, int32_t code) {
  bool found = false;
  Discotheque_Click(station, editor);
  HandleControl(station, "Discotheque", [&] {
    if (!editor.open) return;
    if (editor.TabStrip1 != LibraryTab::kMusic)
      TabStrip1_Click(station, editor, LibraryTab::kMusic);
    found = ShowCode(station, editor, code);
  });
  return found;
}

void Library::Form_Unload(Station& station, LibraryEditor& editor) {
  HandleControl(station, "Discotheque", [&] {
    if (!std::exchange(editor.open, false)) return;
    StopListening(station, editor);
    if (!editor.OnCards()) LoadTopH(station, editor, "Save");
  });
}

void Library::TabStrip1_Click(Station& station, LibraryEditor& editor, LibraryTab tab) {
  HandleControl(station, "TabStrip1", [&] {
    if (!editor.OnCards()) LoadTopH(station, editor, "Save");
    ShowTab(station, editor, tab);
  });
}

void Library::ShowImported(Station& station, LibraryEditor& editor, LibraryTab kind) {
  HandleControl(station, "Ajouter", [&] {
    if (editor.TabStrip1 != kind) return;
    const bool empty = editor.cardCount[editor.Tab()] == 0 && editor.Code() == 0 &&
                       FileForSelector(station, editor).empty();
    if (empty)
      ShowPlace(station, editor, 1);
    else
      ShowPosition(station, editor);
  });
}

void Library::TakeOver(Station& station, LibraryEditor& editor) {
  constexpr int32_t kFew = 5000;  // cards whose order is read between two ticks
  if (!editor.OnCards()) return TakeOverPips(station, editor);
  TakeOverShownCard(station, editor);
  const auto count = static_cast<int32_t>(station.base.CountRecords(TableOf(editor.TabStrip1)));
  editor.Slider1Max = editor.cardCount[editor.Tab()] = count;
  if (count <= kFew && !editor.gone) ShowPosition(station, editor);
}

void Library::BtnPlus_Click(Station& station, LibraryEditor& editor) {
  HandleControl(station, "BtnPlus", [&] {
    if (editor.OnCards()) Step(station, editor, 1);
  });
}

void Library::BtnMoins_Click(Station& station, LibraryEditor& editor) {
  HandleControl(station, "BtnMoins", [&] {
    if (editor.OnCards()) Step(station, editor, -1);
  });
}

void Library::Slider1_Change(Station& station, LibraryEditor& editor, int32_t value) {
  HandleControl(station, "Slider1", [&] {
    if (editor.OnCards() && value != editor.Position()) ShowPlace(station, editor, value);
  });
}

void Library::OptionTri_Click(Station& station, LibraryEditor& editor, int32_t option) {
  HandleControl(station, "OptionTri", [&] {
    if (std::exchange(editor.OptionTri, option) == option) return;
    ShowPlace(station, editor, 1);
  });
}

void Library::Nouveau_Click(Station& station, LibraryEditor& editor) {
  HandleControl(station, "Nouveau", [&] {
    if (!editor.OnCards()) return;
    HideLists(editor);
    ForgetLot(editor);
    EmptyTab(editor);
    editor.ReplacerEnabled = editor.MnuDeleteEnabled = false;
    editor.List1Tmp = FilesOfCards(station, editor);
  });
}

void Library::Ajouter_Click(Station& station, LibraryEditor& editor) {
  HandleControl(station, "Ajouter", [&] {
    if (!editor.OnCards()) return;
    if (editor.lotMode) return AddLot(station, editor);
    if (AddShownCard(station, editor)) ShowCountAsPosition(editor);
  });
}

void Library::Replacer_Click(Station& station, LibraryEditor& editor) {
  HandleControl(station, "Replacer", [&] {
    if (!editor.ReplacerEnabled || !editor.OnCards()) return;
    if (editor.TabStrip1 == LibraryTab::kMusic) editor.OptionTri = 0;
    const auto table = OpenCards(station, editor.TabStrip1);
    RecordMerge merge;
    while (SeekCode(*table, editor.Code())) {
      const auto step = MergeShownCard(station, editor, *table, merge);
      if (step == RecordMerge::Step::kReadAgain) continue;
      if (step == RecordMerge::Step::kStore) StoreShownCard(station, editor, *table);
      return;
    }
  });
}

void Library::MnuDelete_Click(Station& station, LibraryEditor& editor) {
  HandleControl(station, "MnuDelete", [&] {
    if (!editor.OnCards()) {
      editor.GTopH[static_cast<size_t>(editor.pipHour)].file.clear();
      return LoadTopH(station, editor, "Save");
    }
    if (station.base.CountRecords(TableOf(editor.TabStrip1)) == 0)
      return ShowLibraryAlert(station, LibraryText::kNothingToDelete);
    if (!editor.MnuDeleteEnabled) return;
    if (Confirmed(station, DeleteQuestion(station, editor), Buttons::kYesCancel))
      DeleteCards(station, editor);
  });
}

std::string Library::InfoText(const LibraryEditor& editor, LibraryTab tab) {
  const size_t place = static_cast<size_t>(tab) - 1;
  return std::string(TableOf(tab)) + std::to_string(editor.cardPosition[place]) + " / " +
         std::to_string(editor.cardCount[place]);
}

}  // namespace zemo
