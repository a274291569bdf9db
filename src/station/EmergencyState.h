// What the emergency air remembers between two ticks; its only writer is engine/EmergencyAir.
#pragma once

#include <cstdint>
#include <deque>
#include <set>
#include <string>

namespace zemo {

struct EmergencyState {
  int64_t silentSinceMs = -1;     // monotonic; -1 while something sounds or nothing has to
  bool hadRows = false;           // the list had rows at the last silent tick ...
  bool rowsFailed = false;        // ... and they started nothing
  std::deque<std::string> round;  // names of the files still to play, the next one first
  int roundSize = 0;              // of all of the round
  int failed = 0;                 // files that did not play since the last one that did
  std::string last;               // the name that played last
  std::set<std::string> told;     // names whose fault is logged
  int64_t lookAgainMs = 0;        // monotonic: the folder is not looked at before
  int64_t listLookMs = 0;         // the same of what the list holds
  int64_t requestAgainMs = 0;     // the same of a request
};

}  // namespace zemo
