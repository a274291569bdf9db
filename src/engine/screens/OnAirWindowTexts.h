// The texts of the on-air window in the four languages.
#pragma once

#include "ui/Translation.h"

namespace zemo {

WindowTexts OnAirWindowTexts();

}  // namespace zemo
