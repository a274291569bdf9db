// The texts of the model editor in the four languages, by the names of its controls: a day's button
// by its number ("JourSemaine.1"), a head of a list by its column ("Stats.0").
#pragma once

#include <span>

#include "station/LanguageTexts.h"

namespace zemo {

std::span<const Word> ModelCaptions();

}  // namespace zemo
