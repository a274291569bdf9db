#include "scheduling/CandidatePool.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <optional>
#include <utility>

#include "platform/EventLoop.h"
#include "scheduling/HourFilter.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr size_t kBlockBytes = 1 << 18;
constexpr int kRowsAYield = 64;  // a yield costs as much as testing so many cards
constexpr size_t kPoolRowsShown = 1000;

// Columns of the query: first the numbers, then the texts in the order of CandidateCards::Text.
enum Column {
  kCode,
  kLastdiff,
  kLength,
  kPasses,
  kMinutes,
  kDays,
  kArtistGap,
  kExit,
  kIntro,
  kFirstText
};

std::string QueryColumns(int weekday) {
  std::string columns =
      "CODE, LASTDIFF, DUREE, NBPASSJOUR, ECARTMINUTES, ECARTJOURS, ECARTARTISTE, POINTSORTIE, "
      "INTRO, "
      "AUTEUR, TITRE, GENRE, VARIETE, FILENAME, MMJJDebut, MMJJFin, TRANCHE" +
      TwoDigits(weekday);
  for (int i = 1; i <= kDiffusions; ++i) columns += ", DIFFUSION" + TwoDigits(i);
  return columns;
}

// Cards of equal key keep their order.
template <typename KeyOf>
void SortByKey(Pool& pool, KeyOf keyOf) {
  std::vector<std::pair<int64_t, int>> entries;
  entries.reserve(pool.size());
  for (const int card : pool) entries.emplace_back(keyOf(card), card);
  std::stable_sort(entries.begin(), entries.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  for (size_t i = 0; i < entries.size(); ++i) pool[i] = entries[i].second;
}

// The artist tests of one walk. The recent artists stand still meanwhile, so each is looked up
// once.
class ArtistTests {
 public:
  ArtistTests(Station& station, const CandidateCards& cards)
      : station_(station), cards_(cards), recent_(static_cast<size_t>(cards.ArtistCount())) {}

  bool Allow(int card) {
    bool allowed = true;
    if (cards_.ECARTARTISTE(card) > 0) {
      CheckArtistGapInReport(station_, Trim(cards_.Artist(card)), cards_.ECARTARTISTE(card),
                             allowed);
      return allowed;
    }
    std::optional<bool>& recent = recent_[static_cast<size_t>(cards_.ArtistNumber(card))];
    if (!recent) {
      std::string artist = Trim(cards_.Artist(card));
      CheckRecentArtist(station_, artist, allowed);
      recent = !allowed;
    }
    return !*recent;
  }

 private:
  Station& station_;
  const CandidateCards& cards_;
  std::vector<std::optional<bool>> recent_;  // by artist
};

}  // namespace

// Without an order and past the genre's index: for the greater part of a library one walk in the
// order of the file is several times faster than either, and the few numbers sort quickly here.
CandidateCards::CandidateCards(Station& station, const BoundQuery& condition, Order order) {
  const std::string query = "Select " + QueryColumns(CurrentWeekday(station.Now())) +
                            " From Discotheque Where +" + condition.text;
  station.base.Db().ReadRows(query, condition.values, [this](const RowView& row) { Take(row); });
  RankArtists();
  Sort(order);
}

void CandidateCards::Take(const RowView& row) {
  const auto orNull = [&](int column) {
    return row.IsNull(column) ? kNull : static_cast<int32_t>(row.Int(column));
  };
  std::array<std::string_view, kTexts> texts;
  for (int text = 0; text < kTexts; ++text)
    texts[static_cast<size_t>(text)] = row.Text(kFirstText + text).substr(0, 1024);
  Card card;
  card.lastdiff =
      row.IsNull(kLastdiff) ? -std::numeric_limits<double>::infinity() : row.Real(kLastdiff);
  card.texts = Store(texts);
  card.code = static_cast<int32_t>(row.Int(kCode));
  card.lengthMs = orNull(kLength);
  card.passes = orNull(kPasses);
  card.minutes = static_cast<int16_t>(row.Int(kMinutes));
  card.days = static_cast<int16_t>(row.Int(kDays));
  card.artistGap = static_cast<int16_t>(row.Int(kArtistGap));
  card.exitMs = orNull(kExit);
  card.introSec = orNull(kIntro);
  cards_.push_back(card);
  cards_.back().artist = ArtistNamed(cards_.back());
}

// A library has far fewer artists than cards, so what the rules ask of their names is made once.
int32_t CandidateCards::ArtistNamed(const Card& card) {
  const std::string_view spelling = TextAt(Count() - 1, kArtist);
  const auto number = static_cast<int32_t>(artists_.size());
  std::string name = Trim(spelling);
  if (name.empty()) {
    name = "Code " + std::to_string(card.code);
  } else if (const auto [known, fresh] = artistNumbers_.emplace(spelling, number); !fresh) {
    return known->second;
  }
  std::string capitals = UpperLatin(name);
  artists_.push_back({std::move(name), std::move(capitals)});
  return number;
}

void CandidateCards::RankArtists() {
  std::vector<ArtistName*> order;
  for (ArtistName& artist : artists_) order.push_back(&artist);
  std::sort(order.begin(), order.end(),
            [](const ArtistName* a, const ArtistName* b) { return a->capitals < b->capitals; });
  const ArtistName* before = nullptr;
  for (ArtistName* artist : order) {
    if (before) artist->rank = before->rank + (artist->capitals == before->capitals ? 0 : 1);
    before = artist;
  }
}

const char* CandidateCards::Store(const std::array<std::string_view, kTexts>& texts) {
  Ends ends;
  size_t size = 0;
  for (size_t text = 0; text < texts.size(); ++text)
    ends[text] = static_cast<uint16_t>(size += texts[text].size());
  size += sizeof ends;
  if (blockSize_ - blockUsed_ < size) {
    blockSize_ = std::max(kBlockBytes, size);
    blocks_.emplace_back(new char[blockSize_]);
    blockUsed_ = 0;
  }
  char* const begin = blocks_.back().get() + blockUsed_;
  blockUsed_ += size;
  std::memcpy(begin, ends.data(), sizeof ends);
  char* at = begin + sizeof ends;
  for (const std::string_view text : texts) {
    if (!text.empty()) std::memcpy(at, text.data(), text.size());
    at += text.size();
  }
  return begin;
}

void CandidateCards::Sort(Order order) {
  std::sort(cards_.begin(), cards_.end(), [order](const Card& a, const Card& b) {
    if (order == Order::kPassesThenLastdiff && a.passes != b.passes) return a.passes > b.passes;
    if (a.lastdiff != b.lastdiff) return a.lastdiff < b.lastdiff;
    return a.code < b.code;
  });
}

CandidateCards::Ends CandidateCards::EndsOf(int card) const {
  Ends ends;
  std::memcpy(ends.data(), At(card).texts, sizeof ends);
  return ends;
}

std::string_view CandidateCards::TextAt(int card, int text, const Ends& ends) const {
  const auto at = static_cast<size_t>(text);
  const size_t begin = at == 0 ? 0 : ends[at - 1];
  return {At(card).texts + sizeof ends + begin, ends[at] - begin};
}

CardRotation CandidateCards::Rotation(int card) const {
  const Card& numbers = At(card);
  const Ends ends = EndsOf(card);
  CardRotation rotation;
  rotation.Code = numbers.code;
  rotation.Genre = TextAt(card, kGenre, ends);
  rotation.Auteur = TextAt(card, kArtist, ends);
  rotation.Titre = TextAt(card, kTitle, ends);
  rotation.MMJJDebut = TextAt(card, kFirstDay, ends);
  rotation.MMJJFin = TextAt(card, kLastDay, ends);
  rotation.NBPASSJOUR = numbers.passes == kNull ? 0 : numbers.passes;
  rotation.ECARTMINUTES = numbers.minutes;
  rotation.ECARTJOURS = numbers.days;
  rotation.Tranche = TextAt(card, kHours, ends);
  for (int i = 0; i < kDiffusions; ++i)
    rotation.Diffusion[static_cast<size_t>(i)] = TextAt(card, kDiffusion + i, ends);
  return rotation;
}

int64_t CandidateCards::PlayedSecond(int card) const {
  const double lastdiff = At(card).lastdiff;
  if (lastdiff == 0 || !std::isfinite(lastdiff)) return std::numeric_limits<int64_t>::min();
  const LocalDateTime played = FromDateSerial(lastdiff);
  const double day = DaySerial(played.year, played.month, played.day);
  return static_cast<int64_t>(day) * 86400 + played.hour * 3600 + played.minute * 60 +
         played.second;
}

OnAirElement CandidateCards::ElementOf(int card) const {
  const Card& numbers = At(card);
  const auto text = [&](Text which) { return std::string(TextAt(card, which)); };
  const auto known = [](int32_t number) {
    return number == kNull ? std::nullopt : std::optional<int64_t>(number);
  };
  return {.code = numbers.code,
          .title = ListedArtist(card),
          .secondLine = text(kTitle),
          .genre = text(kGenre),
          .variety = text(kVariety),
          .file = text(kFile),
          .lengthMs = known(numbers.lengthMs),
          .exitMs = known(numbers.exitMs),
          .introSec = known(numbers.introSec),
          .lastPlayed = std::isfinite(numbers.lastdiff) ? numbers.lastdiff : 0};
}

BoundQuery GenreCondition(const std::vector<std::string>& genres) {
  if (genres.empty()) return {"Genre I"};
  BoundQuery condition{"Genre In("};
  const char* separator = "";
  for (const std::string& genre : genres) {
    condition.Add(std::string(separator) + "?", {genre});
    separator = ", ";
  }
  return condition;
}

BoundQuery HourCondition(int weekday, int hour) {
  return BoundQuery{")"}.Add(HourFilter(weekday, hour));
}

Pool FillPool(Station& station, const CandidateCards& cards, const TitlesInUse& used,
              int64_t limit) {
  // What has no file cannot play, and would be skipped row by row.
  if (!station.base.Db().HasColumn("Discotheque", "FILENAME")) return {};
  Pool pool;
  ArtistTests artists(station, cards);
  RotationMoment moment(station.Now());
  for (int card = 0; card < cards.Count(); ++card) {
    if (card % kRowsAYield == 0) {
      station.platform.loop.Yield();
      moment = RotationMoment(station.Now());
    }
    if (!CheckRotation(station, cards.Rotation(card), moment)) continue;
    if (used.Holds(cards.Code(card))) continue;
    if (!artists.Allow(card)) continue;
    pool.push_back(card);
    if (static_cast<int64_t>(pool.size()) > limit) break;
  }
  return pool;
}

void CutArtistDoubles(const CandidateCards& cards, Pool& pool, Pool* cut) {
  SortByKey(pool, [&cards](int card) { return cards.ArtistRank(card); });
  Pool first;
  int above = -1;
  for (const int card : pool) {
    const bool again = cards.ArtistRank(card) == std::exchange(above, cards.ArtistRank(card));
    if (!again)
      first.push_back(card);
    else if (cut)
      cut->push_back(card);
  }
  pool = std::move(first);
}

void SortByLastPlay(const CandidateCards& cards, Pool& pool) {
  SortByKey(pool, [&cards](int card) { return cards.PlayedSecond(card); });
}

void ShowPool(Station& station, const CandidateCards& cards, const Pool& pool) {
  std::vector<OnAirElement>& shown = station.requests.ListView1;
  shown.clear();
  for (const int card : pool) {
    if (shown.size() == kPoolRowsShown) return;
    shown.push_back(cards.ElementOf(card));
  }
}

}  // namespace zemo
