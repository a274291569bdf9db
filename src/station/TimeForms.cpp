// Calendar arithmetic and the forms of dates and times, without the system's calendar or its
// locale.
#include "station/TimeForms.h"

#include <array>
#include <cmath>
#include <cstdint>

#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr int64_t kDayMs = 86400000;

// Days since 1 March of year 0 of the Gregorian calendar, extended backwards. Years that begin in
// March put the leap day at their end, so that the months before it always have the same lengths.
constexpr int64_t DaysFromMarch(int year, int month, int day) {
  const int64_t marchYear = month > 2 ? year : year - 1;
  const int64_t monthsPast = month > 2 ? month - 3 : month + 9;
  const int64_t leapDays = marchYear / 4 - marchYear / 100 + marchYear / 400;
  return marchYear * 365 + leapDays + (153 * monthsPast + 2) / 5 + day - 1;
}

constexpr int64_t kSerialZero = DaysFromMarch(1899, 12, 30);

bool LeapYear(int year) {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int DaysInMonth(int year, int month) {
  constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && LeapYear(year) ? 29 : kDays[static_cast<size_t>(month - 1)];
}

std::string FourDigits(int number) {
  return TwoDigits(number / 100) + TwoDigits(number);
}

struct DateWords {
  std::array<const char*, 7> days;  // Monday first, the capital in place
  std::array<const char*, 12> months;
};

// By Langue: French, English, Portuguese, Spanish.
constexpr std::array<DateWords, 4> kDateWords = {{
    {{"Lundi", "Mardi", "Mercredi", "Jeudi", "Vendredi", "Samedi", "Dimanche"},
     {"janvier", "février", "mars", "avril", "mai", "juin", "juillet", "août", "septembre",
      "octobre", "novembre", "décembre"}},
    {{"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"},
     {"January", "February", "March", "April", "May", "June", "July", "August", "September",
      "October", "November", "December"}},
    {{"Segunda-feira", "Terça-feira", "Quarta-feira", "Quinta-feira", "Sexta-feira", "Sábado",
      "Domingo"},
     {"janeiro", "fevereiro", "março", "abril", "maio", "junho", "julho", "agosto", "setembro",
      "outubro", "novembro", "dezembro"}},
    {{"Lunes", "Martes", "Miércoles", "Jueves", "Viernes", "Sábado", "Domingo"},
     {"enero", "febrero", "marzo", "abril", "mayo", "junio", "julio", "agosto", "septiembre",
      "octubre", "noviembre", "diciembre"}},
}};

}  // namespace

float SecondsSinceMidnight(const LocalDateTime& moment) {
  return static_cast<float>(moment.hour * 3600 + moment.minute * 60 + moment.second +
                            moment.millisecond / 1000.0);
}

bool GuardIsAhead(float now, float guard) {
  constexpr float kCorrectionSec = 60;
  return guard - now >= kCorrectionSec;
}

std::string TimeText(const LocalDateTime& moment) {
  std::string text = "00:00:00";  // asked for ten times a second
  PutTwoDigits(moment.hour, text.data());
  PutTwoDigits(moment.minute, text.data() + 3);
  PutTwoDigits(moment.second, text.data() + 6);
  return text;
}

std::string DateText(const LocalDateTime& moment) {
  return TwoDigits(moment.day) + "/" + TwoDigits(moment.month) + "/" + FourDigits(moment.year);
}

std::string ShortDateText(const LocalDateTime& moment) {
  return TwoDigits(moment.day) + "/" + TwoDigits(moment.month) + "/" + TwoDigits(moment.year);
}

std::string DateKey(const LocalDateTime& moment) {
  return FourDigits(moment.year) + TwoDigits(moment.month) + TwoDigits(moment.day);
}

std::string DateKeyOfText(std::string_view ddmmyyyy) {
  constexpr std::string_view kForm = "00/00/0000";
  if (ddmmyyyy.size() != kForm.size()) return {};
  for (size_t i = 0; i < kForm.size(); ++i) {
    const bool digit = ddmmyyyy[i] >= '0' && ddmmyyyy[i] <= '9';
    if (kForm[i] == '0' ? !digit : ddmmyyyy[i] != '/') return {};
  }
  const std::string day(ddmmyyyy.substr(0, 2)), month(ddmmyyyy.substr(3, 2)),
      year(ddmmyyyy.substr(6, 4));
  if (!ValidDate(ValInt(year), ValInt(month), ValInt(day))) return {};
  return year + month + day;
}

std::string LongDateText(const LocalDateTime& moment, int langue) {
  if (!ValidDate(moment.year, moment.month, moment.day)) return {};
  const DateWords& words = kDateWords[langue >= 0 && langue < 4 ? static_cast<size_t>(langue) : 0];
  // Day 0 of the serials was a Saturday, the sixth of the names.
  const int64_t serial = DaysFromMarch(moment.year, moment.month, moment.day) - kSerialZero;
  const int64_t weekday = ((serial + 5) % 7 + 7) % 7;
  constexpr size_t kLongest = 40;
  std::string text;
  text.reserve(kLongest);
  text += words.days[static_cast<size_t>(weekday)];
  text += ' ';
  text += TwoDigits(moment.day);
  text += ' ';
  text += words.months[static_cast<size_t>(moment.month - 1)];
  text += ' ';
  text += FourDigits(moment.year);
  return text;
}

LocalDateTime WholeSeconds(LocalDateTime moment) {
  moment.millisecond = 0;
  return moment;
}

double DateSerial(const LocalDateTime& moment) {
  const int64_t ms = ((moment.hour * int64_t{60} + moment.minute) * 60 + moment.second) * 1000 +
                     moment.millisecond;
  return DaySerial(moment.year, moment.month, moment.day) + static_cast<double>(ms) / kDayMs;
}

double DaySerial(int year, int month, int day) {
  return static_cast<double>(DaysFromMarch(year, month, day) - kSerialZero);
}

LocalDateTime FromDateSerial(double serial) {
  const double first = DaySerial(1, 1, 1), last = DaySerial(9999, 12, 31) + 1;
  if (!(serial >= first && serial < last)) return {};
  const auto totalMs = static_cast<int64_t>(std::nearbyint(serial * kDayMs));
  int64_t days = totalMs / kDayMs;
  int64_t ms = totalMs % kDayMs;
  if (ms < 0) {
    --days;
    ms += kDayMs;
  }
  const int64_t fromMarch = days + kSerialZero;
  // The year by its mean length is at most one off; begin above it.
  auto marchYear = static_cast<int>(fromMarch * 400 / 146097) + 1;
  while (DaysFromMarch(marchYear, 3, 1) > fromMarch) --marchYear;
  const int64_t dayOfYear = fromMarch - DaysFromMarch(marchYear, 3, 1);
  const auto monthsPast = static_cast<int>((5 * dayOfYear + 2) / 153);
  LocalDateTime moment;
  moment.month = monthsPast < 10 ? monthsPast + 3 : monthsPast - 9;
  moment.year = moment.month > 2 ? marchYear : marchYear + 1;
  moment.day = static_cast<int>(dayOfYear - (153 * monthsPast + 2) / 5) + 1;
  moment.hour = static_cast<int>(ms / 3600000);
  moment.minute = static_cast<int>(ms / 60000 % 60);
  moment.second = static_cast<int>(ms / 1000 % 60);
  moment.millisecond = static_cast<int>(ms % 1000);
  return moment;
}

std::string LastPlayedText(double serial) {
  if (serial == 0) return {};
  const LocalDateTime moment = FromDateSerial(serial);
  return FourDigits(moment.year) + "/" + TwoDigits(moment.month) + "/" + TwoDigits(moment.day) +
         "  " + TimeText(moment);
}

bool ValidDate(int year, int month, int day) {
  return year >= 1 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 &&
         day <= DaysInMonth(year, month);
}

int CurrentWeekday(const LocalDateTime& today) {
  const bool winter = today.month < 3;
  const int m = winter ? today.month + 13 : today.month + 1;
  const int y = winter ? today.year - 1901 : today.year - 1900;
  // m times 30.6 and y times 365.25, each rounded down, in whole numbers; before 1900 y is
  // negative.
  const int k = m * 306 / 10 + (y * 1461 - (y < 0 ? 3 : 0)) / 4;
  return ((k % 7 + today.day - 1) % 7 + 7) % 7 + 1;
}

bool IsClockTime(std::string_view text) {
  const auto digit = [&](size_t i) { return text[i] >= '0' && text[i] <= '9'; };
  return text.size() == 5 && text[2] == ':' && digit(0) && digit(1) && digit(3) && digit(4) &&
         Val(text.substr(0, 2)) < 24 && Val(text.substr(3)) < 60;
}

bool IsDayTime(std::string_view text, bool stop) {
  if (stop && (text.ends_with("-F") || text.ends_with("-Q"))) text.remove_suffix(2);
  const bool seconds = text.size() == 8 && text[5] == ':';
  return IsClockTime(text.substr(0, 5)) &&
         (text.size() == 5 || (seconds && IsClockTime("00:" + std::string(text.substr(6)))));
}

}  // namespace zemo
