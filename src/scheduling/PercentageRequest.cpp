// The steps of RunRequest from top to bottom; their order is part of the behaviour.
#include "scheduling/PercentageRequest.h"

#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/EventLoop.h"
#include "scheduling/CandidatePool.h"
#include "scheduling/LastAnswers.h"
#include "scheduling/ModelGrids.h"
#include "scheduling/RecentReport.h"
#include "scheduling/RequestError.h"
#include "scheduling/RequestFrame.h"
#include "scheduling/RotationRules.h"
#include "scheduling/SkeletonRequest.h"
#include "scheduling/TitlesInUse.h"
#include "scheduling/WeekModel.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

constexpr int kMostRows = 20;  // genre rows and varieties of the budget table
constexpr int64_t kMostChoosingMs = 2000;

// Seconds of music that this request gave to each genre row and variety row.
class Budgets {
 public:
  float& Seconds(int genreRow, int varietyRow) {
    if (genreRow > kMostRows || varietyRow > kMostRows)
      throw RequestError(kErrSubscript, "the budget of genre row " + std::to_string(genreRow) +
                                            " and variety row " + std::to_string(varietyRow) +
                                            " is outside the table of " +
                                            std::to_string(kMostRows));
    return seconds_[static_cast<size_t>(genreRow)][static_cast<size_t>(varietyRow)];
  }
  // Per cent of the variety's time in the request that the pair has used.
  float UsedShare(int genreRow, int varietyRow, float varietySeconds) {
    const float used = Seconds(genreRow, varietyRow);
    if (varietySeconds == 0)
      throw RequestError(kErrDivisionByZero, "variety row " + std::to_string(varietyRow) +
                                                 " has no share of the request");
    return static_cast<float>(double{used} / double{varietySeconds} * 100.0);
  }

 private:
  std::array<std::array<float, kMostRows + 1>, kMostRows + 1> seconds_{};
};

// What the week asks of this request.
struct Asking {
  DayModel model;
  std::vector<VarietyShare> varieties;
  int hour = 0;
};

// The choosing: one walk over the pool.
class Choosing {
 public:
  Choosing(Station& station, RequestFrame& frame, const CandidateCards& cards, const Asking& asking)
      : station_(station), frame_(frame), cards_(cards), asking_(asking) {}

  void Run(const Pool& pool) {
    const int toFill = PairsToFill();                               // 15
    const int64_t beginMs = station_.platform.clock.MonotonicMs();  // 16
    lastRow_ = station_.PL.Count();
    int place = 0;
    for (const int card : pool) {  // 17
      station_.platform.loop.Yield();
      Offer(card, ++place);
      if (full_ >= toFill) return;
      if (station_.platform.clock.MonotonicMs() - beginMs > kMostChoosingMs) return;
    }
  }

 private:
  // Rows count from 1.
  int GenreRows() const { return static_cast<int>(asking_.model.size()); }
  const GenreShare& Genre(int row) const { return asking_.model[static_cast<size_t>(row - 1)]; }
  double Asked(int genreRow) const {
    return Genre(genreRow).percent[static_cast<size_t>(asking_.hour)];
  }

  int PairsToFill() const {
    int genres = 0;
    for (int row = 1; row <= GenreRows(); ++row)
      genres += Asked(row) != 0 && !Genre(row).genre.empty();
    return genres * static_cast<int>(asking_.varieties.size());
  }

  std::optional<int> VarietyRow(int card) const {
    for (size_t at = 0; at < asking_.varieties.size(); ++at)
      if (asking_.varieties[at].variety == cards_.Variety(card)) return static_cast<int>(at) + 1;
    return std::nullopt;
  }

  float VarietySeconds(int varietyRow) const {
    return static_cast<float>(asking_.varieties[static_cast<size_t>(varietyRow - 1)].percent /
                              100.0 * (station_.requests.MinutesRequete * 60.0));
  }

  void Offer(int card, int place) {
    const std::optional<int> variety = VarietyRow(card);  // b
    if (!variety) return;
    for (int row = 1; row <= GenreRows(); ++row) {  // c
      const float seconds = VarietySeconds(*variety);
      const float share = budgets_.UsedShare(row, *variety, seconds);
      if (Asked(row) <= share || Genre(row).genre != cards_.Genre(card)) continue;
      budgets_.Seconds(row, *variety) +=  // d
          static_cast<float>(std::floor(cards_.LengthMs(card) / 1000.0));
      const float shareAfter = budgets_.UsedShare(row, *variety, seconds);
      frame_.List(++lastRow_, cards_.ElementOf(card),  // e
                  {.place = place,
                   .percent = Asked(row),
                   .shareBefore = share,
                   .shareAfter = shareAfter,
                   .budgetSec = seconds});
      if (Asked(row) <= shareAfter) ++full_;  // f
      return;
    }
  }

  Station& station_;
  RequestFrame& frame_;
  const CandidateCards& cards_;
  const Asking& asking_;
  Budgets budgets_;
  int lastRow_ = 0;
  int full_ = 0;  // pairs that have their share
};

const char* NoModelsText(int64_t langue) {
  switch (langue) {
    case 0:
      return kNoModelsFrench;
    case 1:
      return kNoModelsEnglish;
    case 2:
    case 3:
      return kNoModelsPortuguese;
    default:
      return nullptr;
  }
}

std::vector<std::string> ModelGenres(const DayModel& model) {
  std::vector<std::string> genres;
  for (const GenreShare& share : model)
    if (!share.genre.empty()) genres.push_back(share.genre);
  return genres;
}

// The titles of the query that may be listed, one an artist, those played longest ago first.
Pool MakePool(Station& station, const CandidateCards& cards, const TitlesInUse& used, int minutes) {
  const int64_t groups = station.lists.LectureBase;
  Pool pool = FillPool(station, cards, used, groups > 0 ? groups * minutes : kNoLimit);  // 11
  YieldAmongMany(station, pool.size());
  CutArtistDoubles(cards, pool, nullptr);  // 12, 13
  YieldAmongMany(station, pool.size());
  SortByLastPlay(cards, pool);  // 14
  ShowPool(station, cards, pool);
  return pool;
}

void RunRequest(Station& station, int minutes, RequestFrame& frame) {
  const int weekday = CurrentWeekday(station.Now());
  LoadModelScreen(station);
  Asking asking;
  asking.model = ReadDayModel(station, weekday);  // 3
  asking.varieties = ReadVarieties(station);
  asking.hour = CurrentHour(station);
  frame.Open(minutes);                      // 4, 5
  if (CountOrLast(station, "Models") == 0)  // 6
    return frame.Leave(NoModelsText(station.base.CnfInt(Cnf::kLangue)));
  station.platform.loop.Yield();
  const TitlesInUse used = LoadTitlesInUse(station);                  // 7
  const std::vector<std::string> genres = ModelGenres(asking.model);  // 8
  if (genres.empty()) return frame.Leave(kNoModelsEnglish);
  station.platform.loop.Yield();
  const CandidateCards cards(station, {.genres = genres, .hour = {{weekday, asking.hour}}},
                             CandidateCards::Order::kLastdiff);  // 9, 10
  const Pool pool = MakePool(station, cards, used, minutes);     // 11 to 14
  frame.Saw(cards.Count(), pool.size());
  Choosing(station, frame, cards, asking).Run(pool);  // 15 to 17
  auto first = static_cast<int16_t>(frame.FirstNewRow());
  MixGenres(station, first);  // 18
  frame.Finish();             // 19
}

}  // namespace

void RequestMusic(Station& station, int16_t& minutes) {
  station.base.CheckCnf();
  bool skeleton = false;
  try {
    KnowReport(station);
    PrepareRules(station);  // 1
    skeleton = station.base.CnfBool(Cnf::kSquelette);
  } catch (const std::exception&) {
    RequestFrame(station, "percentage").Fail("RequetePlaylist");
    return;
  }
  if (skeleton) return RequestAlongSkeleton(station, minutes);  // 2
  RequestFrame frame(station, "percentage");
  try {
    RunRequest(station, minutes, frame);
  } catch (const std::exception&) {
    frame.Fail("RequetePlaylist");
  }
}

void AutomaticRequest(Station& station) {
  auto minutes = static_cast<int16_t>(station.base.CnfInt(Cnf::kTempRequette));
  RequestMusic(station, minutes);
}

void MixGenres(Station& station, int16_t& first) {
  OnAirList& list = station.PL;
  try {
    if (first == 1) first = 2;
    for (int row = first; row <= list.Count(); ++row) {
      const std::string& genre = list.Row(row).genre;
      if (genre != list.Row(row - 1).genre) continue;
      int other = row;
      while (other <= list.Count() && list.Row(other).genre == genre) ++other;
      if (other <= list.Count()) list.SwapElements(row, other);
    }
  } catch (const std::exception&) {
    LogCurrentException(station, "MelangeGenres");
  }
}

}  // namespace zemo
