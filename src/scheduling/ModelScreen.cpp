#include "scheduling/ModelScreen.h"

#include "library/LibraryHandler.h"
#include "platform/Desktop.h"
#include "scheduling/ModelEditor.h"
#include "scheduling/ModelGrids.h"
#include "station/Station.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

constexpr int kVarietyColumns = 2;

bool Within(GridPlace place, int rows, int columns) {
  return place.row >= 0 && place.row < rows && place.column >= 0 && place.column < columns;
}

}  // namespace

void Models::MnuModel_Click(Station& station) {
  HandleControl(station, "MnuModel", [&] {
    ModelEditor& editor = station.modelEditor;
    if (station.engine.ScreenLocked || editor.open) return;
    std::set<std::string> failing = std::move(editor.backupsFailing);
    const uint64_t readings = editor.readings;
    editor = {};
    editor.backupsFailing = std::move(failing);
    editor.readings = readings;
    editor.open = true;
    SelectWeekday(station, CurrentWeekday(station.Now()));
    LoadGenreStats(station);
  });
}

bool Models::IsChanged(const Station& station) {
  return station.modelEditor.open && StoredRows(station.modelEditor) != station.modelEditor.saved;
}

bool Models::Form_QueryUnload(Station& station) {
  if (!IsChanged(station)) return true;
  switch (station.platform.messages.Show(station.modelEditor.Caption, kSaveQuestion,
                                         Buttons::kYesNoCancel)) {
    case Answer::kYes:
      return BtnSave_Click(station);
    case Answer::kNo:
      return true;
    default:
      return false;
  }
}

void Models::Form_Unload(Station& station) {
  station.modelEditor.open = false;
  ++station.modelEditor.readings;
}

void Models::JourSemaine_Click(Station& station, int day) {
  HandleControl(station, "JourSemaine", [&] {
    if (Form_QueryUnload(station)) SelectWeekday(station, day);
  });
}

// --- the grids ---

bool Models::Models_Click(Station& station, GridPlace place) {
  ModelEditor& editor = station.modelEditor;
  if (!Within(place, editor.Models.RowCount(), kHoursOfDay + 1)) return false;
  editor.ModelsPlace = place;
  editor.clicked = ModelGrid::kModels;
  return true;
}

bool Models::ModelSquelette_Click(Station& station, GridPlace place) {
  ModelEditor& editor = station.modelEditor;
  if (!Within(place, editor.ModelSquelette.RowCount() + 1, kHoursOfDay)) return false;
  editor.ModelSquelettePlace = place;
  editor.clicked = ModelGrid::kSkeleton;
  return true;
}

bool Models::GVariete_Click(Station& station, GridPlace place) {
  ModelEditor& editor = station.modelEditor;
  if (!Within(place, editor.GVariete.RowCount(), kVarietyColumns)) return false;
  editor.GVarietePlace = place;
  editor.clicked = ModelGrid::kVarieties;
  return true;
}

void Models::Models_KeyInsert(Station& station) {
  ModelEditor& editor = station.modelEditor;
  const int row = editor.ModelsPlace.row;
  if (row > 0 && row < editor.Models.RowCount()) editor.Models.InsertRow(row, {});
}

void Models::Models_KeyDelete(Station& station) {
  ModelEditor& editor = station.modelEditor;
  const int row = editor.ModelsPlace.row;
  if (row < 1 || row >= editor.Models.RowCount() - 1) return;
  editor.Models.RemoveRow(row);
  editor.Models.InsertRow(editor.Models.RowCount() - 1, {});
  SumShares(station);
}

void Models::ModelSquelette_KeyInsert(Station& station) {
  ModelEditor& editor = station.modelEditor;
  const int row = editor.ModelSquelettePlace.row;
  if (row > 0 && row <= editor.ModelSquelette.RowCount()) editor.ModelSquelette.InsertRow(row, {});
}

void Models::ModelSquelette_KeyDelete(Station& station) {
  ModelEditor& editor = station.modelEditor;
  const GridPlace place = editor.ModelSquelettePlace;
  if (place.row < 1 || place.row >= editor.ModelSquelette.RowCount()) return;
  editor.ModelSquelette.SetCell(place.row, place.column, {});
  MnuCompteur_Click(station);
}

// --- the pop-ups ---

Models::PopUp Models::OpenedPopUp(const ModelEditor& editor) {
  const int lastModel = editor.Models.RowCount() - 2;
  const GridPlace place = editor.ModelsPlace;
  switch (editor.clicked) {
    case ModelGrid::kModels:
      if (place.row < 1 || place.row > lastModel + 1) return PopUp::kNone;
      if (place.column == 0) return PopUp::kGenre;
      return place.row <= lastModel ? PopUp::kPourCent : PopUp::kNone;
    case ModelGrid::kSkeleton:
      return editor.ModelSquelettePlace.row > 0 ? PopUp::kGenre : PopUp::kNone;
    case ModelGrid::kVarieties:
      return editor.GVarietePlace.row > 0 ? PopUp::kPourCent : PopUp::kNone;
    case ModelGrid::kNone:
      break;
  }
  return PopUp::kNone;
}

void Models::PopGenre_Click(Station& station, const std::string& genre) {
  if (OpenedPopUp(station.modelEditor) != PopUp::kGenre) return;
  if (station.modelEditor.clicked == ModelGrid::kModels)
    PopGenre_ClickInModels(station, genre);
  else
    PopGenre_ClickInSkeleton(station, genre);
}

void Models::PopPourCent_Click(Station& station, int percent) {
  if (OpenedPopUp(station.modelEditor) != PopUp::kPourCent) return;
  if (station.modelEditor.clicked == ModelGrid::kModels)
    PopPourCent_ClickInModels(station, percent);
  else
    PopPourCent_ClickInVarieties(station, percent);
}

}  // namespace zemo
