// Date and time in the forms that the station uses: seconds since midnight, day serials, texts.
// Dates are those of the Gregorian calendar, years 1 to 9999; nothing here throws or knows the
// locale. Every function takes the moment that its caller read from the Clock, so that a handler
// reads it once.
#pragma once

#include <string>
#include <string_view>

#include "platform/Clock.h"

namespace zemo {

// Seconds since midnight as the engine's guards keep them: single precision, about 1/128 s late in
// the day. Differences are taken between two such values.
float SecondsSinceMidnight(const LocalDateTime& moment);
// The clock went back since the guard was set, which then keeps nothing from being done: summer
// time's end, midnight, a clock that was set. Not by a mere correction, of less than a minute.
bool GuardIsAhead(float now, float guard);

std::string TimeText(const LocalDateTime& moment);       // "hh:mm:ss"
std::string DateText(const LocalDateTime& moment);       // "dd/mm/yyyy"
std::string ShortDateText(const LocalDateTime& moment);  // "dd/mm/yy", the stamp of the day's grid
std::string DateKey(const LocalDateTime& moment);        // "yyyymmdd", for comparing days as text
// "dd/mm/yyyy" to "yyyymmdd"; empty where the text is no such date.
std::string DateKeyOfText(std::string_view ddmmyyyy);
// "Samedi 05 décembre 2026": day and month by language (Cnf Langue: 0 French, 1 English,
// 2 Portuguese, 3 Spanish; French for any other), first letter a capital. Empty for no date.
std::string LongDateText(const LocalDateTime& moment, int langue);

// The moment without its milliseconds, as stored dates and times have it.
LocalDateTime WholeSeconds(LocalDateTime moment);
// Days since 30 December 1899 with the time of day as the fraction.
double DateSerial(const LocalDateTime& moment);
double DaySerial(int year, int month, int day);
// To the nearest millisecond; day 0 for a serial outside the years.
LocalDateTime FromDateSerial(double serial);
// "yyyy/mm/dd  hh:mm:ss" (two blanks) of a serial; empty for 0.
std::string LastPlayedText(double serial);
bool ValidDate(int year, int month, int day);
bool IsClockTime(std::string_view text);  // "hh:mm", from 00:00 to 23:59
// A time of the day's start and stop times: the same, with or without seconds, and behind a stop
// what it does besides ("-F", "-Q").
bool IsDayTime(std::string_view text, bool stop);

// 1 for Monday to 7 for Sunday, by the system's own date arithmetic, which agrees with the calendar
// from 1 March 1900 to 28 February 2100.
int CurrentWeekday(const LocalDateTime& today);

}  // namespace zemo
