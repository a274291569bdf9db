// The control socket of a run on air, with all that it tells.
#pragma once

#include <functional>

#include "app/ControlServer.h"
#include "app/ControlSources.h"
#include "app/ControlWords.h"

namespace zemo {

struct RunFolders;

// Thread: the logic's. The station outlives it.
class ControlOnAir {
 public:
  // Where no socket can be made the log has a line, and the air goes on without.
  ControlOnAir(Station& station, const RunFolders& folders, std::function<SoundHealth()> output);

  EventSink& Events() { return server_; }

 private:
  FreeSpace space_;
  JsonWords words_;
  ControlServer server_;
};

}  // namespace zemo
