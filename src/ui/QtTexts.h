// Texts of Qt's own dialogues and menus that its translations lack or say badly, in the four
// languages.
#pragma once

#include <string_view>

#include "station/LanguageTexts.h"

namespace zemo {

// By Qt's English text and the class that shows it; a null pointer leaves it to Qt's translations,
// and what they lack to Qt.
const char* QtText(std::string_view context, std::string_view source, int langue);

}  // namespace zemo
