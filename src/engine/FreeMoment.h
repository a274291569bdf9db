// When an order that may ask the operator, or that holds the tick for a while, may begin.
#pragma once

namespace zemo {

struct Station;

// No tick stands below on the stack: a question may be waited for.
bool NoTickBelow(const Station& station);
// The same, and no element is about to begin, which such an order would hold up.
bool IsFreeMoment(const Station& station);

}  // namespace zemo
