#include "scheduling/ModelMerge.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "scheduling/ModelEditor.h"
#include "scheduling/ModelGrids.h"
#include "scheduling/WeekModel.h"
#include "station/RecordMerge.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

using Rows = std::vector<TextGrid::Row>;  // as StoredRows gives them

constexpr std::array<const char*, kHoursOfDay> kHourNames = {
    "00h", "01h", "02h", "03h", "04h", "05h", "06h", "07h", "08h", "09h", "10h", "11h",
    "12h", "13h", "14h", "15h", "16h", "17h", "18h", "19h", "20h", "21h", "22h", "23h"};

using Hours = std::array<std::string, kHoursOfDay>;

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines(1);
  for (const char c : text) {
    if (c == '\n')
      lines.emplace_back();
    else
      lines.back() += c;
  }
  return lines;
}

// The same genre in a second row is another one.
std::vector<std::string> GenresOf(const Rows& rows) {
  std::map<std::string, int> seen;
  std::vector<std::string> genres;
  for (const TextGrid::Row& row : rows)
    genres.push_back(row[0] + std::string(static_cast<size_t>(seen[row[0]]++), '\t'));
  return genres;
}

// --- the percentage model: an hour is its genres and shares, a line each ---

Hours SharesByHour(const Rows& rows) {
  const std::vector<std::string> genres = GenresOf(rows);
  Hours hours;
  for (size_t hour = 0; hour < hours.size(); ++hour) {
    std::map<std::string, std::string> shares;
    for (size_t row = 0; row < rows.size(); ++row)
      if (rows[row][hour + 1] != "0") shares[genres[row]] = rows[row][hour + 1];
    for (const auto& [genre, share] : shares) hours[hour] += share + " " + genre + "\n";
  }
  return hours;
}

std::map<std::string, std::string> SharesOf(const std::string& hour) {
  std::map<std::string, std::string> shares;
  for (const std::string& line : Lines(hour))
    if (const size_t blank = line.find(' '); blank != std::string::npos)
      shares[line.substr(blank + 1)] = line.substr(0, blank);
  return shares;
}

// Genres in the order of `mine`, then those of `theirs`. One without a share in any hour stays
// where nobody took it out.
std::vector<std::string> GenresTogether(const Rows& loaded, const Rows& theirs, const Rows& mine,
                                        const Hours& hours) {
  const auto asSet = [](const std::vector<std::string>& genres) {
    return std::set<std::string>(genres.begin(), genres.end());
  };
  const std::set<std::string> before = asSet(GenresOf(loaded)), other = asSet(GenresOf(theirs)),
                              own = asSet(GenresOf(mine));
  std::set<std::string> shared;
  for (const std::string& hour : hours)
    for (const auto& [genre, share] : SharesOf(hour)) shared.insert(genre);
  std::vector<std::string> all = GenresOf(mine);
  for (const std::string& genre : GenresOf(theirs))
    if (!own.contains(genre)) all.push_back(genre);
  std::erase_if(all, [&](const std::string& genre) {
    const bool takenOut = before.contains(genre) && !(own.contains(genre) && other.contains(genre));
    return takenOut && !shared.contains(genre);
  });
  return all;
}

Rows ModelRows(const std::vector<std::string>& genres, const Hours& hours) {
  Rows rows;
  for (const std::string& genre : genres) {
    TextGrid::Row row(kHoursOfDay + 1, "0");
    row[0] = genre.substr(0, genre.find('\t'));
    for (size_t hour = 0; hour < hours.size(); ++hour) {
      const auto shares = SharesOf(hours[hour]);
      if (const auto share = shares.find(genre); share != shares.end())
        row[hour + 1] = share->second;
    }
    rows.push_back(std::move(row));
  }
  return rows;
}

// --- the skeleton: an hour is its positions, a line each ---

Hours PositionsByHour(const Rows& rows) {
  Hours hours;
  for (size_t hour = 0; hour < hours.size(); ++hour) {
    for (const TextGrid::Row& row : rows) hours[hour] += row[hour] + "\n";
    const size_t last = hours[hour].find_last_not_of('\n');
    hours[hour].resize(last == std::string::npos ? 0 : last + 1);
  }
  return hours;
}

Rows SkeletonRows(const Hours& hours) {
  Rows rows;
  for (size_t hour = 0; hour < hours.size(); ++hour) {
    const std::vector<std::string> positions = Lines(hours[hour]);
    for (size_t position = 0; position < positions.size(); ++position) {
      if (positions[position].empty()) continue;
      if (position >= rows.size()) rows.resize(position + 1, TextGrid::Row(kHoursOfDay));
      rows[position][hour] = positions[position];
    }
  }
  return rows;
}

// --- both ---

Hours HoursOf(const Rows& rows, bool skeleton) {
  return skeleton ? PositionsByHour(rows) : SharesByHour(rows);
}

RecordFields FieldsOf(Hours& hours) {
  RecordFields fields;
  for (size_t hour = 0; hour < hours.size(); ++hour)
    fields.push_back({kHourNames[hour], &hours[hour]});
  return fields;
}

// The day as others have it.
Rows ReadDay(Station& station) {
  const ModelEditor& editor = station.modelEditor;
  const auto day = static_cast<int16_t>(editor.JourSemaine);
  Rows rows;
  const auto take = [&](const RowView& row, int columns) {
    rows.emplace_back();
    for (int column = 0; column < columns; ++column) rows.back().emplace_back(row.Text(column));
  };
  if (editor.skeleton) {
    ForEachPosition(station.base.Db(), day, [&](const RowView& row) { take(row, kHoursOfDay); });
    std::erase_if(rows, [](const TextGrid::Row& row) {
      return std::all_of(row.begin(), row.end(),
                         [](const std::string& cell) { return Trim(cell).empty(); });
    });
    return rows;
  }
  ForEachModelRow(station.base.Db(), day, [&](const RowView& row) { take(row, kHoursOfDay + 1); });
  std::erase_if(rows, [](const TextGrid::Row& row) { return Trim(row[0]).empty(); });
  for (TextGrid::Row& row : rows)
    for (size_t column = 1; column < row.size(); ++column)
      row[column] = std::to_string(ValInt(row[column]));
  return rows;
}

void ShowRows(Station& station, const Rows& rows) {
  ModelEditor& editor = station.modelEditor;
  TextGrid& grid = editor.skeleton ? editor.ModelSquelette : editor.Models;
  const int last = editor.skeleton ? 0 : 1;  // the total
  while (grid.RowCount() > 1 + last) grid.RemoveRow(1);
  int place = 1;
  for (const TextGrid::Row& row : rows) grid.InsertRow(place++, row);
  if (editor.skeleton)
    Models::MnuCompteur_Click(station);
  else
    SumShares(station);
}

struct Day {
  Rows loaded, theirs, mine;
  Hours loadedHours, theirHours, myHours;
  RecordForms Forms() { return {FieldsOf(loadedHours), FieldsOf(theirHours), FieldsOf(myHours)}; }
};

Day DayNow(Station& station) {
  const ModelEditor& editor = station.modelEditor;
  Day day{editor.saved, ReadDay(station), StoredRows(editor), {}, {}, {}};
  day.loadedHours = HoursOf(day.loaded, editor.skeleton);
  day.theirHours = HoursOf(day.theirs, editor.skeleton);
  day.myHours = HoursOf(day.mine, editor.skeleton);
  return day;
}

Rows RowsOf(const Day& day, const Hours& hours, bool skeleton) {
  return skeleton ? SkeletonRows(hours)
                  : ModelRows(GenresTogether(day.loaded, day.theirs, day.mine, hours), hours);
}

void ShowDay(Station& station, const Day& day) {
  ModelEditor& editor = station.modelEditor;
  ShowRows(station, RowsOf(day, day.myHours, editor.skeleton));
  // By the hours as they were loaded or taken over, with the genres of the others.
  editor.saved = editor.skeleton ? SkeletonRows(day.loadedHours)
                                 : ModelRows(GenresOf(day.theirs), day.loadedHours);
}

}  // namespace

bool MergeShownDay(Station& station) {
  ModelEditor& editor = station.modelEditor;
  RecordMerge merge;
  for (;;) {
    const int64_t counter = station.base.Db().ForeignCounter();
    if (counter == editor.counter || editor.JourSemaine == 0) return true;
    Day day = DayNow(station);
    if (day.theirs == day.loaded) return true;
    const auto step =
        merge.Next(station, day.Forms(), [](const char* hour) { return std::string(hour); });
    if (step == RecordMerge::Step::kLeave) return false;
    if (step == RecordMerge::Step::kReadAgain) continue;
    ShowDay(station, day);
    editor.counter = counter;
    return true;
  }
}

void Models::TakeOver(Station& station) {
  const ModelEditor& editor = station.modelEditor;
  if (!editor.open || editor.JourSemaine == 0) return;
  LoadVarieties(station);
  Day day = DayNow(station);
  if (day.theirs == day.loaded) return;
  if (day.mine == day.loaded) {
    ShowRows(station, day.theirs);
    station.modelEditor.saved = day.theirs;
    return;
  }
  TakeOverFields(day.Forms());
  ShowDay(station, day);
}

}  // namespace zemo
