// Numbers, lengths and letters in texts. No locale: the mark of decimals is the point wherever the
// station runs, and letters are those of Western European text.
#include "station/TextForms.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <system_error>

namespace zemo {

namespace {

// At least two digits, for hours that may pass 99.
std::string AtLeastTwoDigits(int64_t number) {
  std::string digits = std::to_string(number);
  return digits.size() < 2 ? "0" + digits : digits;
}

std::string TwoDigitsOf(int64_t number) {
  return TwoDigits(static_cast<int>(number % 100));
}

bool IsContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// Capital of a letter of two bytes in UTF-8, as its second byte under the same or another first
// one.
void CapitaliseTwoBytes(char& first, char& second) {
  const auto a = static_cast<unsigned char>(first);
  const auto b = static_cast<unsigned char>(second);
  if (a == 0xC3 && b == 0xBF) {  // y with diaeresis: its capital lies outside Latin-1
    first = '\xC5';
    second = '\xB8';
  } else if (a == 0xC3 && b >= 0xA0 && b != 0xB7) {  // 0xB7 is the division sign
    second = static_cast<char>(b - 0x20);
  } else if (a == 0xC5 && (b == 0x93 || b == 0xA1 || b == 0xBE)) {  // oe, s and z with caron
    second = static_cast<char>(b - 1);
  }
}

}  // namespace

double Val(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  bool negative = false;
  if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  if (text.size() == 1 && text.front() >= '0' && text.front() <= '9') {  // a key, ten times a tick
    const double digit = text.front() - '0';
    return negative ? -digit : digit;
  }
  // The conversion itself would also take a second sign, "inf" and "nan".
  if (text.empty() || !((text.front() >= '0' && text.front() <= '9') || text.front() == '.'))
    return 0;
  double number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc()) return 0;
  return negative ? -number : number;
}

int32_t ValInt(std::string_view text) {
  const double number = Val(text);
  if (number >= static_cast<double>(std::numeric_limits<int32_t>::max()))
    return std::numeric_limits<int32_t>::max();
  if (number <= static_cast<double>(std::numeric_limits<int32_t>::min()))
    return std::numeric_limits<int32_t>::min();
  return static_cast<int32_t>(number);
}

std::string Trim(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string UpperAscii(std::string_view text) {
  std::string upper(text);
  for (char& letter : upper)
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  return upper;
}

std::string UpperLatin(std::string_view utf8) {
  std::string upper = UpperAscii(utf8);
  for (size_t i = 0; i + 1 < upper.size(); ++i)
    if (IsContinuation(upper[i + 1])) CapitaliseTwoBytes(upper[i], upper[i + 1]);
  return upper;
}

bool EqualNoCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && UpperAscii(a) == UpperAscii(b);
}

std::string TwoDigits(int number) {
  std::string text = "00";
  PutTwoDigits(number, text.data());
  return text;
}

void PutTwoDigits(int number, char* to) {
  const int cut = std::abs(number % 100);
  to[0] = static_cast<char>('0' + cut / 10);
  to[1] = static_cast<char>('0' + cut % 10);
}

std::string FormatDuration(int64_t ms) {
  const int64_t seconds = ms / 1000;
  if (seconds <= 0) return "--:--";
  return TwoDigitsOf(seconds / 60) + ":" + TwoDigitsOf(seconds % 60);
}

std::string SecondsText(int64_t ms) {
  const int64_t tenths = (std::max<int64_t>(ms, 0) + 50) / 100;
  return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
}

std::string HoursMinutesText(int64_t ms) {
  const int64_t minutes = ms < 0 ? 0 : ms / 60000;
  return AtLeastTwoDigits(minutes / 60) + " h " + TwoDigitsOf(minutes % 60);
}

std::string ClockText(int64_t ms) {
  const int64_t seconds = ms < 0 ? 0 : ms / 1000;
  return AtLeastTwoDigits(seconds / 3600) + ":" + TwoDigitsOf(seconds / 60 % 60) + ":" +
         TwoDigitsOf(seconds % 60);
}

std::string PlannedTimeText(double msSinceMidnight) {
  constexpr double kDayMs = 86400000.0;
  double ms = std::isfinite(msSinceMidnight) ? std::fmod(msSinceMidnight, kDayMs) : 0.0;
  if (ms < 0) ms += kDayMs;
  const int64_t seconds = static_cast<int64_t>(ms / 1000) % 86400;
  return TwoDigitsOf(seconds / 3600) + " h " + TwoDigitsOf(seconds / 60 % 60) + " ' " +
         TwoDigitsOf(seconds % 60);
}

std::string HexMark(std::string_view text) {
  uint32_t hash = 2166136261U;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  std::string digits(8, '0');
  for (size_t i = digits.size(); i-- > 0; hash >>= 4) digits[i] = "0123456789abcdef"[hash & 15];
  return digits;
}

int CharacterCount(std::string_view utf8) {
  int count = 0;
  for (const char byte : utf8) count += IsContinuation(byte) ? 0 : 1;
  return count;
}

std::string FirstCharacters(std::string_view utf8, int n) {
  size_t end = 0;
  for (int count = 0; count < n && end < utf8.size(); ++count) {
    ++end;
    while (end < utf8.size() && IsContinuation(utf8[end])) ++end;
  }
  return std::string(utf8.substr(0, end));
}

std::string PaddedText(std::string_view utf8, int n) {
  std::string padded = FirstCharacters(utf8, n);
  padded.append(static_cast<size_t>(std::max(n - CharacterCount(padded), 0)), ' ');
  return padded;
}

}  // namespace zemo
