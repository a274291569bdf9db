// A sanitizer makes a test five to ten times as long, and looks at the program's memory and
// threads, for which some cases of a property serve as well as all.
#pragma once

#include <cstddef>
#include <vector>

namespace zemo::test {

#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
inline constexpr bool kUnderSanitizer = true;
#else
inline constexpr bool kUnderSanitizer = false;
#endif

// How many of a property's cases are gone through.
constexpr int Cases(int all) {
  return kUnderSanitizer ? (all + 9) / 10 : all;
}

// Those of a list of cases.
template <typename Case>
std::vector<Case> Cases(const std::vector<Case>& all) {
  std::vector<Case> some;
  for (size_t i = 0; i < all.size(); i += kUnderSanitizer ? 10 : 1) some.push_back(all[i]);
  return some;
}

}  // namespace zemo::test
