// Whether a file that somebody dropped can be a station's base.
#pragma once

#include <string>

namespace zemo {

// Empty when the file is a whole database with every field of the thirteen tables, the settings in
// their order. Else what is wrong, one line that begins with its name. It is only read, without a
// lock and without a file of ours beside it: nobody may be at work on it. Throws nothing.
std::string WhyNoStationBase(const std::string& path);

}  // namespace zemo
