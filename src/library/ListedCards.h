// Packed cards as the rows of a list: what the search finds stands in ListRech without a text of
// its own. A cell reads to the letter as the row of the base does.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "library/PackedCards.h"
#include "station/BrowseList.h"

namespace zemo {

// Thread: the logic's. Rows are counted from 0, in the order of the chunks.
class ListedCards final : public ListedRows {
 public:
  explicit ListedCards(CardSet cards);

  // Behind all others.
  void Add(std::shared_ptr<const CardChunk> cards);
  uint32_t Count() const { return ends_.empty() ? 0 : ends_.back(); }
  const PackedCard& At(uint32_t row) const;
  const CardTexts& Texts() const { return *cards_.texts; }
  // Artist, title, length, genre, variety, file, CODE, length in ms, exit point in ms, intro in
  // seconds, last play: as the rows of every list that is browsed.
  std::string CellText(uint32_t row, int column) const override;
  int32_t CodeOf(uint32_t row) const override { return At(row).code; }

 private:
  CardSet cards_;
  std::vector<uint32_t> ends_;  // of each chunk
};

}  // namespace zemo
