#include "app/Moments.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <ctime>
#include <limits>

namespace zemo {

namespace {
constexpr int64_t kSecondMs = 1000;
constexpr int64_t kMinuteMs = 60 * kSecondMs;
constexpr int64_t kHourMs = 60 * kMinuteMs;
constexpr int64_t kDayMs = 24 * kHourMs;
constexpr int64_t kLongestMs = 36525 * kDayMs;  // keeps every sum of moments far from overflow

// The whole text as a number without sign; -1 for anything else.
int64_t Digits(std::string_view text) {
  int64_t number = -1;
  if (text.empty() || text.front() < '0' || text.front() > '9') return -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? number : -1;
}

// Exactly `count` digits at `at`; -1 for anything else.
int DigitsAt(std::string_view text, size_t at, size_t count) {
  if (at + count > text.size()) return -1;
  return static_cast<int>(Digits(text.substr(at, count)));
}

// ".5", ".50" and ".500" are 500 ms; nothing is 0; -1 for anything else.
int64_t FractionMs(std::string_view text) {
  if (text.empty()) return 0;
  if (text.front() != '.' || text.size() < 2 || text.size() > 4) return -1;
  int64_t fraction = Digits(text.substr(1));
  for (size_t i = text.size(); fraction > 0 && i < 4; ++i) fraction *= 10;
  return fraction;
}

// mktime with the summer time flag given; false when the zone never shows that time with that flag.
bool ExactUtcSeconds(std::tm local, int summerTime, std::time_t& utc) {
  local.tm_isdst = summerTime;
  std::tm asked = local;
  utc = std::mktime(&asked);
  std::tm shown{};
  localtime_r(&utc, &shown);
  return shown.tm_isdst == summerTime && shown.tm_mday == local.tm_mday &&
         shown.tm_hour == local.tm_hour && shown.tm_min == local.tm_min &&
         shown.tm_sec == local.tm_sec;
}
}  // namespace

std::optional<int64_t> ParseDuration(std::string_view text) {
  int64_t unitMs = kSecondMs;
  if (!text.empty()) {
    switch (text.back()) {
      case 's':
        unitMs = kSecondMs;
        break;
      case 'm':
        unitMs = kMinuteMs;
        break;
      case 'h':
        unitMs = kHourMs;
        break;
      case 'd':
        unitMs = kDayMs;
        break;
      default:
        unitMs = 0;
    }
    if (unitMs != 0) text.remove_suffix(1);
  }
  if (unitMs == 0) unitMs = kSecondMs;
  const int64_t count = Digits(text);
  if (count < 0 || count > kLongestMs / unitMs) return std::nullopt;
  return count * unitMs;
}

std::optional<LocalDateTime> ParseDay(std::string_view text) {
  if (text.size() != 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
  LocalDateTime day{
      .year = DigitsAt(text, 0, 4), .month = DigitsAt(text, 5, 2), .day = DigitsAt(text, 8, 2)};
  if (day.year < 1900 || day.month < 1 || day.day < 1) return std::nullopt;
  const std::chrono::year_month_day date(std::chrono::year(day.year),
                                         std::chrono::month(static_cast<unsigned>(day.month)),
                                         std::chrono::day(static_cast<unsigned>(day.day)));
  if (!date.ok()) return std::nullopt;
  return day;
}

std::optional<LocalDateTime> ParseMoment(std::string_view text) {
  if (text.size() != 19 || text[10] != ' ') return std::nullopt;
  auto moment = ParseDay(text.substr(0, 10));
  const auto time = ParseTimeOfDay(text.substr(11));
  if (!moment || !time) return std::nullopt;
  moment->hour = static_cast<int>(*time / kHourMs);
  moment->minute = static_cast<int>(*time / kMinuteMs % 60);
  moment->second = static_cast<int>(*time / kSecondMs % 60);
  return moment;
}

std::optional<int64_t> ParseTimeOfDay(std::string_view text) {
  if (text.size() < 8 || text[2] != ':' || text[5] != ':') return std::nullopt;
  const int hour = DigitsAt(text, 0, 2);
  const int minute = DigitsAt(text, 3, 2);
  const int second = DigitsAt(text, 6, 2);
  const int64_t fractionMs = FractionMs(text.substr(8));
  if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59 ||
      fractionMs < 0)
    return std::nullopt;
  return hour * kHourMs + minute * kMinuteMs + second * kSecondMs + fractionMs;
}

std::optional<int64_t> ParseSeconds(std::string_view text) {
  const size_t point = std::min(text.find('.'), text.size());
  const int64_t seconds = Digits(text.substr(0, point));
  const int64_t fractionMs = FractionMs(text.substr(point));
  if (seconds < 0 || seconds > kLongestMs / kSecondMs || fractionMs < 0) return std::nullopt;
  return seconds * kSecondMs + fractionMs;
}

int64_t UtcMs(const LocalDateTime& local) {
  std::tm parts{};
  parts.tm_year = local.year - 1900;
  parts.tm_mon = local.month - 1;
  parts.tm_mday = local.day;
  parts.tm_hour = local.hour;
  parts.tm_min = local.minute;
  parts.tm_sec = local.second;
  std::time_t summer = 0;
  std::time_t winter = 0;
  const bool inSummer = ExactUtcSeconds(parts, 1, summer);
  const bool inWinter = ExactUtcSeconds(parts, 0, winter);
  std::time_t utc = inSummer ? summer : winter;
  if (inSummer && inWinter) utc = std::min(summer, winter);
  if (!inSummer && !inWinter) {
    parts.tm_isdst = -1;
    utc = std::mktime(&parts);
  }
  return static_cast<int64_t>(utc) * kSecondMs + local.millisecond;
}

LocalDateTime LocalOfUtcMs(int64_t utcMs) {
  const int64_t millisecond = (utcMs % kSecondMs + kSecondMs) % kSecondMs;
  const std::time_t seconds = static_cast<std::time_t>((utcMs - millisecond) / kSecondMs);
  std::tm parts{};
  localtime_r(&seconds, &parts);
  return {.year = parts.tm_year + 1900,
          .month = parts.tm_mon + 1,
          .day = parts.tm_mday,
          .hour = parts.tm_hour,
          .minute = parts.tm_min,
          .second = parts.tm_sec,
          .millisecond = static_cast<int>(millisecond)};
}

bool LocalClockShows(const LocalDateTime& moment) {
  return LocalOfUtcMs(UtcMs(moment)) == moment;
}

int64_t FirstMomentOfDay(int64_t fromUtcMs, int64_t timeOfDayMs) {
  const LocalDateTime from = LocalOfUtcMs(fromUtcMs);
  int64_t first = std::numeric_limits<int64_t>::max();
  // A day may lack the time or lie before `from`, so the third day is the last that can be needed.
  for (int day = 0; day <= 2 && first == std::numeric_limits<int64_t>::max(); ++day) {
    std::tm midday{};  // lets the calendar carry the day over the end of the month
    midday.tm_year = from.year - 1900;
    midday.tm_mon = from.month - 1;
    midday.tm_mday = from.day + day;
    midday.tm_hour = 12;
    midday.tm_isdst = -1;
    std::mktime(&midday);
    std::tm asked = midday;
    asked.tm_hour = static_cast<int>(timeOfDayMs / kHourMs);
    asked.tm_min = static_cast<int>(timeOfDayMs / kMinuteMs % 60);
    asked.tm_sec = static_cast<int>(timeOfDayMs / kSecondMs % 60);
    for (int summerTime : {1, 0}) {
      std::time_t utc = 0;
      if (!ExactUtcSeconds(asked, summerTime, utc)) continue;
      const int64_t moment = static_cast<int64_t>(utc) * kSecondMs + timeOfDayMs % kSecondMs;
      if (moment >= fromUtcMs) first = std::min(first, moment);
    }
  }
  return first;
}

}  // namespace zemo
