// The request along a skeleton: the positions of the hour, each with its genre, are filled in turn
// and over and over until the minutes are reached.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "scheduling/CandidatePool.h"

namespace zemo {

struct Station;
class RequestFrame;

// As RequestMusic, which alone calls it and has prepared the rules. Never throws.
void RequestAlongSkeleton(Station& station, int16_t& minutes);

// The longest runs of titles of the "NAT" and of the "INT" varieties.
struct Alternation {
  int32_t mostNat = 1;
  int32_t mostInt = 1;
};

// A twentieth of the first and of the last variety's POURCENT, to the nearest even; 0 becomes 1.
// Throws StoreError where there is no variety.
Alternation ReadAlternation(Station& station);

// Lays candidates along the genres (one a position; blank: no title there), pass after pass, until
// they make more than that many minutes or four seconds are gone. Titles taken leave the pool.
// Yields.
void LayAlongSkeleton(Station& station, RequestFrame& frame, const CandidateCards& cards,
                      Pool& pool, const std::vector<std::string>& positions, int minutes,
                      const std::optional<Alternation>& alternation);

}  // namespace zemo
