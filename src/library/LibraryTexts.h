// The texts of the library screen and of the sound file selector in the four languages, by the
// names of their controls: an element of a group by its number ("JourSem.1"), a head of a list by
// its column ("PLDisco.0"), the text beside a field by "For." and the field's name.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "station/LanguageTexts.h"

namespace zemo {

std::span<const Word> LibraryCaptions();
std::span<const Word> SelectorCaptions();

// Of one of the two tables; empty for a name that it does not hold.
std::string Caption(std::span<const Word> captions, std::string_view name, int langue);

}  // namespace zemo
