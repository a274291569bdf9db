// The candidates of a request: the cards of its query, packed as they were read, and the pool of
// those that the rules let through, first in the order of the query, then in the order of offer.
//
// A request may walk a library of 100,000 cards. So the query asks for the columns that the rules
// and PL need and for no order, the rows are kept packed, and texts are made only of what is taken.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "scheduling/RotationRules.h"
#include "scheduling/TitlesInUse.h"
#include "station/OnAirElement.h"
#include "station/RequestState.h"
#include "store/BoundQuery.h"

namespace zemo {

class RowView;

// The cards of one query. Thread: the logic's.
class CandidateCards {
 public:
  enum class Order {
    kLastdiff,            // the least recently played first
    kPassesThenLastdiff,  // the most passes a day first, then as above
  };

  // `condition` is the query behind "Where ", without its order; equal keys come by CODE.
  // Throws StoreError.
  CandidateCards(Station& station, const BoundQuery& condition, Order order);

  int Count() const { return static_cast<int>(cards_.size()); }
  int32_t Code(int card) const { return At(card).code; }
  int16_t ECARTARTISTE(int card) const { return At(card).artistGap; }
  int32_t LengthMs(int card) const { return At(card).lengthMs == kNull ? 0 : At(card).lengthMs; }
  std::string_view Genre(int card) const { return TextAt(card, kGenre); }
  std::string_view Variety(int card) const { return TextAt(card, kVariety); }
  std::string_view Artist(int card) const { return TextAt(card, kArtist); }
  std::string_view Title(int card) const { return TextAt(card, kTitle); }
  const std::string& ListedArtist(int card) const { return ArtistOf(card).listed; }
  // As listed, in capitals.
  const std::string& ArtistCapitals(int card) const { return ArtistOf(card).capitals; }
  // 0-based place among all artists of the query by their capitals; equal for equal capitals.
  int ArtistRank(int card) const { return ArtistOf(card).rank; }
  // A number of its own for each spelling, below ArtistCount().
  int ArtistNumber(int card) const { return At(card).artist; }
  int ArtistCount() const { return static_cast<int>(artists_.size()); }
  CardRotation Rotation(int card) const;   // valid as long as this object
  int64_t PlayedSecond(int card) const;    // of LASTDIFF; never played first
  OnAirElement ElementOf(int card) const;  // as it goes into PL

 private:
  static constexpr int32_t kNull = std::numeric_limits<int32_t>::min();
  enum Text { kArtist, kTitle, kGenre, kVariety, kFile, kFirstDay, kLastDay, kHours, kDiffusion };
  static constexpr int kTexts = kDiffusion + kDiffusions;

  struct Card {
    double lastdiff;    // -infinity for Null
    const char* texts;  // Ends, then the bytes of all texts
    int32_t code, lengthMs, passes;
    int32_t artist;  // of artists_
    int16_t minutes, days, artistGap;
    int32_t exitMs, introSec;
  };

  struct ArtistName {
    std::string listed;  // trimmed; "Code n" without one
    std::string capitals;
    int rank = 0;
  };

  const ArtistName& ArtistOf(int card) const {
    return artists_[static_cast<size_t>(ArtistNumber(card))];
  }
  const Card& At(int card) const { return cards_[static_cast<size_t>(card)]; }
  using Ends = std::array<uint16_t, kTexts>;  // of the texts, behind this array
  Ends EndsOf(int card) const;
  std::string_view TextAt(int card, int text, const Ends& ends) const;
  std::string_view TextAt(int card, int text) const { return TextAt(card, text, EndsOf(card)); }
  void Take(const RowView& row);
  int32_t ArtistNamed(const Card& card);
  void RankArtists();
  const char* Store(const std::array<std::string_view, kTexts>& texts);
  void Sort(Order order);

  std::vector<Card> cards_;
  std::vector<ArtistName> artists_;
  std::unordered_map<std::string_view, int32_t> artistNumbers_;  // by spelling, in a block's text
  std::vector<std::unique_ptr<char[]>> blocks_;
  size_t blockUsed_ = 0, blockSize_ = 0;  // bytes of the last block
};

// Cards of `cards` by number, in the order in which they will be offered.
using Pool = std::vector<int>;

// "Genre In(?, ?" with the genres given, which the query closes. No name at all leaves a text that
// is no query: a request without genres ends with that fault.
BoundQuery GenreCondition(const std::vector<std::string>& genres);
// ") And Tranche06 LIKE ?" with '??????????1*': allowed in that hour of that weekday (1 Monday
// to 7).
BoundQuery HourCondition(int weekday, int hour);

// Walks the cards and takes those that the rotation rules, the titles in use and the artist tests
// let through. The walk ends with the first title above `limit`. Yields. Throws.
inline constexpr int64_t kNoLimit = std::numeric_limits<int64_t>::max();
Pool FillPool(Station& station, const CandidateCards& cards, const TitlesInUse& used,
              int64_t limit);

// Sorts by artist and keeps the first title of each, without regard to case; `cut` gets the others
// in that order, null: nobody asks.
void CutArtistDoubles(const CandidateCards& cards, Pool& pool, Pool* cut);
// The never played first, then those played longest ago; equal ones keep their order.
void SortByLastPlay(const CandidateCards& cards, Pool& pool);
// Shows the pool in ListView1: its first rows, enough to see what was offered.
void ShowPool(Station& station, const CandidateCards& cards, const Pool& pool);

}  // namespace zemo
