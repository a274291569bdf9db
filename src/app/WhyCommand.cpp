// `zemoradio why`: may a music title play at a moment, and if not, why and from when; and what
// brought an element of the report on air. Works on a private copy and changes nothing; of a
// simulation the file of its choices is enough.
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "app/AskedStation.h"
#include "app/Commands.h"
#include "app/WhyReport.h"
#include "platform/BoundedRead.h"
#include "platform/real/desktop/RealClock.h"
#include "platform/real/files/WholeFiles.h"
#include "scheduling/ChoiceLog.h"
#include "scheduling/TitleEligibility.h"
#include "station/IsoMoments.h"
#include "station/OperatorWords.h"

namespace zemo {

namespace {

using Json = nlohmann::ordered_json;

// The choices of a simulation are all of them: a busy week's are 5 MB.
constexpr int64_t kMostSimulatedBytes = int64_t{64} << 20;

std::string WhenText(const TitleReason& reason) {
  if (!reason.after.empty()) return reason.after;
  return reason.from ? "from " + IsoMoment(*reason.from) : "never";
}

// All moments count, and what only the course of the air brings about.
std::string WhenAllText(const TitleAnswer& answer) {
  if (!answer.from) return "never";
  std::string text;
  if (*answer.from != answer.at) text = "from " + IsoMoment(*answer.from);
  for (const TitleReason& reason : answer.reasons)
    if (!reason.after.empty()) text += (text.empty() ? "" : ", and ") + reason.after;
  return text;
}

void TellTitle(const TitleAnswer& answer, std::ostream& out) {
  out << (answer.MayPlay() ? "may play" : "may not play") << "\n";
  out << "  card " << answer.code << ": " << answer.artist << " - " << answer.title << " ("
      << answer.genre << ", " << answer.variety << "), " << IsoMoment(answer.at) << "\n";
  for (const TitleReason& reason : answer.reasons)
    out << "  " << reason.test << ": " << RefusalInWords(reason.words, kEnglish) << "; "
        << WhenText(reason) << "\n";
  if (!answer.MayPlay()) out << "it may play: " << WhenAllText(answer) << "\n";
}

void TellTitleJson(const TitleAnswer& answer, std::ostream& out) {
  const auto moment = [](const std::optional<LocalDateTime>& at) {
    return at ? Json(IsoMoment(*at, 'T')) : Json();
  };
  Json json = {
      {"code", answer.code},         {"at", moment(answer.at)},   {"may_play", answer.MayPlay()},
      {"from", moment(answer.from)}, {"artist", answer.artist},   {"title", answer.title},
      {"genre", answer.genre},       {"variety", answer.variety}, {"file", answer.file}};
  json["reasons"] = Json::array();
  for (const TitleReason& reason : answer.reasons)
    json["reasons"].push_back({{"test", reason.test},
                               {"words", reason.words},
                               {"from", moment(reason.from)},
                               {"after", reason.after},
                               {"never", reason.Never()}});
  out << json.dump(-1, ' ', false, Json::error_handler_t::replace) << "\n";
}

void TellAnswer(const WhyOptions& options, const LocalDateTime& at, SimStation& sim,
                std::ostream& out) {
  if (options.report)
    return TellReport(ReportOf(sim.station),
                      ReadBounded(sim.machineFolder, kChoicesFile).value_or(""), *options.report,
                      options.json, out);
  const auto answer = WhyTitle(sim.station, *options.code, at);
  if (!answer) throw std::runtime_error("there is no music card " + std::to_string(*options.code));
  if (options.json)
    TellTitleJson(*answer, out);
  else
    TellTitle(*answer, out);
}

// Everything stands in the file: the station that was simulated may be elsewhere, or another by
// now.
int TellSimulated(const WhyOptions& options) {
  if (RegularFileSizeBytes(options.choices) > kMostSimulatedBytes)
    throw std::runtime_error(options.choices + " is larger than 64 MB: it is not read");
  const auto choices = ReadWholeFile(options.choices);
  if (!choices) throw std::runtime_error("there is no file " + options.choices);
  TellReport(ReportIn(*choices), *choices, *options.report, options.json, std::cout);
  return 0;
}

}  // namespace

int RunWhyCommand(const WhyOptions& options) {
  if (!options.choices.empty()) return TellSimulated(options);
  LocalDateTime at = options.at.value_or(RealClock().LocalNow());
  at.millisecond = 0;
  const AskedStation asked(options);
  try {
    TellAnswer(options, at, *OpenAsked(asked, at), std::cout);
  } catch (const std::exception& error) {
    throw std::runtime_error(WithShownPaths(error.what(), asked.Paths()));
  }
  return 0;
}

}  // namespace zemo
