// The texts of the settings screen in the four languages, by the names of its controls: a tab by
// its number ("Config.0"), an option by its own ("PortCom.1"), the unit of a value by "Unit." and
// the unit of the settings' rows.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "station/LanguageTexts.h"

namespace zemo {

struct SettingsControl;

inline constexpr int kSettingsTabs = 9;

std::span<const Word> SettingsCaptions();
// What a setting does, by its control's name.
std::span<const Word> SettingsTips();

// Empty for a name that the table does not hold.
std::string SettingsCaption(std::string_view name, int langue);

// What the setting does, its unit and its default.
std::string SettingTip(const SettingsControl& control, int langue);

}  // namespace zemo
