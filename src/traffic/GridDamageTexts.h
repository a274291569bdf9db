// What is wrong with a campaign's grid file, in the words of whoever sits before the screen.
#pragma once

#include <string>

namespace zemo {

// `damage` as CampaignForm has it; as it is where it is none of its texts.
std::string ShownDamage(const std::string& damage, int langue);

}  // namespace zemo
