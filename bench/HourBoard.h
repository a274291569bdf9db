// What the processes of ServerHour tell each other: shared memory.
#pragma once

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "SlowLine.h"

namespace zemo::bench {

enum Machine { kAir, kProduction, kReporting };
inline constexpr int kMachines = 3;
inline constexpr std::array<const char*, kMachines> kMachineNames = {"air", "production", "report"};

enum HourTrouble { kKilled, kRestarted, kSlow, kFull, kCut, kSilent, kProgramKilled };
inline constexpr int kHourTroubles = 7;
inline constexpr std::array<const char*, kHourTroubles> kHourTroubleNames = {
    "server killed", "server restarted", "line slow",     "server's disk full",
    "lines cut",     "line silent",      "program killed"};

// How far the run is; each step is taken by the processes that it is about.
enum Step { kRuns, kQuiet, kAirEnds, kAllEnd };

// Figures in ms that one process adds and another one reads.
class SharedFigures {
 public:
  void Add(int64_t ms) {
    const int at = count_;
    if (at >= static_cast<int>(ms_.size())) return;
    ms_[static_cast<size_t>(at)] = static_cast<int32_t>(ms);
    count_ = at + 1;
  }
  std::vector<int32_t> Sorted() const {
    std::vector<int32_t> sorted(ms_.begin(), ms_.begin() + count_);
    std::sort(sorted.begin(), sorted.end());
    return sorted;
  }

 private:
  std::atomic<int> count_;
  std::array<int32_t, 20000> ms_;
};

struct HourBoard {
  LineBoard line;
  std::atomic<Step> step;
  std::atomic<int> trouble;        // of this moment; kHourTroubles: none
  std::atomic<int64_t> wellSince;  // by MonotonicMs; 0: the server is not well
  std::array<std::atomic<bool>, kMachines> reachable;
  std::array<std::atomic<int64_t>, kMachines> waiting, longestQueue;
  SharedFigures late;           // transitions
  std::atomic<int> beyond;      // of these beyond the bound
  std::atomic<int64_t> awayMs;  // longest absence of the air's loop
  std::atomic<int> elements;    // that went on air and were not the last ones before a kill
  SharedFigures seen;           // from a write on one machine to its sight on another one
  // Of the report's: run; with the server well, when each has to succeed; ended by a line;
  // otherwise.
  std::atomic<int> commands, well, failed, badly;
  std::atomic<int64_t> longestCommandMs;
  std::atomic<int> writes, refused;  // of production
};

inline HourBoard& MakeHourBoard() {
  void* memory =
      mmap(nullptr, sizeof(HourBoard), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::runtime_error("no shared memory");
  auto& board = *new (memory) HourBoard{};
  board.trouble = kHourTroubles;
  return board;
}

inline int64_t MonotonicMs() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

inline void KeepMost(std::atomic<int64_t>& most, int64_t value) {
  if (value > most) most = value;
}

}  // namespace zemo::bench
