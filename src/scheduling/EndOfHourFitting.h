// End-of-hour fitting: reorders the list so that it closes on the pip. One run an hour;
// FittingActive is the latch, cleared by the tick before the minute HOptimise.
#pragma once

#include <cstdint>
#include <optional>

namespace zemo {

struct Station;

// The three forms, one of which the tick calls. An empty list leaves the latch open. Errors are
// logged (names: docs/glossary.md) and leave the list with all its music.
void FitHour(Station& station);                   // the plain form
void FitHourWithInstrumentals(Station& station);  // with instrumental titles
void FitHourWithBreakAtPip(Station& station);     // spots set against the pip

// One round of the plain form: brings the chain of rows with the smallest running time to the
// front. That running time, ms, is the score, 0 for an empty list. Nothing after an error, which
// leaves the list as it was.
std::optional<int32_t> BringBestChainForward(Station& station);

}  // namespace zemo
