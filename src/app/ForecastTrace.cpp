#include "app/ForecastTrace.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "station/OnAirList.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

using SortedJson = nlohmann::json;
constexpr int64_t kDayMs = 86400000;
constexpr int64_t kShortestGapMs = 1000;  // less is the step from one element to the next
constexpr size_t kTimeAt = 11;            // of "YYYY-MM-DDThh:mm:ss.mmm"

int64_t MsOfDay(std::string_view time) {
  if (time.size() < 12) return 0;
  return ((ValInt(time.substr(0, 2)) * 60LL + ValInt(time.substr(3, 2))) * 60 +
          ValInt(time.substr(6, 2))) *
             1000 +
         ValInt(time.substr(9, 3));
}

std::string TextOf(const SortedJson& event, const char* member) {
  return event.value(member, std::string());
}

ForecastLine LineAt(const std::string& time, ForecastKind kind, std::string text) {
  ForecastLine line;
  line.at = time.substr(0, 8);
  line.kind = kind;
  line.text = std::move(text);
  return line;
}

ForecastLine ElementLine(const SortedJson& event, const std::string& time) {
  ForecastLine line = LineAt(time, ForecastKind::kElement, TextOf(event, "title"));
  line.code = event.value("code", 0);
  line.lengthMs = event.value("length_ms", int64_t{0});
  return line;
}

ForecastLine Break(const SortedJson& event, const std::string& time) {
  ForecastLine line = LineAt(time, ForecastKind::kBreak, TextOf(event, "moment"));
  line.code = TextOf(event, "type") == "Pubs" ? Element::kSpot : Element::kNews;
  return line;
}

ForecastLine Warning(const std::string& time, std::string text, std::string reason) {
  ForecastLine line = LineAt(time, ForecastKind::kWarning, std::move(text));
  line.reason = std::move(reason);
  return line;
}

ForecastLine Gap(const std::string& since, int64_t lengthMs) {
  ForecastLine line = LineAt(since, ForecastKind::kGap, {});
  line.lengthMs = lengthMs;
  return line;
}

}  // namespace

void ForecastTrace::Take(std::string_view text) {
  const SortedJson event = SortedJson::parse(text, nullptr, false);
  if (!event.is_object()) return;
  const std::string at = TextOf(event, "at");
  if (at.size() <= kTimeAt) return;
  const std::string time = at.substr(kTimeAt);
  const std::string name = TextOf(event, "event");
  if (name == "start") {
    lines_.push_back(ElementLine(event, time));
  } else if (name == "overlay" && TextOf(event, "reason") == "pip") {
    lines_.push_back(LineAt(time, ForecastKind::kPip, TextOf(event, "file")));
  } else if (name == "break") {
    lines_.push_back(Break(event, time));
  } else if (name == "list") {
    lines_.push_back(LineAt(time, ForecastKind::kList, TextOf(event, "title")));
  } else if (name == "skip") {
    lines_.push_back(Warning(time, TextOf(event, "file"), TextOf(event, "reason")));
  } else if (name == "error") {
    lines_.push_back(Warning(time, TextOf(event, "where") + ": " + TextOf(event, "text"), "error"));
  } else if (name == "silence" && TextOf(event, "state") == "begin") {
    silentSince_ = time;
  } else if (name == "silence" && !silentSince_.empty()) {
    const std::string since = std::exchange(silentSince_, {});
    const int64_t lengthMs = (MsOfDay(time) - MsOfDay(since) + kDayMs) % kDayMs;
    if (lengthMs >= kShortestGapMs) lines_.push_back(Gap(since, lengthMs));
  }
}

void ForecastTrace::End() {
  if (!silentSince_.empty()) lines_.push_back(Gap(std::exchange(silentSince_, {}), 0));
}

}  // namespace zemo
