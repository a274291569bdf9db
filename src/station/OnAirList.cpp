#include "station/OnAirList.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zemo {

OnAirRow& OnAirList::Add(OnAirElement element) {
  return Insert(Count() + 1, std::move(element));
}

namespace {
// Where a row numbered so goes in: before that row, past the end at the end.
auto PlaceOf(std::vector<OnAirRow>& rows, int row) {
  return rows.begin() + std::clamp<std::ptrdiff_t>(row - 1, 0, std::ssize(rows));
}
}  // namespace

OnAirRow& OnAirList::Insert(int row, OnAirElement element) {
  return *rows_.insert(PlaceOf(rows_, row), OnAirRow{std::move(element), nextKey_++});
}

// In one go: hundreds of rows, each moving all behind it, would hold the air up.
void OnAirList::InsertAll(int row, std::vector<OnAirElement> elements) {
  std::vector<OnAirRow> added;
  added.reserve(elements.size());
  for (OnAirElement& one : elements) added.push_back({std::move(one), nextKey_++});
  rows_.insert(PlaceOf(rows_, row), std::make_move_iterator(added.begin()),
               std::make_move_iterator(added.end()));
}

void OnAirList::Remove(int row) {
  if (row >= 1 && row <= Count()) rows_.erase(rows_.begin() + (row - 1));
}

void OnAirList::TakeToAir(int64_t key) {
  constexpr size_t kKept = 64;
  Remove(RowOfKey(key));
  aired_.push_back(key);
  if (aired_.size() > kKept) aired_.erase(aired_.begin());
}

bool OnAirList::HasAired(int64_t key) const {
  return std::find(aired_.begin(), aired_.end(), key) != aired_.end();
}

void OnAirList::SwapElements(int row, int other) {
  std::swap(static_cast<OnAirElement&>(Row(row)), static_cast<OnAirElement&>(Row(other)));
}

std::vector<int32_t> OnAirList::Codes() const {
  std::vector<int32_t> codes;
  codes.reserve(rows_.size());
  for (const OnAirRow& row : rows_) codes.push_back(row.code);
  return codes;
}

int OnAirList::RowOfKey(int64_t key) const {
  const auto found = std::find_if(rows_.begin(), rows_.end(),
                                  [key](const OnAirRow& row) { return row.key == key; });
  return found == rows_.end() ? 0 : static_cast<int>(found - rows_.begin()) + 1;
}

}  // namespace zemo
