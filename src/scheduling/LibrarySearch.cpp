#include "scheduling/LibrarySearch.h"

#include <algorithm>
#include <exception>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/EventLoop.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr int kLargeLibrary = 1000;  // cards, from which on a search needs a character more
constexpr int kShortestText = 3;
constexpr std::string_view kEverything = "*";
constexpr const char* kSelect =
    "SELECT Auteur ,Titre ,Duree ,Genre ,Variete ,FileName ,Code ,POINTSORTIE ,Intro ,LastDiff "
    "FROM Discotheque ";

int Characters(std::string_view utf8) {
  return static_cast<int>(std::count_if(utf8.begin(), utf8.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

// The columns of the pool of a request, so that a row can go to PL as it stands.
BrowseRow FoundRow(std::string artist, std::string title, const RowView& row) {
  const int64_t lengthMs = row.Int(2);
  BrowseRow found;
  found.code = static_cast<int32_t>(row.Int(6));
  found.cells = {std::move(artist),          std::move(title),           FormatDuration(lengthMs),
                 std::string(row.Text(3)),   std::string(row.Text(4)),   std::string(row.Text(5)),
                 std::to_string(found.code), std::to_string(lengthMs),   std::string(row.Text(7)),
                 std::string(row.Text(8)),   LastPlayedText(row.Real(9))};
  return found;
}

// Titles whose artist and title joined hold the capitals `wanted`; all for an empty one.
std::vector<BrowseRow> Find(Station& station, const std::string& condition,
                            const std::string& wanted) {
  std::vector<BrowseRow> found;
  std::string joined;
  station.base.Db().ReadRows(kSelect + condition, [&](const RowView& row) {
    const std::string_view artist = row.Text(0);
    joined.assign(artist);
    const std::string_view title = row.Text(1);
    joined.append(title);
    if (wanted.empty() || UpperLatin(joined).find(wanted) != std::string::npos)
      found.push_back(
          FoundRow(joined.substr(0, joined.size() - title.size()), std::string(title), row));
  });
  return found;
}

void Show(Station& station, std::vector<BrowseRow> rows) {
  BrowseRows& list = station.screen.ListRech;
  list.sorted = false;
  list.rows = std::move(rows);
}

void SearchText(Station& station) {
  const std::string typed = station.screen.Rech;
  const int shortest =
      kShortestText + (station.base.CountRecords("Discotheque") > kLargeLibrary ? 1 : 0);
  if (Characters(Trim(typed)) < shortest) {
    station.screen.ListRech.rows.clear();
    if (typed != kEverything) return;
  }
  station.platform.loop.Yield();
  if (station.screen.Rech != typed) return;  // typed on meanwhile: that text was searched
  std::vector<BrowseRow> found =
      Find(station, "", typed == kEverything ? std::string() : UpperLatin(typed));
  Show(station, std::move(found));
  station.engine.LastActivityTimer = station.Timer();
}

}  // namespace

void Rech_Change(Station& station) {
  try {
    SearchText(station);
  } catch (const std::exception&) {
    LogCurrentException(station, "Rech");
  }
}

void RechGenre_Click(Station& station, const std::string& genre) {
  station.screen.ListRech.rows.clear();
  try {
    Show(station, Find(station, "WHERE Genre LIKE '" + SqlQuoted(genre) + "'", ""));
  } catch (const std::exception&) {
    LogCurrentException(station, "RechGenre");
  }
}

void ListRech_ColumnClick(Station& station, int column) {
  if (column < 0 || column >= kColumns) return;
  BrowseRows& list = station.screen.ListRech;
  const auto key = [column](const BrowseRow& row) {
    return UpperLatin(row.cells[static_cast<size_t>(column)]);
  };
  std::vector<std::pair<std::string, BrowseRow>> keyed;
  keyed.reserve(list.rows.size());
  for (BrowseRow& row : list.rows) {
    std::string text = key(row);
    keyed.emplace_back(std::move(text), std::move(row));
  }
  std::stable_sort(keyed.begin(), keyed.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  for (size_t i = 0; i < keyed.size(); ++i) list.rows[i] = std::move(keyed[i].second);
  list.sorted = true;
  list.sortColumn = column;
}

}  // namespace zemo
