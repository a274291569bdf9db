// Line parameters as technicians write them: "4800,N,8,1".
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zemo {

enum class Parity { kNone, kEven, kOdd, kMark, kSpace };
enum class StopBits { kOne, kOneAndHalf, kTwo };

struct LineParameters {
  int32_t baud = 4800;
  Parity parity = Parity::kNone;
  int dataBits = 8;  // 5 to 8
  StopBits stopBits = StopBits::kOne;
  bool operator==(const LineParameters&) const = default;
};

// Four fields between commas, blanks around them and the case of the letter of no matter. Nothing
// where one of them is none.
std::optional<LineParameters> ParseLineSetting(std::string_view setting);

}  // namespace zemo
