// The hour pip: found for the coming hour, laid over the music or queued at the head of the list.
#pragma once

#include <string>

namespace zemo {

struct LocalDateTime;
struct Station;

struct Pip {
  std::string file;  // stored path; empty: no pip
  bool overMusic = false;
};

// The pip of the hour after `now`; none while a dated list suppresses pips.
Pip FindPip(Station& station, const LocalDateTime& now);

// The tick's step: announces, queues, cuts or lays the pip over, and lifts the music again after
// it.
void ServeHourPip(Station& station, const LocalDateTime& now);

}  // namespace zemo
