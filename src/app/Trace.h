// The trace of a run: every event of the engine as one JSON line,
// {"at":...,"event":...,members...}.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "station/EngineEvents.h"

namespace zemo {

class Clock;
struct LocalDateTime;

// One event as its line, without the line's end. Members keep their order; whole numbers have no
// point, others all the digits that they need to come back the same; bytes that are no UTF-8 become
// U+FFFD.
std::string TraceLine(const Event& event, std::string_view at);
std::string TraceMoment(const LocalDateTime& moment);  // "YYYY-MM-DDThh:mm:ss.mmm"

// Paths and what is told in their place.
using ShownPaths = std::vector<std::pair<std::string, std::string>>;
std::string WithShownPaths(std::string text, const ShownPaths& paths);

// Thread: the logic's.
class Trace : public EventSink {
 public:
  // Makes or empties the file; "-" is standard output. The clock is not owned. Throws
  // std::runtime_error with one line.
  Trace(const std::string& path, const Clock& clock);
  ~Trace() override;  // writes what is left; an error there is lost
  Trace(const Trace&) = delete;
  Trace& operator=(const Trace&) = delete;

  // From now on these paths stand in the trace as others.
  void ShowPathsAs(ShownPaths paths);

  // Never throws: what cannot be written is told by Flush, and the run goes on without its trace.
  void OnEvent(const Event& event) override;
  // Writes what is left. Throws std::runtime_error when lines were lost, now or before, but for a
  // reader that left: it wanted no more.
  void Flush();

  // Called once, when the reader has left. Not empty.
  std::function<void()> readerLeft = [] {};

 private:
  void WriteOut();

  std::string path_;
  const Clock& clock_;
  int file_ = -1;
  std::string buffer_;
  ShownPaths paths_;   // as they stand inside JSON texts
  std::string error_;  // why lines were lost; empty when none was
  bool hasReader_ = true;
};

}  // namespace zemo
