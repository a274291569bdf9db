// What a voice track was recorded between, and whether it still stands there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace zemo {

struct OnAirElement;
class OnAirList;

// Of its neighbours what the join hangs on, as their records had it. Paths as stored; an empty one:
// nothing stood there.
struct TrackNeighbours {
  std::string fileBefore, fileAfter;
  int64_t lengthBeforeMs = 0;
  int64_t exitBeforeMs = 0;  // exit point, before the end
  int64_t introAfterSec = 0;

  bool operator==(const TrackNeighbours&) const = default;
};
TrackNeighbours NeighboursOf(const OnAirElement* before, const OnAirElement* after);  // null: none

// The first that holds, from above.
enum class NeighbourFault {
  kNone,
  kOtherBefore,    // another element stands before the track, or none
  kChangedBefore,  // the same, of another length or with another exit point
  kOtherAfter,
  kChangedAfter  // the same, with another intro
};
inline constexpr size_t kNeighbourFaults = 5;
NeighbourFault FaultOfNeighbours(const TrackNeighbours& made, const TrackNeighbours& now);
// Of a row of the list, from 1; none for a row that is no voice track, and for a track of which is
// not known what it was made for. Before the first row stands what airs: nothing is said of it.
NeighbourFault FaultOfRow(const OnAirList& list, int row);

}  // namespace zemo
