#include "engine/StoredListMerge.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "station/LanguageTexts.h"
#include "station/RecordMerge.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/RowView.h"
#include "store/SeekCode.h"

namespace zemo {

namespace {

// No counter that the base gives: it is looked again.
constexpr int64_t kReadAgain = -1;

constexpr Word kFields[] = {
    {"ComboPLS", {"Nom", "Name", "Nome", "Nombre"}},
    {"LblDate", {"Date", "Day", "Data", "Fecha"}},
    {"ChHeure", {"Heure", "Time", "Hora", "Hora"}},
    {"OptPls", {"Jingles", "Jingles", "Jingles", "Jingles"}},
    {"PL", {"Titres de la liste", "Titles of the list", "Títulos da lista", "Títulos de la lista"}},
};

std::string WordOf(Station& station, const char* control) {
  return FindWord(kFields, control, static_cast<int>(station.base.CnfInt(Cnf::kLangue)));
}

// The rows of PL by what is stored of them.
std::string ShownRows(const Station& station) {
  std::string rows;
  for (const OnAirElement& row : station.PL)
    rows += std::to_string(row.code) + " " + std::to_string(row.voiceTrack) + " " + row.file + "\n";
  return rows;
}

std::string ReadRows(Station& station, int32_t code) {
  std::string rows;
  station.base.Db().ReadRows("SELECT DISCOTHEQUE, FICHE FROM Pls WHERE NUMPLS = ? ORDER BY CODE",
                             {code}, [&](const RowView& row) {
                               rows += std::to_string(row.Int(0)) + " " +
                                       std::to_string(row.Int(1)) + "\n";
                             });
  return rows;
}

// None where the list is gone.
std::optional<StoredListEditor::Loaded> ReadList(Station& station, int32_t code) {
  const auto playlist = station.base.Table("Playlist");
  if (!SeekCode(*playlist, code)) return std::nullopt;
  return StoredListEditor::Loaded{playlist->Text("LIBELLE"),
                                  playlist->Text("LADATE"),
                                  playlist->Text("LHEURE"),
                                  static_cast<int32_t>(playlist->Int("NOJINGLE")),
                                  ReadRows(station, code),
                                  {},
                                  0};
}

// What is stored of PL counts as another text where PL is another than it was.
StoredListEditor::Loaded Mine(const Station& station) {
  const StoredListEditor& editor = station.storedList;
  StoredListEditor::Loaded mine{editor.ComboPLS.text,
                                editor.LblDate,
                                editor.ChHeure,
                                editor.OptPls,
                                editor.loaded.rows,
                                {},
                                0};
  if (std::string shown = ShownRows(station); shown != editor.loaded.shownRows)
    mine.rows = std::move(shown);
  return mine;
}

RecordFields FieldsOf(StoredListEditor::Loaded& list) {
  return {{"ComboPLS", &list.label},
          {"LblDate", &list.date},
          {"ChHeure", &list.hour},
          {"OptPls", &list.option},
          {"PL", &list.rows}};
}

void ShowHead(Station& station, const StoredListEditor::Loaded& list) {
  StoredListEditor& editor = station.storedList;
  editor.ComboPLS.text = list.label;
  editor.LblDate = list.date;
  editor.ChHeure = list.hour;
  editor.OptPls = list.option;
}

std::vector<StoredListEditor::Item> ReadItems(Station& station) {
  std::vector<StoredListEditor::Item> items;
  const auto playlist = station.base.Table("Playlist");
  for (; !playlist->Eof(); playlist->MoveNext())
    items.push_back({Trim(playlist->Text("LIBELLE")), static_cast<int32_t>(playlist->Int("CODE"))});
  return items;
}

// The chosen one stays so wherever it stands now.
void ShowItems(StoredListEditor::Combo& combo, std::vector<StoredListEditor::Item> items) {
  const int32_t chosen = combo.index >= 0 && combo.index < static_cast<int>(combo.items.size())
                             ? combo.items[static_cast<size_t>(combo.index)].data
                             : 0;
  combo.items = std::move(items);
  combo.index = -1;
  for (size_t item = 0; item < combo.items.size(); ++item)
    if (chosen != 0 && combo.items[item].data == chosen) combo.index = static_cast<int>(item);
}

}  // namespace

void KeepAsLoadedList(Station& station) {
  StoredListEditor& editor = station.storedList;
  editor.loaded = {};
  if (editor.LblCodePL == 0) return;
  const int64_t counter = station.base.Db().ForeignCounter();
  auto stored = ReadList(station, editor.LblCodePL);
  if (!stored) return;
  editor.loaded = std::move(*stored);
  editor.loaded.shownRows = ShownRows(station);
  editor.loaded.counter = counter;
}

ListToStore MergeStoredList(Station& station) {
  StoredListEditor& editor = station.storedList;
  const std::string began = editor.loaded.rows;  // the merge takes theirs
  RecordMerge merge;
  for (;;) {
    const int64_t counter = station.base.Db().ForeignCounter();
    if (editor.LblCodePL == 0 || counter == editor.loaded.counter) return {.counter = counter};
    auto theirs = ReadList(station, editor.LblCodePL);
    if (!theirs) return {.counter = counter};
    StoredListEditor::Loaded mine = Mine(station);
    const auto step =
        merge.Next(station, {FieldsOf(editor.loaded), FieldsOf(*theirs), FieldsOf(mine)},
                   [&](const char* control) { return WordOf(station, control); });
    if (step == RecordMerge::Step::kLeave) return {.any = false};
    if (step == RecordMerge::Step::kReadAgain) continue;
    ShowHead(station, mine);
    return {.any = true, .rows = mine.rows != theirs->rows, .counter = counter, .began = began};
  }
}

void KeepStoredList(Station& station, const ListToStore& stored) {
  StoredListEditor::Loaded& loaded = station.storedList.loaded;
  KeepAsLoadedList(station);
  if (stored.rows) return;
  loaded.rows = stored.began;
  loaded.counter = kReadAgain;
}

bool OnAir::TakeOverLists(Station& station) {
  StoredListEditor& editor = station.storedList;
  ShowItems(editor.ComboPLS, ReadItems(station));
  if (editor.LblCodePL == 0) return true;
  auto theirs = ReadList(station, editor.LblCodePL);
  if (!theirs) {
    editor.LblCodePL = 0;
    editor.loaded = {};
    return false;
  }
  // The rows are the air's, or will be: what others made of them waits for the saving.
  StoredListEditor::Loaded mine = Mine(station);
  theirs->rows = editor.loaded.rows;
  if (TakeOverFields({FieldsOf(editor.loaded), FieldsOf(*theirs), FieldsOf(mine)}))
    ShowHead(station, mine);
  return true;
}

}  // namespace zemo
