#include "scheduling/RequestFrame.h"

#include <algorithm>

#include "platform/EventLoop.h"
#include "scheduling/CandidatePool.h"
#include "scheduling/LastAnswers.h"
#include "scheduling/RotationRules.h"
#include "station/PlanTimes.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/StoreError.h"

namespace zemo {

namespace {
constexpr const char* kRestText = "ZEMO RADIO";
constexpr int64_t kAskAgainMs = 1000;
constexpr int64_t kFruitlessRestMs = 10000;
}  // namespace

RequestFrame::RequestFrame(Station& station, const char* kind)
    : station_(station),
      kind_(kind),
      refusedBefore_(station.requests.ListAutorisation.Count()),
      beginMs_(station.platform.clock.MonotonicMs()),
      hold_(station) {
  station.requests.askAgainMs = -1;
  seen_.at = station.Now();
  seen_.kind = kind;
  seen_.hour = seen_.at.hour;
  seen_.weekday = CurrentWeekday(seen_.at);
}

RequestFrame::~RequestFrame() {
  if (!messageStays_) {
    station_.notices.progress.text = kRestText;
    station_.notices.progress.visible = false;
  }
}

void RequestFrame::Tell() {
  const RefusedTitles& refused = station_.requests.ListAutorisation;
  const size_t first = refused.Count() >= refusedBefore_ ? refusedBefore_ : 0;
  seen_.refused = static_cast<int>(refused.Count() - first);
  seen_.refusals = refused.Some(first, kRefusalsKept);
  seen_.minutes = station_.requests.MinutesRequete;
  // A base that kept the request from its work says nothing of what it holds.
  const bool fruitless = rowsAdded_ == 0 && station_.requests.askAgainMs < 0;
  station_.requests.restUntilMs =
      fruitless ? station_.platform.clock.MonotonicMs() + kFruitlessRestMs : -1;
  station_.events.Request(kind_, seen_.minutes, rowsAdded_, seen_.refused);
  KeepChoices(station_, seen_);
}

void RequestFrame::Finish() {
  RefreshPlanTimes(station_);
  station_.notices.hourglass = false;
  station_.requests.PLHidden = false;
  Tell();
}

// What stands in the way stands there at the next request as well: told once a minute.
void RequestFrame::Fail(const char* request) {
  std::string text;
  try {
    throw;
  } catch (const StoreError& error) {
    text = error.what();
    if (error.MayPass())
      station_.requests.askAgainMs = station_.platform.clock.MonotonicMs() + kAskAgainMs;
  } catch (const std::exception& error) {
    text = error.what();
  }
  if (!LoggedLately(station_, std::string(request) + '\t' + text, kSameErrorMs))
    LogCurrentException(station_, request);
  Tell();
}

void RequestFrame::Leave(const char* message) {
  if (message) {
    station_.notices.progress.text = message;
    station_.notices.progress.visible = true;
  }
  messageStays_ = true;
  station_.notices.hourglass = false;
  station_.requests.PLHidden = false;
  Tell();
}

void PrepareRules(Station& station) {
  LoadRecentArtists(station);
  AnswerOrLast(station, LastAnswersOf(station).newestReportCode, [&] {
    LoadNewestReportCode(station);
    return station.requests.DernierCodeRapport;
  });
  station.requests.ListAutorisation.Clear();
  station.requests.DecalDiffCourant = static_cast<int16_t>(station.base.CnfInt(Cnf::kDecalDiff));
}

void RequestFrame::Open(int minutes) {
  RequestState& requests = station_.requests;
  requests.ListView1.clear();
  ShowSearch(station_);
  station_.platform.loop.Yield();
  station_.base.CheckCnf();
  if (minutes > 0) requests.MinutesRequete = minutes;
  requests.PLHidden = true;
  firstNewRow_ = station_.PL.Count() + 1;
  station_.notices.hourglass = true;
  station_.base.RequireTable("Discotheque");
}

void RequestFrame::List(int row, OnAirElement candidate, const ChoiceReason& reason) {
  seen_.titles.push_back({candidate.code, candidate.title, candidate.secondLine, candidate.genre,
                          candidate.variety, reason});
  station_.PL.Insert(row, std::move(candidate));
  ++rowsAdded_;
}

void RequestFrame::Saw(int candidates, size_t offered) {
  seen_.candidates = candidates;
  seen_.offered = static_cast<int>(offered);
  station_.requests.lastWalkMs = station_.platform.clock.MonotonicMs() - beginMs_;
}

void ShowSearch(Station& station) {
  struct Words {
    const char* before;
    const char* behind;
  };
  static constexpr Words kWords[] = {{"RECHERCHE DE", " MINUTES DE MUSIQUE"},
                                     {"SEARCH OF", " MINUTES OF MUSIC"},
                                     {"PROCURA DE", " MN DE MUSICA"}};
  const int64_t langue = station.base.CnfInt(Cnf::kLangue);
  if (langue < 0 || langue > 2) return;
  const int64_t minutes = station.base.CnfInt(Cnf::kTempRequette);
  const std::string number = (minutes < 0 ? "" : " ") + std::to_string(minutes);
  station.notices.progress.text = kWords[langue].before + number + kWords[langue].behind;
  station.notices.progress.visible = true;
}

}  // namespace zemo
