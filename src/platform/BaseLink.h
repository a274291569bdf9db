// How the way to the server stands, where the station's base is on one and this program works on a
// replica of it.
#pragma once

#include <cstdint>

namespace zemo {

struct BaseLinkState {
  bool reachable = false;  // the server answers, and has the replica up to date
  bool onlyReads = false;  // its role may write nothing
  int64_t waiting = 0;     // writes of this machine that the server has still to take
};

// Thread: the logic's. Nothing here waits.
class BaseLink {
 public:
  virtual ~BaseLink() = default;
  virtual BaseLinkState State() const = 0;
  // The machine goes on air: its report is to go on behind what another one has written.
  virtual void GoesOnAir() = 0;
};

}  // namespace zemo
