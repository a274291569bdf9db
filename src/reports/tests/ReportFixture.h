// A station whose report screen is open, and the rows that its tests put into the report.
// 21 November 2026 is day 46347.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "reports/ReportScreen.h"
#include "station/TimeForms.h"
#include "support/TestStation.h"

namespace zemo {

inline constexpr int kToday = 46347;

// What is not set is as of a title that aired at midnight.
struct Aired {
  std::string time = "00:00:00";  // from which the moment is made, too
  std::string artist = "ARTIST", title = "TITLE", genre = "POP", variety = "NATIONAL";
  std::string composer{}, label{}, reference{};
  int day = kToday;
};

struct ReportFixture : testing::Test {
  test::TestStation on{"2026-11-21 12:00:00"};
  ReportEditor editor;

  void SetUp() override { on.Load(); }
  void Add(const Aired& row) {
    const auto quoted = [](const std::string& text) {
      std::string inQuotes = "'";
      for (const char c : text) inQuotes += c == '\'' ? std::string("''") : std::string(1, c);
      return inQuotes + "'";
    };
    const int seconds = std::stoi(row.time.substr(0, 2)) * 3600 +
                        std::stoi(row.time.substr(3, 2)) * 60 + std::stoi(row.time.substr(6, 2));
    on.Sql(
        "INSERT INTO Rapport (LADATE, HEURE, AUTEURCOMPOSITEUR, AUTEUR, TITRE, GENRE, VARIETE, "
        "LABEL, REFERENCE, DATENUM) VALUES ('" +
        DateText(FromDateSerial(row.day)) + "', '" + row.time + "', " + quoted(row.composer) +
        ", " + quoted(row.artist) + ", " + quoted(row.title) + ", " + quoted(row.genre) + ", " +
        quoted(row.variety) + ", " + quoted(row.label) + ", " + quoted(row.reference) + ", " +
        std::to_string(row.day) + " + " + std::to_string(seconds) + " / 86400.0)");
  }
  void Open() { Report::MnuRapport_Click(on.station, editor); }
  LocalDateTime Day(int day) {
    return test::ParseMoment("2026-11-" + std::to_string(day) + " 00:00:00");
  }

  // A column of ListRap or ListStat, from above.
  template <typename List>
  static std::vector<std::string> Column(const List& list, int column) {
    std::vector<std::string> cells;
    for (size_t line = 0; line < list.Count(); ++line) cells.push_back(list.Cell(line, column));
    return cells;
  }
  std::vector<std::string> Titles() { return Column(editor.ListRap, RapCol::kTitle); }
  template <typename List>
  static std::string Line(const List& list, size_t line, int columns) {
    std::string text;
    for (int column = 0; column < columns; ++column)
      text += (column > 0 ? "|" : "") + list.Cell(line, column);
    return text;
  }
  std::vector<std::string> Messages() const {
    std::vector<std::string> texts;
    for (const auto& message : on.Events("message"))
      texts.push_back(message["title"] + ": " + message["text"]);
    return texts;
  }
};

using Texts = std::vector<std::string>;

}  // namespace zemo
