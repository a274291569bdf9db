// The texts of the skeleton dialogue in the four languages.
#pragma once

#include "ui/Translation.h"

namespace zemo {

WindowTexts SkeletonWindowTexts();

}  // namespace zemo
