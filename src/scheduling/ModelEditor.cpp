#include "scheduling/ModelEditor.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <utility>

#include "library/KnownCards.h"
#include "platform/Desktop.h"
#include "platform/EventLoop.h"
#include "platform/Folder.h"
#include "scheduling/GenreSupply.h"
#include "scheduling/ModelGrids.h"
#include "scheduling/ModelMerge.h"
#include "settings/GenreList.h"
#include "settings/SideFileIo.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr size_t kMostModelLines = 1000;  // of a back-up: many times what a day takes

bool SkeletonOn(Station& station) {
  return station.base.CnfBool(Cnf::kSquelette);
}

TextGrid::Row CutAtTabs(const std::string& line) {
  TextGrid::Row cells(1);
  for (const char c : line) {
    if (c == '\t')
      cells.emplace_back();
    else
      cells.back() += c;
  }
  return cells;
}

// A total of a file that another program wrote is no genre.
bool IsTotal(const TextGrid::Row& cells) {
  return cells[0].rfind(kTotalText, 0) == 0;
}

bool IsHeading(const TextGrid::Row& cells) {
  return cells.back() == HourLabel(kHoursOfDay - 1);
}

std::string BackupFile(const Station& station, bool skeleton) {
  const int day = station.modelEditor.JourSemaine;
  if (day < 1 || day > kDaysOfWeek) return {};
  const auto index = static_cast<size_t>(day - 1);
  return skeleton ? station.files.SkeletonDays[index] : station.files.Days[index];
}

bool ModelRow(const ModelEditor& editor, int row) {
  return row > 0 && row < editor.Models.RowCount() - 1;
}

std::string Percent(int percent) {
  return std::to_string(std::clamp(percent, 0, 100));
}

// Writes the share of a variety into the first row of its name.
void StoreShare(Station& station, const std::string& variety, int percent) {
  const auto table = station.base.Table("Variete");
  for (; !table->Eof(); table->MoveNext()) {
    if (!EqualNoCase(table->Text("VARIETE"), variety)) continue;
    table->Edit();
    table->Set("POURCENT", int64_t{percent});
    table->Update();
    return;
  }
}

}  // namespace

void Models::Translate(Station& station) {
  ModelEditor& editor = station.modelEditor;
  const int64_t langue = editor.langue;
  const auto word = [langue](const char* french, const char* english, const char* portuguese,
                             const char* spanish) {
    return langue == 1 ? english : langue == 2 ? portuguese : langue == 3 ? spanish : french;
  };
  editor.Caption = SkeletonOn(station)
                       ? word("Edit Squelette", "Skeleton", "Esqueleto", "Edit")
                       : word("Model en %", "Model in %", "Modelo em %", "Modelo em %");
  if (editor.Models.RowCount() > 0) editor.Models.SetCell(0, 0, GenresWord(langue));
  if (editor.GVariete.RowCount() > 0) editor.GVariete.SetCell(0, 1, VarietyWord(langue));
}

void Models::LoadPopUps(Station& station) {
  ModelEditor& editor = station.modelEditor;
  LoadSaveGenres(station, "Load", editor.PopGenre);
  editor.PopPourCent.clear();
  for (int percent = 0; percent <= 100; percent += 5)
    editor.PopPourCent.push_back(std::to_string(percent));
}

bool Models::BtnSave_Click(Station& station) {
  ModelEditor& editor = station.modelEditor;
  const auto day = static_cast<int16_t>(editor.JourSemaine);
  try {
    if (!MergeShownDay(station)) return false;
  } catch (const std::exception&) {
    LogCurrentException(station, "BtnSave");
    return false;
  }
  // The grid that is shown, whatever became of the setting since.
  const bool saved = editor.skeleton ? SaveSkeletonGrid(station, day) : SaveModelGrid(station, day);
  if (saved) editor.saved = StoredRows(editor);
  return saved;
}

void Models::BtnImport_Click(Station& station) {
  ModelEditor& editor = station.modelEditor;
  try {
    const std::string file = BackupFile(station, editor.skeleton);
    const Folder& folder = station.platform.stationFolder;
    const auto text = ReadSideFile(folder, file);
    if (!text) {
      station.platform.messages.Show(editor.Caption, "Introuvable\r\n" + folder.PathOf(file),
                                     Buttons::kOk);
      return;
    }
    const std::vector<std::string> lines = SplitLines(*text);
    if (lines.size() > kMostModelLines)
      throw FileError(file + " has more than " + std::to_string(kMostModelLines) +
                      " lines: it is no model");
    EmptyGrids(station);
    for (const std::string& line : lines) {
      TextGrid::Row cells = CutAtTabs(line);
      if (IsTotal(cells) || IsHeading(cells)) continue;
      if (editor.skeleton)
        editor.ModelSquelette.AddRow(std::move(cells));
      else
        editor.Models.InsertRow(editor.Models.RowCount() - 1, std::move(cells));
    }
    SumShares(station);
    MnuCompteur_Click(station);
  } catch (const std::exception&) {
    LogCurrentException(station, "BtnImport");
  }
}

void Models::PopJour_Click(Station& station, int fromDay) {
  LoadGrid(station, fromDay);
}

void Models::PopGenre_ClickInModels(Station& station, const std::string& genre) {
  ModelEditor& editor = station.modelEditor;
  const int total = editor.Models.RowCount() - 1;
  if (editor.ModelsPlace.row < 1 || editor.ModelsPlace.row > total) return;
  for (int row = 1; row < total; ++row)
    if (EqualNoCase(editor.Models.Cell(row, 0), genre)) return;
  if (editor.ModelsPlace.row == total) editor.Models.InsertRow(total, {});
  editor.Models.SetCell(editor.ModelsPlace.row, 0, genre);
}

void Models::PopGenre_ClickInSkeleton(Station& station, const std::string& genre) {
  ModelEditor& editor = station.modelEditor;
  const GridPlace place = editor.ModelSquelettePlace;
  if (place.row < 1 || place.row > editor.ModelSquelette.RowCount()) return;
  if (place.column < 0 || place.column >= kHoursOfDay) return;
  if (place.row == editor.ModelSquelette.RowCount()) editor.ModelSquelette.AddRow({});
  editor.ModelSquelette.SetCell(place.row, place.column, genre);
  MnuCompteur_Click(station);
}

void Models::PopPourCent_ClickInModels(Station& station, int percent) {
  ModelEditor& editor = station.modelEditor;
  const GridPlace place = editor.ModelsPlace;
  if (!ModelRow(editor, place.row) || place.column < 1 || place.column > kHoursOfDay) return;
  editor.Models.SetCell(place.row, place.column, Percent(percent));
  SumShares(station);
}

void Models::PopPourCent_ClickInVarieties(Station& station, int percent) {
  ModelEditor& editor = station.modelEditor;
  const int row = editor.GVarietePlace.row;
  if (row < 1 || row >= editor.GVariete.RowCount()) return;
  try {
    StoreShare(station, editor.GVariete.Cell(row, 1), std::clamp(percent, 0, 100));
    editor.GVariete.SetCell(row, 0, Percent(percent));
    SumShares(station);
  } catch (const std::exception&) {
    LogCurrentException(station, "PopPourCent");
  }
}

namespace {

// Another process may have the base for a moment: it is asked again with the loop turning.
void ReadSupplySlice(Station& station, GenreSupply& supply) {
  constexpr int kMostTurns = 500;  // of 10 ms
  for (int turn = 0;; ++turn) {
    try {
      const NoLockWait atOnce(station.base.Waiting());
      return supply.ReadSlice(station.base.Db(), CardsListedAlready(station));
    } catch (const StoreError& error) {
      if (error.Number() != kErrLocked || turn == kMostTurns) throw;
    }
    station.platform.loop.WaitYield();
  }
}

void ShowSupply(Station& station, std::shared_ptr<const GenreSupply> supply) {
  ModelEditor& editor = station.modelEditor;
  editor.Stats.clear();
  for (const auto& [name, genre] : supply->Genres()) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%04d", genre.titles);
    editor.Stats.push_back({name, digits, {}});
  }
  editor.supply = std::move(supply);
  Models::MnuCompteur_Click(station);
}

}  // namespace

void Models::LoadGenreStats(Station& station) {
  try {
    const uint64_t number = ++station.modelEditor.readings;
    auto supply = std::make_shared<GenreSupply>(station.Now());
    for (ReadSupplySlice(station, *supply); !supply->Complete();
         ReadSupplySlice(station, *supply)) {
      station.platform.loop.Yield();
      if (station.modelEditor.readings != number) return;
    }
    if (station.modelEditor.readings == number) ShowSupply(station, std::move(supply));
  } catch (const std::exception&) {
    LogCurrentException(station, "Load Stats Genres");
  }
}

void Models::MnuCompteur_Click(Station& station) {
  ModelEditor& editor = station.modelEditor;
  std::map<std::string, int> positions;
  for (int row = 1; row < editor.ModelSquelette.RowCount(); ++row)
    for (const std::string& genre : editor.ModelSquelette.At(row)) ++positions[UpperLatin(genre)];
  for (ModelEditor::GenreCount& line : editor.Stats)
    line.positions =
        editor.skeleton ? std::to_string(positions[UpperLatin(line.genre)]) : std::string();
}

}  // namespace zemo
