// `zemoradio report`: the broadcast report of a span, or how often each title ran in it, as a table
// on the terminal, JSON, text or a spreadsheet. Works on a private copy and changes nothing of the
// station.
#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/AskedStation.h"
#include "app/Commands.h"
#include "library/LibraryScreen.h"
#include "platform/real/desktop/RealClock.h"
#include "platform/real/files/WholeFiles.h"
#include "platform/real/spreadsheet/XlsxWriter.h"
#include "reports/ReportScreen.h"
#include "station/IsoMoments.h"
#include "station/SideFileText.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

using Json = nlohmann::ordered_json;

struct ShownColumn {
  int column;        // of the list
  const char* head;  // on the terminal
  const char* name;  // in JSON, the field's
};
constexpr ShownColumn kRows[] = {
    {RapCol::kDate, "DATE", "LADATE"},
    {RapCol::kTime, "TIME", "HEURE"},
    {RapCol::kArtist, "ARTIST", "AUTEUR"},
    {RapCol::kTitle, "TITLE", "TITRE"},
    {RapCol::kGenre, "GENRE", "GENRE"},
    {RapCol::kVariety, "VARIETY", "VARIETE"},
    {RapCol::kComposer, "COMPOSER", "AUTEURCOMPOSITEUR"},
    {RapCol::kLabel, "LABEL", "LABEL"},
    {RapCol::kReference, "REFERENCE", "REFERENCE"},
};
constexpr ShownColumn kRotations[] = {
    {StatCol::kPlays, "PLAYS", "plays"},       {StatCol::kArtist, "ARTIST", "AUTEUR"},
    {StatCol::kTitle, "TITLE", "TITRE"},       {StatCol::kGenre, "GENRE", "GENRE"},
    {StatCol::kVariety, "VARIETY", "VARIETE"}, {StatCol::kLabel, "LABEL", "LABEL"},
};

// Each column as wide as its longest cell.
template <typename List, size_t columns>
void TellTable(const List& list, const ShownColumn (&shown)[columns], std::ostream& out) {
  std::vector<std::vector<std::string>> lines(1);
  for (const ShownColumn& column : shown) lines[0].emplace_back(column.head);
  for (size_t line = 0; line < list.Count(); ++line) {
    lines.emplace_back();
    for (const ShownColumn& column : shown)
      lines.back().push_back(OneLine(list.Cell(line, column.column)));
  }
  std::vector<int> widths(columns);
  for (const auto& line : lines)
    for (size_t i = 0; i < columns; ++i) widths[i] = std::max(widths[i], CharacterCount(line[i]));
  for (const auto& line : lines) {
    std::string text;
    for (size_t i = 0; i < columns; ++i) text += PaddedText(line[i], widths[i]) + "  ";
    out << text.substr(0, text.find_last_not_of(' ') + 1) << "\n";
  }
}

void Tell(const ReportOptions& options, const ReportEditor& editor, std::ostream& out) {
  const size_t rows = editor.ListRap.Count();
  out << editor.LblDate << " to " << editor.LblDateFin << ": " << rows
      << (rows == 1 ? " row\n" : " rows\n");
  if (rows == 0) return;
  if (!options.stats) return TellTable(editor.ListRap, kRows, out);
  out << editor.LblStat << "\n";
  TellTable(editor.ListStat, kRotations, out);
}

Json RowsJson(const ReportList& list) {
  Json rows = Json::array();
  for (size_t line = 0; line < list.Count(); ++line) {
    const uint32_t number = list.order[line];
    Json& row = rows.emplace_back();
    for (const ShownColumn& column : kRows)
      row[column.name] = list.rows->Text(number, column.column);
    row["DATENUM"] = list.rows->Moment(number);
    const int32_t gapSec = list.rows->GapSec(number);
    row["gap_s"] = gapSec < 0 ? Json() : Json(gapSec);
  }
  return rows;
}

Json RotationsJson(const RotationList& list) {
  Json rotations = Json::array();
  for (size_t line = 0; line < list.Count(); ++line) {
    Json& rotation = rotations.emplace_back();
    for (const ShownColumn& column : kRotations)
      rotation[column.name] = column.column == StatCol::kPlays
                                  ? Json(list.lines[line].plays)
                                  : Json(list.Cell(line, column.column));
  }
  return rotations;
}

void TellJson(const ReportOptions& options, const ReportEditor& editor, std::ostream& out) {
  Json json = {{"from", IsoDay(options.firstDay)},
               {"to", IsoDay(options.lastDay)},
               {"count", editor.ListRap.Count()}};
  if (options.stats) {
    json["rotations"] = RotationsJson(editor.ListStat);
    json["shares"] = Json::array();
    const VarietyShares shares = editor.shares.value_or(VarietyShares());
    for (size_t i = 0; i < kVarietiesCounted; ++i)
      json["shares"].push_back({{"VARIETE", shares.names[i]},
                                {"plays", shares.plays[i]},
                                {"percent", shares.Percent(i)}});
    json["total"] = shares.Total();
  } else {
    json["rows"] = RowsJson(editor.ListRap);
  }
  out << json.dump(-1, ' ', false, Json::error_handler_t::replace) << "\n";
}

void WriteFiles(const ReportOptions& options, Station& station, ReportEditor& editor) {
  if (options.txt.empty() && options.xlsx.empty()) return;
  const size_t listed = options.stats ? editor.ListStat.Count() : editor.ListRap.Count();
  if (listed == 0) throw std::runtime_error("there is nothing to write to a file in that span");
  if (!options.txt.empty())
    (options.stats ? Report::WriteRotations : Report::WriteReport)(station, editor, options.txt,
                                                                   ReplaceFileInParts);
  if (!options.xlsx.empty())
    XlsxWriter().Write(SheetPath(options.xlsx), options.stats
                                                    ? Report::RotationSheet(station, editor)
                                                    : Report::ReportSheet(station, editor));
}

}  // namespace

int RunReportCommand(const ReportOptions& options) {
  const AskedStation asked(options);
  try {
    const auto sim = OpenAsked(asked, RealClock().LocalNow());
    ReportEditor editor;
    editor.LblDate = DateText(options.firstDay);
    editor.LblDateFin = DateText(options.lastDay);
    editor.FiltreArtiste = options.artist;
    editor.FiltreGenre = options.genre;
    editor.FiltreVariete = options.variety;
    Report::ReadSpan(sim->station, editor);
    if (options.stats) Report::CountSpan(sim->station, editor);
    WriteFiles(options, sim->station, editor);
    (options.json ? TellJson : Tell)(options, editor, std::cout);
  } catch (const std::exception& error) {
    throw std::runtime_error(WithShownPaths(error.what(), asked.Paths()));
  }
  return 0;
}

}  // namespace zemo
