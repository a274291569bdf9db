// The day's times, as their side files list them: start, stop, and topage, which hands the air
// over.
#pragma once

namespace zemo {

struct Moment;
struct Station;

// The tick's steps.
void LookForDayTimes(Station& station, const Moment& at);  // once more in a minute 00
void ServeTimedStart(Station& station, const Moment& at);
void ServeTopageTimes(Station& station, const Moment& at);
void ServeTimedStop(Station& station, Moment& at);  // one with "-F" ends the tick

}  // namespace zemo
