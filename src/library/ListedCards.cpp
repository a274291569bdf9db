#include "library/ListedCards.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

std::string NumberCell(int32_t packed) {
  return packed == PackedCard::kNull ? std::string() : std::to_string(packed);
}

}  // namespace

ListedCards::ListedCards(CardSet cards) : cards_{{}, std::move(cards.texts)} {
  for (auto& chunk : cards.chunks) Add(std::move(chunk));
}

void ListedCards::Add(std::shared_ptr<const CardChunk> cards) {
  if (cards->empty()) return;
  ends_.push_back(Count() + static_cast<uint32_t>(cards->size()));
  cards_.chunks.push_back(std::move(cards));
}

const PackedCard& ListedCards::At(uint32_t row) const {
  const auto chunk =
      static_cast<size_t>(std::upper_bound(ends_.begin(), ends_.end(), row) - ends_.begin());
  return (*cards_.chunks[chunk])[row - (chunk == 0 ? 0 : ends_[chunk - 1])];
}

std::string ListedCards::CellText(uint32_t row, int column) const {
  const PackedCard& card = At(row);
  const CardTexts& texts = Texts();
  if (card.oddCells) return std::string(texts.OddCell(card, column));
  const int32_t lengthMs = card.lengthMs == PackedCard::kNull ? 0 : card.lengthMs;
  switch (column) {
    case 0:
      return texts.ArtistAt(card.artist).spelling;
    case 1:
      return std::string(TitleOf(card));
    case 2:
      return FormatDuration(lengthMs);
    case 3:
      return texts.GenreAt(card.genre).text;
    case 4:
      return std::string(texts.VarietyAt(card.variety));
    case 5:
      return std::string(FileOf(card));
    case 6:
      return std::to_string(card.code);
    case 7:
      return std::to_string(lengthMs);
    case 8:
      return NumberCell(card.exitMs);
    case 9:
      return NumberCell(card.introSec);
    case 10:
      return LastPlayedText(std::isinf(card.lastdiff) ? 0 : card.lastdiff);
    default:
      return {};
  }
}

}  // namespace zemo
