#include "station/OnAirList.h"

#include <algorithm>
#include <utility>

#include "station/TextForms.h"

namespace zemo {

int32_t OnAirRow::Code() const {
  return static_cast<int32_t>(Val((*this)[Col::kCode]));
}
double OnAirRow::LengthMs() const {
  return Val((*this)[Col::kLengthMs]);
}
double OnAirRow::ExitMs() const {
  return Val((*this)[Col::kExitMs]);
}

OnAirRow& OnAirList::Add(Cells cells) {
  return Insert(Count() + 1, std::move(cells));
}

OnAirRow& OnAirList::Insert(int row, Cells cells) {
  auto at = row > Count() ? rows_.end() : rows_.begin() + (row < 1 ? 0 : row - 1);
  return *rows_.insert(at, OnAirRow{std::move(cells), nextKey_++});
}

void OnAirList::Remove(int row) {
  if (row >= 1 && row <= Count()) rows_.erase(rows_.begin() + (row - 1));
}

std::vector<int32_t> OnAirList::Codes() const {
  std::vector<int32_t> codes;
  codes.reserve(rows_.size());
  for (const OnAirRow& row : rows_) codes.push_back(row.Code());
  return codes;
}

int OnAirList::RowOfKey(int64_t key) const {
  const auto found = std::find_if(rows_.begin(), rows_.end(),
                                  [key](const OnAirRow& row) { return row.key == key; });
  return found == rows_.end() ? 0 : static_cast<int>(found - rows_.begin()) + 1;
}

}  // namespace zemo
