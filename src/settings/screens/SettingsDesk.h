// The settings' window as the program has it.
#pragma once

#include "settings/screens/SettingsWindow.h"
#include "ui/WindowDesk.h"

namespace zemo {

using SettingsDesk = WindowDesk<SettingsWindow, SettingsSources>;

}  // namespace zemo
