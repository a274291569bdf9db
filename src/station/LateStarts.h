// How late elements began on air, counted since the start of the program, for whoever watches the
// station from outside.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace zemo {

struct LateStarts {
  // Upper bounds of the classes, seconds; the last class has none.
  static constexpr std::array kBoundsSec{0.05, 0.1, 0.15, 0.2, 0.5, 1.0, 2.0, 5.0, 20.0};
  std::array<uint64_t, kBoundsSec.size() + 1> counts{};
  double sumSec = 0;

  // Monotonic: when the element on air is at its exit point. None while nothing has to follow it.
  std::optional<int64_t> dueMs;

  void Count(double lateSec) {
    size_t at = 0;
    while (at < kBoundsSec.size() && lateSec > kBoundsSec[at]) ++at;
    ++counts[at];
    sumSec += lateSec;
  }
};

}  // namespace zemo
