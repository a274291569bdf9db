// What the library search goes over: the cards of the library in memory where they are known, and
// else cards read from the base in slices, each short enough to stand between two ticks.
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "library/ListedCards.h"

namespace zemo {

class Database;

// Thread: the logic's. Rows are counted from 0, in table order.
class LibraryIndex {
 public:
  static constexpr int kSliceRows = 2000;  // 7 ms on the machines that we know

  // Of cards that are all there.
  explicit LibraryIndex(CardSet cards)
      : rows_(std::make_shared<ListedCards>(std::move(cards))), complete_(true) {}
  // To be read. The base's counter of this moment: nothing that was stored until then is missing.
  explicit LibraryIndex(int64_t changeCounter);

  // Reads on, at most kSliceRows. Throws StoreError; what was read stays, and it can be called
  // again.
  void ReadSlice(Database& db);
  bool Complete() const { return complete_; }
  int64_t ChangeCounter() const { return changeCounter_; }

  uint32_t Count() const { return rows_->Count(); }
  const std::shared_ptr<ListedCards>& Rows() const { return rows_; }

 private:
  std::shared_ptr<CardTexts> texts_;  // of what is read
  std::shared_ptr<ListedCards> rows_;
  int64_t changeCounter_ = 0;
  bool complete_ = false;
  int64_t lastCode_ = std::numeric_limits<int64_t>::min();  // of the card read last
};

// One question asked of many rows of one index.
class LibraryQuestion {
 public:
  // A text that artist and title joined hold in capitals; empty: every card.
  static LibraryQuestion OfText(std::string capitals);
  // As the dialect's LIKE: a card without a genre is like none.
  static LibraryQuestion OfGenre(std::string pattern);

  bool IsOfGenre() const { return genre_; }
  // Of another index than the last time: what was found out of its texts is forgotten.
  void Forget() { answers_.clear(); }
  bool Wants(const LibraryIndex& index, uint32_t row);

 private:
  enum Answer : char { kUnknown, kYes, kNo };
  LibraryQuestion(bool genre, std::string wanted) : genre_(genre), wanted_(std::move(wanted)) {}
  Answer& AnswerOf(uint32_t text);
  bool GenreIsLike(const CardTexts& texts, const PackedCard& card);
  bool HoldsText(const CardTexts& texts, const PackedCard& card);

  bool genre_;
  std::string wanted_;
  std::vector<Answer> answers_;  // by the number of the genre or the artist
  std::string room_;
};

}  // namespace zemo
