// The hour's break put in the list ahead of its minute, where the end-of-hour fitting wants it.
#pragma once

namespace zemo {

struct OnAirRow;
struct Station;

enum class BreakForm {
  kInstrumental,  // at the first row that starts at or after the break's moment
  kSpotsByPip     // as late as the block still ends before the pip, whatever its moment says
};

// Next hour on the clock, 0 behind 23: all reckoning of the fitting with a break aims at its begin.
int HourOfPip(const Station& station);

// Places the break of the present hour that is still to come and marks the hour's block as handled,
// so that the tick does not fire it again. False when the hour has none left.
bool PlaceHourBreak(Station& station, BreakForm form);

}  // namespace zemo
