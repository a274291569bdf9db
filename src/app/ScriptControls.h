// The controls that the order `check` of a script can name.
#pragma once

#include <string_view>

namespace zemo {

// Whether a screen has a check box or check menu of that name, without regard to case. Whether the
// screen is part of this build is told when the order is served.
bool IsCheckControl(std::string_view name);

}  // namespace zemo
