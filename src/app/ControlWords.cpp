#include "app/ControlWords.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "app/Orders.h"
#include "app/Version.h"

namespace zemo {

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

constexpr char kBetween = '\0';  // the parts of a packed request
constexpr size_t kLongestId = 64;

// What is wrong with a request, in one line.
struct NoRequest : std::runtime_error {
  using std::runtime_error::runtime_error;
};

std::string Dumped(const ordered_json& value) {
  return value.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

std::string IdOf(const json& request) {
  const auto id = request.find("id");
  if (id == request.end() || id->is_null()) return "null";
  if (!id->is_string() && !id->is_number()) throw NoRequest("\"id\" is a text or a number");
  std::string text = id->dump();
  if (text.size() > kLongestId) throw NoRequest("\"id\" is longer than 64 characters");
  return text;
}

std::string WordOf(const json& value) {
  if (value.is_number_integer()) return value.dump();
  if (!value.is_string()) throw NoRequest("\"args\" are texts and whole numbers");
  auto text = value.get<std::string>();
  if (text.find(kBetween) != std::string::npos) throw NoRequest("a zero character in \"args\"");
  return text;
}

std::string TextOf(const json& request, const char* member) {
  const auto found = request.find(member);
  if (found == request.end() || !found->is_string())
    throw NoRequest("\"" + std::string(member) + "\" is missing, or no text");
  return WordOf(*found);
}

bool IsTrue(const json& request, const char* member) {
  const auto found = request.find(member);
  return found != request.end() && found->is_boolean() && found->get<bool>();
}

// Also that there is such an order, so that the logic is asked only for what it can do.
std::vector<std::string> OrderOf(const json& request) {
  std::vector<std::string> words{TextOf(request, "order")};
  if (const auto arguments = request.find("args"); arguments != request.end()) {
    if (!arguments->is_array()) throw NoRequest("\"args\" is no list");
    for (const json& word : *arguments) words.push_back(WordOf(word));
  }
  const GivenOrder given = OrderOfWords(Orders(), words);
  const std::string why = WhyNotFromElsewhere(*given.order);
  if (!why.empty()) throw NoRequest(why);
  return words;
}

ControlAsk ReadAsk(const json& request, std::string id) {
  using What = ControlAsk::What;
  const std::string wish = TextOf(request, "do");
  ControlAsk ask{.id = std::move(id)};
  if (wish == "status")
    ask.what = What::kStatus;
  else if (wish == "metrics")
    ask.what = What::kMetrics;
  else if (wish == "watch")
    ask.what = IsTrue(request, "status") ? What::kWatchStatus : What::kWatchEvents;
  else if (wish == "order")
    ask = {.what = What::kOrder, .id = std::move(ask.id), .words = OrderOf(request)};
  else
    throw NoRequest("\"do\" is status, metrics, watch or order");
  return ask;
}

int64_t FreeBytesOf(const std::string& folder) {
  std::error_code error;
  const auto space = std::filesystem::space(folder, error);
  return error ? -1 : static_cast<int64_t>(space.available);
}

}  // namespace

std::string PackedAsk(const ControlAsk& ask) {
  std::string packed(1, static_cast<char>('a' + static_cast<int>(ask.what)));
  packed += ask.id;
  for (const std::string& word : ask.words) packed += kBetween + word;
  return packed;
}

ControlAsk UnpackedAsk(std::string_view packed) {
  ControlAsk ask{.what = static_cast<ControlAsk::What>(packed.at(0) - 'a')};
  packed.remove_prefix(1);
  size_t end = std::min(packed.find(kBetween), packed.size());
  ask.id = packed.substr(0, end);
  while (end < packed.size()) {
    packed.remove_prefix(end + 1);
    end = std::min(packed.find(kBetween), packed.size());
    ask.words.emplace_back(packed.substr(0, end));
  }
  return ask;
}

std::string JsonText(std::string_view text) {
  return Dumped(ordered_json(text));
}

std::string DoneAnswer(std::string_view id) {
  return "{\"id\":" + std::string(id) + ",\"ok\":true}";
}

std::string DoneAnswer(std::string_view id, std::string_view name, std::string_view value) {
  std::string answer = "{\"id\":" + std::string(id) + ",\"ok\":true,";
  answer += JsonText(name) + ":";
  answer += value;
  return answer + "}";
}

std::string ErrorAnswer(std::string_view id, std::string_view text) {
  return "{\"id\":" + std::string(id) + ",\"error\":" + JsonText(text) + "}";
}

void FreeSpace::Look() {
  stationBytes = FreeBytesOf(station);
  machineBytes = FreeBytesOf(machine);
}

std::string JsonWords::Greeting() {
  return Dumped({{"zemo", kControlVersion}, {"version", kVersion}, {"station", space_.station}});
}

ControlWords::Understood JsonWords::Understand(std::string_view line) {
  std::string id = "null";
  try {
    const json request = json::parse(line, nullptr, false);
    if (!request.is_object()) throw NoRequest("a request is a JSON object on a line of its own");
    id = IdOf(request);
    return {.forLogic = PackedAsk(ReadAsk(request, id))};
  } catch (const std::exception& error) {
    return {.answer = ErrorAnswer(id, error.what())};
  }
}

std::string JsonWords::Farewell(ControlCut why) {
  switch (why) {
    case ControlCut::kUser:
      return ErrorAnswer("null", "only the user that the program runs as may connect");
    case ControlCut::kNumber:
      return ErrorAnswer("null", "there are as many clients as there may be");
    case ControlCut::kSlow:
      return ErrorAnswer("null", "too much was left unread");
    case ControlCut::kFlood:
      return ErrorAnswer("null", "too many requests");
    case ControlCut::kRubbish:
      return ErrorAnswer("null", "too much that is no request");
    case ControlCut::kFull:
      return ErrorAnswer("null", "there is more to tell than can be sent");
  }
  return ErrorAnswer("null", "");
}

}  // namespace zemo
