// Two tests that cards of music and jingles share: the hours of the week at which a card may play,
// as a condition of a query, and the days of the year, as a test of one card.
#pragma once

#include <string>
#include <string_view>

#include "platform/Clock.h"
#include "store/BoundQuery.h"

namespace zemo {

struct Station;

// The condition that the card's hour mask of that weekday (1 is Monday) holds "1" at that hour
// (0 to 23): " And Tranche05 LIKE ?" with '??1*' for Friday, 2 h.
BoundQuery HourFilter(int weekday, int hour);
BoundQuery HourFilterOfNow(Station& station);  // through CurrentHour

// Whether a card with these first and last days ("MMDD") may play today. One of them blank is no
// window; the days are compared as texts, so that a window over New Year lets nothing through.
bool InDateWindow(std::string_view mmjjDebut, std::string_view mmjjFin, std::string_view mmjjToday);
std::string MonthDay(const LocalDateTime& today);  // "MMDD"

}  // namespace zemo
