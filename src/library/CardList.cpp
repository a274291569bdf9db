#include "library/CardList.h"

#include <utility>

namespace zemo {

void CardList::Append(const Cells& cells, int32_t code) {
  order.push_back(texts.Count());
  selected.push_back(false);
  texts.Add(cells, code);
}

void CardList::Renew(size_t row, const Cells& cells) {
  const int32_t code = Code(row);
  order[row] = texts.Count();
  texts.Add(cells, code);
}

void CardList::Remove(size_t row) {
  const auto place = static_cast<std::ptrdiff_t>(row);
  order.erase(order.begin() + place);
  selected.erase(selected.begin() + place);
  ++generation;
}

void CardList::Show(CardList rows) {
  rows.visible = visible;
  rows.generation = generation + 1;
  *this = std::move(rows);
}

void CardList::Reorder(const std::vector<uint32_t>& places) {
  std::vector<uint32_t> newOrder;
  std::vector<bool> newSelected;
  newOrder.reserve(places.size());
  newSelected.reserve(places.size());
  for (const uint32_t place : places) {
    newOrder.push_back(order[place]);
    newSelected.push_back(selected[place]);
  }
  order = std::move(newOrder);
  selected = std::move(newSelected);
  ++generation;
}

}  // namespace zemo
