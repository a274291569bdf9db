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
#include "station/LanguageTexts.h"
#include "station/TextForms.h"
#include "traffic/Affidavit.h"
#include "traffic/AffidavitTable.h"
#include "traffic/CampaignArchive.h"

namespace zemo {

namespace {

using Json = nlohmann::ordered_json;

const char* StateWord(const AffidavitLine& line) {
  if (line.aired) return "aired";
  return line.isDue ? "missed" : "to come";
}

// One row of every form: due, aired, seconds late, state, why, kind, campaign, file.
const AffidavitCells kHeads = {"due", "aired", "late_s",   "state",
                               "why", "kind",  "campaign", "file"};

AffidavitCells Fields(const AffidavitLine& line) {
  return {IsoMoment(line.due),
          line.aired ? IsoMoment(*line.aired) : "",
          line.aired ? std::to_string(line.lateSec) : "",
          StateWord(line),
          line.missed,
          line.spot ? "spot" : "news",
          std::to_string(line.campaign),
          line.file};
}

AffidavitCells ExtraFields(const LocalDateTime& aired) {
  return {"", IsoMoment(aired), "", "extra", "no cross", "", "", ""};
}

AffidavitCells DamageFields(const AffidavitDamage& damage) {
  return {"",
          "",
          "",
          "damaged",
          damage.why,
          damage.spot ? "spot" : "news",
          std::to_string(damage.campaign),
          damage.file};
}

std::vector<AffidavitCells> AllFields(const Affidavit& affidavit) {
  std::vector<AffidavitCells> rows;
  for (const AffidavitLine& line : affidavit.lines) rows.push_back(Fields(line));
  for (const LocalDateTime& extra : affidavit.extras) rows.push_back(ExtraFields(extra));
  for (const AffidavitDamage& damage : affidavit.damages) rows.push_back(DamageFields(damage));
  return rows;
}

std::string HeadLine(const AffidavitOptions& options, const Affidavit& affidavit) {
  return options.advertiser + ": " + TotalsInWords(TotalsOf(affidavit), kEnglish);
}

void TellTable(const AffidavitOptions& options, const Affidavit& affidavit, std::ostream& out) {
  out << HeadLine(options, affidavit) << "\n";
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
  const AffidavitTotals totals = TotalsOf(affidavit);
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
           << CsvField(column == DiffCol::kLate ? field
                                                : PlainText(field));  // a number may be below 0
      ++column;
    }
    file << "\r\n";
  };
  write(kHeads);
  for (const AffidavitCells& fields : AllFields(affidavit)) write(fields);
  file.close();
  if (!file) throw std::runtime_error(path + " cannot be written");
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
    if (!options.xlsx.empty())
      XlsxWriter().Write(
          options.xlsx, AffidavitSheet(HeadLine(options, affidavit), kHeads, AllFields(affidavit)));
    (options.json ? TellJson : TellTable)(options, affidavit, std::cout);
  } catch (const std::exception& error) {
    throw std::runtime_error(WithShownPaths(error.what(), asked.Paths()));
  }
  return 0;
}

}  // namespace zemo
