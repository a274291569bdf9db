// A script of orders for a simulation: read and checked as a whole before anything runs. Which
// orders there are, and with what arguments, stands in the one table of Script.cpp.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"

namespace zemo {

enum class Order {
  kStart,
  kStop,
  kNext,
  kKeyDown,
  kKeyUp,
  kMode,
  kRequest,
  kCompose,
  kLoad,
  kSave,
  kNew,
  kInsert,
  kInsertExtract,
  kMove,
  kDelete,
  kRightClick,
  kBreak,
  kPreview,
  kLocal,
  kCheck,
  kContact,
  kJoystick,
  kClipboard,
  kSql,
  kDrop,
  kRemove,
  kSet,
  kAnswer,
  kDump,
  kKill
};

std::string_view OrderWord(Order order);  // as it is written

struct ScriptOrder {
  int64_t atMs = 0;  // since the begin of the run
  int line = 0;      // of the script, from 1
  Order order = Order::kDump;
  // The words behind the order: arguments and chosen words, the fixed "at" of `break` left out.
  // Those that have to be numbers were checked to be.
  std::vector<std::string> arguments;

  bool Has(size_t index) const { return index < arguments.size(); }
  int Number(size_t index) const;  // 0 when absent
};

// A line that cannot be read; what() is "FILE:LINE: why".
struct ScriptError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The orders in the order of their lines, which is also the order of their moments. `begin` is the
// local time of the begin of the run; `fileName` stands in errors. Throws ScriptError.
std::vector<ScriptOrder> ParseScript(std::string_view text, const LocalDateTime& begin,
                                     const std::string& fileName);

}  // namespace zemo
