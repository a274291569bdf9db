// The window of the report as the program has it.
#pragma once

#include "reports/screens/ReportWindow.h"
#include "ui/WindowDesk.h"

namespace zemo {

using ReportDesk = WindowDesk<ReportWindow, ReportSources>;

}  // namespace zemo
