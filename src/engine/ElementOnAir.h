// What the tick reads of the element on air: its position and progress, the end of an extract, and
// the introduction with the jingle over it.
#pragma once

namespace zemo {

struct Moment;
struct Station;

// The tick's steps.
void ReadElementOnAir(Station& station);
void ServeExtractEnd(Station& station);
void ShowProgress(Station& station);
void CountIntro(Station& station, const Moment& at);
void ServeIntroOverlay(Station& station, const Moment& at);

}  // namespace zemo
