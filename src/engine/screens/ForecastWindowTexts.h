// The texts of the forecast in the four languages.
#pragma once

#include "ui/Translation.h"

namespace zemo {

WindowTexts ForecastWindowTexts();

}  // namespace zemo
