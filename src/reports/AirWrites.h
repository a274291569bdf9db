// What the air leaves in the base: report rows and the marks of what was played. What the base
// cannot take at its moment (locked, out of reach, disk full) is kept in its order, in memory and
// in a journal of the machine folder, and written as soon as it can be: no row is lost, not even
// with the power, and no transition waits. Thread: the logic's.
#pragma once

#include <string>

#include "station/AirWrite.h"

namespace zemo {

struct Station;

// At once; when the base cannot take it, logged under `write.where` and kept, in memory until the
// next slice puts it into the journal as well. Whatever is behind a
// kept write is kept too. A fault that waiting does not mend is logged and costs the row. Never
// throws StoreError.
void WriteOrKeep(Station& station, AirWrite write);

// "dd/mm/yyyy à hh:mm" of the row's moment, as a card keeps it.
std::string BroadcastText(const ReportRow& row);

// What an earlier run of this station had to leave in the journal is kept again, before all else.
void TakeUpKeptWrites(Station& station);

// Puts what is new into the journal, then writes the oldest of what is kept, a few in one
// transaction and without waiting for a lock; after a refusal not for five seconds. Run by the
// tick, away from the exit points: both wait for the disk.
void WriteKeptSlice(Station& station);

// What is new into the journal, and nothing into the base: for a program that ends at once.
void JournalKeptRows(Station& station);

// Before the base is closed: all that is kept. What the base does not take stays in the journal,
// and that is logged. False: it could not even be journalled, and is lost.
bool WriteKeptAtTheEnd(Station& station);

}  // namespace zemo
