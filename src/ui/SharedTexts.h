// The words that windows share, in the four languages: buttons, kinds of breaks, print, calendar.
#pragma once

#include "ui/Translation.h"

namespace zemo {

WindowTexts SharedTexts();

}  // namespace zemo
