// What the tick reads of the element on air: its position and progress, the end of an extract, and
// the introduction with the jingle over it.
#pragma once

#include <cstdint>

namespace zemo {

struct EngineState;
struct Moment;
struct Station;

// The tick's steps.
void ReadElementOnAir(Station& station);
// An element begins to be heard: how far behind the exit point of the one before. Not counted are
// the first one, and one that the operator's hand or an extract's end has called.
void CountLateStart(Station& station);
void ServeExtractEnd(Station& station);
void CountProgress(Station& station);
void CountIntro(Station& station, const Moment& at);
void ServeIntroOverlay(Station& station, const Moment& at);

// Whole seconds of the introduction that have passed at that second of the day.
int32_t IntroElapsedSec(const EngineState& engine, float timer);

}  // namespace zemo
