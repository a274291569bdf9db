// The window of the models as the program has it. Whoever holds this opens it.
#pragma once

#include <memory>

#include "scheduling/screens/ModelWindow.h"

namespace zemo {

// Thread: the logic's. The station outlives it; it outlives the loop in which its window works.
class ModelDesk {
 public:
  ModelDesk(Station& station, ModelSources sources);

  void Open();   // as the menu does; brings it forward where it is open
  bool Leave();  // ahead of the station's end; false while the window may not be left
  ModelWindow* Window() { return window_.get(); }  // null before the first opening

 private:
  Station& station_;
  ModelSources sources_;
  std::unique_ptr<ModelWindow> window_;
};

}  // namespace zemo
