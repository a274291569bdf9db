// The members of an engine's event by their names.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "station/EngineEvents.h"

namespace zemo::bench {

inline std::string TextOf(const Event& event, std::string_view name) {
  for (const auto& [member, value] : event.members)
    if (member == name)
      if (const auto* text = std::get_if<std::string>(&value)) return *text;
  return {};
}

inline int64_t NumberOf(const Event& event, std::string_view name) {
  for (const auto& [member, value] : event.members) {
    if (member != name) continue;
    if (const auto* whole = std::get_if<int64_t>(&value)) return *whole;
    if (const auto* real = std::get_if<double>(&value)) return static_cast<int64_t>(*real);
  }
  return 0;
}

}  // namespace zemo::bench
