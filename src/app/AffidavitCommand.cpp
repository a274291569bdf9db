// `zemoradio affidavit`: every cross of an advertiser and what became of it, as a table on the
// terminal, JSON, CSV or a spreadsheet. Works on a private copy and changes nothing of the station.
#include <algorithm>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "app/AskedStation.h"
#include "app/Commands.h"
#include "platform/Folder.h"
#include "platform/real/desktop/RealClock.h"
#include "platform/real/spreadsheet/XlsxWriter.h"
#include "station/IsoMoments.h"
#include "station/TextForms.h"
#include "traffic/Affidavit.h"
#include "traffic/CampaignArchive.h"

namespace zemo {

namespace {

using Json = nlohmann::ordered_json;

struct Totals {
  size_t crosses = 0, aired = 0, missed = 0, toCome = 0, extras = 0, damaged = 0;
};

Totals Count(const Affidavit& affidavit) {
  Totals totals{.crosses = affidavit.lines.size(),
                .extras = affidavit.extras.size(),
                .damaged = affidavit.damages.size()};
  for (const AffidavitLine& line : affidavit.lines) {
    totals.aired += line.aired.has_value();
    totals.missed += !line.missed.empty();
    totals.toCome += !line.aired && line.missed.empty();
  }
  return totals;
}

// "+mm:ss", "-mm:ss" ahead of its minute.
std::string LateText(int64_t seconds) {
  const int64_t whole = std::abs(seconds);
  const std::string minutes = std::to_string(whole / 60);
  return (seconds < 0 ? "-" : "+") + (minutes.size() < 2 ? "0" + minutes : minutes) + ":" +
         TwoDigits(static_cast<int>(whole % 60));
}

const char* StateWord(const AffidavitLine& line) {
  if (line.aired) return "aired";
  return line.isDue ? "missed" : "to come";
}

// One row of every form: due, aired, seconds late, state, why, kind, campaign, file.
constexpr const char* kHeads[] = {"due", "aired", "late_s",   "state",
                                  "why", "kind",  "campaign", "file"};
constexpr int kLateColumn = 2, kCampaignColumn = 6;

std::vector<std::string> Fields(const AffidavitLine& line) {
  return {IsoMoment(line.due),
          line.aired ? IsoMoment(*line.aired) : "",
          line.aired ? std::to_string(line.lateSec) : "",
          StateWord(line),
          line.missed,
          line.spot ? "spot" : "news",
          std::to_string(line.campaign),
          line.file};
}

std::vector<std::string> ExtraFields(const LocalDateTime& aired) {
  return {"", IsoMoment(aired), "", "extra", "no cross", "", "", ""};
}

std::vector<std::string> DamageFields(const AffidavitDamage& damage) {
  return {"",
          "",
          "",
          "damaged",
          damage.why,
          damage.spot ? "spot" : "news",
          std::to_string(damage.campaign),
          damage.file};
}

std::vector<std::vector<std::string>> AllFields(const Affidavit& affidavit) {
  std::vector<std::vector<std::string>> rows;
  for (const AffidavitLine& line : affidavit.lines) rows.push_back(Fields(line));
  for (const LocalDateTime& extra : affidavit.extras) rows.push_back(ExtraFields(extra));
  for (const AffidavitDamage& damage : affidavit.damages) rows.push_back(DamageFields(damage));
  return rows;
}

std::string TotalsText(const Totals& totals) {
  std::string text = std::to_string(totals.crosses) + " crosses, " + std::to_string(totals.aired) +
                     " aired, " + std::to_string(totals.missed) + " missed";
  if (totals.toCome > 0) text += ", " + std::to_string(totals.toCome) + " to come";
  if (totals.extras > 0) text += ", " + std::to_string(totals.extras) + " aired without a cross";
  if (totals.damaged > 0) text += ", " + std::to_string(totals.damaged) + " damaged grids";
  return text;
}

void TellTable(const AffidavitOptions& options, const Affidavit& affidavit, std::ostream& out) {
  out << options.advertiser << ": " << TotalsText(Count(affidavit)) << "\n";
  for (const AffidavitDamage& damage : affidavit.damages)
    out << "! campaign " << damage.campaign << ": " << damage.why << "\n";
  if (affidavit.lines.empty() && affidavit.extras.empty()) return;
  out << "DUE                  AIRED                LATE     CAMPAIGN\n";
  for (const AffidavitLine& one : affidavit.lines) {
    out << IsoMoment(one.due) << "  ";
    if (one.aired)
      out << IsoMoment(*one.aired) << "  " << LateText(one.lateSec) << "   ";
    else
      out << (one.isDue ? "missed                      " : "to come                       ");
    out << one.campaign;
    if (!one.missed.empty()) out << "  " << one.missed;
    out << "\n";
  }
  for (const LocalDateTime& extra : affidavit.extras)
    out << "-                    " << IsoMoment(extra) << "  no cross\n";
}

void TellJson(const AffidavitOptions& options, const Affidavit& affidavit, std::ostream& out) {
  const Totals totals = Count(affidavit);
  Json json = {
      {"advertiser", options.advertiser}, {"crosses", totals.crosses}, {"aired", totals.aired},
      {"missed", totals.missed},          {"to_come", totals.toCome},  {"extras", totals.extras}};
  json["lines"] = Json::array();
  for (const AffidavitLine& one : affidavit.lines)
    json["lines"].push_back({{"due", IsoMoment(one.due)},
                             {"aired", one.aired ? Json(IsoMoment(*one.aired)) : Json()},
                             {"late_s", one.aired ? Json(one.lateSec) : Json()},
                             {"state", StateWord(one)},
                             {"why", one.missed},
                             {"kind", one.spot ? "spot" : "news"},
                             {"campaign", one.campaign},
                             {"file", one.file}});
  json["aired_without_cross"] = Json::array();
  for (const LocalDateTime& extra : affidavit.extras)
    json["aired_without_cross"].push_back(IsoMoment(extra));
  json["damaged"] = Json::array();
  for (const AffidavitDamage& damage : affidavit.damages)
    json["damaged"].push_back({{"campaign", damage.campaign}, {"why", damage.why}});
  out << json.dump(-1, ' ', false, Json::error_handler_t::replace) << "\n";
}

// A text that a spreadsheet would run as a formula gets an apostrophe in front.
std::string PlainText(const std::string& text) {
  const bool formula =
      !text.empty() && std::string_view("=+-@\t\r\n").find(text[0]) != std::string_view::npos;
  return formula ? "'" + text : text;
}

// Quoted where a comma, a quote or a line end stands in it, with quotes doubled.
std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

void WriteCsv(const std::string& path, const Affidavit& affidavit) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  const auto write = [&file](const auto& fields) {
    int column = 0;
    for (const auto& field : fields) {
      file << (column == 0 ? "" : ",")
           << CsvField(column == kLateColumn ? field
                                             : PlainText(field));  // a number may be below 0
      ++column;
    }
    file << "\r\n";
  };
  write(kHeads);
  for (const std::vector<std::string>& fields : AllFields(affidavit)) write(fields);
  file.close();
  if (!file) throw std::runtime_error(path + " cannot be written");
}

Sheet MakeSheet(const AffidavitOptions& options, const Affidavit& affidavit) {
  Sheet sheet{.name = "Affidavit", .cells = {}, .columnWidths = {20, 20, 8, 9, 34, 6, 10, 44}};
  int row = 0;
  const auto put = [&](int column, const std::string& text, SheetCell::Style style) {
    const bool number = style == SheetCell::Style::kPlain && !text.empty() &&
                        (column == kLateColumn || column == kCampaignColumn);
    sheet.cells.push_back({row, column, text, Val(text), number, style});
  };
  put(0, options.advertiser + ": " + TotalsText(Count(affidavit)), SheetCell::Style::kTotal);
  row = 2;
  int column = 0;
  for (const char* head : kHeads) put(column++, head, SheetCell::Style::kHeading);
  for (const std::vector<std::string>& fields : AllFields(affidavit)) {
    ++row;
    for (size_t i = 0; i < fields.size(); ++i)
      if (!fields[i].empty()) put(static_cast<int>(i), fields[i], SheetCell::Style::kPlain);
  }
  return sheet;
}

void RequireAdvertiser(const AffidavitOptions& options, const Affidavit& affidavit,
                       Station& station) {
  if (!affidavit.lines.empty() || !affidavit.extras.empty()) return;
  const auto campaigns = station.base.Db().OpenRecordset("SELECT ANNONCEUR FROM GrillePub");
  for (; !campaigns->Eof(); campaigns->MoveNext())
    if (EqualNoCase(Trim(campaigns->Text("ANNONCEUR")), Trim(options.advertiser))) return;
  for (const CampaignForm& ended : ArchivedCampaigns(station))
    if (EqualNoCase(Trim(ended.ChAnnonceur), Trim(options.advertiser))) return;
  throw std::runtime_error("no campaign and no report row of \"" + options.advertiser + "\"");
}

}  // namespace

int RunAffidavitCommand(const AffidavitOptions& options) {
  const AskedStation asked(options);
  try {
    const auto sim = OpenAsked(asked, RealClock().LocalNow());
    Affidavit affidavit =
        MakeAffidavit(sim->station, options.advertiser, options.firstDay, options.lastDay);
    for (AffidavitDamage& damage : affidavit.damages)
      damage.why = WithShownPaths(damage.why, asked.Paths());
    RequireAdvertiser(options, affidavit, sim->station);
    if (!options.csv.empty()) WriteCsv(options.csv, affidavit);
    if (!options.xlsx.empty()) XlsxWriter().Write(options.xlsx, MakeSheet(options, affidavit));
    (options.json ? TellJson : TellTable)(options, affidavit, std::cout);
  } catch (const std::exception& error) {
    throw std::runtime_error(WithShownPaths(error.what(), asked.Paths()));
  }
  return 0;
}

}  // namespace zemo
