// The wire protocol of the automaton: "E" asks, "E" and a byte answer; "S" and a byte set relays.
#pragma once

#include <cstdint>
#include <optional>

namespace zemo {

struct Station;

// Asks for the contacts, unless an answer is still awaited: at most one "E" is on its way, so that
// answers never pile up on the line. Throws SerialError.
void AskContacts(Station& station);

// What has been answered since the last call: bit i is contact i. Nothing while the answer is not
// whole, and where it is none: more than two characters, or others. An answer that does not come
// within five polls is given up. Throws SerialError.
std::optional<uint8_t> TakeContacts(Station& station);

}  // namespace zemo
