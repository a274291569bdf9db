// The sorting of many items in slices of a few milliseconds, with a pause behind each.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace zemo {

// Items of which neither comes before the other keep their order. `pause` may serve other events;
// they leave the items alone.
template <typename Item, typename Before, typename Pause>
void SortInSlices(std::vector<Item>& items, Before before, Pause pause) {
  constexpr size_t kRun = 8192;
  const size_t count = items.size();
  const auto at = [&](size_t place) {
    return items.begin() + static_cast<std::ptrdiff_t>(std::min(place, count));
  };
  for (size_t begin = 0; begin < count; begin += kRun) {
    if (begin > 0) pause();
    std::stable_sort(at(begin), at(begin + kRun), before);
  }
  for (size_t run = kRun; run < count; run *= 2)
    for (size_t begin = 0; begin + run < count; begin += 2 * run) {
      pause();
      std::inplace_merge(at(begin), at(begin + run), at(begin + 2 * run), before);
    }
}

}  // namespace zemo
