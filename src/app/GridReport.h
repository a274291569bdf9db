// A day's breaks as they would air: what stands in each, and what will go wrong with it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zemo {

struct Station;

struct GridElement {
  enum class State { kGood, kMissing, kUnreadable };
  std::string advertiser;
  std::string file;  // stored path
  int32_t lengthMs = 0;
  State state = State::kGood;
};

struct GridGap {
  bool pip = false;    // to the hour pip, else to the next break
  std::string moment;  // "hh:mm" of what comes next
  int32_t seconds = 0;
};

struct PlannedBreak {
  std::string moment, type;  // "hh:mm"; "Pubs" or "Rubriques"
  int64_t lengthMs = 0;      // of its elements
  double airSec = 0;         // with its jingles, each element running into the next
  std::vector<GridElement> elements;
  std::vector<std::string> notAired;  // advertisers behind the 47th element
  std::optional<GridGap> tooLongFor;  // what it would run into
};

struct CompositionTold {
  int64_t spots = 0, news = 0;
  bool composed = false;
  std::vector<std::string> faults;
};

// Composes the grid of the station's day. Nobody else hears the events of it. Thread: the logic's.
CompositionTold ComposeAndListen(Station& station);

// The breaks of GPubJour as it was composed. Throws StoreError. Thread: the logic's.
std::vector<PlannedBreak> ReadPlannedBreaks(Station& station);

}  // namespace zemo
