// The window of the models as the program has it.
#pragma once

#include "scheduling/screens/ModelWindow.h"
#include "ui/WindowDesk.h"

namespace zemo {

using ModelDesk = WindowDesk<ModelWindow, ModelSources>;

}  // namespace zemo
