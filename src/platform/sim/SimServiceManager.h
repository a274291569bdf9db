// A service manager that only keeps what it was told.
#pragma once

#include "platform/ServiceManager.h"

namespace zemo {

class SimServiceManager : public ServiceManager {
 public:
  void Ready() override { ready = true; }
  void Alive() override { ++turns; }
  void Stopping() override { stopping = true; }

  bool ready = false, stopping = false;
  int turns = 0;  // of the tick
};

}  // namespace zemo
