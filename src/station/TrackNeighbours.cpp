#include "station/TrackNeighbours.h"

#include "station/OnAirList.h"

namespace zemo {

TrackNeighbours NeighboursOf(const OnAirElement* before, const OnAirElement* after) {
  TrackNeighbours neighbours;
  if (before) {
    neighbours.fileBefore = before->file;
    neighbours.lengthBeforeMs = before->lengthMs.value_or(0);
    neighbours.exitBeforeMs = before->exitMs.value_or(0);
  }
  if (after) {
    neighbours.fileAfter = after->file;
    neighbours.introAfterSec = after->introSec.value_or(0);
  }
  return neighbours;
}

NeighbourFault FaultOfNeighbours(const TrackNeighbours& made, const TrackNeighbours& now) {
  if (now.fileBefore != made.fileBefore) return NeighbourFault::kOtherBefore;
  if (now.lengthBeforeMs != made.lengthBeforeMs || now.exitBeforeMs != made.exitBeforeMs)
    return NeighbourFault::kChangedBefore;
  if (now.fileAfter != made.fileAfter) return NeighbourFault::kOtherAfter;
  if (now.introAfterSec != made.introAfterSec) return NeighbourFault::kChangedAfter;
  return NeighbourFault::kNone;
}

NeighbourFault FaultOfRow(const OnAirList& list, int row) {
  const auto& made = list.Row(row).madeFor;
  if (!made) return NeighbourFault::kNone;
  TrackNeighbours now = NeighboursOf(row > 1 ? &list.Row(row - 1) : nullptr,
                                     row < list.Count() ? &list.Row(row + 1) : nullptr);
  if (row == 1) {
    now.fileBefore = made->fileBefore;
    now.lengthBeforeMs = made->lengthBeforeMs;
    now.exitBeforeMs = made->exitBeforeMs;
  }
  return FaultOfNeighbours(*made, now);
}

}  // namespace zemo
