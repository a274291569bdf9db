// Writes that the base could not take at their moment (locked by another process, disk full): kept
// in their order and written as soon as it can, so that no report row is lost and no transition
// waits.
#pragma once

#include <functional>
#include <string>

namespace zemo {

struct Station;

// Runs `write` now, with a short wait for a lock; when the base cannot take it, logs under `where`,
// with `detail` behind the fault's own text, and keeps it. Whatever is behind a kept write is kept
// too. A fault that waiting does not mend is logged and costs the row. Never throws StoreError.
void WriteOrKeep(Station& station, const std::string& where, std::function<void(Station&)> write,
                 const std::string& detail = {});

// Tries what is kept again, at most every 5 s and without waiting for a lock; run by the tick.
void WriteKeptRows(Station& station);

// The last try, before the base is closed: waits for a lock, and logs what is given up.
void WriteKeptRowsAtTheEnd(Station& station);

}  // namespace zemo
