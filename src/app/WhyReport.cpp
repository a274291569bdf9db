// A row of the report names no card. So the choice of a title belongs to its first row after the
// request, and of several requests the last one before the row counts.
#include "app/WhyReport.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <vector>

#include "app/Moments.h"
#include "station/OperatorWords.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

using Json = nlohmann::ordered_json;
constexpr double kSecond = 1.0 / 86400;

// A request, and the one of its titles that is asked about.
struct Choice {
  Json request, title;
};

std::optional<AiredElement> FindInBase(Station& station, int32_t code) {
  std::optional<AiredElement> found;
  station.base.Db().ReadRows(
      "SELECT AUTEUR, TITRE, GENRE, LADATE, HEURE, DATENUM FROM Rapport WHERE CODE = ?", {code},
      [&](const RowView& row) {
        const auto text = [&](int column) { return std::string(row.Text(column)); };
        found = {code, text(0), text(1), text(2), text(3), text(4), row.Real(5)};
      });
  return found;
}

bool PlayedSinceInBase(Station& station, const AiredElement& element, double moment) {
  bool played = false;
  station.base.Db().ReadRows(
      "SELECT CODE FROM Rapport WHERE CODE < ? AND AUTEUR = ? AND TITRE = ? AND DATENUM > ?",
      {element.code, element.artist, element.title, moment},
      [&](const RowView&) { played = true; });
  return played;
}

// The row in a line of a simulation's file; nullopt in any other line.
std::optional<AiredElement> RowInLine(const std::string& line) {
  try {
    const Json row = Json::parse(line);
    if (!row.contains("report")) return std::nullopt;
    const auto text = [&](const char* name) { return row.value(name, std::string()); };
    return AiredElement{row.at("report").get<int32_t>(),
                        text("artist"),
                        text("title"),
                        text("genre"),
                        text("date"),
                        text("time"),
                        row.value("moment", 0.0)};
  } catch (const std::exception&) {
    return std::nullopt;  // half a line, or one that somebody edited
  }
}

// "YYYY-MM-DDThh:mm:ss"
double MomentOf(const Json& request) {
  std::string text = request.at("at").get<std::string>();
  if (text.size() > 10) text[10] = ' ';
  const auto moment = ParseMoment(text);
  if (!moment) throw std::invalid_argument(text);
  return DateSerial(*moment);
}

bool IsOf(const Json& title, const AiredElement& element) {
  const std::string artist = Trim(element.artist);
  const std::string listed =
      artist.empty() ? "Code " + std::to_string(title.at("code").get<int32_t>()) : artist;
  return title.at("artist") == listed && title.at("title") == element.title;
}

std::optional<Choice> ChoiceInLine(const std::string& line, const AiredElement& element) {
  try {
    Json request = Json::parse(line);
    if (MomentOf(request) > element.moment + kSecond) return std::nullopt;
    for (const Json& title : request.at("titles"))
      if (IsOf(title, element)) {
        Json found = title;
        request.erase("titles");
        return Choice{std::move(request), std::move(found)};
      }
  } catch (const std::exception&) {
    // Half a line, or one that somebody edited: no answer is in it.
  }
  return std::nullopt;
}

std::optional<Choice> FindChoice(const AiredReport& report, const std::string& choices,
                                 const AiredElement& element) {
  const std::vector<std::string> lines = SplitLines(choices);
  for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
    auto choice = ChoiceInLine(*line, element);
    if (!choice) continue;
    // A list of the dialogue is stored, and may play any number of times.
    const bool stored = choice->request.value("kind", "") == "dialog";
    // Between the request and the element the title was on air already.
    if (!stored && report.playedSince(element, MomentOf(choice->request) - kSecond))
      return std::nullopt;
    return choice;
  }
  return std::nullopt;
}

std::string NumberText(const Json& object, const char* name) {
  const auto found = object.find(name);
  return found == object.end() ? "0" : found->dump();
}

std::string WordText(const Json& object, const char* name) {
  return object.value(name, std::string());
}

void TellTaken(const Choice& choice, std::ostream& out) {
  const auto number = [&](const char* name) { return NumberText(choice.title, name); };
  const std::string genre = WordText(choice.title, "genre");
  out << "  taken as number " << number("place") << " of those offered: ";
  if (WordText(choice.request, "kind") == "percentage")
    out << genre << " was to have " << number("percent") << " per cent of the "
        << number("budget_s") << " s of " << WordText(choice.title, "variety") << ", had "
        << number("share_before") << " and has " << number("share_after") << " with it\n";
  else
    out << genre << " at position " << number("position") << " of the skeleton, pass "
        << number("pass") << "\n";
}

void TellRequest(const Choice& choice, std::ostream& out) {
  const Json& request = choice.request;
  const auto number = [&](const char* name) { return NumberText(request, name); };
  const LocalDateTime at = FromDateSerial(MomentOf(request));
  out << "  by the " << WordText(request, "kind") << " request of " << LongDateText(at, kEnglish)
      << ", " << TimeText(at) << ", for " << number("minutes") << " minutes\n";
  out << "  " << number("candidates") << " cards of its query, " << number("offered")
      << " offered, " << number("refused") << " refused by the rules\n";
  TellTaken(choice, out);
  const Json refusals = request.value("refusals", Json::array());
  for (const Json& line : refusals)
    out << "  refused: " << OneLine(RefusalInWords(line.get<std::string>(), kEnglish)) << "\n";
  const int more = request.value("refused", 0) - static_cast<int>(refusals.size());
  if (more > 0) out << "  and " << more << " more\n";
}

void TellJson(const AiredElement& element, const std::optional<Choice>& choice, std::ostream& out) {
  Json answer = {{"report", element.code}, {"artist", element.artist}, {"title", element.title},
                 {"genre", element.genre}, {"date", element.date},     {"time", element.hour}};
  answer["brought_by_request"] = choice.has_value();
  answer["request"] = choice ? choice->request : Json();
  answer["choice"] = choice ? choice->title : Json();
  out << answer.dump(-1, ' ', false, Json::error_handler_t::replace) << "\n";
}

}  // namespace

AiredReport ReportOf(Station& station) {
  return {[&station](int32_t code) { return FindInBase(station, code); },
          [&station](const AiredElement& element, double moment) {
            return PlayedSinceInBase(station, element, moment);
          }};
}

AiredReport ReportIn(const std::string& simulation) {
  std::vector<AiredElement> rows;
  for (const std::string& line : SplitLines(simulation))
    if (auto row = RowInLine(line)) rows.push_back(std::move(*row));
  const auto find = [rows](int32_t code) -> std::optional<AiredElement> {
    for (const AiredElement& row : rows)
      if (row.code == code) return row;
    return std::nullopt;
  };
  const auto playedSince = [rows](const AiredElement& element, double moment) {
    return std::any_of(rows.begin(), rows.end(), [&](const AiredElement& row) {
      return row.code < element.code && row.artist == element.artist &&
             row.title == element.title && row.moment > moment;
    });
  };
  return {find, playedSince};
}

void TellReport(const AiredReport& report, const std::string& choices, int32_t code, bool json,
                std::ostream& out) {
  const auto found = report.find(code);
  if (!found) throw std::runtime_error("the report has no row " + std::to_string(code));
  const AiredElement& element = *found;
  const auto choice = FindChoice(report, choices, element);
  if (json) return TellJson(element, choice, out);
  out << (choice ? "brought by a request" : "no request known") << "\n";
  out << "  row " << code << " of the report: " << element.artist << " - " << element.title << " ("
      << element.genre << "), on air " << element.date << " " << element.hour << "\n";
  if (choice)
    TellRequest(*choice, out);
  else
    out << "  it is no music, came from a stored list or by hand, or was chosen before the choices "
           "that are kept\n";
}

}  // namespace zemo
