#include "scheduling/ModelGrids.h"

#include <array>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "platform/Folder.h"
#include "scheduling/ModelEditor.h"
#include "scheduling/RequestError.h"
#include "settings/SideFileIo.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr size_t kGenreWidth = 22;  // characters of the field

TextGrid::Row HeadingRow(const char* corner) {
  TextGrid::Row row;
  if (corner) row.emplace_back(corner);
  for (int hour = 0; hour < kHoursOfDay; ++hour) row.push_back(HourLabel(hour));
  return row;
}

void CheckWidth(const std::string& genre) {
  if (FirstCharacters(genre, kGenreWidth) != genre)
    throw RequestError(kErrFieldTooSmall, "the genre \"" + genre + "\" is longer than " +
                                              std::to_string(kGenreWidth) + " characters");
}

// Of a row of Models; whole per cent.
Values ModelValues(const TextGrid::Row& row, int day) {
  CheckWidth(row[0]);
  Values values{day, row[0]};
  for (size_t column = 1; column <= kHoursOfDay; ++column) {
    const int32_t percent = column < row.size() ? ValInt(row[column]) : 0;
    if (percent < std::numeric_limits<int16_t>::min() ||
        percent > std::numeric_limits<int16_t>::max())
      throw RequestError(kErrOverflow, std::to_string(percent) + " is no percentage");
    values.emplace_back(percent);
  }
  return values;
}

Values SkeletonValues(const TextGrid::Row& row, int day) {
  Values values{day};
  for (size_t column = 0; column < kHoursOfDay; ++column) {
    const std::string genre = column < row.size() ? row[column] : std::string();
    CheckWidth(genre);
    values.emplace_back(genre);
  }
  return values;
}

// "(?, ?, ?)"
std::string Places(size_t count) {
  std::string places = "(?";
  while (--count > 0) places += ", ?";
  return places + ")";
}

std::string TabLine(const TextGrid& grid, int row, int columns) {
  std::string line;
  for (int column = 0; column < columns; ++column)
    line += (column > 0 ? "\t" : "") + OneLine(grid.Cell(row, column));
  return line;
}

// Rows of the grid that are stored, by their number.
std::vector<int> StoredModelRows(const TextGrid& grid) {
  std::vector<int> rows;
  for (int row = 1; row < grid.RowCount() - 1; ++row)
    if (!Trim(grid.Cell(row, 0)).empty()) rows.push_back(row);
  return rows;
}

std::vector<int> StoredPositions(const TextGrid& grid) {
  std::vector<int> rows;
  for (int row = 1; row < grid.RowCount(); ++row)
    if (!RowIsEmpty(grid, row)) rows.push_back(row);
  return rows;
}

TextGrid ModelFrame(const Station& station) {
  TextGrid grid;
  grid.AddRow(HeadingRow(GenresWord(station.modelEditor.langue)));
  grid.AddRow({kTotalText});
  return grid;
}

TextGrid SkeletonFrame() {
  TextGrid grid;
  grid.AddRow(HeadingRow(nullptr));
  return grid;
}

// The table holds the day already. Told once, until it succeeds.
void WriteBackup(Station& station, const char* routine, const std::string& file,
                 const std::vector<std::string>& lines) {
  auto& failing = station.modelEditor.backupsFailing;
  try {
    WriteSideFileDurably(station.platform.stationFolder, file, JoinLines(lines));
    failing.erase(file);
  } catch (const FileError&) {
    if (failing.insert(file).second) LogCurrentException(station, routine, file);
  }
}

// The day in the table gives way to `rows`, in one transaction, and the back-up file is written.
void SaveDay(Station& station, const char* routine, const char* table, const std::string& fields,
             int day, const std::vector<Values>& rows, const std::string& file,
             const std::vector<std::string>& lines) {
  Database& db = station.base.Db();
  Transaction transaction(db);
  db.Execute("DELETE * FROM " + std::string(table) + " WHERE JOUR = ?", {day});
  for (const Values& values : rows)
    db.Execute(
        "INSERT INTO " + std::string(table) + " (" + fields + ") VALUES " + Places(values.size()),
        values);
  transaction.Commit();
  WriteBackup(station, routine, file, lines);
}

// What cannot be asked for counts as another one at the next saving.
int64_t ForeignCounterOrNone(Station& station) {
  try {
    return station.base.Db().ForeignCounter();
  } catch (const std::exception&) {
    return -1;  // the grid's own reading logs it
  }
}

size_t DayIndex(int day) {
  if (day < 1 || day > kDaysOfWeek)
    throw RequestError(kErrSubscript, std::to_string(day) + " is no day of the week");
  return static_cast<size_t>(day - 1);
}

}  // namespace

const char* GenresWord(int64_t langue) {
  switch (langue) {
    case 1:
      return "Style";
    case 2:
    case 3:
      return "Géneros";
    default:
      return "Genres";
  }
}

const char* VarietyWord(int64_t langue) {
  switch (langue) {
    case 1:
      return "Origin";
    case 2:
      return "Música";
    case 3:
      return "Musica";
    default:
      return "Variété";
  }
}

std::string HourLabel(int hour) {
  return TwoDigits(hour) + "h";
}

std::string DayName(int day) {
  static constexpr std::array<const char*, kDaysOfWeek> kNames = {
      "Lundi", "Mardi", "Mercredi", "Jeudi", "Vendredi", "Samedi", "Dimanche"};
  return kNames[DayIndex(day)];
}

bool RowIsEmpty(const TextGrid& grid, int row) {
  for (const std::string& cell : grid.At(row))
    if (!Trim(cell).empty()) return false;
  return true;
}

void LoadVarieties(Station& station) {
  TextGrid grid;
  grid.AddRow({"%", VarietyWord(station.modelEditor.langue)});
  ForEachVariety(station.base.Db(), [&](const RowView& row) {
    grid.AddRow({std::string(row.Text(0)), std::string(row.Text(1))});
  });
  station.modelEditor.GVariete = std::move(grid);
}

void LoadModelScreen(Station& station) {
  if (station.modelEditor.loaded) return;
  try {
    station.modelEditor.langue = station.base.CnfInt(Cnf::kLangue);
    LoadVarieties(station);
    Models::LoadPopUps(station);
    station.modelEditor.loaded = true;
  } catch (const std::exception&) {
    LogCurrentException(station, "F7.Form_Load");
  }
}

void SelectWeekday(Station& station, int day) {
  ModelEditor& editor = station.modelEditor;
  LoadModelScreen(station);
  if (editor.Models.RowCount() == 0) EmptyGrids(station);
  const int64_t counter = ForeignCounterOrNone(station);
  if (!LoadGrid(station, day)) return;
  editor.counter = counter;
  editor.JourSemaine = day;
  editor.saved = StoredRows(editor);
}

bool LoadGrid(Station& station, int day) {
  const bool loaded = station.base.CnfBool(Cnf::kSquelette)
                          ? LoadSkeletonGrid(station, static_cast<int16_t>(day))
                          : LoadModelGrid(station, static_cast<int16_t>(day));
  if (!loaded) return false;
  Models::Translate(station);
  Models::MnuCompteur_Click(station);
  return true;
}

void EmptyGrids(Station& station) {
  ModelEditor& editor = station.modelEditor;
  editor.Models = ModelFrame(station);
  editor.ModelSquelette = SkeletonFrame();
}

bool LoadModelGrid(Station& station, int16_t day) {
  ModelEditor& editor = station.modelEditor;
  try {
    TextGrid grid = ModelFrame(station);
    ForEachModelRow(station.base.Db(), day, [&](const RowView& row) {
      TextGrid::Row cells;
      for (int column = 0; column <= kHoursOfDay; ++column) cells.emplace_back(row.Text(column));
      grid.InsertRow(grid.RowCount() - 1, std::move(cells));
    });
    editor.Models = std::move(grid);
    editor.ModelSquelette = SkeletonFrame();
    editor.skeleton = false;
    SumShares(station);
    return true;
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadGrilleModels");
    return false;
  }
}

bool LoadSkeletonGrid(Station& station, int16_t day) {
  ModelEditor& editor = station.modelEditor;
  try {
    TextGrid grid = SkeletonFrame();
    ForEachPosition(station.base.Db(), day, [&](const RowView& row) {
      TextGrid::Row cells;
      for (int hour = 0; hour < kHoursOfDay; ++hour) cells.emplace_back(row.Text(hour));
      grid.AddRow(std::move(cells));
    });
    editor.Models = ModelFrame(station);
    editor.ModelSquelette = std::move(grid);
    editor.skeleton = true;
    return true;
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadGrilleSquelette");
    return false;
  }
}

std::vector<TextGrid::Row> StoredRows(const ModelEditor& editor) {
  std::vector<TextGrid::Row> rows;
  if (editor.skeleton) {
    for (const int row : StoredPositions(editor.ModelSquelette)) {
      rows.push_back(editor.ModelSquelette.At(row));
      rows.back().resize(kHoursOfDay);
    }
    return rows;
  }
  for (const int row : StoredModelRows(editor.Models)) {
    rows.push_back({editor.Models.Cell(row, 0)});
    for (int column = 1; column <= kHoursOfDay; ++column)
      rows.back().push_back(std::to_string(ValInt(editor.Models.Cell(row, column))));
  }
  return rows;
}

bool SaveModelGrid(Station& station, int16_t day) {
  const TextGrid& grid = station.modelEditor.Models;
  try {
    const std::string file = station.files.Days[DayIndex(day)];
    std::vector<Values> rows;
    std::vector<std::string> lines;
    for (const int row : StoredModelRows(grid)) {
      rows.push_back(ModelValues(grid.At(row), day));
      lines.push_back(TabLine(grid, row, kHoursOfDay + 1));
    }
    SaveDay(station, "SauveGrilleModels", "Models", "JOUR, GENRE, " + HourColumns(), day, rows,
            file, lines);
    return true;
  } catch (const std::exception&) {
    LogCurrentException(station, "SauveGrilleModels");
    return false;
  }
}

bool SaveSkeletonGrid(Station& station, int16_t day) {
  const TextGrid& grid = station.modelEditor.ModelSquelette;
  try {
    const std::string file = station.files.SkeletonDays[DayIndex(day)];
    std::vector<Values> rows;
    std::vector<std::string> lines;
    for (const int row : StoredPositions(grid)) {
      rows.push_back(SkeletonValues(grid.At(row), day));
      lines.push_back(TabLine(grid, row, kHoursOfDay));
    }
    SaveDay(station, "SauveGrilleSquelette", "ModelSquelette", "JOUR, " + HourColumns(), day, rows,
            file, lines);
    return true;
  } catch (const std::exception&) {
    LogCurrentException(station, "SauveGrilleSquelette");
    return false;
  }
}

void SumShares(Station& station) {
  TextGrid& grid = station.modelEditor.Models;
  const int total = grid.RowCount() - 1;
  for (int column = 1; column <= kHoursOfDay; ++column) {
    double sum = 0;
    for (int row = 1; row < total; ++row) sum += Val(grid.Cell(row, column));
    grid.SetCell(total, column, AsText(Value(sum)) + " %");
  }
}

}  // namespace zemo
