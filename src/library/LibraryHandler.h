// The error boundary of the controls of the library screen and of the selector.
#pragma once

#include <exception>
#include <string>

#include "station/Station.h"

namespace zemo {

// Runs what a control does, with the settings as they are stored now; a fault is logged under its
// name.
template <typename Work>
void HandleControl(Station& station, const std::string& routine, Work work) {
  try {
    station.base.CheckCnf();
    work();
  } catch (const std::exception&) {
    LogCurrentException(station, routine);
  }
}

}  // namespace zemo
