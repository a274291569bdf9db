// The lenient readings of a stored value.
#include "store/Value.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <system_error>

namespace zemo {

namespace {

// The whole text, blanks around it aside, as a number; nothing where it is not one.
std::optional<double> NumberOf(std::string_view text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return std::nullopt;
  text = text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
  if (text.front() == '+') text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (!std::isfinite(number)) return std::nullopt;  // "inf" and "nan" are words here
  return number;
}

int64_t Rounded(double number) {
  if (std::isnan(number)) return 0;
  // The limits themselves cannot be held exactly in a double; beyond them the nearest integer is
  // one.
  if (number >= 9223372036854775807.0) return std::numeric_limits<int64_t>::max();
  if (number <= -9223372036854775808.0) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(std::nearbyint(number));
}

// The shortest digits that read back as the same number; written out in full at everyday sizes.
std::string Digits(double number) {
  const double size = std::fabs(number);
  const bool everyday = number == 0 || (size >= 1e-5 && size < 1e15);
  char digits[64];
  const auto result =
      std::to_chars(digits, digits + sizeof digits, number == 0 ? 0.0 : number,
                    everyday ? std::chars_format::fixed : std::chars_format::general);
  return std::string(digits, result.ptr);
}

}  // namespace

bool IsNull(const Value& value) {
  return std::holds_alternative<std::monostate>(value);
}

bool ReadsAsNumber(const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return NumberOf(*text).has_value();
  return !IsNull(value);
}

std::string AsText(const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* integer = std::get_if<int64_t>(&value)) return std::to_string(*integer);
  if (const auto* real = std::get_if<double>(&value)) return Digits(*real);
  return {};
}

int64_t AsInt(const Value& value) {
  if (const auto* integer = std::get_if<int64_t>(&value)) return *integer;
  if (const auto* real = std::get_if<double>(&value)) return Rounded(*real);
  if (const auto* text = std::get_if<std::string>(&value)) {
    return Rounded(NumberOf(*text).value_or(0));
  }
  return 0;
}

double AsReal(const Value& value) {
  if (const auto* integer = std::get_if<int64_t>(&value)) return static_cast<double>(*integer);
  if (const auto* real = std::get_if<double>(&value)) return *real;
  if (const auto* text = std::get_if<std::string>(&value)) return NumberOf(*text).value_or(0);
  return 0;
}

bool AsBool(const Value& value) {
  return AsReal(value) != 0;
}

}  // namespace zemo
