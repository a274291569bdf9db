// What a new day and a new hour change in automatic mode, and what a clock that jumps does.
#pragma once

namespace zemo {

struct Moment;
struct Station;

// The tick's steps.
void ServeDayChange(Station& station, const Moment& at);
void ServeNewHour(Station& station, const Moment& at);

}  // namespace zemo
