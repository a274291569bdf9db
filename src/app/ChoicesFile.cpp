#include "app/ChoicesFile.h"

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

namespace zemo {

namespace {
using Json = nlohmann::ordered_json;

// Members of the event as they stand in the line.
constexpr std::pair<std::string_view, const char*> kReportMembers[] = {
    {"CODE", "report"}, {"AUTEUR", "artist"}, {"TITRE", "title"},   {"GENRE", "genre"},
    {"LADATE", "date"}, {"HEURE", "time"},    {"DATENUM", "moment"}};

Json Plain(const EventValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* whole = std::get_if<int64_t>(&value)) return *whole;
  if (const auto* number = std::get_if<double>(&value)) return *number;
  return {};
}

Json ReportLine(const Event& event) {
  Json line;
  for (const auto& [member, name] : kReportMembers)
    for (const auto& [given, value] : event.members)
      if (given == member) line[name] = Plain(value);
  return line;
}

}  // namespace

ChoicesFile::ChoicesFile(std::string path, EventSink& trace)
    : path_(std::move(path)), trace_(trace), file_(path_, std::ios::binary) {
  if (!file_) throw std::runtime_error("cannot write the choices to " + path_);
}

void ChoicesFile::OnEvent(const Event& event) {
  if (event.name == "report")
    file_ << ReportLine(event).dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
  trace_.OnEvent(event);
}

void ChoicesFile::KeepRequest(const std::string& line) {
  file_ << line << '\n';
}

void ChoicesFile::Flush() {
  file_.flush();
  if (!file_) throw std::runtime_error("cannot write the choices to " + path_);
}

}  // namespace zemo
