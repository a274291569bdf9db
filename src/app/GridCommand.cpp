// `zemoradio grid`: the spot and news breaks of a day, composed on a private copy by a clock that
// shows that day.
#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "app/AskedStation.h"
#include "app/Commands.h"
#include "app/GridReport.h"
#include "platform/real/desktop/RealClock.h"
#include "station/IsoMoments.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

using Json = nlohmann::ordered_json;

// Whole seconds as "mm:ss", also above 99 minutes.
std::string MinutesText(double seconds) {
  const auto whole = static_cast<int64_t>(seconds);
  return (whole < 600 ? "0" : "") + std::to_string(whole / 60) + ":" +
         TwoDigits(static_cast<int>(whole % 60));
}

const char* StateWord(GridElement::State state) {
  switch (state) {
    case GridElement::State::kGood:
      return "good";
    case GridElement::State::kMissing:
      return "missing";
    case GridElement::State::kUnreadable:
      return "unreadable";
  }
  return "good";
}

constexpr const char* kIndent = "                       ";

void TellBreak(const PlannedBreak& planned, std::ostream& out) {
  char head[64];
  std::snprintf(head, sizeof head, "%-6s  %-6s  %-9s", planned.moment.c_str(),
                MinutesText(static_cast<double>(planned.lengthMs) / 1000).c_str(),
                planned.type == "Pubs" ? "spots" : "news");
  out << head;
  for (size_t i = 0; i < planned.elements.size(); ++i) {
    const GridElement& element = planned.elements[i];
    out << (i == 0 ? "" : ", ") << element.advertiser << " ("
        << MinutesText(element.lengthMs / 1000.0) << ")";
  }
  out << "\n";
  for (const GridElement& element : planned.elements)
    if (element.state != GridElement::State::kGood)
      out << kIndent << "! " << StateWord(element.state) << ": " << element.file << " ("
          << element.advertiser << ")\n";
  for (const std::string& advertiser : planned.notAired)
    out << kIndent << "! the break is full: " << advertiser << "\n";
  if (const auto& gap = planned.tooLongFor)
    out << kIndent << "! too long: " << MinutesText(planned.airSec) << " of air, "
        << MinutesText(gap->seconds) << " up to the " << (gap->pip ? "pip of " : "break of ")
        << gap->moment << "\n";
}

void TellGrid(const LocalDateTime& day, const CompositionTold& told,
              const std::vector<PlannedBreak>& breaks, std::ostream& out) {
  out << IsoDay(day) << ": " << breaks.size() << " breaks, " << told.spots << " spots, "
      << told.news << " news\n";
  if (!breaks.empty()) out << "MOMENT  LENGTH  TYPE     ELEMENTS\n";
  for (const PlannedBreak& planned : breaks) TellBreak(planned, out);
  for (const std::string& fault : told.faults) out << "! " << fault << "\n";
}

Json BreakJson(const PlannedBreak& planned) {
  Json json = {{"moment", planned.moment},
               {"type", planned.type},
               {"length_ms", planned.lengthMs},
               {"air_s", planned.airSec}};
  json["elements"] = Json::array();
  for (const GridElement& element : planned.elements)
    json["elements"].push_back({{"advertiser", element.advertiser},
                                {"file", element.file},
                                {"length_ms", element.lengthMs},
                                {"state", StateWord(element.state)}});
  json["not_aired"] = planned.notAired;
  const auto& gap = planned.tooLongFor;
  json["too_long_for"] = gap ? Json{{"next", gap->pip ? "pip" : "break"},
                                    {"moment", gap->moment},
                                    {"gap_s", gap->seconds}}
                             : Json();
  return json;
}

void TellGridJson(const LocalDateTime& day, const CompositionTold& told,
                  const std::vector<PlannedBreak>& breaks, std::ostream& out) {
  Json json = {{"day", IsoDay(day)}, {"spots", told.spots}, {"news", told.news}};
  json["breaks"] = Json::array();
  for (const PlannedBreak& planned : breaks) json["breaks"].push_back(BreakJson(planned));
  json["errors"] = told.faults;
  out << json.dump(-1, ' ', false, Json::error_handler_t::replace) << "\n";
}

void TellDay(const GridOptions& options, const LocalDateTime& day, Station& station,
             std::ostream& out) {
  const CompositionTold told = ComposeAndListen(station);
  if (!told.composed)
    throw std::runtime_error("the grid cannot be composed" +
                             (told.faults.empty() ? "" : ": " + told.faults.back()));
  const std::vector<PlannedBreak> breaks = ReadPlannedBreaks(station);
  (options.json ? TellGridJson : TellGrid)(day, told, breaks, out);
}

}  // namespace

int RunGridCommand(const GridOptions& options) {
  LocalDateTime day = options.day.value_or(RealClock().LocalNow());
  day.hour = 12;  // any time of the day will do; noon is on every clock
  day.minute = day.second = day.millisecond = 0;
  const AskedStation asked(options);
  try {
    TellDay(options, day, OpenAsked(asked, day)->station, std::cout);
  } catch (const std::exception& error) {
    throw std::runtime_error(WithShownPaths(error.what(), asked.Paths()));
  }
  return 0;
}

}  // namespace zemo
