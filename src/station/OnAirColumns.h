// The twelve columns in which the on-air list is shown, traced and written to side files.
#pragma once

#include <array>
#include <string>

#include "station/OnAirElement.h"

namespace zemo {

namespace Col {
enum Column : int {
  kTitle = 0,
  kSecond = 1,
  kLength = 2,  // "mm:ss"
  kGenre = 3,
  kVariety = 4,
  kFile = 5,
  kCode = 6,
  kPlanned = 7,  // "hh h mm ' ss"
  kLengthMs = 8,
  kExitMs = 9,
  kIntro = 10,      // seconds; of a voice track its begin in the element before, ms
  kLastPlayed = 11  // "yyyy/mm/dd  hh:mm:ss"
};
}  // namespace Col

inline constexpr int kColumns = 12;
using Cells = std::array<std::string, kColumns>;

std::string ColumnText(const OnAirElement& element, int column);  // 0 to 11
Cells ColumnsOf(const OnAirElement& element);

}  // namespace zemo
