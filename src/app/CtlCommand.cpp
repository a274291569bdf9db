// `zemoradio ctl`: asks the program that is on air with a machine's folder, and gives it orders.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>

#include "app/Commands.h"
#include "app/ControlWords.h"
#include "app/Orders.h"
#include "app/StationPaths.h"
#include "app/StatusText.h"
#include "platform/real/control/ControlConnection.h"

namespace zemo {

namespace {

using nlohmann::json;

// An order can wait for its moment, and then has to be carried out.
constexpr int kAnswerMs = 60000;

bool IsWatchOfStatus(const std::vector<std::string>& words) {
  return words.size() == 2 && words[0] == "watch" && words[1] == "status";
}

bool IsQuestion(const std::string& word) {
  return word == "status" || word == "metrics" || word == "watch";
}

std::vector<std::string> AskedWords(const CtlOptions& options) {
  std::vector<std::string> words = options.words;
  if (words.empty()) words.emplace_back("status");
  if (IsQuestion(words.front())) {
    if (words.size() > 1 && !IsWatchOfStatus(words))
      throw UsageError("ctl " + words.front() + " takes nothing behind it");
    return words;
  }
  try {
    const GivenOrder given = OrderOfWords(Orders(), words);
    const std::string why = WhyNotFromElsewhere(*given.order);
    if (!why.empty()) throw UsageError("ctl: " + why);
  } catch (const UnreadableOrder& error) {
    throw UsageError("ctl: " + std::string(error.what()));
  }
  return words;
}

std::string RequestOf(const std::vector<std::string>& words) {
  if (IsWatchOfStatus(words)) return json{{"id", 1}, {"do", "watch"}, {"status", true}}.dump();
  if (IsQuestion(words.front())) return json{{"id", 1}, {"do", words.front()}}.dump();
  const json arguments(std::vector<std::string>(words.begin() + 1, words.end()));
  return json{{"id", 1}, {"do", "order"}, {"order", words.front()}, {"args", arguments}}.dump(
      -1, ' ', false, json::error_handler_t::replace);
}

// A line of the program on air, which is of a version that is known.
json ReadAnswer(const std::optional<std::string>& line) {
  if (!line) throw ControlError("the program on air has ended");
  json answer = json::parse(*line, nullptr, false);
  if (!answer.is_object()) throw ControlError("the program on air answers what is no JSON");
  if (const auto error = answer.find("error"); error != answer.end() && error->is_string())
    throw ControlError(error->get<std::string>());
  return answer;
}

void RequireVersion(const json& greeting) {
  if (greeting.value("zemo", 0) != kControlVersion)
    throw ControlError("the program on air speaks another version of the control socket");
}

void Print(const std::string& text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
    throw std::runtime_error(std::strerror(errno));
}

// An answer among what comes is the last word for one who is sent away.
[[noreturn]] void PrintWhatComes(ControlConnection& line) {
  while (const auto told = line.Line(-1)) {
    if (json::parse(*told, nullptr, false).contains("id")) ReadAnswer(told);
    Print(*told + "\n");
  }
  throw ControlError("the program on air has ended");
}

}  // namespace

int RunCtlCommand(const CtlOptions& options) {
  const std::vector<std::string> words = AskedWords(options);
  ControlConnection line(options.machine.empty() ? DefaultMachineFolder() : options.machine);
  RequireVersion(ReadAnswer(line.Line(kAnswerMs)));
  line.Say(RequestOf(words));
  const std::optional<std::string> answered = line.Line(kAnswerMs);
  const json answer = ReadAnswer(answered);
  if (words.front() == "watch") PrintWhatComes(line);
  if (options.json)
    Print(*answered + "\n");
  else if (words.front() == "status")
    Print(StatusText(answer.at("status")));
  else if (words.front() == "metrics")
    Print(answer.at("metrics").get<std::string>());
  return 0;
}

}  // namespace zemo
