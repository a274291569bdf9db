// The life-cycle of the main on-air screen: load, first activation, closing.
#pragma once

namespace zemo {

struct Station;

namespace OnAir {

// Opens the base, sets everything up and enables MainTimer. False when the program must end (a
// screen that is too small; the operator has been told). Throws StoreError when the base cannot be
// opened.
bool Form_Load(Station& station);

// Every activation of the screen; the first one chooses the outputs, composes the day's grid and
// resumes playing when the machine was on air.
void Form_Activate(Station& station, bool first);

// The window's closing: true when the program may end now (the engine is stopped; EndInOrder has
// run).
bool Form_QueryUnload(Station& station);

}  // namespace OnAir

// The base could be opened again while the machine is at work: what it knows of it by heart, and,
// for a start that had to go without it, what is read of it once.
void TakeUpOpenedBase(Station& station);

// Orderly exit; nothing while the engine runs. True when it was carried out.
bool EndInOrder(Station& station);

}  // namespace zemo
