// A script of orders for a simulation: read and checked as a whole before anything runs.
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "app/OrderForms.h"
#include "platform/Clock.h"

namespace zemo {

struct ScriptOrder {
  int64_t atMs = 0;  // since the begin of the run
  int line = 0;      // of the script, from 1
  GivenOrder given;
};

// A line that cannot be read; what() is "FILE:LINE: why".
struct ScriptError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The orders in the order of their lines, which is also the order of their moments. `begin` is the
// local time of the begin of the run; `fileName` stands in errors; `orders` are those that a line
// can give. Throws ScriptError.
std::vector<ScriptOrder> ParseScript(std::string_view text, const LocalDateTime& begin,
                                     const std::string& fileName, std::span<const Order> orders);

}  // namespace zemo
