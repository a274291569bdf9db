// The three forms of the fitting. They work on the list alone, with MainTimer held; the sound on
// air goes on, and the element that sounds is no row of the list.
#include "scheduling/EndOfHourFitting.h"

#include <array>
#include <cmath>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "platform/Clock.h"
#include "platform/EventLoop.h"
#include "scheduling/CandidatePool.h"
#include "scheduling/FitCards.h"
#include "scheduling/HourBreakPlacement.h"
#include "scheduling/PercentageRequest.h"
#include "settings/SideFiles.h"
#include "station/PlanTimes.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

constexpr int kRounds = 7;
constexpr int kFewRows = 10;         // below, the plain form asks for more music first
constexpr int kFewRowsForBreak = 6;  // the same for the forms with a break
constexpr int kShortenStepMs = 400;
constexpr int64_t kShortenLimitMs = 2000;

// Pointer, timer, latch and progress line of a fit at work; all but the latch go back at its end.
class FitAtWork {
 public:
  FitAtWork(Station& station, const char* progress) : notices_(station.notices), hold_(station) {
    notices_.hourglass = true;
    station.engine.FittingActive = true;
    notices_.progress.text = progress;
    notices_.progress.visible = true;
  }
  ~FitAtWork() {
    notices_.hourglass = false;
    notices_.progress.visible = false;
  }
  FitAtWork(const FitAtWork&) = delete;

 private:
  ScreenNotices& notices_;
  MainTimerHold hold_;
};

void RefillBelow(Station& station, int rows) {
  if (station.PL.Count() >= rows) return;
  AutomaticRequest(station);
  station.base.CheckCnf();  // the request yields
}

// --- the plain form ---

// The reference is the first score that is not 0, and it is not lowered: the last round below it
// wins, not the lowest of all.
size_t BestRound(const std::array<int32_t, kRounds>& ScoresFit) {
  size_t best = 0;
  int32_t reference = 0;
  for (size_t k = 0; k < ScoresFit.size(); ++k) {
    if (reference == 0)
      reference = ScoresFit[k];
    else if (ScoresFit[k] < reference)
      best = k;
  }
  return best;
}

// A round that fails ends the fit, with the list as the rounds before it left it.
void FitTitles(Station& station) {
  // 4: every round works on the list that the one before left.
  std::array<std::vector<int32_t>, kRounds> EssaisFit;
  std::array<int32_t, kRounds> ScoresFit{};
  for (size_t k = 0; k < ScoresFit.size(); ++k) {
    const auto score = BringBestChainForward(station);
    if (!score) return;
    ScoresFit[k] = *score;
    EssaisFit[k] = station.PL.Codes();
  }
  // 5: the cards are read before the list is cleared, so that a failed read loses nothing.
  std::vector<OnAirElement> rows = RowsOfCards(station, EssaisFit[BestRound(ScoresFit)]);
  station.PL.Clear();
  for (OnAirElement& element : rows) station.PL.Add(std::move(element));
}

// --- the instrumental form ---

bool InstrumentalHour(Station& station, int hour) {
  LoadSaveInstrumental(station, "Load");
  return station.lists.Instru[static_cast<size_t>(hour)];
}

// The row that the pip reaches, and the moment at which it starts, ms since midnight (not wrapped).
struct PipRow {
  int row = 0;  // 0: the list ends before
  double startMs = 0;
};

PipRow FindPipRow(const Station& station, double leftSec) {
  double endMs = station.engine.RemainingMs;
  double startMs = static_cast<double>(station.Timer()) * 1000 + station.engine.RemainingMs;
  for (int row = 1; row <= station.PL.Count(); ++row) {
    const double airMs = station.PL.Row(row).AirMs();
    endMs += airMs;
    if (endMs / 1000 > leftSec) return {row, startMs};
    startMs += airMs;
  }
  return {};
}

// The instrumental that rested longest of those longer than the gap; the pip then cuts or covers
// it.
void InsertInstrumental(Station& station, int position, int64_t gapSec) {
  const int weekday = CurrentWeekday(station.Now());
  auto element = LongestRested(
      station, {.genres = {"INSTRUMENTAL"}, .hour = {{weekday, CurrentHour(station)}}},
      gapSec * 1000);
  if (!element) return;
  if (element->title.empty()) element->title = "Code " + std::to_string(element->code);
  station.PL.Insert(position, *std::move(element));
}

// --- the form with the spots by the pip ---

// One pass of the shortening. The moment at which the block would start then, whole seconds.
double ShortenTitles(Station& station) {
  const EngineState& engine = station.engine;
  double startSec = std::floor(static_cast<double>(station.Timer()) + engine.RemainingMs / 1000.0 -
                               static_cast<double>(engine.MixPointMs) / 1000);
  for (int i = 1; i <= station.PL.Count(); ++i) {
    OnAirElement& row = station.PL.Row(i);
    if (row.code < 0) break;
    row.exitMs = row.exitMs.value_or(0) + kShortenStepMs;
    startSec = std::floor(startSec + row.AirMs() / 1000);
  }
  return startSec;
}

// At 23 h the target lies at the start of the day, and only the limit of time ends the loop.
void BringBlockToPip(Station& station) {
  const Clock& clock = station.platform.clock;
  const double secondsOfPip = 60.0 - static_cast<double>(station.base.CnfInt(Cnf::kOffsetTopH));
  const double targetSec = HourOfPip(station) * 3600.0 +
                           static_cast<double>(station.engine.BufferOffsetSec) + 1.0 - secondsOfPip;
  const int64_t beginMs = clock.MonotonicMs();
  while (true) {
    const double startSec = ShortenTitles(station);
    station.platform.loop.PassYield();
    if (clock.MonotonicMs() - beginMs >= kShortenLimitMs) return;
    if (startSec <= targetSec) return;
  }
}

}  // namespace

void FitHour(Station& station) {
  try {
    if (station.PL.Empty()) return;  // 1
    RefillBelow(station, kFewRows);
    const FitAtWork atWork(station, "OPTIMISATION POUR TOP HORAIRE");  // 2, 3
    station.platform.loop.Yield();
    const std::vector<int32_t> before = station.PL.Codes();
    FitTitles(station);         // 4, 5
    RefreshPlanTimes(station);  // 6
    station.events.Fit("AjusteFinHeure", before, station.PL.Codes());
  } catch (const std::exception&) {
    LogCurrentException(station, "AjusteFinHeure");
  }
}

void FitHourWithInstrumentals(Station& station) {
  try {
    const int nextHour = HourOfPip(station);  // 1
    if (!InstrumentalHour(station, nextHour)) {
      FitHour(station);
      return;
    }
    RefillBelow(station, kFewRowsForBreak);  // 2
    if (station.PL.Empty()) return;
    const FitAtWork atWork(station, "INSTRUMENTAL");
    const std::vector<int32_t> before = station.PL.Codes();
    const auto nowSec = static_cast<double>(station.Timer());
    double leftSec = nextHour * 3600.0 - nowSec;
    if (leftSec < 0) leftSec = 86400 - nowSec;
    PlaceHourBreak(station, BreakForm::kInstrumental);  // 3
    const PipRow pip = FindPipRow(station, leftSec);    // 4
    if (pip.row > 0) {
      // 5: at 23 h the gap is counted to the start of the day, and every length is above it.
      const double gapSec = std::floor(nextHour * 3600.0 - pip.startMs / 1000);
      InsertInstrumental(station, pip.row, static_cast<int64_t>(gapSec));  // 6
    }
    RefreshPlanTimes(station);  // 7
    station.events.Fit("AjusteFinHeureInstru", before, station.PL.Codes());
  } catch (const std::exception&) {
    LogCurrentException(station, "AjusteFinHeureInstru");
  }
}

void FitHourWithBreakAtPip(Station& station) {
  try {
    if (station.PL.Empty()) return;  // 1
    RefillBelow(station, kFewRowsForBreak);
    const FitAtWork atWork(station, "OPTIMISATION PUB >> TOP H");
    const std::vector<int32_t> before = station.PL.Codes();
    if (!PlaceHourBreak(station, BreakForm::kSpotsByPip)) {  // 2
      FitHour(station);
      return;
    }
    BringBlockToPip(station);   // 3
    RefreshPlanTimes(station);  // 4
    station.events.Fit("AjusteFinHeurePubColleTopH", before, station.PL.Codes());
  } catch (const std::exception&) {
    LogCurrentException(station, "AjusteFinHeurePubColleTopH");
  }
}

}  // namespace zemo
