// Orders of a window that wait for a moment at which nothing on air waits for them.
#pragma once

#include <functional>

class QObject;

namespace zemo {

struct Station;

// Runs the order at the first free moment (engine/FreeMoment.h), at once where that is now. An
// order whose owner goes before is forgotten. Thread: the logic's.
void WhenFree(const Station& station, QObject* owner, std::function<void()> order);

}  // namespace zemo
