// The window of the campaigns as the program has it.
#pragma once

#include "traffic/screens/CampaignWindow.h"
#include "ui/WindowDesk.h"

namespace zemo {

using CampaignDesk = WindowDesk<CampaignWindow, CampaignSources>;

}  // namespace zemo
