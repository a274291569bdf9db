// What a search finds, asked of the base in the plainest way: what the rows in memory are held
// against.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "station/BrowseList.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/Collation.h"
#include "store/RowView.h"

namespace zemo::test {

// `Wants` is told artist and title joined, in capitals, and of the genre its text and if it is
// Null.
template <typename Wants>
std::vector<BrowseRow> PlainRows(Station& station, Wants wants) {
  std::vector<BrowseRow> rows;
  station.base.Db().ReadRows(
      "SELECT Auteur ,Titre ,Duree ,Genre ,Variete ,FileName ,Code ,POINTSORTIE ,Intro ,LastDiff "
      "FROM Discotheque ORDER BY Code",
      [&](const RowView& row) {
        const bool noGenre = row.IsNull(3);
        const int64_t lengthMs = row.Int(2), code = row.Int(6);
        BrowseRow cells;
        cells.cells = {
            std::string(row.Text(0)), std::string(row.Text(1)),   FormatDuration(lengthMs),
            std::string(row.Text(3)), std::string(row.Text(4)),   std::string(row.Text(5)),
            std::to_string(code),     std::to_string(lengthMs),   std::string(row.Text(7)),
            std::string(row.Text(8)), LastPlayedText(row.Real(9))};
        cells.code = static_cast<int32_t>(code);
        if (wants(UpperLatin(cells.cells[0] + cells.cells[1]), cells.cells[3], noGenre))
          rows.push_back(std::move(cells));
      });
  return rows;
}

inline std::vector<BrowseRow> PlainTextSearch(Station& station, const std::string& typed) {
  const std::string wanted = typed == "*" ? "" : UpperLatin(typed);
  return PlainRows(station, [&](const std::string& capitals, const std::string&, bool) {
    return capitals.find(wanted) != std::string::npos;
  });
}

inline std::vector<BrowseRow> PlainGenreSearch(Station& station, const std::string& pattern) {
  return PlainRows(station, [&](const std::string&, const std::string& genre, bool isNull) {
    return !isNull && MatchesPattern(genre, pattern);
  });
}

inline void ExpectSameRows(const BrowsedRows& rows, const std::vector<BrowseRow>& plain) {
  ASSERT_EQ(rows.size(), plain.size());
  for (size_t row = 0; row < rows.size(); ++row) {
    ASSERT_EQ(rows.Code(row), plain[row].code);
    ASSERT_EQ(rows[row].cells, plain[row].cells) << "CODE " << plain[row].code;
  }
}

}  // namespace zemo::test
