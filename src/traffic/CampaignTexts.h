// The texts of the campaign editor in the four languages, by the names of its controls: a head of
// the overview by its column ("PLPub.0"), an option by its number ("OptPub.0"), the text beside a
// field by "For." and the field's name. What it tells and asks: traffic/CampaignMessages.h.
#pragma once

#include <span>

#include "station/LanguageTexts.h"

namespace zemo {

std::span<const Word> CampaignCaptions();

}  // namespace zemo
