// Moments and durations as the command line and a script write them, and how a time of day becomes
// a moment of the run, through the local zone with its changes to and from summer time.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/Clock.h"

namespace zemo {

// "90" and "90s" are seconds, "45m" minutes, "24h" hours, "7d" days; in ms, at most a hundred
// years.
std::optional<int64_t> ParseDuration(std::string_view text);

// "YYYY-MM-DD hh:mm:ss" from the year 1900 on; nullopt also for a date that no calendar has.
std::optional<LocalDateTime> ParseMoment(std::string_view text);

// "YYYY-MM-DD", at 00:00:00.
std::optional<LocalDateTime> ParseDay(std::string_view text);

// "hh:mm:ss" with up to three decimals of the second; in ms since midnight.
std::optional<int64_t> ParseTimeOfDay(std::string_view text);

// A number of seconds with up to three decimals; in ms, at most a hundred years.
std::optional<int64_t> ParseSeconds(std::string_view text);

// Milliseconds since the Unix epoch of a local time in the zone of the process, and back. Of a time
// that stands twice the first is meant; one that summer time skips is moved to one that exists.
int64_t UtcMs(const LocalDateTime& local);
LocalDateTime LocalOfUtcMs(int64_t utcMs);

// False for a time that the change to summer time skips.
bool LocalClockShows(const LocalDateTime& moment);

// The first moment not before `fromUtcMs` at which the local clock shows that time of day. A time
// that the change to summer time skips comes on the next day only; one that is met twice counts
// twice.
int64_t FirstMomentOfDay(int64_t fromUtcMs, int64_t timeOfDayMs);

}  // namespace zemo
