// How many cases of a property a test goes through. A sanitizer makes it five to ten times as long,
// and looks at the program's memory and threads, for which some serve as well as all; so they do
// where lines are counted, by a program that is not optimised.
#pragma once

#include <cstddef>
#include <vector>

namespace zemo::test {

#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__) || defined(ZEMO_COUNTS_LINES)
inline constexpr bool kSomeServe = true;
#else
inline constexpr bool kSomeServe = false;
#endif

// How many of a property's cases are gone through.
constexpr int Cases(int all) {
  return kSomeServe ? (all + 9) / 10 : all;
}

// Those of a list of cases.
template <typename Case>
std::vector<Case> Cases(const std::vector<Case>& all) {
  std::vector<Case> some;
  for (size_t i = 0; i < all.size(); i += kSomeServe ? 10 : 1) some.push_back(all[i]);
  return some;
}

}  // namespace zemo::test
