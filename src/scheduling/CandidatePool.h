// The candidates of a request: the cards that it may look at, packed, and the pool of those that
// the rules let through, first in the order of the query, then in the order of offer.
//
// A request may walk a library of 100,000 cards. So it looks at those in memory wherever they are
// known to be what the base holds (library/KnownCards.h), and asks the base for them elsewhere;
// both give the same cards in the same order. Texts are made only of what is taken.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/PackedCards.h"
#include "scheduling/RotationRules.h"
#include "scheduling/TitlesInUse.h"
#include "station/OnAirElement.h"
#include "station/RequestState.h"
#include "store/BoundQuery.h"

namespace zemo {

class RowView;

// Which cards a request looks at.
struct CardsWanted {
  struct Hour {
    int weekday;  // 1 Monday to 7
    int hour;     // 0 to 23
  };
  std::vector<std::string> genres;  // without regard to case; with none the query is a fault
  std::optional<Hour> hour{};       // at which they may play; none: any
};

// The query of them, behind "Where ": "Genre In(?, ?) And Tranche06 LIKE ?" with '??????????1*'.
BoundQuery QueryOf(const CardsWanted& wanted);

// Thread: the logic's.
class CandidateCards {
 public:
  enum class Order {
    kLastdiff,            // the least recently played first
    kPassesThenLastdiff,  // the most passes a day first, then as above
  };

  // Equal keys come by CODE. The first one yields where there are many. Throw StoreError.
  CandidateCards(Station& station, const CardsWanted& wanted, Order order);
  // Of the base, by a query behind "Where ", without its order.
  CandidateCards(Station& station, const BoundQuery& condition, Order order);

  int Count() const { return static_cast<int>(cards_.size()); }
  const PackedCard& At(int card) const { return *cards_[static_cast<size_t>(card)]; }
  int32_t Code(int card) const { return At(card).code; }
  int16_t ECARTARTISTE(int card) const { return At(card).artistGap; }
  int32_t LengthMs(int card) const {
    return At(card).lengthMs == PackedCard::kNull ? 0 : At(card).lengthMs;
  }
  // Texts are valid as long as this object.
  std::string_view Genre(int card) const { return texts_->GenreAt(At(card).genre).text; }
  std::string_view Variety(int card) const { return texts_->VarietyAt(At(card).variety); }
  std::string_view Artist(int card) const { return ArtistOf(card).spelling; }
  std::string_view Title(int card) const { return TitleOf(At(card)); }
  const std::string& ListedArtist(int card) const { return ArtistOf(card).listed; }
  // As listed, in capitals.
  const std::string& ArtistCapitals(int card) const { return ArtistOf(card).capitals; }
  // 0-based place among all known artists by their capitals; equal for equal capitals.
  int ArtistRank(int card) const { return static_cast<int>(texts_->ArtistRank(At(card).artist)); }
  // A number of its own for each spelling, below ArtistCount().
  int ArtistNumber(int card) const { return static_cast<int>(At(card).artist); }
  int ArtistCount() const { return static_cast<int>(texts_->ArtistCount()); }
  // Has the processor fetch what the tests look at.
  void Fetch(int card) const {
    __builtin_prefetch(&At(card));
    __builtin_prefetch(&At(card).broadcasts);
  }
  // Its broadcasts' texts stand in `room`, the others here.
  using DiffusionTexts = std::array<DiffusionText, kDiffusions>;
  CardRotation Rotation(int card, DiffusionTexts& room) const;
  bool AnyDay(int card) const { return texts_->DaysAt(At(card).days).anyDay; }  // no date window
  int64_t PlayedSecond(int card) const;    // of LASTDIFF; never played first
  OnAirElement ElementOf(int card) const;  // as it goes into PL

 private:
  const CardTexts::Artist& ArtistOf(int card) const { return texts_->ArtistAt(At(card).artist); }
  void TakeKnown(Station& station, const CardSet& known, const CardsWanted& wanted);
  void Ask(Station& station, const BoundQuery& condition);
  void AskOrTakeLast(Station& station, const CardsWanted& wanted);
  template <typename Pause>
  void Sort(Order order, Pause pause);  // pauses between its steps

  size_t weekday_;                                        // of today, Monday 0
  std::vector<std::shared_ptr<const CardChunk>> chunks_;  // what cards_ points into
  std::shared_ptr<const CardTexts> texts_;
  std::vector<const PackedCard*> cards_;
};

// The wanted card above that length (ms) that was played longest ago, as it goes into PL; among
// equals the first one. One walk of a few milliseconds at most where the library is known. Throws
// StoreError.
std::optional<OnAirElement> LongestRested(Station& station, const CardsWanted& wanted,
                                          int64_t aboveMs);

// Cards of `cards` by number, in the order in which they will be offered.
using Pool = std::vector<int>;

// Walks the cards and takes those that the rotation rules, the titles in use and the artist tests
// let through. The walk ends with the first title above `limit`. Yields. Throws.
inline constexpr int64_t kNoLimit = std::numeric_limits<int64_t>::max();
Pool FillPool(Station& station, const CandidateCards& cards, const TitlesInUse& used,
              int64_t limit);

// A yield between two steps that go over so many cards each; none where they are few.
void YieldAmongMany(Station& station, size_t cards);
// Sorts by artist and keeps the first title of each, without regard to case; `cut` gets the others
// in that order, null: nobody asks.
void CutArtistDoubles(const CandidateCards& cards, Pool& pool, Pool* cut);
// The never played first, then those played longest ago; equal ones keep their order.
void SortByLastPlay(const CandidateCards& cards, Pool& pool);
// Shows the pool in ListView1: its first rows, enough to see what was offered.
void ShowPool(Station& station, const CandidateCards& cards, const Pool& pool);

}  // namespace zemo
