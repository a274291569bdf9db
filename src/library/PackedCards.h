// Music cards packed for walks over a whole library: numbers in 104 bytes a card, texts that cards
// share once each, titles and files in blocks. What is read of a packed card is to the letter what
// RowView reads of its row; texts are cut at kMostBytes, but for those of a list (ListedCards.h).
//
// Cards lie in chunks in order of CODE, and a chunk that somebody looks at is never written to: a
// CardSet is the library of one moment, for as long as it is held.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "library/CardBroadcasts.h"
#include "station/BrowseList.h"

namespace zemo {

class ByteReader;
class RowView;

inline constexpr int kHourMasks = 7;  // TRANCHE01 to 07, Monday first

struct PackedCard {
  static constexpr int32_t kNull = std::numeric_limits<int32_t>::min();
  static constexpr size_t kMostBytes = 1024;                 // of a text
  static constexpr uint32_t kNoBroadcast = 0;                // an empty text, or Null
  static constexpr uint32_t kOtherText = uint32_t{1} << 31;  // its number among CardTexts' others

  double lastdiff;    // -infinity for Null
  const char* texts;  // title, then file
  int32_t code, lengthMs, passes, exitMs, introSec;
  uint32_t artist, genre, variety, hours, days;  // numbers of CardTexts
  int16_t minutesGap, daysGap, artistGap;
  uint16_t titleBytes, fileBytes;
  bool odd;       // what the base would find by its genre or its hours cannot be told from here
  bool oddCells;  // the row reads otherwise than what was packed: CardTexts::OddCells
  std::array<uint32_t, kDiffusions> broadcasts;  // BroadcastMinute + 1, or as above
};

// Texts, each kept once and numbered from 0. Grows only.
class SharedTexts {
 public:
  uint32_t Number(std::string_view text);
  std::string_view Text(uint32_t number) const { return texts_[number]; }
  size_t Count() const { return texts_.size(); }

 private:
  std::deque<std::string> texts_;  // never moved
  std::unordered_map<std::string_view, uint32_t> numbers_;
};

// What packed cards only name by a number. Grows only, so that whoever holds cards finds their
// texts whatever is packed meanwhile. Thread: the logic's.
class CardTexts {
 public:
  // Columns of the query whose rows Pack takes, with the hours of one weekday (1 Monday to 7) or,
  // 0, of all.
  static std::string Columns(int weekday = 0);
  // `before` is the same card as it was packed here last, whose texts serve again; null: none.
  PackedCard Pack(const RowView& row, const PackedCard* before = nullptr, int weekday = 0);

  struct Artist {
    std::string spelling;  // as stored
    std::string listed;    // trimmed; "Code n" without one, and then of one card alone
    std::string capitals;  // of `listed`
    int32_t namelessCode;  // n of "Code n"; 0 with a name
  };
  struct Genre {
    std::string text;
    bool isText;  // Null and mere bytes are equal to no text
    bool isNull;
  };
  struct Days {  // MMJJDebut, MMJJFin
    std::string first, last;
    bool anyDay;  // no window
  };
  using Hours = std::array<std::string, kHourMasks>;

  const Artist& ArtistAt(uint32_t number) const { return artists_[number]; }
  // Place of the artist among all artists by their capitals; equal for equal capitals.
  uint32_t ArtistRank(uint32_t number) const;
  // Sorts the artists that came since the last time: a part of what the next ArtistRank has to do.
  void OrderArtists() const;
  const Genre& GenreAt(uint32_t number) const { return genres_[number]; }
  const Days& DaysAt(uint32_t number) const { return days_[number]; }
  const Hours& HoursAt(uint32_t number) const { return hours_[number]; }
  std::string_view VarietyAt(uint32_t number) const { return varieties_.Text(number); }
  size_t ArtistCount() const { return artists_.size(); }
  size_t GenreCount() const { return genres_.size(); }
  size_t HoursCount() const { return hours_.size(); }
  // Of a card with oddCells: a cell of its row in a list, as ListedCards has them.
  std::string_view OddCell(const PackedCard& card, int column) const;
  // The text of a broadcast, in `room` where it is not kept as a text.
  std::string_view Broadcast(uint32_t packed, DiffusionText& room) const;

  // Of titles, files and the cells of odd rows, those in use no more included.
  size_t Bytes() const { return blockBytes_ + oddRows_.Bytes(); }

  // For who keeps cards in a file: all texts but titles, files and the cells of odd rows, which
  // stand in another CardTexts under the same numbers again. Throws OddBytes.
  void WriteShared(std::string& bytes) const;
  void ReadShared(ByteReader& bytes);  // into one without texts
  // Titles and files of cards that come from elsewhere; they stay where they are put here.
  const char* TakeTexts(std::string_view texts);
  // The card names nothing that is not here.
  bool HasTextsOf(const PackedCard& card) const;

 private:
  uint32_t ArtistNumber(std::string_view spelling, int32_t code);
  uint32_t GenreNumber(std::string_view text, bool isText, bool isNull);
  uint32_t DaysNumber(std::string_view first, std::string_view last);
  uint32_t HoursNumber(const RowView& row, int weekday);
  uint32_t AddHours(Hours masks);
  char* Room(size_t bytes);
  static bool HasOddCells(const RowView& row, const PackedCard& card);
  void KeepOddCells(const RowView& row, const PackedCard& card);
  void KeepTexts(PackedCard& card, std::string_view title, std::string_view file,
                 const PackedCard* before);

  std::deque<Artist> artists_;
  std::unordered_map<std::string_view, uint32_t> artistsByName_;
  std::unordered_map<int32_t, uint32_t> namelessByCode_;
  mutable std::vector<uint32_t> artistOrder_;  // by capitals, those of the last OrderArtists
  mutable std::vector<uint32_t> artistRanks_;
  std::vector<Genre> genres_;
  std::vector<Days> days_;
  std::vector<Hours> hours_;
  std::unordered_map<std::string, uint32_t> genreNumbers_, daysNumbers_, hoursNumbers_;
  SharedTexts varieties_, others_;
  PackedRows oddRows_;  // their numbers stand behind the files of their cards
  std::string key_;     // of a look-up, kept for its room

  std::vector<std::unique_ptr<char[]>> blocks_;
  size_t blockUsed_ = 0, blockSize_ = 0;  // of the last block
  size_t blockBytes_ = 0;
};

inline std::string_view TitleOf(const PackedCard& card) {
  return {card.texts, card.titleBytes};
}
inline std::string_view FileOf(const PackedCard& card) {
  return {card.texts + card.titleBytes, card.fileBytes};
}

using CardChunk = std::vector<PackedCard>;

// The cards of one moment.
struct CardSet {
  std::vector<std::shared_ptr<const CardChunk>> chunks;
  std::shared_ptr<const CardTexts> texts;
};

// Null: none has that code. Valid as long as the set.
const PackedCard* FindCard(const CardSet& cards, int32_t code);

}  // namespace zemo
