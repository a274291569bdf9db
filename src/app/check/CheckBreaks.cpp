// The breaks of the coming week as the air will compose them, on a copy of the station.
#include <map>
#include <utility>

#include "app/AskedStation.h"
#include "app/GridReport.h"
#include "app/check/Check.h"
#include "app/check/CheckParts.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "traffic/DayGridComposition.h"

namespace zemo {
namespace {

constexpr int kDaysAhead = 7;

std::string MinutesText(double seconds) {
  return FormatDuration(static_cast<int64_t>(seconds * 1000));
}

std::string WhyTooLong(const PlannedBreak& planned) {
  const GridGap& gap = *planned.tooLongFor;
  return "takes " + MinutesText(planned.airSec) + " of air and runs into the " +
         (gap.pip ? "pip of " : "break of ") + gap.moment + ", " + MinutesText(gap.seconds) +
         " behind its begin";
}

}  // namespace

void CheckBreaks(const CheckOptions& options, const LocalDateTime& now, Findings& findings) {
  const AskedStation asked(options.station, options.machine);
  std::map<std::pair<std::string, std::string>, std::string> days;  // by moment and words
  const auto find = [&](const PlannedBreak& planned, const std::string& why,
                        const std::string& on) {
    std::string& dates = days[{planned.moment, why}];
    dates += (dates.empty() ? "" : ", ") + on;
  };
  const double noon = DaySerial(now.year, now.month, now.day) + 0.5;
  for (int day = 0; day < kDaysAhead; ++day) {
    const LocalDateTime at = FromDateSerial(noon + day);
    const auto sim = OpenAsked(asked, at);
    MakeGrillePubGeneral(sim->station);
    for (const PlannedBreak& planned : ReadPlannedBreaks(sim->station)) {
      if (planned.tooLongFor) find(planned, WhyTooLong(planned), DateText(at));
      for (const std::string& advertiser : planned.notAired)
        find(planned, "is full: " + advertiser + " is not aired", DateText(at));
    }
  }
  for (const auto& [found, dates] : days)
    findings.Warning("break", found.first, found.second + " (" + dates + ")");
}

}  // namespace zemo
