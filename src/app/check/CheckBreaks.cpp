// The breaks of the coming week as the air will compose them, on a copy of the station.
#include <map>
#include <utility>

#include "app/AskedStation.h"
#include "app/GridReport.h"
#include "app/Trace.h"
#include "app/check/Check.h"
#include "app/check/CheckParts.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "traffic/CampaignEditor.h"
#include "traffic/CampaignGrid.h"

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

// Every campaign, whenever it works. A file that cannot be read leaves the day without a grid,
// which is told there.
void CheckCampaigns(Station& station, const ShownPaths& paths, Findings& findings) {
  const auto rows = station.base.Db().OpenRecordset("SELECT * FROM GrillePub ORDER BY CODE");
  for (; !rows->Eof(); rows->MoveNext()) {
    CampaignForm form;
    LoadCampaign(station, *rows, form, RowYields::kNone);
    const std::string which = form.LblCode + " " + form.ChAnnonceur;
    if (!form.damage.empty()) findings.Error("campaign", which, WithShownPaths(form.damage, paths));
    if (Campaigns::EndsBeforeItBegins(form))
      findings.Warning("campaign", which,
                       "its last day " + form.LblFinPub + " lies before its first, " +
                           form.LblDepartPub + ": it is never on air");
  }
}

}  // namespace

void CheckBreaks(const CheckOptions& options, const LocalDateTime& now, Findings& findings) {
  const AskedStation asked(options.station, options.machine);
  std::map<std::pair<std::string, std::string>, std::string> days;  // by moment and words
  std::map<std::string, std::string> failed;  // days without a grid, by the fault
  const auto note = [](std::string& dates, const LocalDateTime& day) {
    dates += (dates.empty() ? "" : ", ") + DateText(day);
  };
  const double noon = DaySerial(now.year, now.month, now.day) + 0.5;
  for (int day = 0; day < kDaysAhead; ++day) {
    const LocalDateTime at = FromDateSerial(noon + day);
    const auto sim = OpenAsked(asked, at);
    if (day == 0) CheckCampaigns(sim->station, asked.Paths(), findings);
    const CompositionTold told = ComposeAndListen(sim->station);
    if (!told.composed) note(failed[told.faults.empty() ? std::string() : told.faults.back()], at);
    for (const PlannedBreak& planned : ReadPlannedBreaks(sim->station)) {
      if (planned.tooLongFor) note(days[{planned.moment, WhyTooLong(planned)}], at);
      for (const std::string& advertiser : planned.notAired)
        note(days[{planned.moment, "is full: " + advertiser + " is not aired"}], at);
    }
  }
  for (const auto& [fault, dates] : failed)
    findings.Error(
        "break", "the day's grid",
        "cannot be composed: " + WithShownPaths(fault, asked.Paths()) + " (" + dates + ")");
  for (const auto& [found, dates] : days)
    findings.Warning("break", found.first, found.second + " (" + dates + ")");
}

}  // namespace zemo
