// What the library search knows of Discotheque: the rows as ListRech shows them, and the capitals
// in which a text is looked for. It is read in slices, each short enough to stand between two
// ticks.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "station/BrowseList.h"

namespace zemo {

class Database;

// Thread: the logic's. Rows are counted from 0, in table order.
class LibraryIndex {
 public:
  static constexpr int kSliceRows = 3000;  // 7 ms on the machines that we know

  explicit LibraryIndex(int64_t changeCounter) : changeCounter_(changeCounter) {}

  // Reads on, at most kSliceRows. Throws StoreError; what was read stays, and it can be called
  // again.
  void ReadSlice(Database& db);
  bool Complete() const { return complete_; }
  // The base's counter before the first slice: nothing that was stored until then is missing.
  int64_t ChangeCounter() const { return changeCounter_; }

  uint32_t Count() const { return rows_->Count(); }
  const std::shared_ptr<PackedRows>& Rows() const { return rows_; }
  // Artist and title joined, in capitals.
  std::string_view Capitals(uint32_t row) const;
  // As the dialect's LIKE: a card without a genre is like none.
  bool GenreIsLike(uint32_t row, std::string_view pattern) const;

 private:
  int64_t changeCounter_;
  bool complete_ = false;
  int64_t lastCode_ = 0;  // of the card read last
  std::shared_ptr<PackedRows> rows_ = std::make_shared<PackedRows>();
  std::string capitals_;               // of all rows, one behind the other
  std::vector<uint32_t> capitalsEnd_;  // of each row
  std::vector<bool> genreIsNull_;
};

}  // namespace zemo
