// Which breaks of the day's grid are due: on air, and while the engine is stopped.
#pragma once

namespace zemo {

struct Moment;
struct Station;

// The tick's step: puts the break of this minute into the list.
void ServeBreaks(Station& station, const Moment& at);

// A break whose minute comes while the engine is stopped is prepared for the local programme.
void PrepareLocalProgramme(Station& station, const Moment& at);

}  // namespace zemo
