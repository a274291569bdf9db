// A base file as of one moment, beside the programs that work on it.
#pragma once

#include <string>

namespace zemo {

// One consistent state of the file `from` into `to`, which it replaces. The file is held for
// reading for some milliseconds at a time, so that who writes in it meanwhile is not kept waiting.
// False when it cannot be read as a base as it stands, after a loss of power for example. Waits up
// to 5 s for a lock; throws std::runtime_error with one line where it is locked for longer.
bool BackUpBase(const std::string& from, const std::string& to);

}  // namespace zemo
