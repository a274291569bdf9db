// What the requests of a simulation saw, beside its trace: the choices that on air go to the
// machine folder, all of them, and the rows of the report that they led to.
#pragma once

#include <fstream>
#include <string>

#include "station/EngineEvents.h"

namespace zemo {

// JSON lines in the order of the run: a request as scheduling/ChoiceLog.h tells it, and a row of
// the report as {"report": CODE, "artist", "title", "genre", "date", "time", "moment" (day
// serial)}. Stands between the engine and the trace. Thread: the logic's.
class ChoicesFile : public EventSink {
 public:
  // Makes or empties the file. `trace` hears every event and is not owned. Throws
  // std::runtime_error with one line.
  ChoicesFile(std::string path, EventSink& trace);

  void OnEvent(const Event& event) override;
  void KeepRequest(const std::string& line);
  // Writes what is left. Throws std::runtime_error when lines were lost, now or before.
  void Flush();

 private:
  std::string path_;
  EventSink& trace_;
  std::ofstream file_;
};

}  // namespace zemo
