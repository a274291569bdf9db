#include "station/BrowseList.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace zemo {

namespace {
constexpr size_t kBlockBytes = size_t{256} * 1024;
using Ends = std::array<uint32_t, kColumns>;
}  // namespace

char* PackedRows::Room(size_t bytes) {
  if (bytes > roomLeft_) {
    roomLeft_ = std::max(bytes, kBlockBytes);
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(roomLeft_));
    next_ = blocks_.back().get();
  }
  roomLeft_ -= bytes;
  return std::exchange(next_, next_ + bytes);
}

void PackedRows::Add(const Cells& cells, int32_t code) {
  Ends ends{};
  uint32_t end = 0;
  for (size_t column = 0; column < cells.size(); ++column)
    ends[column] = end += static_cast<uint32_t>(cells[column].size());
  char* room = Room(sizeof ends + end);
  std::memcpy(room, ends.data(), sizeof ends);
  char* at = room + sizeof ends;
  for (const std::string& cell : cells) at = std::copy(cell.begin(), cell.end(), at);
  rows_.push_back({room, code});
  bytes_ += sizeof ends + end;
}

std::string_view PackedRows::Cell(uint32_t row, int column) const {
  const char* texts = rows_[row].texts;
  Ends ends;
  std::memcpy(ends.data(), texts, sizeof ends);
  const uint32_t begin = column == 0 ? 0 : ends[static_cast<size_t>(column) - 1];
  return {texts + sizeof ends + begin, ends[static_cast<size_t>(column)] - begin};
}

BrowsedRows::BrowsedRows(const std::vector<BrowseRow>& rows) {
  auto packed = std::make_shared<PackedRows>();
  for (const BrowseRow& row : rows) {
    order_.push_back(packed->Count());
    packed->Add(row.cells, row.code);
  }
  rows_ = std::move(packed);
}

BrowsedRows& BrowsedRows::operator=(const BrowsedRows& other) {
  rows_ = other.rows_;
  order_ = other.order_;
  ++generation_;
  return *this;
}

BrowseRow BrowsedRows::operator[](size_t row) const {
  BrowseRow copy;
  for (int column = 0; column < kColumns; ++column)
    copy.cells[static_cast<size_t>(column)] = Cell(row, column);
  copy.code = Code(row);
  return copy;
}

void BrowsedRows::clear() {
  rows_.reset();
  order_.clear();
  ++generation_;
}

void BrowsedRows::Show(std::shared_ptr<const ListedRows> rows) {
  clear();
  rows_ = std::move(rows);
}

void BrowsedRows::Append(uint32_t row) {
  order_.push_back(row);
}

void BrowsedRows::Renew(std::shared_ptr<const ListedRows> rows, std::vector<uint32_t> order) {
  rows_ = std::move(rows);
  order_ = std::move(order);
}

void BrowsedRows::Reorder(const std::vector<uint32_t>& places) {
  std::vector<uint32_t> order;
  order.reserve(places.size());
  for (const uint32_t place : places) order.push_back(order_[place]);
  order_ = std::move(order);
  ++generation_;
}

}  // namespace zemo
