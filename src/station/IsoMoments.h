// Days and moments as answers, logs of choices and other programs read them: sorted as text they
// are sorted by time. The station's own texts have other forms (TimeForms.h).
#pragma once

#include <string>

#include "platform/Clock.h"

namespace zemo {

std::string IsoDay(const LocalDateTime& moment);  // "YYYY-MM-DD"
// "YYYY-MM-DD hh:mm:ss"; with 'T' between day and time for programs.
std::string IsoMoment(const LocalDateTime& moment, char between = ' ');

}  // namespace zemo
