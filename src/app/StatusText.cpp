#include "app/StatusText.h"

#include <nlohmann/json.hpp>

#include "app/ErrorLine.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

using nlohmann::json;

constexpr size_t kHeadWidth = 10;

std::string Text(const json& of, const char* member) {
  return Printable(of.at(member).get<std::string>());
}

int64_t Whole(const json& of, const char* member) {
  return of.at(member).get<int64_t>();
}

std::string Line(const std::string& head, const std::string& text) {
  std::string line = head;
  line.resize(kHeadWidth, ' ');
  return line + text + "\n";
}

std::string LampInWords(const std::string& lamp) {
  if (lamp == "on_air") return "on air";
  if (lamp == "unheard") return "on air, but no device takes the sound";
  if (lamp == "silent") return "on air, but silent";
  if (lamp == "emergency") return "on air from the emergency folder";
  return lamp;
}

std::string ElementLine(const json& element) {
  return Text(element, "title") + "  -" + FormatDuration(Whole(element, "remaining_ms")) + " of " +
         FormatDuration(Whole(element, "length_ms"));
}

std::string BreakLine(const json& pause) {
  return Text(pause, "due") + "  " + Text(pause, "type") + "  " + Text(pause, "length") + "  in " +
         FormatDuration(Whole(pause, "in_s") * 1000);
}

std::string ListLines(const json& status) {
  std::string lines = Line("list", std::to_string(Whole(status, "list_rows")) + " rows, " +
                                       ClockText(Whole(status, "list_s") * 1000));
  int number = 0;
  for (const json& row : status.at("list")) {
    std::string head = std::to_string(++number);
    head.insert(0, head.size() < 4 ? 4 - head.size() : 0, ' ');
    lines += Line(head, Text(row, "due") + "  " + FormatDuration(Whole(row, "length_ms")) + "  " +
                            Text(row, "title"));
  }
  return lines;
}

std::string HealthLines(const json& line) {
  std::string lines;
  for (const json& figure : line) {
    const std::string severity = Text(figure, "severity");
    lines += Line(Text(figure, "name"),
                  Text(figure, "text") + (severity == "good" ? "" : "  (" + severity + ")"));
  }
  return lines;
}

}  // namespace

std::string StatusText(const json& status) {
  std::string text = LampInWords(Text(status, "lamp")) +
                     (Text(status, "mode") == "auto" ? ", automatic mode" : ", live mode") + "\n";
  text += Line("at", Text(status, "at"));
  if (const json& element = status.at("element"); element.is_object())
    text += Line("now", ElementLine(element));
  if (const json& next = status.at("next"); next.is_object())
    text += Line("next", Text(next, "due") + "  " + Text(next, "title"));
  if (const json& pause = status.at("break"); pause.is_object())
    text += Line("break", BreakLine(pause));
  if (const json& pip = status.at("pip"); pip.is_object()) text += Line("pip", Text(pip, "due"));
  return text + HealthLines(status.at("health")) + ListLines(status);
}

}  // namespace zemo
