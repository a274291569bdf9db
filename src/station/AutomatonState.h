// What the engine remembers of the automaton's line between two ticks; see engine/AutomatonLine.h.
#pragma once

#include <array>
#include <string>

namespace zemo {

struct AutomatonState {
  bool asked = false;            // an "E" was sent and its answer is not whole
  int polls = 0;                 // since then
  std::string reply;             // what has come of the answer
  bool pollHeld = false;         // a relay command is being sent
  std::array<bool, 4> relays{};  // outputs, as last set
};

}  // namespace zemo
