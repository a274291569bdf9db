#include <gtest/gtest.h>

#include <limits>

#include "scheduling/KeySort.h"

namespace zemo {
namespace {

TEST(KeySort, KeysStandInTheOrderOfTheirNumbers) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double reals[] = {-infinity, -2.5, -1, 0, 1e-300, 46000.25, infinity};
  for (size_t i = 1; i < std::size(reals); ++i)
    EXPECT_LT(SortKey(reals[i - 1]), SortKey(reals[i])) << reals[i];
  EXPECT_EQ(SortKey(-0.0), SortKey(0.0));
  const int64_t numbers[] = {std::numeric_limits<int64_t>::min(), -1, 0, 1,
                             std::numeric_limits<int64_t>::max()};
  for (size_t i = 1; i < std::size(numbers); ++i)
    EXPECT_LT(SortKey(numbers[i - 1]), SortKey(numbers[i])) << numbers[i];
}

void ExpectSortedStably(size_t count, int64_t spread) {
  Keyed<size_t> entries;
  for (size_t i = 0; i < count; ++i)
    entries.emplace_back(SortKey(static_cast<int64_t>(i * 7919 % 1009) * spread - spread), i);
  SortByKey(entries);
  ASSERT_EQ(entries.size(), count);
  for (size_t i = 1; i < count; ++i) {
    ASSERT_LE(entries[i - 1].first, entries[i].first);
    if (entries[i - 1].first == entries[i].first) {
      ASSERT_LT(entries[i - 1].second, entries[i].second);
    }
  }
}

TEST(KeySort, EqualKeysKeepTheirOrderInFewAndInManyEntries) {
  for (const size_t count : {size_t{0}, size_t{1}, size_t{300}, size_t{5000}})
    for (const int64_t spread : {int64_t{1}, int64_t{5000}, int64_t{1} << 50})
      ExpectSortedStably(count, spread);
}

}  // namespace
}  // namespace zemo
