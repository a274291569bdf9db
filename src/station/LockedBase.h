// Faults that pass: another process has the base for a moment.
#pragma once

#include <exception>

namespace zemo {

bool IsOfLockedBase(const std::exception& fault);  // what failed may be tried again

}  // namespace zemo
