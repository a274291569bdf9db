// Keys that are held on the main screen: next, start and stop, and the shortcuts of the numeric
// pad.
#pragma once

namespace zemo {

struct Moment;
struct Station;

// The tick's step.
void ServeKeys(Station& station, const Moment& at);

}  // namespace zemo
