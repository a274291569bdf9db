#include "scheduling/SkeletonRequest.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
#include <unordered_map>
#include <utility>

#include "platform/EventLoop.h"
#include "platform/Folder.h"
#include "platform/LocalValues.h"
#include "scheduling/LastAnswers.h"
#include "scheduling/ModelGrids.h"
#include "scheduling/RequestFrame.h"
#include "scheduling/TitlesInUse.h"
#include "scheduling/WeekModel.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr const char* kRoutine = "RequetteSquelette";
constexpr int64_t kMostLayingMs = 4000;
// A pass without a title leaves all titles in place, and of the runs only the origin looked at
// last: the second one begins as every further one, and what it refuses they refuse as well.
constexpr int kFruitlessPasses = 2;
constexpr const char* kRefusalFolder = "refusrequette";

enum class Origin { kNat, kInt, kOther };

Origin OriginOf(std::string_view variety) {
  const std::string_view head = variety.substr(0, 3);
  return head == "NAT" ? Origin::kNat : head == "INT" ? Origin::kInt : Origin::kOther;
}

// The titles of one genre that are left, in the order of the pool.
class GenreQueue {
 public:
  struct Title {
    int card;
    Origin origin;
    int place;  // among the candidates, from 1
  };
  void Add(Title title) {
    titles_.push_back(title);
    ++Left(title.origin);
  }
  const std::deque<Title>& Titles() const { return titles_; }
  // Nothing but titles of that origin is left.
  bool Only(Origin origin) const {
    return !titles_.empty() &&
           static_cast<size_t>(left_[static_cast<size_t>(origin)]) == titles_.size();
  }
  void Remove(size_t at) {
    --Left(titles_[at].origin);
    titles_.erase(titles_.begin() + static_cast<std::ptrdiff_t>(at));
  }

 private:
  int& Left(Origin origin) { return left_[static_cast<size_t>(origin)]; }
  std::deque<Title> titles_;
  int left_[3] = {};
};

// Runs of one origin. They count at the test and not at the choice: a refused title counts as well,
// so that all further ones of its origin are refused until one of the other was looked at.
// Deliberate.
class Runs {
 public:
  explicit Runs(const std::optional<Alternation>& limits) : limits_(limits) {}

  bool Allows(Origin origin) {
    if (!limits_ || origin == Origin::kOther) return true;
    const bool nat = origin == Origin::kNat;
    Count(nat ? nat_ : int_, nat ? int_ : nat_, 1);
    return nat ? nat_ <= limits_->mostNat : int_ <= limits_->mostInt;
  }
  // True when a walk over these titles would refuse all of them; they are counted as looked at.
  // Saves the walk, which a request that finds nothing any more would make thousands of times.
  bool RefusesAll(const GenreQueue& queue) {
    if (!limits_) return false;
    const auto titles = static_cast<int64_t>(queue.Titles().size());
    if (nat_ >= limits_->mostNat && queue.Only(Origin::kNat)) return Count(nat_, int_, titles);
    if (int_ >= limits_->mostInt && queue.Only(Origin::kInt)) return Count(int_, nat_, titles);
    return false;
  }

 private:
  static bool Count(int32_t& run, int32_t& other, int64_t titles) {
    run =
        static_cast<int32_t>(std::min<int64_t>(run + titles, std::numeric_limits<int32_t>::max()));
    other = 0;
    return true;
  }

  std::optional<Alternation> limits_;
  int32_t nat_ = 0;
  int32_t int_ = 0;
};

class Laying {
 public:
  Laying(Station& station, RequestFrame& frame, const CandidateCards& cards, const Pool& pool,
         const std::optional<Alternation>& alternation)
      : station_(station), frame_(frame), cards_(cards), runs_(alternation) {
    lastRow_ = station.PL.Count();
    int place = 0;
    for (const int card : pool)
      queues_[std::string(cards.Genre(card))].Add({card, OriginOf(cards.Variety(card)), ++place});
  }

  void Run(const std::vector<std::string>& positions, int minutes) {
    const int64_t endMs = station_.platform.clock.MonotonicMs() + kMostLayingMs;
    int fruitless = 0;                                      // passes at the end so far
    while (seconds_ / 60 <= static_cast<float>(minutes)) {  // a
      station_.platform.loop.PassYield();                   // b
      ++pass_;
      const int rowBefore = lastRow_;
      int position = 0;
      for (const std::string& genre : positions) {
        ++position;
        if (!Trim(genre).empty()) Fill(genre, position);
      }
      fruitless = lastRow_ == rowBefore ? fruitless + 1 : 0;
      if (fruitless == kFruitlessPasses) return;
      if (station_.platform.clock.MonotonicMs() >= endMs) return;  // c
    }
  }

  bool Taken(int card) const { return taken_.count(card) > 0; }

 private:
  void Fill(const std::string& genre, int position) {
    const auto found = queues_.find(genre);
    if (found == queues_.end()) return;
    GenreQueue& queue = found->second;
    if (runs_.RefusesAll(queue)) return;
    for (size_t at = 0; at < queue.Titles().size(); ++at) {
      const GenreQueue::Title title = queue.Titles()[at];
      if (!runs_.Allows(title.origin)) continue;
      seconds_ += static_cast<float>(std::floor(cards_.LengthMs(title.card) / 1000.0));
      frame_.List(++lastRow_, cards_.ElementOf(title.card),
                  {.place = title.place, .position = position, .pass = pass_});
      taken_.insert(title.card);
      queue.Remove(at);
      return;
    }
  }

  Station& station_;
  RequestFrame& frame_;
  const CandidateCards& cards_;
  Runs runs_;
  std::unordered_map<std::string, GenreQueue> queues_;  // by genre, case counts
  std::unordered_set<int> taken_;
  float seconds_ = 0;  // S, taken so far
  int lastRow_ = 0;
  int pass_ = 0;  // over the positions, from 1
};

std::vector<std::string> GenresOfHour(const DaySkeleton& skeleton, int hour) {
  std::vector<std::string> genres;
  for (const auto& position : skeleton) genres.push_back(position[static_cast<size_t>(hour)]);
  return genres;
}

std::vector<std::string> WithoutBlanks(std::vector<std::string> genres) {
  genres.erase(std::remove_if(genres.begin(), genres.end(),
                              [](const std::string& genre) { return Trim(genre).empty(); }),
               genres.end());
  return genres;
}

void CutDoubles(Station& station, const CandidateCards& cards, Pool& pool) {
  Pool cut;
  YieldAmongMany(station, pool.size());
  CutArtistDoubles(cards, pool, &cut);
  const LocalDateTime now = station.Now();
  const std::string moment = DateText(now) + " " + TimeText(now) + " ";
  const size_t count = cut.size();
  station.requests.ListAutorisation.AddLater(
      count, [cards, moment, cut = std::move(cut)](size_t at) {
        std::string line = moment;
        line.append(cards.Genre(cut[at])).append("\t").append(cards.ArtistCapitals(cut[at]));
        line.append("\t").append(cards.Title(cut[at])).append(" supprimé car doublon d'artiste");
        return line;
      });
}

// The request is done. Told once, until it succeeds.
void WriteRefusals(Station& station) {
  const RefusedTitles& refused = station.requests.ListAutorisation;
  if (refused.Count() == 0 || station.platform.localValues.GetInt("RapportSquelette", 0) <= 0)
    return;
  bool& failing = station.requests.refusalFileFailing;
  try {
    station.platform.stationFolder.Subfolder(kRefusalFolder)
        .Append(DateKey(station.Now()) + ".txt", EncodeAppended(JoinLines(refused.All())));
    failing = false;
  } catch (const FileError&) {
    if (!std::exchange(failing, true)) LogCurrentException(station, kRoutine);
  }
}

Pool MakeSkeletonPool(Station& station, const CandidateCards& cards, const TitlesInUse& used,
                      int minutes) {
  const int64_t groups = station.lists.LectureBase;
  Pool pool = FillPool(station, cards, used, groups > 0 ? groups * minutes : kNoLimit);
  if (station.platform.localValues.GetInt("CheckDoublonYN", 0) == 0)
    CutDoubles(station, cards, pool);  // 3
  YieldAmongMany(station, pool.size());
  SortByLastPlay(cards, pool);  // 4
  ShowPool(station, cards, pool);
  return pool;
}

void RunSkeletonRequest(Station& station, int minutes, RequestFrame& frame) {
  const int weekday = CurrentWeekday(station.Now());
  LoadModelScreen(station);
  const DaySkeleton skeleton = ReadDaySkeleton(station, weekday);  // 1
  const int hour = CurrentHour(station);
  frame.Open(minutes);
  const bool alternate = station.base.CnfInt(Cnf::kCheckNational) != 0;
  if (CountOrLast(station, "ModelSquelette") == 0) return frame.Leave(kNoModelsFrench);
  station.platform.loop.Yield();
  const TitlesInUse used = LoadTitlesInUse(station);
  const std::vector<std::string> positions = GenresOfHour(skeleton, hour);
  station.platform.loop.Yield();
  const CandidateCards cards(station,
                             {.genres = WithoutBlanks(positions), .hour = {{weekday, hour}}},
                             CandidateCards::Order::kPassesThenLastdiff);  // 2
  Pool pool = MakeSkeletonPool(station, cards, used, minutes);             // 3, 4
  frame.Saw(cards.Count(), pool.size());
  const Alternation limits = ReadAlternation(station);  // 5
  LayAlongSkeleton(station, frame, cards, pool, positions, station.requests.MinutesRequete,
                   alternate ? std::optional(limits) : std::nullopt);  // 6
  frame.Finish();                                                      // 7
  WriteRefusals(station);                                              // 8
}

}  // namespace

Alternation ReadAlternation(Station& station) {
  const auto [mostNat, mostInt] = AnswerOrLast(station, LastAnswersOf(station).runs, [&] {
    const auto shares = station.base.Db().OpenRecordset("SELECT POURCENT FROM Variete");
    const auto run = [&shares] {
      const auto most = static_cast<int32_t>(std::nearbyint(shares->Real("POURCENT") / 20.0));
      return most == 0 ? 1 : most;
    };
    const int32_t first = run();
    shares->MoveLast();
    return std::pair(first, run());
  });
  return {mostNat, mostInt};
}

void LayAlongSkeleton(Station& station, RequestFrame& frame, const CandidateCards& cards,
                      Pool& pool, const std::vector<std::string>& positions, int minutes,
                      const std::optional<Alternation>& alternation) {
  Laying laying(station, frame, cards, pool, alternation);
  laying.Run(positions, minutes);
  pool.erase(
      std::remove_if(pool.begin(), pool.end(), [&laying](int card) { return laying.Taken(card); }),
      pool.end());
}

void RequestAlongSkeleton(Station& station, int16_t& minutes) {
  RequestFrame frame(station, "skeleton");
  try {
    RunSkeletonRequest(station, minutes, frame);
  } catch (const std::exception&) {
    frame.Fail(kRoutine);
  }
}

}  // namespace zemo
