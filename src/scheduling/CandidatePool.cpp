#include "scheduling/CandidatePool.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>

#include "library/KnownCards.h"
#include "library/OnAirRows.h"
#include "platform/EventLoop.h"
#include "scheduling/HourFilter.h"
#include "scheduling/KeySort.h"
#include "scheduling/LastAnswers.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/Collation.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr int kRowsAYield = 256;  // some 50 microseconds; a yield takes a tenth of that
constexpr size_t kRowsAhead = 8;  // whose numbers are fetched into the processor's memory
constexpr int32_t kLastPlainDay = 1'000'000;  // of the calendar that begins with 1900
constexpr size_t kChunksAYield = 32;          // of known cards
constexpr size_t kPoolRowsShown = 1000;
constexpr size_t kQueryChunkCards = 4096;

// The pool's cards with their keys, in ascending order; cards of equal key keep theirs.
template <typename KeyOf>
Keyed<int> SortedPool(const CandidateCards& cards, const Pool& pool, KeyOf keyOf) {
  Keyed<int> entries;
  entries.reserve(pool.size());
  for (size_t at = 0; at < pool.size(); ++at) {
    cards.Fetch(pool[std::min(at + kRowsAhead, pool.size() - 1)]);
    entries.emplace_back(SortKey(int64_t{keyOf(pool[at])}), pool[at]);
  }
  SortByKey(entries);
  return entries;
}

// --- the query's conditions, asked of packed cards ---

// What is none is left to the base, which tells so.
bool IsQuery(const CardsWanted& wanted) {
  return !wanted.genres.empty() &&
         std::none_of(wanted.genres.begin(), wanted.genres.end(),
                      [](const std::string& name) { return name.find('\0') != std::string::npos; });
}

// As the dialect's IN: among ASCII names case counts only beyond ASCII; a name with other letters
// has all of them compared without case.
std::vector<char> GenresAmong(const CardTexts& texts, const std::vector<std::string>& names) {
  const bool ascii = std::all_of(names.begin(), names.end(), IsAscii);
  std::vector<char> wanted(texts.GenreCount());
  for (size_t number = 0; number < wanted.size(); ++number) {
    const CardTexts::Genre& genre = texts.GenreAt(static_cast<uint32_t>(number));
    wanted[number] =
        genre.isText && std::any_of(names.begin(), names.end(), [&](const auto& name) {
          return ascii ? EqualNoCase(genre.text, name) : CompareFrenchCase(genre.text, name) == 0;
        });
  }
  return wanted;
}

// As LIKE with a ? for each hour before, then 1*: a character each, of as many bytes as it has. A
// zero character ends the text.
bool AllowedInHour(std::string_view mask, int hour) {
  mask = mask.substr(0, mask.find('\0'));
  for (; hour > 0 && !mask.empty(); --hour) {
    const bool wide = static_cast<unsigned char>(mask.front()) >= 0xC0;
    mask.remove_prefix(1);
    while (wide && !mask.empty() && (static_cast<unsigned char>(mask.front()) & 0xC0) == 0x80)
      mask.remove_prefix(1);
  }
  return !mask.empty() && mask.front() == '1';
}

std::vector<char> HoursThatAllow(const CardTexts& texts,
                                 const std::optional<CardsWanted::Hour>& at) {
  std::vector<char> allow(texts.HoursCount(), 1);
  if (!at) return allow;
  for (size_t number = 0; number < allow.size(); ++number) {
    const CardTexts::Hours& masks = texts.HoursAt(static_cast<uint32_t>(number));
    allow[number] = AllowedInHour(masks[static_cast<size_t>(at->weekday - 1)], at->hour);
  }
  return allow;
}

// --- the tests of one walk ---

// The rotation rules by numbers alone, for the greater part of a library, which they let through:
// true where RotationAllows would allow the card without a word. False says nothing.
class PlainRotation {
 public:
  PlainRotation(const LocalDateTime& now, int decalDiff)
      : day_(BroadcastDay(now.year, now.month, now.day)),
        hour_(now.hour),
        minute_(now.hour * 60 + now.minute),
        decalDiff_(decalDiff),
        midnight_(static_cast<uint32_t>(day_) * kBroadcastDayMinutes),
        inRange_(day_ > 0 && day_ < kLastPlainDay && decalDiff_ <= kDiffusions) {}

  bool Allows(const PackedCard& card) const {
    if (card.passes == 0 || card.passes == PackedCard::kNull || !inRange_) return false;
    if (card.broadcasts[0] == PackedCard::kNoBroadcast) return true;
    uint32_t all = 0;
    int32_t today = 0;
    for (const uint32_t packed : card.broadcasts) {
      all |= packed;
      today += packed - 1 - midnight_ < kBroadcastDayMinutes;
    }
    if (all & PackedCard::kOtherText) return false;
    for (int last = 0; last < decalDiff_; ++last) {
      const uint32_t packed = card.broadcasts[static_cast<size_t>(last)];
      if (packed != PackedCard::kNoBroadcast && MinuteOf(packed) / 60 == hour_) return false;
    }
    const int32_t days = day_ - DayOf(card.broadcasts[0]);
    const int32_t minutes = std::abs(minute_ - MinuteOf(card.broadcasts[0])) +
                            days * static_cast<int32_t>(kBroadcastDayMinutes);
    return !(card.minutesGap > 0 && card.minutesGap > minutes) &&
           !(card.daysGap > 0 && card.daysGap > days) && !(card.passes > 0 && today >= card.passes);
  }

 private:
  static int32_t DayOf(uint32_t packed) {
    return static_cast<int32_t>((packed - 1) / kBroadcastDayMinutes);
  }
  static int32_t MinuteOf(uint32_t packed) {
    return static_cast<int32_t>((packed - 1) % kBroadcastDayMinutes);
  }

  int32_t day_, hour_, minute_;
  int decalDiff_;
  uint32_t midnight_;
  bool inRange_;  // numbers of this size are enough
};

// The rotation rules of one walk, at the moment of its last yield.
class RotationTests {
 public:
  RotationTests(Station& station, const CandidateCards& cards)
      : station_(station), cards_(cards), moment_(station.Now()), plain_(NowPlain()) {}

  void ReadMoment() {
    moment_ = RotationMoment(station_.Now());
    plain_ = NowPlain();
  }
  bool Allow(int card) {
    if (cards_.AnyDay(card) && plain_.Allows(cards_.At(card))) return true;
    return CheckRotation(station_, cards_.Rotation(card, room_), moment_);
  }

 private:
  PlainRotation NowPlain() const { return {station_.Now(), station_.requests.DecalDiffCourant}; }

  Station& station_;
  const CandidateCards& cards_;
  RotationMoment moment_;
  PlainRotation plain_;
  CandidateCards::DiffusionTexts room_;
};

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

// What is not known yet is read here, with yields: a write of another program touches few cards
// most of the time, and even the whole library costs little more than the query, which holds the
// air for as long as it takes. A base that others write to again and again, or that is handed over
// in a yield, is asked all the same.
std::optional<CardSet> KnownSoon(Station& station) {
  constexpr int kMostPasses = 3;
  if (auto known = CardsNow(station)) return known;
  const std::shared_ptr<const KnownCards> cards = station.knownCards;  // null without a base
  const int64_t begun = cards ? cards->Passes() : 0;
  while (cards && station.knownCards == cards && cards->Passes() - begun < kMostPasses &&
         ReadCardsAhead(station))
    station.platform.loop.Yield();
  return CardsNow(station);
}

}  // namespace

// Cards stand in order of CODE, which equal keys keep.
template <typename Pause>
void CandidateCards::Sort(Order order, Pause pause) {
  Keyed<const PackedCard*> entries;
  entries.reserve(cards_.size());
  for (const PackedCard* card : cards_) entries.emplace_back(SortKey(card->lastdiff), card);
  pause();
  SortByKey(entries);
  if (order == Order::kPassesThenLastdiff) {
    pause();
    for (auto& [key, card] : entries) key = ~SortKey(int64_t{card->passes});
    SortByKey(entries);
  }
  for (size_t i = 0; i < entries.size(); ++i) cards_[i] = entries[i].second;
}

CandidateCards::CandidateCards(Station& station, const CardsWanted& wanted, Order order)
    : weekday_(static_cast<size_t>(CurrentWeekday(station.Now()) - 1)) {
  const std::optional<CardSet> known = IsQuery(wanted) ? KnownSoon(station) : std::nullopt;
  if (known) {
    TakeKnown(station, *known, wanted);
  } else {
    AskOrTakeLast(station, wanted);
  }
  Sort(order, [&] { YieldAmongMany(station, cards_.size()); });
}

CandidateCards::CandidateCards(Station& station, const BoundQuery& condition, Order order)
    : weekday_(static_cast<size_t>(CurrentWeekday(station.Now()) - 1)) {
  Ask(station, condition);
  Sort(order, [] {});
}

// A base that is out of reach leaves the library as it was read last.
void CandidateCards::AskOrTakeLast(Station& station, const CardsWanted& wanted) {
  try {
    Ask(station, QueryOf(wanted));
  } catch (const StoreError& fault) {
    const auto last = IsQuery(wanted) ? CardsAsLastRead(station) : std::nullopt;
    if (!last || !fault.MayPass()) throw;
    TellLastAnswers(station, fault);
    TakeKnown(station, *last, wanted);
  }
}

// The cards stay as they are, whatever is written meanwhile.
void CandidateCards::TakeKnown(Station& station, const CardSet& known, const CardsWanted& wanted) {
  chunks_ = known.chunks;
  texts_ = known.texts;
  const std::vector<char> genres = GenresAmong(*texts_, wanted.genres);
  const std::vector<char> hours = HoursThatAllow(*texts_, wanted.hour);
  for (size_t chunk = 0; chunk < chunks_.size(); ++chunk) {
    if (chunk % kChunksAYield == kChunksAYield - 1) station.platform.loop.Yield();
    for (const PackedCard& card : *chunks_[chunk])
      if (genres[card.genre] && hours[card.hours]) cards_.push_back(&card);
  }
}

// Without an order and past the genre's index: for the greater part of a library one walk in the
// order of the file is several times faster than either, and the few numbers sort quickly here.
void CandidateCards::Ask(Station& station, const BoundQuery& condition) {
  const auto texts = std::make_shared<CardTexts>();
  std::shared_ptr<CardChunk> chunk;
  const auto weekday = static_cast<int>(weekday_) + 1;
  const std::string query =
      "Select " + CardTexts::Columns(weekday) + " From Discotheque Where +" + condition.text;
  station.base.Db().ReadRows(query, condition.values, [&](const RowView& row) {
    if (!chunk || chunk->size() == kQueryChunkCards) {
      chunk = std::make_shared<CardChunk>();
      chunks_.push_back(chunk);
    }
    chunk->push_back(texts->Pack(row, nullptr, weekday));
  });
  texts_ = texts;
  for (const auto& read : chunks_)
    for (const PackedCard& card : *read) cards_.push_back(&card);
}

CardRotation CandidateCards::Rotation(int card, DiffusionTexts& room) const {
  const PackedCard& packed = At(card);
  const CardTexts::Days& days = texts_->DaysAt(packed.days);
  CardRotation rotation;
  rotation.Code = packed.code;
  rotation.Genre = Genre(card);
  rotation.Auteur = Artist(card);
  rotation.Titre = Title(card);
  rotation.MMJJDebut = days.first;
  rotation.MMJJFin = days.last;
  rotation.NBPASSJOUR = packed.passes == PackedCard::kNull ? 0 : packed.passes;
  rotation.ECARTMINUTES = packed.minutesGap;
  rotation.ECARTJOURS = packed.daysGap;
  rotation.Tranche = texts_->HoursAt(packed.hours)[weekday_];
  for (size_t i = 0; i < kDiffusions; ++i)
    rotation.Diffusion[i] = texts_->Broadcast(packed.broadcasts[i], room[i]);
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
  const PackedCard& packed = At(card);
  const auto known = [](int32_t number) {
    return number == PackedCard::kNull ? std::nullopt : std::optional<int64_t>(number);
  };
  return {.code = packed.code,
          .title = ListedArtist(card),
          .secondLine = std::string(Title(card)),
          .genre = std::string(Genre(card)),
          .variety = std::string(Variety(card)),
          .file = std::string(FileOf(packed)),
          .lengthMs = known(packed.lengthMs),
          .exitMs = known(packed.exitMs),
          .introSec = known(packed.introSec),
          .lastPlayed = std::isfinite(packed.lastdiff) ? packed.lastdiff : 0};
}

namespace {

std::optional<OnAirElement> AskForLongestRested(Station& station, const CardsWanted& wanted,
                                                int64_t aboveMs) {
  BoundQuery query{"Select * From Discotheque Where "};
  query.Add(QueryOf(wanted));
  query.Add(" And DUREE > ? ORDER BY Lastdiff ASC", {aboveMs});
  const auto titles = station.base.Db().OpenRecordset(query.text, query.values);
  return titles->Eof() ? std::nullopt : std::optional(MusicRow(*titles));
}

}  // namespace

std::optional<OnAirElement> LongestRested(Station& station, const CardsWanted& wanted,
                                          int64_t aboveMs) {
  const auto known = IsQuery(wanted) ? CardsListedAlready(station) : std::nullopt;
  if (!known) return AskForLongestRested(station, wanted, aboveMs);
  const std::vector<char> genres = GenresAmong(*known->texts, wanted.genres);
  const std::vector<char> hours = HoursThatAllow(*known->texts, wanted.hour);
  const PackedCard* oldest = nullptr;
  for (const auto& chunk : known->chunks) {
    for (const PackedCard& card : *chunk) {
      if (card.odd) return AskForLongestRested(station, wanted, aboveMs);
      if (!genres[card.genre] || !hours[card.hours]) continue;
      if (card.oddCells) return AskForLongestRested(station, wanted, aboveMs);
      if (card.lengthMs == PackedCard::kNull || card.lengthMs <= aboveMs) continue;
      if (!oldest || card.lastdiff < oldest->lastdiff) oldest = &card;
    }
  }
  return oldest ? std::optional(MusicRow(*oldest, *known->texts)) : std::nullopt;
}

// No name at all leaves a text that is no query: a request without genres ends with that fault.
BoundQuery QueryOf(const CardsWanted& wanted) {
  BoundQuery condition{wanted.genres.empty() ? "Genre I" : "Genre In("};
  const char* separator = "";
  for (const std::string& genre : wanted.genres) {
    condition.Add(std::string(separator) + "?", {genre});
    separator = ", ";
  }
  condition.Add(")");
  if (wanted.hour) condition.Add(HourFilter(wanted.hour->weekday, wanted.hour->hour));
  return condition;
}

Pool FillPool(Station& station, const CandidateCards& cards, const TitlesInUse& used,
              int64_t limit) {
  // What has no file cannot play, and would be skipped row by row.
  if (!TitlesHave(station, "FILENAME")) return {};
  Pool pool;
  ArtistTests artists(station, cards);
  RotationTests rotation(station, cards);
  const bool anyUsed = used.Count() > 0;
  for (int card = 0; card < cards.Count(); ++card) {
    if (card % kRowsAYield == 0) {
      station.platform.loop.Yield();
      rotation.ReadMoment();
    }
    cards.Fetch(std::min(card + static_cast<int>(kRowsAhead), cards.Count() - 1));
    if (!rotation.Allow(card)) continue;
    if (anyUsed && used.Holds(cards.Code(card))) continue;
    if (!artists.Allow(card)) continue;
    pool.push_back(card);
    if (static_cast<int64_t>(pool.size()) > limit) break;
  }
  return pool;
}

void YieldAmongMany(Station& station, size_t cards) {
  constexpr size_t kMany = 4096;  // half a millisecond of sorting
  if (cards >= kMany) station.platform.loop.Yield();
}

void CutArtistDoubles(const CandidateCards& cards, Pool& pool, Pool* cut) {
  const Keyed<int> byArtist =
      SortedPool(cards, pool, [&cards](int card) { return cards.ArtistRank(card); });
  pool.clear();
  const uint64_t* above = nullptr;
  for (const auto& [artist, card] : byArtist) {
    if (!above || *above != artist)
      pool.push_back(card);
    else if (cut)
      cut->push_back(card);
    above = &artist;
  }
}

void SortByLastPlay(const CandidateCards& cards, Pool& pool) {
  const Keyed<int> byAge =
      SortedPool(cards, pool, [&cards](int card) { return cards.PlayedSecond(card); });
  for (size_t i = 0; i < byAge.size(); ++i) pool[i] = byAge[i].second;
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
