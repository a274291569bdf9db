// Makes up a short piece of music from a seed: key, tempo, chords, arpeggio, bass, drums and a
// tune.
#pragma once

#include <cstdint>

#include "app/demo/Voices.h"

namespace zemo {

// The character of a piece.
struct Manner {
  int tempoFrom = 90;  // beats a minute
  int tempoTo = 110;
  bool minor = false;
  int drums = 1;  // 0 none, 1 light, 2 full
  bool tune = true;
  bool fadesOut = false;  // else it ends on a chord that rings out
};

struct Piece {
  StereoBuffer sound;
  int introSec = 0;     // whole seconds before the tune begins; 0 without a tune
  int exitPointMs = 0;  // before the end: where the next element may begin
};

// The same seed gives the same piece. `lengthSec` is kept to the frame.
Piece Compose(uint64_t seed, const Manner& manner, double lengthSec);

}  // namespace zemo
