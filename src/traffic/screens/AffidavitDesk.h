// The window of the affidavit as the program has it.
#pragma once

#include "traffic/screens/AffidavitWindow.h"
#include "ui/WindowDesk.h"

namespace zemo {

using AffidavitDesk = WindowDesk<AffidavitWindow, AffidavitSources>;

}  // namespace zemo
