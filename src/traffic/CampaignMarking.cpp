#include "traffic/CampaignMarking.h"

#include <algorithm>
#include <exception>
#include <set>

#include "station/Station.h"
#include "traffic/CampaignEditor.h"
#include "traffic/CampaignMessages.h"

namespace zemo {

namespace {

bool IsMoment(const TextGrid& grid, int row) {
  return row >= kFirstMomentRow && row < grid.RowCount();
}

bool IsDay(const TextGrid& grid, int column) {
  return column >= kFirstDayColumn && column < GridColumns(grid);
}

void Put(TextGrid& grid, int row, int column, bool cross) {
  grid.SetCell(row, column, cross ? std::string(kCross) : std::string());
}

void MarkRow(TextGrid& grid, int row, bool cross) {
  if (!IsMoment(grid, row)) return;
  for (int column = kFirstDayColumn; column < GridColumns(grid); ++column)
    Put(grid, row, column, cross);
}

void MarkColumn(TextGrid& grid, int column, bool cross) {
  if (!IsDay(grid, column)) return;
  for (int row = kFirstMomentRow; row < grid.RowCount(); ++row) Put(grid, row, column, cross);
}

bool IsCell(const TextGrid& grid, GridPlace place) {
  return IsMoment(grid, place.row) && IsDay(grid, place.column);
}

void Toggle(TextGrid& grid, GridPlace place) {
  if (!IsCell(grid, place)) return;
  Put(grid, place.row, place.column, grid.Cell(place.row, place.column) != kCross);
}

// What the cursor's column holds takes the month's place there.
void ShowCount(CampaignEditor& editor, int column) {
  if (IsDay(editor.GPub, column))
    editor.GPub.SetCell(0, column, std::to_string(CrossesInColumn(editor.GPub, column)));
}

void ShowTotal(CampaignEditor& editor) {
  editor.LblTotalMsg = std::to_string(CountCrosses(editor));
}

}  // namespace

bool Campaigns::TakesMarks(const CampaignEditor& editor) {
  return editor.BtnReplacerEnabled || editor.BtnAjouterEnabled;
}

void Campaigns::GPub_MouseMove(Station& station, CampaignEditor& editor,
                               const std::vector<GridPlace>& places, bool cross) {
  try {
    if (editor.fromOverview || !TakesMarks(editor)) return;
    std::set<int> columns;
    for (const GridPlace place : places) {
      if (!IsCell(editor.GPub, place)) continue;
      Put(editor.GPub, place.row, place.column, cross);
      columns.insert(place.column);
    }
    for (const int column : columns) ShowCount(editor, column);
    ShowTotal(editor);
  } catch (const std::exception&) {
    LogCurrentException(station, "GPub");
  }
}

void Campaigns::GPub_MouseUp(Station& station, CampaignEditor& editor, MouseButton button,
                             bool shift, bool control, GridPlace place) {
  if (editor.fromOverview) return;
  try {
    if (!TakesMarks(editor)) return ShowAlert(station, NoCampaignText(station), Icon::kInformation);
    TextGrid& grid = editor.GPub;
    const bool cross = button == MouseButton::kLeft;
    if (shift)
      MarkRow(grid, place.row, cross);
    else if (control)
      MarkColumn(grid, place.column, cross);
    else
      Toggle(grid, place);
    ShowCount(editor, place.column);
    ShowTotal(editor);
  } catch (const std::exception&) {
    LogCurrentException(station, "GPub");
  }
}

void Campaigns::BtnCopyGrille_Click(CampaignEditor& editor) {
  editor.GPubReference = editor.GPub;
}

void Campaigns::BtnCollerGrille_Click(CampaignEditor& editor) {
  const TextGrid& copy = editor.GPubReference;
  TextGrid& grid = editor.GPub;
  const int rows = std::min(grid.RowCount(), copy.RowCount());
  const int columns = std::min(GridColumns(grid), GridColumns(copy));
  for (int row = kFirstMomentRow; row < rows; ++row)
    for (int column = kFirstDayColumn; column < columns; ++column)
      grid.SetCell(row, column, copy.Cell(row, column));
  ShowTotal(editor);
}

void Campaigns::BtnDecalY_Click(CampaignEditor& editor) {
  TextGrid& grid = editor.GPub;
  const int last = grid.RowCount() - 1;
  if (last <= kFirstMomentRow) return;
  for (int column = kFirstDayColumn; column < GridColumns(grid); ++column) {
    const std::string kept = grid.Cell(last, column);
    for (int row = last; row > kFirstMomentRow; --row)
      grid.SetCell(row, column, grid.Cell(row - 1, column));
    grid.SetCell(kFirstMomentRow, column, kept);
  }
  ShowTotal(editor);
}

}  // namespace zemo
