// A program that crashed on air is there again with the element that sounded, at the place where
// it was, with the list behind it and the guards of what was done in that minute.
#pragma once

namespace zemo {

struct Station;

// The last step of a tick: once a second, where the engine runs and this program keeps it
// (KeptAir::wanted), the element that sounds, the place that is heard and the list go into
// "OnAir.Dat" of the machine folder. Waits for no disk.
void KeepAirPosition(Station& station);

// Ahead of the report's row of an element that has just begun (`begun` is its moment, a day
// serial): so that a crash on either side of that row neither loses nor doubles it.
void KeepAirBegin(Station& station, double begun);

// The engine was stopped in order: nothing is to be taken up.
void ForgetAirPosition(Station& station);

// At a start that goes on air by itself: what was kept up to ten seconds ago becomes the list, the
// element that sounded its first row. Where there is nothing of that age, or it cannot be read,
// the start is one as any other. Throws nothing.
void TakeUpAirPosition(Station& station);

}  // namespace zemo
