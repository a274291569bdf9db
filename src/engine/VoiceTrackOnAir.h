// The voice track that speaks over the element on air.
#pragma once

namespace zemo {

struct Station;

// The tick's step: takes the track off the list, starts it at its position, between two ticks
// where that lies there, and lifts the music again behind it.
void ServeVoiceTrack(Station& station);

}  // namespace zemo
