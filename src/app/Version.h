// The version of the program, as `--version` tells it.
#pragma once

namespace zemo {

extern const char* const kVersion;

}  // namespace zemo
