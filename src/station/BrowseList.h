// ListRech, the browse list of the live mode: what it browses, its heads and its rows.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "station/OnAirColumns.h"

namespace zemo {

// The entries of MenuLive in their order.
enum class BrowseList { kMusic = 0, kJingles = 1, kSpots = 2, kOthers = 3, kToday = 4 };

struct BrowseRow {
  Cells cells;       // text and sub-items in the order of the list's query
  int32_t code = 0;  // CODE in the table that is browsed; 0: the row is no library record
};

// Rows that a list may show, counted from 0. What a row reads stays as it is.
class ListedRows {
 public:
  virtual ~ListedRows() = default;
  virtual std::string CellText(uint32_t row, int column) const = 0;
  virtual int32_t CodeOf(uint32_t row) const = 0;
};

// Texts of rows packed into a few blocks: a hundred thousand rows come and go without as many
// allocations. Rows are only added; they are counted from 0.
class PackedRows final : public ListedRows {
 public:
  void Add(const Cells& cells, int32_t code);
  uint32_t Count() const { return static_cast<uint32_t>(rows_.size()); }
  std::string_view Cell(uint32_t row, int column) const;  // valid as long as the object
  int32_t Code(uint32_t row) const { return rows_[row].code; }
  size_t Bytes() const { return bytes_; }  // of all cells
  std::string CellText(uint32_t row, int column) const override {
    return std::string(Cell(row, column));
  }
  int32_t CodeOf(uint32_t row) const override { return Code(row); }

 private:
  struct Place {
    const char* texts;  // where each cell ends, then the cells
    int32_t code;
  };
  char* Room(size_t bytes);

  std::vector<Place> rows_;
  std::vector<std::unique_ptr<char[]>> blocks_;
  size_t roomLeft_ = 0;  // of the last block
  size_t bytes_ = 0;
  char* next_ = nullptr;
};

// Which rows the list shows, in their order: numbers of rows that others may share.
class BrowsedRows {
 public:
  BrowsedRows() = default;
  // NOLINTNEXTLINE(google-explicit-constructor): a list is assigned like the rows that it is
  BrowsedRows(const std::vector<BrowseRow>& rows);
  BrowsedRows(std::initializer_list<BrowseRow> rows) : BrowsedRows(std::vector(rows)) {}
  BrowsedRows(const BrowsedRows&) = default;
  BrowsedRows& operator=(const BrowsedRows& other);

  size_t size() const { return order_.size(); }
  bool empty() const { return order_.empty(); }
  std::string Cell(size_t row, int column) const { return rows_->CellText(order_[row], column); }
  int32_t Code(size_t row) const { return rows_->CodeOf(order_[row]); }
  BrowseRow operator[](size_t row) const;

  // Counts up when there are other rows, or the same in another order; not when rows come at the
  // end. A view that follows the list looks at it.
  uint64_t Generation() const { return generation_; }

  void clear();
  void Show(std::shared_ptr<const ListedRows> rows);  // none of them so far
  void Append(uint32_t row);                          // of those that were given to Show
  // The same rows as they read now: as many, each of the same record.
  void Renew(std::shared_ptr<const ListedRows> rows, std::vector<uint32_t> order);
  void Reorder(const std::vector<uint32_t>& places);  // where each row stood

 private:
  std::shared_ptr<const ListedRows> rows_;
  std::vector<uint32_t> order_;
  uint64_t generation_ = 0;
};

// Thread: the logic's. Writers: MenuLive, the library search, the heads.
struct BrowseRows {
  BrowseList list = BrowseList::kMusic;
  std::array<std::string, kColumns> titles;  // heads; an empty one has no text
  std::array<int, kColumns> widths{};        // in 1/15 of a pixel at 96 dots an inch; 0: hidden
  BrowsedRows rows;
  bool sorted = false;  // ascending by sortColumn; a search for a text ends it
  int sortColumn = 0;
};

}  // namespace zemo
