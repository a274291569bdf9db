// All that a test's station told and left behind, as one text, for the comparison of two builds
// (tests/traces/compare_traces.py). Nothing is recorded unless the environment names a folder in
// ZEMO_RECORDS.
#pragma once

#include <cstdint>
#include <string>

#include "station/EngineEvents.h"

namespace zemo::test {

class TestStation;

class StationRecord {
 public:
  StationRecord();
  bool On() const { return !folder_.empty(); }
  void Add(int64_t atMs, const Event& event);  // virtual ms since the begin
  // The events, then the state, the files of both folders and the rows of the base as they are now;
  // in a file of the running test's name. Call before the folders go.
  void Write(const TestStation& station);

 private:
  std::string folder_;  // empty: nothing is recorded
  std::string events_;
};

}  // namespace zemo::test
