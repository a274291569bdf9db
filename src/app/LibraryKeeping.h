// Keeps the library in memory over a restart, as a run of the program on air has it: taken up from
// the machine's file before the first request asks for it, written again when much of it has
// changed.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "library/KeptLibrary.h"
#include "platform/EventLoop.h"

namespace zemo {

struct Station;

// Thread: the logic's. The station outlives it.
class LibraryKeeping {
 public:
  // Takes up what the file has: some 25 ms of 100,000 cards.
  explicit LibraryKeeping(Station& station);

 private:
  void Look();
  void WritePiece();

  Station& station_;
  std::vector<CardsPage> kept_;  // the pages of the file; none without one
  bool lookedAgain_ = false;
  std::optional<KeptLibraryWriter> writer_;  // while the file is being written
  int64_t restsUntilMs_ = 0;                 // Clock::MonotonicMs, behind a fault
  const std::unique_ptr<LoopTimer> look_, piece_;
};

}  // namespace zemo
