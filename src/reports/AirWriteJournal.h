// The kept writes of one station in the machine folder, as a file of fields, a record a line: the
// station's base, then each kept write, and how many of the oldest have been written since. A line
// that lost its end with the power does not count.
#pragma once

#include <deque>
#include <string>

#include "station/AirWrite.h"

namespace zemo {

struct Station;

// Throw FileError.
void JournalKept(Station& station, const std::deque<AirWrite>& kept, size_t from);  // from that on
void JournalWritten(Station& station, size_t oldest);
// The whole file anew; none where nothing is kept.
void JournalAnew(Station& station, const std::deque<AirWrite>& kept);

// What the file holds that is not written, as far as the file was told. `damaged`: lines that could
// not be read, and are passed over. Throws FileError, also for a file
// that is too large to be one.
std::deque<AirWrite> ReadJournal(Station& station, int& damaged);

// A file that cannot be read goes out of the way of a new one, under the name that is given back;
// empty where it cannot, or is not there. Throws nothing.
std::string SetJournalAside(Station& station);

std::string JournalName(const Station& station);

}  // namespace zemo
